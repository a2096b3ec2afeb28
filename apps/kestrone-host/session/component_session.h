// One host session: the module, the Rovanta object it makes, the services lent to it, the store
// and its project file, the property frame, the clock and the running program. Qt-free: the
// console and the window are thin faces over it, each giving its own services and deciding when
// time passes.
//
// Everything happens on the caller's thread, one call at a time, as the component expects. A
// call may re-enter the session from inside the component (a face's message box or tone that
// runs an event loop): calls that reach the component pass through (the component holds its own
// thread), but what would pull the object, the page or the program from under a call in progress
// is refused with kSessionBusy, and a program stopped from inside one of its own steps stops when
// that step returns.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kestrone/com.h"
#include "kestrone/component_v5.h"
#include "kestrone/field_access.h"
#include "kestrone/memory_store.h"
#include "kestrone/panel.h"
#include "kestrone/property_page.h"
#include "kestrone/services.h"
#include "kestrone/typelib.h"
#include "module_host.h"
#include "run_driver.h"

namespace host {

using StoreEntries = std::vector<kestrone::MemoryStore::Entry>;

// A session operation refused because a call in progress would lose what it works on.
inline constexpr kestrone::HRESULT kSessionBusy = static_cast<kestrone::HRESULT>(0x8001010Au);
// No object, or the object lacks the interface the operation needs.
inline constexpr kestrone::HRESULT kNoObject = kestrone::E_NOINTERFACE;

// Long work stopped by the face (a user's Ctrl-C) before its end.
inline constexpr kestrone::HRESULT kInterrupted = static_cast<kestrone::HRESULT>(0x80004004u);

// Told between the slices of a long advance or run with the milliseconds done of those asked for
// (a run: of its limit); false stops the work there.
using ProgressCheck = std::function<bool(std::int64_t done_ms, std::int64_t total_ms)>;

// The host's version as it tells the component: 5.1.
inline constexpr std::int32_t kHostVersion = 0x501;

// How the project file is read and written; the session knows no file format of its own.
struct ProjectCodec {
    // The whole store of the file, or nullopt with `error` naming the file and the fault.
    std::function<std::optional<StoreEntries>(const std::string& path, std::string* error)> load;
    // Writes the file whole; false with `error` on failure, the old file then untouched.
    std::function<bool(const std::string& path, const StoreEntries& entries, std::string* error)>
        save;
};

// What the object offers, queried once per object.
enum class Facet : std::uint8_t {
    Host,      // IKestroneComponentV5: programs and the simulation's start and stop
    Calls,     // calls by name
    Fields,    // fields by name
    Settings,  // the store walks
    Page,      // a property page
    Panel,     // the panel and its elements by name
};

// A member of the host interface or of the control's own, found by name.
struct Operation {
    kestrone::Interface iface;
    std::int32_t number;
    const kestrone::MemberInfo* info;
};

// Told of each key as a settings walk writes or reads it (the read with the value it gave).
using StoreNotice = std::function<void(const std::string& key, const kestrone::Variant& value)>;

class ComponentSession {
  public:
    // `services` receive the component's messages and tones, from its creation on; they must
    // outlive the session. Without a codec the session keeps no project files.
    explicit ComponentSession(kestrone::IHostServices& services, ProjectCodec codec = {});
    // Releases the program, the page, the interfaces and the object, in that order.
    ~ComponentSession();
    ComponentSession(const ComponentSession&) = delete;
    ComponentSession& operator=(const ComponentSession&) = delete;

    // ---- The module and the object ----

    // Loads the module file; false with `error` (also kept as load_error()) when it can't.
    bool load_module(const std::string& path, std::string* error = nullptr);
    bool module_loaded() const { return module_ != nullptr; }
    const std::string& load_error() const { return load_error_; }
    const ModuleHost* module() const { return module_.get(); }

    // Releases any object, then makes a new one through the class factory, the services handed
    // over first so that the messages of its creation reach them. Its interfaces are queried
    // once. kNoObject without a module; else the factory's status.
    kestrone::HRESULT create_object();
    // The program, the page and every interface go before the object.
    kestrone::HRESULT release_object();
    bool has_object() const { return static_cast<bool>(object_); }
    bool offers(Facet facet) const;
    // Tells the component the host's version, which builds its macro table, as a host does once
    // after it creates the object. load_program does it when the component is not ready yet.
    kestrone::HRESULT make_ready();

    // For a view: the panel to paint and the page to build, or null.
    kestrone::IKestronePanel* panel() const { return panel_.get(); }
    kestrone::IKestronePropertyPage* page() const { return page_.get(); }

    // ---- Calls by name ----

