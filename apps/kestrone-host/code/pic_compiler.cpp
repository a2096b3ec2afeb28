#include "pic_compiler.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace kflow {

namespace {

constexpr std::size_t kMostOutput = 64 * 1024;

struct PathParts {
    std::string folder;
    std::string file;
};
PathParts split_path(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return {".", path};
    return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

}  // namespace

bool run_in(const std::string& folder, const std::vector<std::string>& argv, std::string& output) {
    int pipe_fds[2];
    if (::pipe(pipe_fds) != 0) {
        output = "could not make a pipe for " + argv[0];
        return false;
    }
    const pid_t child = ::fork();
    if (child < 0) {
        ::close(pipe_fds[0]);
        ::close(pipe_fds[1]);
        output = "could not start " + argv[0];
        return false;
    }
    if (child == 0) {
        ::dup2(pipe_fds[1], 1);
        ::dup2(pipe_fds[1], 2);
        ::close(pipe_fds[0]);
        ::close(pipe_fds[1]);
        if (::chdir(folder.c_str()) != 0) ::_exit(126);
        std::vector<char*> args;
        for (const std::string& a : argv)
            args.push_back(const_cast<char*>(a.c_str()));
        args.push_back(nullptr);
        ::execv(args[0], args.data());
        ::_exit(127);
    }
    ::close(pipe_fds[1]);
    std::array<char, 4096> buffer;
    bool stopped = false;
    for (ssize_t n; (n = ::read(pipe_fds[0], buffer.data(), buffer.size())) > 0;) {
        output.append(buffer.data(), static_cast<std::size_t>(n));
        // A compiler that has lost its way can write without end: what it said first is kept.
        if (!stopped && output.size() > kMostOutput) {
            ::kill(child, SIGKILL);
            stopped = true;
        }
        if (stopped) output.resize(std::min(output.size(), kMostOutput));
    }
    ::close(pipe_fds[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (stopped)
        output += "\n(the compiler wrote more than " + std::to_string(kMostOutput / 1024) +
                  " KB of messages and was stopped)\n";
    return !stopped && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string sdcc_path() {
    const char* prefix = std::getenv("KESTRONE_PIC_PREFIX");
    return std::string(prefix && *prefix ? prefix : "/opt/kestrone-pic") + "/bin/sdcc";
}

CompileResult compile_for_chip(const std::string& c_file) {
    CompileResult r;
    const std::string sdcc = sdcc_path();
    if (::access(sdcc.c_str(), X_OK) != 0) {
        r.missing = true;
        r.output = "the PIC compiler is not installed: no " + sdcc +
                   " (scripts/setup-pic.sh builds it; KESTRONE_PIC_PREFIX names another place)";
        return r;
    }
    const PathParts where = split_path(c_file);
    const std::size_t dot = where.file.rfind('.');
    const std::string stem = dot == std::string::npos ? where.file : where.file.substr(0, dot);
    r.ok = run_in(where.folder, {sdcc, "-mpic14", "-p16f877a", "--use-non-free", where.file},
                  r.output);
    r.hex = (where.folder == "." ? "" : where.folder + "/") + stem + ".hex";
    if (r.ok && ::access(r.hex.c_str(), R_OK) != 0) {
        r.ok = false;
        r.output += "the compiler ended without writing " + r.hex + "\n";
    }
    return r;
}

}  // namespace kflow
