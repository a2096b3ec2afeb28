// The console's commands as data: each a value with its parse, its format and its execution
// against the stage. The console reads a line, parses it, executes it and prints the reply; a
// window builds the same commands for the user's actions and a recorder writes them formatted,
// so every face speaks one language and a recording is just commands in a row.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "command_line.h"
#include "kestrone/panel.h"
#include "kestrone/status.h"
#include "log_file.h"
#include "stage.h"

namespace commands {

// How a command ended: the console's final line.
struct Reply {
    enum class Kind : std::uint8_t { Ok, Error, Fail };
    Kind kind = Kind::Ok;
    std::string text;  // Ok: the value and by-reference parts, if any; Fail: why
    kestrone::HRESULT status = kestrone::S_OK;  // Error: the component's failure

    static Reply ok(std::string rest = {}) { return {Kind::Ok, std::move(rest)}; }
    static Reply fail(std::string why) { return {Kind::Fail, std::move(why)}; }
    // A failure of the component: `error N TEXT`, or a `fail` naming a status that carries no
    // Basic error number.
    static Reply error(kestrone::HRESULT status);
    bool is_ok() const { return kind == Kind::Ok; }
    // "ok", "ok VALUE", "error N TEXT" or "fail TEXT".
    std::string line() const;
};

// Renders the panel to a PNG file: "" when written, else why not. The commands know no view; a
// face that has one hands it over.
using SnapshotHook =
    std::function<std::string(kestrone::IKestronePanel& panel, const std::string& path)>;

// What a command runs against, and where its notices go as it runs (`entry`, `write`, `read`;
// the component's messages and tones go to the services the stage was given).
struct Context {
    explicit Context(stage::Stage& s) : stage(s) {}
    stage::Stage& stage;
    std::function<void(const std::string& line)> notice = [](const std::string&) {};
    SnapshotHook snapshot;
    std::unique_ptr<signal_log::LogFile> log;  // `log start` to `log stop`
    bool quit = false;                         // `quit` ran
    bool expectations_met = true;              // no `expect` has failed
    // Where a relative file name of a command is found: as written when empty, else in this
    // folder (a lesson's checks name the files beside the lesson).
    std::string folder;
    // The program that `run program` stands for while a lesson's checks run: its text, and the
    // name its messages give it.
    struct ProgramText {
        std::string name;
        std::string text;
    };
    std::optional<ProgramText> program_under_check;

    // A file named by a command, found as `folder` says.
    std::string file(const std::string& name) const;
};

// A line that is no command, kept as written: it answers with why.
struct Refused {
    std::string line;
    std::string why;
    bool operator==(const Refused&) const = default;
};
inline std::string format(const Refused& c) {
    return c.line;
}
inline Reply execute(const Refused& c, Context&) {
    return Reply::fail(c.why);
}

class Command {
  public:
    virtual ~Command() = default;
    // The console line that reads back as this command.
    virtual std::string format() const = 0;
    virtual Reply execute(Context& context) const = 0;
    // Of the same kind with the same fields.
    virtual bool equals(const Command& other) const = 0;
};
using CommandPtr = std::unique_ptr<Command>;

// Found at the point of use, beside each command's struct.
template <class Data>
std::string format_of(const Data& data) {
    return format(data);
}
template <class Data>
Reply execute_of(const Data& data, Context& context) {
    return execute(data, context);
}

// A command is a plain struct of its fields (Click, Advance, PagePut, ...) with a `format` and
// an `execute` of its own beside it; this carries one where the kind is not known.
template <class Data>
class CommandOf final : public Command {
  public:
    explicit CommandOf(Data data) : data_(std::move(data)) {}
    std::string format() const override { return format_of(data_); }
    // The stage's listeners learn of it at once: a log of the signals samples them then.
    Reply execute(Context& context) const override {
        Reply reply = execute_of(data_, context);
        context.stage.changed();
        return reply;
    }
    bool equals(const Command& other) const override {
        const auto* o = dynamic_cast<const CommandOf*>(&other);
        return o && o->data_ == data_;
    }
    const Data& data() const { return data_; }

  private:
    Data data_;
};

template <class Data>
CommandPtr make(Data data) {
    return std::make_unique<CommandOf<Data>>(std::move(data));
}

// A line read as a command, or why it is none (the `fail` text).
struct Parsed {
    CommandPtr command;
    std::string error;
};

// One entry of the table: the command's word, how it is written and what it does (for `help`),
// and its parser, which gets the whole line split into words.
struct CommandEntry {
    std::string_view word;
    std::string_view usage;
    std::string_view what;
    Parsed (*parse)(const console::CommandLine& line);
};

// Every command by its word; a line whose word is none of them calls an operation of the
// component by name.
std::span<const CommandEntry> command_table();
// A line that is not blank or a comment.
Parsed parse_command(std::string_view line);

// For parsers: a command made, and a line refused.
template <class Data>
Parsed parsed(Data data) {
    return {make(std::move(data)), {}};
}
inline Parsed refused(std::string why) {
    return {nullptr, std::move(why)};
}

}  // namespace commands
