#include "support/temp_dir.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <stdlib.h>

namespace testing_support {

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rovanta-test-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

std::string TempDir::write(const std::string& name, const std::string& content) const {
    const std::filesystem::path p = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary) << content;
    return p.string();
}

std::string TempDir::copy(const std::string& from, const std::string& name) const {
    const std::filesystem::path p = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(p.parent_path());
    std::filesystem::copy_file(from, p, std::filesystem::copy_options::overwrite_existing);
    return p.string();
}

std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace testing_support
