// Runs `kestrone-host console` on a script and gives its answer lines.
#pragma once

#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace testing_support {

// The answer of one console run: every line written to standard output.
struct ConsoleRun {
    std::vector<std::string> lines;
    int exit_code = -1;
    std::string text() const;  // the lines joined with "\n", for failure messages
};

// Runs the console with `script` as standard input. `extra_args` go after `console`; a `dir`
// is the folder it runs in, where the script's file names are found.
ConsoleRun run_console(const std::string& script, const std::string& extra_args = "",
                       const std::string& dir = "");

// Runs `kestrone-host ARGS` (ARGS as a shell would split them) with standard input from
// `input`, standard error merged into the lines. `env` goes before the command (NAME=VALUE ...).
// exit_code is -1 when a signal ended it.
ConsoleRun run_host(const std::string& args, const std::string& input = "",
                    const std::string& env = "", const std::string& dir = "");
std::string shell_quote(const std::string& s);

// A component folder of its own: the built module copied in under `name` + ".so", with a code
// file `name` + ".c" holding `code_file` (or none when empty) and, if `help` is true, a help file.
class ComponentFolder {
  public:
    explicit ComponentFolder(const std::string& code_file, const std::string& name = "Robo",
                             bool help = true);
    const std::string& module() const { return module_; }
    std::string dir() const { return dir_.path(); }
    const TempDir& temp() const { return dir_; }
    // Runs the console against this copy of the module.
    ConsoleRun run(const std::string& script, const std::string& extra_args = "",
                   const std::string& dir = "") const;

  private:
    TempDir dir_;
    std::string module_;
};

// The code file that ships with the module.
std::string shipped_code_file();

}  // namespace testing_support
