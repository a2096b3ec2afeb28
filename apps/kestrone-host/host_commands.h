// kestrone-host's own commands, as a table: each with its line for --help, its page for
// `kestrone-host COMMAND --help`, whether it needs a window system, and what runs it.
#pragma once

#include <QCommandLineParser>
#include <span>
#include <string>
#include <string_view>

namespace host {

// What a command is started with: the options as parsed, its positional words after the
// command's own, and the module to load.
struct Invocation {
    const QCommandLineParser& options;
    QStringList words;
    std::string module;
};

struct HostCommand {
    std::string_view name;
    std::string_view summary;  // one line of `kestrone-host --help`
    std::string_view page;     // `kestrone-host NAME --help`
    bool graphical;            // needs a QApplication (and so a display)
    int positional;            // words it takes after its name (at least, with `more_words`)
    int (*run)(const Invocation& invocation);
    bool more_words = false;  // takes any number of words after the first `positional`
};

std::span<const HostCommand> host_commands();
const HostCommand* find_host_command(std::string_view name);
// "window, console, ... or help", for messages.
std::string host_command_names();
// The options every command is parsed with.
void add_host_options(QCommandLineParser& parser);

}  // namespace host
