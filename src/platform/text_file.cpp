#include "platform/text_file.h"

#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "platform/basic_error.h"

namespace platform {

bool file_exists(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool read_whole_file(const std::string& path, std::string& out) {
    if (!file_exists(path)) return false;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    out.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}

std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t end = text.find_first_of("\r\n", i);
        if (end == std::string::npos) {
            lines.push_back(text.substr(i));
            break;
        }
        lines.push_back(text.substr(i, end - i));
        i = end + ((text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n') ? 2 : 1);
    }
    return lines;
}

void InputFile::open(const std::string& path) {
    if (open_) vb::raise_error(vb::kFileAlreadyOpen);
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) vb::raise_error(vb::kFileNotFound);
    std::string text;
    if (!read_whole_file(path, text)) vb::raise_error(vb::kPathFileAccessError);
    lines_ = split_lines(text);
    next_ = 0;
    open_ = true;
}

std::string InputFile::read_line() {
    if (!open_) vb::raise_error(vb::kBadFileNameOrNumber);
    if (at_end()) vb::raise_error(vb::kInputPastEndOfFile);
    return std::move(lines_[next_++]);
}

void InputFile::close() {
    open_ = false;
    lines_.clear();
    next_ = 0;
}

}  // namespace platform
