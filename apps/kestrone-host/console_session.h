// The console: reads commands line by line and answers each with its notices and one final line.
#pragma once

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "command_line.h"
#include "kestrone/com.h"
#include "kestrone/field_access.h"
#include "kestrone/memory_store.h"
#include "kestrone/panel.h"
#include "kestrone/property_page.h"
#include "kestrone/services.h"
#include "kestrone/store.h"
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

    // The host's store for the object, and where `store save` and `store load` keep it.
    using StoreEntries = std::vector<kestrone::MemoryStore::Entry>;
    struct ProjectFiles {
        std::function<bool(const std::string& path, StoreEntries& out, std::string& error)> load;
        std::function<bool(const std::string& path, const StoreEntries& in, std::string& error)>
            save;
    };
    void set_store(StoreEntries entries);
    void set_project_files(ProjectFiles files) { project_files_ = std::move(files); }

  private:
    using Handler = void (ConsoleSession::*)(const CommandLine&);
    static const std::map<std::string_view, Handler>& commands();

    bool have_object();
    void create_object();
    void release_object();

    void cmd_new(const CommandLine&);
    void cmd_quit(const CommandLine&);
    void cmd_field(const CommandLine&);
    void cmd_operation(const CommandLine&);

    // the store and the property page (console_store.cpp)
    void cmd_store(const CommandLine&);
    void cmd_writeprops(const CommandLine&);
    void cmd_readprops(const CommandLine&);
    void run_store_walk(bool save);
    void cmd_page(const CommandLine&);

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
    kestrone::ComPtr<kestrone::IKestronePersist> persist_;
    kestrone::ComPtr<kestrone::IKestronePropertyPages> pages_;
    kestrone::ComPtr<kestrone::IKestronePropertyPage> page_;
    kestrone::MemoryStore store_;
    ProjectFiles project_files_;
    kestrone::ComPtr<kestrone::IKestronePanel> panel_;
    kestrone::ComPtr<kestrone::IKestronePanelInspection> panel_inspect_;
    bool quit_ = false;
};

}  // namespace console
