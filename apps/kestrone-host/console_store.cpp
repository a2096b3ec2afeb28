// The console's store and property page: the host's key/value store with the component's save
// and load, a project file behind it, and the property page as a property frame shows it.
#include "console_session.h"
#include "project_file.h"
#include "value_syntax.h"

namespace console {

using kestrone::HRESULT;
using kestrone::Variant;

void ConsoleSession::cmd_store(const CommandLine& c) {
    const auto& w = c.words;
    if (w.size() == 1) {
        for (const auto& e : session_.store().entries())
            out_.notice("entry " + key_text(e.key) + " " + format_value(e.value));
        return out_.ok();
    }
    if (c.equals) {
        if (*c.equals != 2 || w.size() != 4) return out_.fail("store KEY = VALUE");
        const auto key = word_text(w[1]);
        if (!key) return out_.fail("not a key: " + w[1]);
        std::string error;
        auto value = parse_value(w[3], &error);
        if (!value) return out_.fail(unreadable(w[3], error));
        host::StoreEntry entry{*key, std::move(*value)};
        if (const auto why = host::why_not_saveable(session_.store().entries(), &entry);
            !why.empty())
            return out_.fail("cannot store " + key_text(*key) + ": " + why);
        session_.set_store_entry(*key, std::move(entry.value));
        return out_.ok();
    }
    if (w.size() == 2 && w[1] == "clear") {
        session_.clear_store();
        return out_.ok();
    }
    if (w.size() == 3 && (w[1] == "save" || w[1] == "load")) return cmd_project_file(c);
    out_.fail("store, store KEY = VALUE, store clear, store save FILE or store load FILE");
}

// store save FILE, store load FILE: a file that can't be read changes nothing.
void ConsoleSession::cmd_project_file(const CommandLine& c) {
    if (!session_.keeps_project_files()) return out_.fail("this host keeps no project files");
    const auto path = word_text(c.words[2]);
    if (!path) return out_.fail("not a file name: " + c.words[2]);
    std::string error;
    const bool done = c.words[1] == "save" ? session_.save_project_as(*path, &error)
                                           : session_.open_project(*path, &error);
    if (!done) return out_.fail(error);
    out_.ok();
}

void ConsoleSession::run_store_walk(bool save) {
    if (!have_object()) return;
    if (!session_.offers(host::Facet::Settings))
        return out_.fail("the component keeps no settings");
    const std::string word = save ? "write " : "read ";
    const auto notice = [&](const std::string& key, const Variant& value) {
        out_.notice(word + key_text(key) + " " + format_value(value));
    };
    const HRESULT hr = save ? session_.write_settings(notice) : session_.read_settings(notice);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok();
}

void ConsoleSession::cmd_writeprops(const CommandLine& c) {
    if (c.words.size() != 1) return out_.fail("writeprops takes no arguments");
    run_store_walk(true);
}

void ConsoleSession::cmd_readprops(const CommandLine& c) {
    if (c.words.size() != 1) return out_.fail("readprops takes no arguments");
    run_store_walk(false);
}

namespace {
// WIDGET.PROPERTY
bool split_widget(const std::string& text, std::string& widget, std::string& property) {
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == text.size()) return false;
    widget = text.substr(0, dot);
    property = text.substr(dot + 1);
    return true;
}
}  // namespace

void ConsoleSession::cmd_page(const CommandLine& c) {
    const auto& w = c.words;
    const std::string verb = w.size() > 1 ? w[1] : "";
    if (verb == "open") {
        if (w.size() != 2) return out_.fail("page open takes no arguments");
        if (!have_object()) return;
        if (!session_.offers(host::Facet::Page))
            return out_.fail("the component has no property page");
        const HRESULT hr = session_.open_page();
        if (kestrone::failed(hr)) return out_.error(hr);
        return out_.ok();
    }
    if (verb != "get" && verb != "put" && verb != "click" && verb != "apply")
        return out_.fail("page open, page get, page put, page click or page apply");
    if (!session_.page_open()) return out_.fail("there is no property page: page open first");
    if (verb == "apply") {
        if (w.size() != 2) return out_.fail("page apply takes no arguments");
        const HRESULT hr = session_.apply_page();
        if (kestrone::failed(hr)) return out_.error(hr);
        return out_.ok();
    }
    if (verb == "click") {
        if (w.size() != 3) return out_.fail("page click WIDGET");
        const HRESULT hr = session_.click_page(w[2]);
        if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the page has no widget " + w[2]);
        if (kestrone::failed(hr)) return out_.error(hr);
        return out_.ok();
    }
    if (verb == "get") return page_get(c);
    page_put(c);
}

void ConsoleSession::page_get(const CommandLine& c) {
    const auto& w = c.words;
    if (w.size() != 3) return out_.fail("page get WIDGET.PROPERTY or page get Changed");
    if (w[2] == "Changed") return out_.ok(format_value(Variant::boolean(session_.page_changed())));
    std::string widget, property;
    if (!split_widget(w[2], widget, property)) return out_.fail("not WIDGET.PROPERTY: " + w[2]);
    Variant value;
    const HRESULT hr = session_.page_property(widget, property, &value);
    if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the page has no " + w[2]);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok(format_value(value));
}

void ConsoleSession::page_put(const CommandLine& c) {
    const auto& w = c.words;
    if (!c.equals || *c.equals != 3 || w.size() != 5)
        return out_.fail("page put WIDGET.PROPERTY = VALUE");
    std::string widget, property;
    if (!split_widget(w[2], widget, property)) return out_.fail("not WIDGET.PROPERTY: " + w[2]);
    std::string error;
    const auto value = parse_value(w[4], &error);
    if (!value) return out_.fail(unreadable(w[4], error));
    const HRESULT hr = session_.edit_page(widget, property, *value);
    if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the page has no " + w[2]);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok();
}

}  // namespace console
