#include "platform/memory_files.h"

#include <map>

namespace platform {

namespace {
std::map<std::string, std::string, std::less<>>& served() {
    static std::map<std::string, std::string, std::less<>> files;
    return files;
}
}  // namespace

void serve_from_memory(const std::string& path, std::string bytes) {
    served()[path] = std::move(bytes);
}

void stop_serving_from_memory() {
    served().clear();
}

const std::string* served_file(const std::string& path) {
    const auto& files = served();
    if (files.empty()) return nullptr;
    const auto it = files.find(path);
    return it == files.end() ? nullptr : &it->second;
}

}  // namespace platform
