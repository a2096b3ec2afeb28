// The console's store and property page: the host's key/value store with the component's save
// and load, a project file behind it, and the property page as a property frame shows it.
#include <utility>

#include "console_session.h"
#include "value_syntax.h"

namespace console {

using kestrone::HRESULT;
using kestrone::Variant;

void ConsoleSession::set_store(std::vector<kestrone::MemoryStore::Entry> entries) {
    store_.assign(std::move(entries));
}

// A key is a bare word or, for keys with blanks or other bytes, a quoted string.
namespace {
std::optional<std::string> store_key(const std::string& word) {
    if (word.empty()) return std::nullopt;
    if (word.front() != '"') return word;
    const auto v = parse_value(word);
    if (!v || v->is_array() || v->type() != kestrone::VarType::String) return std::nullopt;
    return v->as_string();
}
}  // namespace

void ConsoleSession::cmd_store(const CommandLine& c) {
    const auto& w = c.words;
    if (w.size() == 1) {
        for (const auto& e : store_.entries())
            out_.notice("entry " + e.key + " " + format_value(e.value));
        return out_.ok();
    }
    if (c.equals) {
        if (*c.equals != 2 || w.size() != 4) return out_.fail("store KEY = VALUE");
        const auto key = store_key(w[1]);
        if (!key) return out_.fail("not a key: " + w[1]);
        std::string error;
        auto value = parse_value(w[3], &error);
        if (!value) return out_.fail("cannot read the value " + w[3] + ": " + error);
        store_.set(*key, std::move(*value));
        return out_.ok();
    }
    if (w.size() == 2 && w[1] == "clear") {
        store_.clear();
        return out_.ok();
    }
    if (w.size() == 3 && (w[1] == "save" || w[1] == "load")) {
        const bool save = w[1] == "save";
        if (!project_files_.load || !project_files_.save)
            return out_.fail("this host keeps no project files");
        const auto path = store_key(w[2]);
        if (!path) return out_.fail("not a file name: " + w[2]);
        std::string error;
        if (save) {
            if (!project_files_.save(*path, store_.entries(), error)) return out_.fail(error);
            return out_.ok();
        }
        std::vector<kestrone::MemoryStore::Entry> entries;
        // A file that can't be read changes nothing.
        if (!project_files_.load(*path, entries, error)) return out_.fail(error);
        store_.assign(std::move(entries));
        return out_.ok();
    }
    out_.fail("store, store KEY = VALUE, store clear, store save FILE or store load FILE");
}

void ConsoleSession::run_store_walk(bool save) {
    if (!have_object()) return;
    if (!persist_) return out_.fail("the component keeps no settings");
    auto& hook = save ? store_.on_write : store_.on_read;
    const std::string word = save ? "write " : "read ";
    hook = [&](const std::string& key, const Variant& value) {
        out_.notice(word + key + " " + format_value(value));
    };
    const HRESULT hr =
        save ? persist_->WriteProperties(&store_) : persist_->ReadProperties(&store_);
    hook = nullptr;
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
        if (!pages_) return out_.fail("the component has no property page");
        page_.reset();
        kestrone::IKestronePropertyPage* raw = nullptr;
        HRESULT hr = pages_->CreatePropertyPage(&raw);
        if (kestrone::failed(hr)) return out_.error(hr);
        page_ = kestrone::ComPtr<kestrone::IKestronePropertyPage>::attach(raw);
        kestrone::IUnknown* selected[] = {object_.get()};
        hr = page_->SetSelectedControls(selected, 1);
        if (kestrone::failed(hr)) return out_.error(hr);
        return out_.ok();
    }
    if (verb != "get" && verb != "put" && verb != "click" && verb != "apply")
        return out_.fail("page open, page get, page put, page click or page apply");
    if (!page_) return out_.fail("there is no property page: page open first");
    if (verb == "apply") {
        if (w.size() != 2) return out_.fail("page apply takes no arguments");
        const HRESULT hr = page_->Apply();
        if (kestrone::failed(hr)) return out_.error(hr);
        page_->PutChanged(false);  // as a property frame does after an Apply
        return out_.ok();
    }
    if (verb == "click") {
        if (w.size() != 3) return out_.fail("page click WIDGET");
        const HRESULT hr = page_->UserClick(w[2]);
        if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the page has no widget " + w[2]);
        if (kestrone::failed(hr)) return out_.error(hr);
        return out_.ok();
    }
    if (verb == "get") {
        if (w.size() != 3) return out_.fail("page get WIDGET.PROPERTY or page get Changed");
        if (w[2] == "Changed") {
            bool changed = false;
            page_->GetChanged(&changed);
            return out_.ok(format_value(Variant::boolean(changed)));
        }
        std::string widget, property;
        if (!split_widget(w[2], widget, property)) return out_.fail("not WIDGET.PROPERTY: " + w[2]);
        Variant value;
        const HRESULT hr = page_->GetProperty(widget, property, &value);
        if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the page has no " + w[2]);
        if (kestrone::failed(hr)) return out_.error(hr);
        return out_.ok(format_value(value));
    }
    // put
    if (!c.equals || *c.equals != 3 || w.size() != 5)
        return out_.fail("page put WIDGET.PROPERTY = VALUE");
    std::string widget, property;
    if (!split_widget(w[2], widget, property)) return out_.fail("not WIDGET.PROPERTY: " + w[2]);
    std::string error;
    const auto value = parse_value(w[4], &error);
    if (!value) return out_.fail("cannot read the value " + w[4] + ": " + error);
    const HRESULT hr = page_->UserPut(widget, property, *value);
    if (hr == kestrone::DISP_E_UNKNOWNNAME) return out_.fail("the page has no " + w[2]);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok();
}

}  // namespace console
