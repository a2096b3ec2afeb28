#include "host_help.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ostream>

extern char** environ;

namespace host {

namespace {

bool has_display() {
    const char* x = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return (x && *x) || (wayland && *wayland);
}

bool run_xdg_open(const std::string& file) {
    pid_t pid = 0;
    const std::string url = "file://" + file;
    char* argv[] = {const_cast<char*>("xdg-open"), const_cast<char*>(url.c_str()), nullptr};
    if (::posix_spawnp(&pid, "xdg-open", nullptr, nullptr, argv, environ) != 0) return false;
    int status = 0;
    return ::waitpid(pid, &status, 0) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

std::string help_pages(const std::string& module_path) {
    const std::size_t slash = module_path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : module_path.substr(0, slash);
    const std::string index = folder + "/help/html/index.html";
    if (::access(index.c_str(), R_OK) != 0) return {};
    char* real = ::realpath(index.c_str(), nullptr);
    if (!real) return index;
    std::string out(real);
    std::free(real);
    return out;
}

int open_help(const std::string& module_path, std::ostream& out, std::ostream& err) {
    const std::string index = help_pages(module_path);
    if (index.empty()) {
        err << "kestrone-host: no help pages beside the module " << module_path
            << " (help/html/index.html)\n";
        return 1;
    }
    if (has_display() && run_xdg_open(index)) {
        out << "opened the help: " << index << "\n";
        return 0;
    }
    out << "the help is at " << index << "\n";
    return 0;
}

}  // namespace host
