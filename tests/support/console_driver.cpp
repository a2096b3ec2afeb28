#include "support/console_driver.h"

#include <sys/wait.h>

#include <cstdio>

namespace testing_support {

std::string ConsoleRun::text() const {
    std::string out;
    for (const std::string& l : lines)
        out += l + "\n";
    return out;
}

std::string shell_quote(const std::string& s) {
    std::string q = "'";
    for (char c : s)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

namespace {
ConsoleRun run_command(const std::string& command) {
    ConsoleRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return run;
    std::string line;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        if (c == '\n') {
            run.lines.push_back(line);
            line.clear();
        } else {
            line.push_back(static_cast<char>(c));
        }
    }
    if (!line.empty()) run.lines.push_back(line);
    const int status = ::pclose(pipe);
    // A shell reports its child's signal as 128 + the signal.
    run.exit_code = WIFEXITED(status) && WEXITSTATUS(status) < 128 ? WEXITSTATUS(status) : -1;
    return run;
}

// `kestrone-host ARGS` in `dir`, its standard input from `input`.
ConsoleRun run_in(const std::string& dir, const std::string& env, const std::string& args,
                  const std::string& input, const char* errors) {
    TempDir input_dir;
    const std::string file = input_dir.write("input.txt", input);
    return run_command((dir.empty() ? "" : "cd " + shell_quote(dir) + " && ") + env + " " +
                       shell_quote(KESTRONE_HOST_BIN) + " " + args + " < " + shell_quote(file) +
                       errors);
}
}  // namespace

ConsoleRun run_console(const std::string& script, const std::string& extra_args,
                       const std::string& dir) {
    return run_in(dir, "", "console " + extra_args, script, " 2>/dev/null");
}

ConsoleRun run_host(const std::string& args, const std::string& input, const std::string& env,
                    const std::string& dir) {
    return run_in(dir, env, args, input, " 2>&1");
}

ComponentFolder::ComponentFolder(const std::string& code_file, const std::string& name, bool help) {
    module_ = dir_.copy(KESTRONE_MODULE, name + ".so");
    if (!code_file.empty()) dir_.write(name + ".c", code_file);
    if (help) dir_.write("help/" + name + ".chm", "ITSF");
}

ConsoleRun ComponentFolder::run(const std::string& script, const std::string& extra_args,
                                const std::string& dir) const {
    return run_console(script, "--module " + shell_quote(module_) + " " + extra_args, dir);
}

std::string shipped_code_file() {
    return read_file(KESTRONE_CODE_FILE);
}

}  // namespace testing_support