    // The member NAME: a write (a property let) when `write`, else a query or procedure; the
    // host's interface first, then the control's own members.
    static std::optional<Operation> find_operation(std::string_view name, bool write);
    // True when a member of that name exists of either kind.
    static bool has_operation(std::string_view name);
    // Calls it: `args` in declared order, a write's value last; by-reference ones come back with
    // their values after the call.
    kestrone::HRESULT call(const Operation& op, std::vector<kestrone::Variant>& args,
                           kestrone::Variant* result);
    // The host's Start and Stop.
    kestrone::HRESULT start_simulation();
    kestrone::HRESULT stop_simulation();

    // ---- Fields and the panel's elements ----

    // NAME, NAME(index) or NAME(index).member. DISP_E_UNKNOWNNAME for no such field.
    kestrone::HRESULT field(const std::string& name, std::optional<std::int32_t> index,
                            const std::string& member, kestrone::Variant* value);
    // An element's property as the component's code reads and writes it; "UserControl" is the
    // panel. DISP_E_UNKNOWNNAME for no such element or property.
    kestrone::HRESULT element_property(const std::string& element,
                                       std::optional<std::int32_t> index,
                                       const std::string& property, kestrone::Variant* value);
    kestrone::HRESULT put_element_property(const std::string& element,
                                           std::optional<std::int32_t> index,
                                           const std::string& property,
                                           const kestrone::Variant& value);
    kestrone::HRESULT find_element(const std::string& element, std::optional<std::int32_t> index,
                                   std::int32_t* id);
    // The user's input: a check box clicked, an UpDown's arrow, the pointer in panel pixels.
    // S_FALSE while the component holds the thread: nothing is delivered.
    kestrone::HRESULT click(std::int32_t id);
    kestrone::HRESULT arrow(std::int32_t id, bool up);
    kestrone::HRESULT pointer(kestrone::PointerAction action, std::int32_t buttons,
                              std::int32_t shift, float x, float y);
    // Raises an event handler by name; DISP_E_UNKNOWNNAME, DISP_E_BADPARAMCOUNT.
    kestrone::HRESULT raise_event(const std::string& handler, std::vector<kestrone::Variant>& args);
    // One tick of Timer1(timer), now.
    kestrone::HRESULT tick(std::int32_t timer);

    // ---- The clock ----

    // The session's time in milliseconds: the panel's clock, carried on across objects so that
    // it never goes back. It moves only by advance, advance_to and a program's delays: virtual in
    // the console and the tests, fed by real time in a window. The session never sleeps.
    std::int64_t now() const;
    // Brings the clock on by `ms` (0 or more), or to `when` (never back). Every timer tick due on
    // the way is raised in time order, unless the component holds the thread: then each timer
    // keeps one, raised once the thread is free. `ticks` counts the ticks raised.
    kestrone::HRESULT advance(std::int64_t ms, std::int64_t* ticks = nullptr);
    kestrone::HRESULT advance_to(std::int64_t when, std::int64_t* ticks = nullptr);
    // With a check, an advance goes in slices of the clock (the same ticks in the same order)
    // and asks it after each; one that says stop ends the advance with kInterrupted, where the
    // clock then stands, and halts a program run at its next delay.
    void set_progress_check(ProgressCheck check) { progress_ = std::move(check); }
    // Something that keeps step with the wheels (a world the robot drives in): called at every
    // multiple of `period_ms` of the panel's clock that advance and advance_to pass, after the
    // ticks due by then. An empty function ends it.
    void on_clock_step(std::int64_t period_ms, std::function<void(std::int64_t)> step);

    // ---- The store and the project file ----

    const kestrone::MemoryStore& store() const { return store_; }
    void set_store_entry(const std::string& key, kestrone::Variant value);
    void clear_store();
    // The component's save into the store, and its load from it, each key told as it goes.
    kestrone::HRESULT write_settings(const StoreNotice& each_write = {});
    kestrone::HRESULT read_settings(const StoreNotice& each_read = {});

    // A new project: an empty store, no file yet, nothing unsaved. The object is not touched: a
    // window makes a new one.
    void new_project();
    bool keeps_project_files() const { return codec_.load && codec_.save; }
    // The store becomes the file's, whole or not at all (a file that can't be read changes
    // nothing). The object is not touched: a window that opens a project then reads the settings
    // (read_settings), a host's load.
    bool open_project(const std::string& path, std::string* error);
    // The store to the project's file, or to `path`, which becomes the project's. A window saves
    // the object's settings first (write_settings).
    bool save_project(std::string* error);
    bool save_project_as(const std::string& path, std::string* error);
    const std::string& project_path() const { return project_path_; }
    // Unsaved changes: a change of the store or an apply of the page makes the project dirty, an
    // open or a save makes it clean.
    bool dirty() const { return dirty_; }

