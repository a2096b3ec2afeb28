// The console: reads commands line by line and answers each with its notices and one final line.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <string_view>

#include "command_line.h"
#include "kestrone/com.h"
#include "kestrone/inspect.h"
#include "kestrone/panel.h"
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

    // the panel (console_panel.cpp)
    bool have_panel();
    bool find_element(const std::string& text, std::int32_t* id);
    void answer_element_status(kestrone::HRESULT hr, const std::string& what);
    void cmd_get(const CommandLine&);
    void cmd_put(const CommandLine&);
    void cmd_click(const CommandLine&);
    void cmd_arrow(const CommandLine&);
    void cmd_mouse(const CommandLine&);
    void cmd_event(const CommandLine&);
    void cmd_tick(const CommandLine&);
    void cmd_advance(const CommandLine&);

    const host::ModuleHost* module_;
    std::string load_error_;
    Output out_;
    ConsoleServices services_;
    kestrone::ComPtr<kestrone::IUnknown> object_;
    kestrone::ComPtr<kestrone::IKestroneDispatch> dispatch_;
    kestrone::ComPtr<kestrone::IKestroneInspection> inspect_;
    kestrone::ComPtr<kestrone::IKestronePanel> panel_;
    kestrone::ComPtr<kestrone::IKestronePanelInspection> panel_inspect_;
    bool quit_ = false;
};

}  // namespace console
