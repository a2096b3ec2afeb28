#include "host_help.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ostream>
#include <string_view>

extern char** environ;

namespace host {

namespace {

struct CommandText {
    std::string_view name;
    std::string_view text;
};

constexpr CommandText kCommands[] = {
    {"console",
     "kestrone-host console [--module PATH | --component NAME] [--store FILE]\n\n"
     "Creates one robot and drives it line by line: every command on standard input is answered\n"
     "with notice lines and one final line (ok, ok VALUE, error N TEXT or fail TEXT). On a\n"
     "terminal it shows a prompt, edits lines and keeps a history; 'help' lists the commands,\n"
     "'help NAME' an operation's parameters; Ctrl-C stops a long advance or run. Piped input is\n"
     "answered without prompt or progress. The exit status is 1 after a failed 'expect' or when\n"
     "the project file can't be opened, 2 when the module can't be loaded.\n\n"
     "  --store FILE   a project file whose store the console starts with\n\n"
     "Example: kestrone-host console < examples/square.console\n"},
    {"window",
     "kestrone-host window [--module PATH | --component NAME]\n\n"
     "The panel in a window, with Start and Stop, the property page, projects and programs.\n\n"
     "  --world FILE   an arena beside the panel, for the robot to drive in\n"
     "  --run FILE     a robot program, opened and run at once\n"},
    {"info",
     "kestrone-host info [--module PATH | --component NAME]\n\n"
     "Loads the module and reports what a host sees: its description, version and code file, its\n"
     "macros and pins, and a simulated second. Exits with 1 when the object can't be made or its\n"
     "code file is missing or unreadable, 2 when the module can't be loaded.\n"},
    {"code",
     "kestrone-host code PROGRAM.kflow [-o FILE] [--project FILE] [--hex] [--module PATH]\n\n"
     "The whole C program of a robot program for the robot's chip.\n\n"
     "  -o FILE          the C file to write (default: standard output)\n"
     "  --project FILE   the project file whose settings the component takes\n"
     "  --hex            also compile the C with the PIC compiler; the .hex goes beside the C\n"},
    {"components",
     "kestrone-host components\n\n"
     "Lists the components registered with this host, and whether each module is still there.\n"},
    {"register",
     "kestrone-host register [--module PATH]\n\n"
     "Runs the module's own registration: it leaves a record in the host's component folder\n"
     "($XDG_DATA_HOME/kestrone/components). A failure names the folder and why.\n"},
    {"unregister",
     "kestrone-host unregister [--module PATH]\n\n"
     "Runs the module's own unregistration: its record goes from the component folder.\n"},
    {"help",
     "kestrone-host help [--module PATH]\n\n"
     "Opens the robot's help pages in the browser (xdg-open), or says where they are when there\n"
     "is no display. The same pages are compiled into help/KT5_Rovanta.chm beside the module.\n"},
};

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

std::string command_help(const std::string& command) {
    for (const CommandText& c : kCommands)
        if (c.name == command) return std::string(c.text);
    return {};
}

}  // namespace host