    // ---- The property frame ----

    // Makes the page and selects this object for it, as the host's property frame does. The page
    // stays open, even when the selection failed, until closed or another is opened.
    kestrone::HRESULT open_page();
    bool page_open() const { return static_cast<bool>(page_); }
    kestrone::HRESULT page_property(const std::string& widget, const std::string& property,
                                    kestrone::Variant* value);
    // The user's edit of a widget, and a click on an option button or check box.
    kestrone::HRESULT edit_page(const std::string& widget, const std::string& property,
                                const kestrone::Variant& value);
    kestrone::HRESULT click_page(const std::string& widget);
    bool page_changed() const;
    // The user applies: the page writes the object's settings; after an apply that succeeded
    // the frame clears Changed. Either way the project is dirty: what ran before a failed write
    // stands.
    kestrone::HRESULT apply_page();
    // OK (after apply_page) or Cancel: the page goes, nothing more is applied.
    kestrone::HRESULT close_page();

    // ---- The running program ----

    // Reads and checks a .kflow program against the component's macros (telling the component
    // the host's version first if it has none). False with `error`: the file that can't be read,
    // or the program's first fault as FILE:LINE:COLUMN: TEXT; the program loaded before stays.
    // A program that was running is stopped and replaced.
    bool load_program(const std::string& path, std::string* error);
    bool has_program() const { return interpreter_ != nullptr; }
    // Every variable to 0, then StartSimulation; a running program starts over.
    kestrone::HRESULT start_program();
    // Runs at most `max_steps` steps of the started program. A delay ends the slice: the program
    // then waits until the clock reaches program_wakes_at(), and until then drive_program only
    // reports Delay with the milliseconds left. Finished, Halted and Failed end it; the
    // simulation is stopped and program_message() says why.
    kflow::Pause drive_program(std::uint64_t max_steps);
    // Starts the program and runs it to its end, each delay moving the session's clock on (the
    // console's way). A program that reaches a limit is halted at the line it had reached.
    kflow::RunOutcome run_program(const kflow::RunLimits& limits = {});
    // Halts a started program with StopSimulation; from inside one of its own steps (a window's
    // Stop pressed while its tone sounds) once that step has returned.
    void stop_program(std::string why = {});
    kflow::RunState program_state() const;
    std::int64_t program_wakes_at() const { return wake_at_; }
    // The line that runs (or ran last); 0 before a start.
    int program_line() const;
    const std::string& program_message() const;
    // A variable of the program that runs, else of the last one that ran.
    std::optional<std::int16_t> variable(std::string_view name) const;
    bool has_run() const;

  private:
    class Busy;
    bool busy() const { return depth_ > 0; }
    void retire_program();
    void query_interfaces();
    std::int64_t panel_time(std::int64_t session_time) const;
    kestrone::HRESULT advance_in_slices(std::int64_t when, std::int64_t* raised);
    kestrone::HRESULT bring_clock_to(std::int64_t when, std::int64_t* raised);

    kestrone::IHostServices& services_;
    ProjectCodec codec_;
    std::unique_ptr<ModuleHost> module_;
    std::string load_error_;
    int depth_ = 0;  // calls into the component in progress

    kestrone::ComPtr<kestrone::IUnknown> object_;
    kestrone::ComPtr<kestrone::IKestroneComponentV5> component_;
    kestrone::ComPtr<kestrone::IKestroneDispatch> dispatch_;
    kestrone::ComPtr<kestrone::IKestroneInspection> inspect_;
    kestrone::ComPtr<kestrone::IKestronePersist> persist_;
    kestrone::ComPtr<kestrone::IKestronePropertyPages> pages_;
    kestrone::ComPtr<kestrone::IKestronePanel> panel_;
    kestrone::ComPtr<kestrone::IKestronePanelInspection> panel_inspect_;
    kestrone::ComPtr<kestrone::IKestronePropertyPage> page_;

    // The session's time is the panel's plus this, so that a new object's clock, which starts
    // again, carries on from where the last one stood.
    std::int64_t clock_offset_ = 0;
    std::int64_t last_now_ = 0;
    ProgressCheck progress_;
    std::int64_t step_period_ = 0;
    std::function<void(std::int64_t)> clock_step_;

    kestrone::MemoryStore store_;
    std::string project_path_;
    bool dirty_ = false;

    std::unique_ptr<kflow::Program> program_;  // the interpreter holds on to it
    std::unique_ptr<kflow::Interpreter> interpreter_;
    std::int64_t wake_at_ = 0;
    // The variables of the last program that ran, kept when it is replaced or its object goes.
    std::vector<std::pair<std::string, std::int16_t>> last_values_;
    bool any_run_ = false;
};

}  // namespace host
