#include "host/registration.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/module_facts.h"

namespace rovanta {

namespace {

constexpr std::string_view kClassName = "Rovanta";
constexpr std::string_view kClassId = "{5B1E7A30-2C4D-4E8F-9A61-0D527C13A401}";

std::string json_string(std::string_view s) {
    std::string out = "\"";
    for (const char c : s) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (u < 0x20) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\u%04x", u);
            out += buf;
        } else {
            out += c;
        }
    }
    return out + "\"";
}

// The text of one string field of a record this module wrote, or nullopt-like empty with
// `found` false. Only the escapes that json_string makes are understood.
std::string string_field(const std::string& json, std::string_view field, bool& found) {
    found = false;
    const std::string marker = "\"" + std::string(field) + "\": \"";
    const std::size_t start = json.find(marker);
    if (start == std::string::npos) return {};
    std::string out;
    for (std::size_t i = start + marker.size(); i < json.size(); ++i) {
        const char c = json[i];
        if (c == '"') {
            found = true;
            return out;
        }
        if (c != '\\') {
            out += c;
            continue;
        }
        if (++i >= json.size()) break;
        if (json[i] == 'u' && i + 4 < json.size()) {
            out += static_cast<char>(std::strtol(json.substr(i + 1, 4).c_str(), nullptr, 16));
            i += 4;
        } else {
            out += json[i];
        }
    }
    return {};
}

bool make_folders(const std::string& path) {
    for (std::size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        const std::string part = path.substr(0, slash);
        if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) return false;
        if (slash == std::string::npos) break;
    }
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool read_file(const std::string& path, std::string& out) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    char buf[4096];
    std::size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0)
        out.append(buf, n);
    const bool ok = !std::ferror(f);
    std::fclose(f);
    return ok;
}

// Through a temporary file and a rename, so that the host never finds half a record.
bool write_file_atomically(const std::string& path, const std::string& text) {
    std::string temp = path + ".XXXXXX";
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) return false;
    bool ok = ::fchmod(fd, 0644) == 0;
    for (std::size_t done = 0; ok && done < text.size();) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        ok = n > 0;
        if (ok) done += static_cast<std::size_t>(n);
    }
    ok = ok && ::fsync(fd) == 0;
    ok = ::close(fd) == 0 && ok;
    ok = ok && ::rename(temp.c_str(), path.c_str()) == 0;
    if (!ok) ::unlink(temp.c_str());
    return ok;
}

}  // namespace

std::string component_registry_folder() {
    std::string base;
    const char* xdg = std::getenv("XDG_DATA_HOME");
    if (xdg && xdg[0] == '/') {
        base = xdg;
    } else {
        const char* home = std::getenv("HOME");
        if ((!home || home[0] != '/')) {
            const passwd* pw = ::getpwuid(::getuid());
            home = pw ? pw->pw_dir : nullptr;
        }
        if (!home || home[0] != '/') return {};
        base = std::string(home) + "/.local/share";
    }
    while (base.size() > 1 && base.back() == '/')
        base.pop_back();
    return base + "/kestrone/components";
}

std::string registration_file(const std::string& folder) {
    return folder + "/" + std::string(kClassName) + ".json";
}

std::string registration_record(const std::string& module_path) {
    const platform::ModuleFacts app = platform::ModuleFacts::for_path(module_path);
    const std::string version = std::to_string(app.Major) + "." + std::to_string(app.Minor) + "." +
                                std::to_string(app.Revision);
    return "{\n  \"name\": " + json_string(kClassName) +
           ",\n  \"class\": " + json_string(kClassId) +
           ",\n  \"module\": " + json_string(module_path) +
           ",\n  \"version\": " + json_string(version) + "\n}\n";
}

kestrone::HRESULT register_component(const std::string& module_path) noexcept {
    try {
        const std::string folder = component_registry_folder();
        if (folder.empty() || module_path.empty() || !make_folders(folder))
            return kestrone::SELFREG_E_CLASS;
        return write_file_atomically(registration_file(folder), registration_record(module_path))
                   ? kestrone::S_OK
                   : kestrone::SELFREG_E_CLASS;
    } catch (...) {
        return kestrone::SELFREG_E_CLASS;
    }
}

kestrone::HRESULT unregister_component(const std::string& module_path) noexcept {
    try {
        const std::string folder = component_registry_folder();
        if (folder.empty()) return kestrone::SELFREG_E_CLASS;
        const std::string file = registration_file(folder);
        std::string text;
        if (!read_file(file, text))
            return errno == ENOENT ? kestrone::S_FALSE : kestrone::SELFREG_E_CLASS;
        bool found = false;
        const std::string registered = string_field(text, "module", found);
        // A record that names another copy of the module is that copy's to remove.
        if (found && registered != module_path) return kestrone::S_FALSE;
        return ::unlink(file.c_str()) == 0 || errno == ENOENT ? kestrone::S_OK
                                                              : kestrone::SELFREG_E_CLASS;
    } catch (...) {
        return kestrone::SELFREG_E_CLASS;
    }
}

}  // namespace rovanta
