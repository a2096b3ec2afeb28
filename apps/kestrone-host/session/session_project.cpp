// The session's store, its project file and the property frame around the object's page.
#include "component_session.h"
#include "session_busy.h"

namespace host {

using kestrone::HRESULT;
using kestrone::Variant;

void ComponentSession::set_store_entry(const std::string& key, Variant value) {
    store_.set(key, std::move(value));
    dirty_ = true;
}

void ComponentSession::clear_store() {
    store_.clear();
    dirty_ = true;
}

void ComponentSession::new_project() {
    store_.clear();
    project_path_.clear();
    links_ = {};
    dirty_ = false;
}

HRESULT ComponentSession::write_settings(const StoreNotice& each_write) {
    if (!persist_) return kNoObject;
    // Every write changes the project, even those of a save that fails half way.
    store_.on_write = [&](const std::string& key, const Variant& value) {
        dirty_ = true;
        if (each_write) each_write(key, value);
    };
    HRESULT hr;
    {
        Busy b(*this);
        hr = persist_->WriteProperties(&store_);
    }
    store_.on_write = nullptr;
    return hr;
}

HRESULT ComponentSession::read_settings(const StoreNotice& each_read) {
    if (!persist_) return kNoObject;
    store_.on_read = each_read;
    HRESULT hr;
    {
        Busy b(*this);
        hr = persist_->ReadProperties(&store_);
    }
    store_.on_read = nullptr;
    return hr;
}

bool ComponentSession::open_project(const std::string& path, std::string* error) {
    if (!keeps_project_files()) {
        if (error) *error = "this host keeps no project files";
        return false;
    }
    std::string why;
    auto contents = codec_.load(path, &why);
    if (!contents) {
        if (error) *error = why;
        return false;
    }
    store_.assign(std::move(contents->store));
    links_ = std::move(contents->links);
    project_path_ = path;
    dirty_ = false;
    return true;
}

bool ComponentSession::save_project(std::string* error) {
    if (project_path_.empty()) {
        if (error) *error = "the project has no file yet: save it as a file first";
        return false;
    }
    return save_project_as(project_path_, error);
}

bool ComponentSession::save_project_as(const std::string& path, std::string* error) {
    if (!keeps_project_files()) {
        if (error) *error = "this host keeps no project files";
        return false;
    }
    std::string why;
    if (!codec_.save(path, {store_.entries(), links_}, &why)) {
        if (error) *error = why;
        return false;
    }
    project_path_ = path;
    dirty_ = false;
    return true;
}

HRESULT ComponentSession::open_page() {
    if (busy()) return kSessionBusy;
    if (!pages_) return kNoObject;
    page_.reset();
    Busy b(*this);
    kestrone::IKestronePropertyPage* raw = nullptr;
    HRESULT hr = pages_->CreatePropertyPage(&raw);
    if (kestrone::failed(hr)) return hr;
    page_ = kestrone::ComPtr<kestrone::IKestronePropertyPage>::attach(raw);
    kestrone::IUnknown* selected[] = {object_.get()};
    return page_->SetSelectedControls(selected, 1);
}

HRESULT ComponentSession::page_property(const std::string& widget, const std::string& property,
                                        Variant* value) {
    if (!page_) return kNoObject;
    return page_->GetProperty(widget, property, value);
}

HRESULT ComponentSession::edit_page(const std::string& widget, const std::string& property,
                                    const Variant& value) {
    if (!page_) return kNoObject;
    Busy b(*this);
    return page_->UserPut(widget, property, value);
}

HRESULT ComponentSession::click_page(const std::string& widget) {
    if (!page_) return kNoObject;
    Busy b(*this);
    return page_->UserClick(widget);
}

bool ComponentSession::page_changed() const {
    bool changed = false;
    if (page_) page_->GetChanged(&changed);
    return changed;
}

HRESULT ComponentSession::apply_page() {
    if (!page_) return kNoObject;
    // Held while it runs: a close from inside the apply must wait.
    const auto page = page_;
    HRESULT hr;
    {
        Busy b(*this);
        hr = page->Apply();
    }
    dirty_ = true;
    if (kestrone::failed(hr)) return hr;
    page->PutChanged(false);  // the frame's rule after an Apply that succeeded
    return hr;
}

HRESULT ComponentSession::close_page() {
    if (busy()) return kSessionBusy;
    page_.reset();
    return kestrone::S_OK;
}

}  // namespace host
