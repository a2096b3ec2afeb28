// One host session: the module, the Rovanta object it makes, the services lent to it, the store
// and its project file, and the property frame. Qt-free: the stage stands above it (the clock,
// the world, the program), and the console and the window are faces of the stage.
//
// Everything happens on the caller's thread, one call at a time, as the component expects. A
// call may re-enter the session from inside the component (a face's message box or tone that
// runs an event loop): calls that reach the component pass through (the component holds its own
// thread), but what would pull the object or the page from under a call in progress is refused
// with kSessionBusy.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "component_module.h"
#include "kestrone/com.h"
#include "kestrone/component_v5.h"
#include "kestrone/field_access.h"
#include "kestrone/memory_store.h"
#include "kestrone/panel.h"
#include "kestrone/property_page.h"
#include "kestrone/services.h"
#include "kestrone/typelib.h"
#include "object_recipe.h"

namespace host {

using StoreEntries = std::vector<kestrone::MemoryStore::Entry>;

// A session operation refused because a call in progress would lose what it works on.
inline constexpr kestrone::HRESULT kSessionBusy = static_cast<kestrone::HRESULT>(0x8001010Au);
// No object, or the object lacks the interface the operation needs.
inline constexpr kestrone::HRESULT kNoObject = kestrone::E_NOINTERFACE;

// The host's own part of a project, beside the component's store: the program and the arena it
// was saved with, as paths the host opens (the file holds them relative to itself). Empty: none.
struct ProjectLinks {
    std::string program;
    std::string arena;
    bool operator==(const ProjectLinks&) const = default;
};

struct ProjectContents {
    StoreEntries store;
    ProjectLinks links;
};

// How the project file is read and written; the session knows no file format of its own.
struct ProjectCodec {
    // The whole file, or nullopt with `error` naming the file and the fault.
    std::function<std::optional<ProjectContents>(const std::string& path, std::string* error)> load;
    // Writes the file whole; false with `error` on failure, the old file then untouched.
    std::function<bool(const std::string& path, const ProjectContents& contents,
                       std::string* error)>
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
    // Releases the page, the interfaces and the object, in that order.
    ~ComponentSession();
    ComponentSession(const ComponentSession&) = delete;
    ComponentSession& operator=(const ComponentSession&) = delete;

    // ---- The module and the object ----

    // Loads the module file; false with `error` (also kept as load_error()) when it can't.
    bool load_module(const std::string& path, std::string* error = nullptr);
    bool module_loaded() const { return module_ != nullptr; }
    const std::string& load_error() const { return load_error_; }
    const ComponentModule* module() const { return module_.get(); }

    // Releases any object, then makes a new one through the class factory, the services handed
    // over first so that the messages of its creation reach them. Its interfaces are queried
    // once. kNoObject without a module; else the factory's status.
    kestrone::HRESULT create_object();
    // Whoever holds on to the object's interfaces (a program) is told first; then the page and
    // every interface go before the object.
    kestrone::HRESULT release_object();
    void on_release(std::function<void()> release) { on_release_ = std::move(release); }
    bool has_object() const { return static_cast<bool>(object_); }
    bool offers(Facet facet) const;
    // Tells the object what a host tells a new one (the host's version, by default), as a host
    // does once after it creates it.
    kestrone::HRESULT make_ready(const ObjectRecipe& recipe = {});
    // The host interface, for the program and the C; null without an object.
    kestrone::IKestroneComponentV5* component() const { return component_.get(); }

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

    // ---- The clock's primitives, for the stage that keeps time ----

    // The session's time in milliseconds: the panel's clock, carried on across objects so that
    // it never goes back. It moves only when the stage brings it on: virtual in the console and
    // the tests, fed by real time in a window. The session never sleeps.
    std::int64_t now() const;
    // The panel's own clock, which starts again with each object.
    std::int64_t panel_clock() const;
    // The moment the earliest tick is due; false when no timer runs.
    bool next_tick(std::int64_t* at) const;
    // The next tick alone, when one is due by `until`: raised, with its moment and timer. False,
    // and nothing moves, when none is due by then or the component holds the thread.
    bool raise_next_tick(std::int64_t until, std::int64_t* at, std::int32_t* timer);
    // The panel's clock to `when` (never back), any tick due on the way raised in time order;
    // while the component holds the thread each timer keeps one instead. `ticks` counts them.
    kestrone::HRESULT bring_panel_to(std::int64_t when, std::int64_t* ticks = nullptr);
    // A call into the component is in progress (a face's box or tone holds the thread).
    bool in_call() const { return depth_ > 0; }

    // Counts a call into the component while it runs, so that one re-entering from inside it
    // can be told apart (session_busy.h).
    class Busy;

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
    // The host's part: what the file opened had, and what the next save writes. A console's load
    // and save carry it over; a new project has none.
    const ProjectLinks& project_links() const { return links_; }
    void set_project_links(ProjectLinks links) { links_ = std::move(links); }
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

  private:
    bool busy() const { return depth_ > 0; }
    void query_interfaces();
    std::int64_t panel_time(std::int64_t session_time) const;

    kestrone::IHostServices& services_;
    ProjectCodec codec_;
    std::unique_ptr<ComponentModule> module_;
    std::function<void()> on_release_;
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

    kestrone::MemoryStore store_;
    std::string project_path_;
    ProjectLinks links_;
    bool dirty_ = false;
};

}  // namespace host
