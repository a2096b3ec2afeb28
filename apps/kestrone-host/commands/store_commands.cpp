#include "store_commands.h"

#include "command_support.h"
#include "project_file.h"
#include "value_syntax.h"

namespace commands {

using console::CommandLine;
using kestrone::HRESULT;
using kestrone::Variant;

namespace {
Reply status_reply(HRESULT hr) {
    return kestrone::failed(hr) ? Reply::error(hr) : Reply::ok();
}
}  // namespace

// ---- store

std::string format(const StoreList&) {
    return "store";
}

Reply execute(const StoreList&, Context& context) {
    for (const auto& e : context.stage.session().store().entries())
        context.notice("entry " + console::key_text(e.key) + " " + console::format_value(e.value));
    return Reply::ok();
}

std::string format(const StoreSet& c) {
    return "store " + console::key_text(c.key) + " = " + console::format_value(c.value);
}

// Refused at once what a save would refuse: the store must stay one a project file can hold.
Reply execute(const StoreSet& c, Context& context) {
    host::ComponentSession& session = context.stage.session();
    const host::StoreEntry entry{c.key, c.value};
    if (const std::string why = host::why_not_saveable(session.store().entries(), &entry);
        !why.empty())
        return Reply::fail("cannot store " + console::key_text(c.key) + ": " + why);
    session.set_store_entry(c.key, c.value);
    return Reply::ok();
}

std::string format(const StoreClear&) {
    return "store clear";
}

Reply execute(const StoreClear&, Context& context) {
    context.stage.session().clear_store();
    return Reply::ok();
}

std::string format(const StoreFile& c) {
    return std::string(c.save ? "store save " : "store load ") + path_for(c.path);
}

// A file that can't be read changes nothing.
Reply execute(const StoreFile& c, Context& context) {
    host::ComponentSession& session = context.stage.session();
    if (!session.keeps_project_files()) return Reply::fail("this host keeps no project files");
    std::string error;
    const bool done = c.save ? session.save_project_as(context.file(c.path), &error)
                             : session.open_project(context.file(c.path), &error);
    return done ? Reply::ok() : Reply::fail(error);
}

Parsed parse_store(const CommandLine& line) {
    const auto& w = line.words;
    if (w.size() == 1) return parsed(StoreList{});
    if (line.equals) {
        if (*line.equals != 2 || w.size() != 4) return refused("store KEY = VALUE");
        const auto key = console::word_text(w[1]);
        if (!key) return refused("not a key: " + w[1]);
        std::string error;
        auto value = console::parse_value(w[3], &error);
        if (!value) return refused(console::unreadable(w[3], error));
        return parsed(StoreSet{*key, std::move(*value)});
    }
    if (w.size() == 2 && w[1] == "clear") return parsed(StoreClear{});
    if (w.size() == 3 && (w[1] == "save" || w[1] == "load")) {
        const auto path = console::word_text(w[2]);
        if (!path) return refused("not a file name: " + w[2]);
        return parsed(StoreFile{w[1] == "save", *path});
    }
    return refused("store, store KEY = VALUE, store clear, store save FILE or store load FILE");
}

// ---- writeprops, readprops

std::string format(const StoreWalk& c) {
    return c.save ? "writeprops" : "readprops";
}

Reply execute(const StoreWalk& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Settings)) return *no;
    const std::string word = c.save ? "write " : "read ";
    const auto notice = [&](const std::string& key, const Variant& value) {
        context.notice(word + console::key_text(key) + " " + console::format_value(value));
    };
    host::ComponentSession& session = context.stage.session();
    return status_reply(c.save ? session.write_settings(notice) : session.read_settings(notice));
}

Parsed parse_writeprops(const CommandLine& line) {
    if (line.words.size() != 1) return refused("writeprops takes no arguments");
    return parsed(StoreWalk{true});
}

Parsed parse_readprops(const CommandLine& line) {
    if (line.words.size() != 1) return refused("readprops takes no arguments");
    return parsed(StoreWalk{false});
}

