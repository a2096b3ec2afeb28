// The console: reads commands line by line and answers each with its notices and one final line.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <string_view>

#include "command_line.h"
#include "kestrone/com.h"
#include "kestrone/inspect.h"
#include "kestrone/services.h"
#include "kestrone/typelib.h"
#include "module_host.h"

namespace console {

// Writes the answers; every notice and final line is flushed as it is written.
class Output {
  public:
    explicit Output(std::ostream& out) : out_(out) {}
    void notice(const std::string& line);
    void ok(const std::string& rest = {});
    void error(kestrone::HRESULT status);
    void fail(const std::string& why);

  private:
    std::ostream& out_;
};

// The platform as the console gives it: a message is answered with OK at once and a tone
// returns at once; both are written as notices.
class ConsoleServices : public kestrone::IHostServices {
  public:
    explicit ConsoleServices(Output& out) : out_(out) {}
    virtual ~ConsoleServices() = default;
    void ShowMessage(const std::string& text) noexcept override;
    void PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept override;

  private:
    Output& out_;
};

class ConsoleSession {
  public:
    // `module` may be null when it could not be loaded; `load_error` then says why.
    ConsoleSession(const host::ModuleHost* module, std::string load_error, std::ostream& out);
    ~ConsoleSession();

    // The start-up: creates the object and answers like `new`.
    void start();
    // Runs one line; false once `quit` has run.
    bool execute(std::string_view line);
    // Reads and runs lines until the end of input or `quit`.
    void run(std::istream& in);

  private:
    using Handler = void (ConsoleSession::*)(const CommandLine&);
    static const std::map<std::string_view, Handler>& commands();

    bool have_object();
    void create_object();

    void cmd_new(const CommandLine&);
    void cmd_quit(const CommandLine&);
    void cmd_field(const CommandLine&);
    void cmd_operation(const CommandLine&);

    const host::ModuleHost* module_;
    std::string load_error_;
    Output out_;
    ConsoleServices services_;
    kestrone::ComPtr<kestrone::IUnknown> object_;
    kestrone::ComPtr<kestrone::IKestroneDispatch> dispatch_;
    kestrone::ComPtr<kestrone::IKestroneInspection> inspect_;
    bool quit_ = false;
};

}  // namespace console