// ---- page

namespace {
// WIDGET.PROPERTY
bool split_widget(const std::string& text, std::string& widget, std::string& property) {
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == text.size()) return false;
    widget = text.substr(0, dot);
    property = text.substr(dot + 1);
    return true;
}

std::optional<Reply> lacks_page(Context& context) {
    if (context.stage.session().page_open()) return std::nullopt;
    return Reply::fail("there is no property page: page open first");
}

Reply page_status(HRESULT hr, const std::string& what) {
    if (hr == kestrone::DISP_E_UNKNOWNNAME) return Reply::fail("the page has no " + what);
    return status_reply(hr);
}
}  // namespace

std::string format(const PageOpen&) {
    return "page open";
}

Reply execute(const PageOpen&, Context& context) {
    if (auto no = lacks(context, host::Facet::Page)) return *no;
    return status_reply(context.stage.session().open_page());
}

std::string format(const PageGet& c) {
    return c.widget.empty() ? "page get Changed" : "page get " + c.widget + "." + c.property;
}

Reply execute(const PageGet& c, Context& context) {
    if (auto no = lacks_page(context)) return *no;
    host::ComponentSession& session = context.stage.session();
    if (c.widget.empty())
        return Reply::ok(console::format_value(Variant::boolean(session.page_changed())));
    Variant value;
    const HRESULT hr = session.page_property(c.widget, c.property, &value);
    if (kestrone::failed(hr)) return page_status(hr, c.widget + "." + c.property);
    return Reply::ok(console::format_value(value));
}

std::string format(const PagePut& c) {
    return "page put " + c.widget + "." + c.property + " = " + console::format_value(c.value);
}

Reply execute(const PagePut& c, Context& context) {
    if (auto no = lacks_page(context)) return *no;
    return page_status(context.stage.session().edit_page(c.widget, c.property, c.value),
                       c.widget + "." + c.property);
}

std::string format(const PageClick& c) {
    return "page click " + c.widget;
}

Reply execute(const PageClick& c, Context& context) {
    if (auto no = lacks_page(context)) return *no;
    return page_status(context.stage.session().click_page(c.widget), "widget " + c.widget);
}

std::string format(const PageApply&) {
    return "page apply";
}

Reply execute(const PageApply&, Context& context) {
    if (auto no = lacks_page(context)) return *no;
    return status_reply(context.stage.session().apply_page());
}

Parsed parse_page(const CommandLine& line) {
    const auto& w = line.words;
    const std::string verb = w.size() > 1 ? w[1] : "";
    const auto takes_nothing = [&](auto command) {
        return w.size() == 2 ? parsed(command) : refused("page " + verb + " takes no arguments");
    };
    if (verb == "open") return takes_nothing(PageOpen{});
    if (verb == "apply") return takes_nothing(PageApply{});
    if (verb == "click")
        return w.size() == 3 ? parsed(PageClick{w[2]}) : refused("page click WIDGET");
    std::string widget, property;
    if (verb == "get") {
        if (w.size() != 3) return refused("page get WIDGET.PROPERTY or page get Changed");
        if (w[2] == "Changed") return parsed(PageGet{});
        if (!split_widget(w[2], widget, property)) return refused("not WIDGET.PROPERTY: " + w[2]);
        return parsed(PageGet{widget, property});
    }
    if (verb != "put") return refused("page open, page get, page put, page click or page apply");
    if (!line.equals || *line.equals != 3 || w.size() != 5)
        return refused("page put WIDGET.PROPERTY = VALUE");
    if (!split_widget(w[2], widget, property)) return refused("not WIDGET.PROPERTY: " + w[2]);
    std::string error;
    auto value = console::parse_value(w[4], &error);
    if (!value) return refused(console::unreadable(w[4], error));
    return parsed(PagePut{widget, property, std::move(*value)});
}

}  // namespace commands
