// The session's panel: element properties by name, the user's input, events and ticks.
#include "component_session.h"
#include "session_busy.h"

namespace host {

using kestrone::HRESULT;
using kestrone::Variant;

namespace {
const std::int32_t* index_of(const std::optional<std::int32_t>& index) {
    return index ? &*index : nullptr;
}
}  // namespace

HRESULT ComponentSession::element_property(const std::string& element,
                                           std::optional<std::int32_t> index,
                                           const std::string& property, Variant* value) {
    if (!panel_inspect_) return kNoObject;
    return panel_inspect_->GetProperty(element, index_of(index), property, value);
}

HRESULT ComponentSession::put_element_property(const std::string& element,
                                               std::optional<std::int32_t> index,
                                               const std::string& property, const Variant& value) {
    if (!panel_inspect_) return kNoObject;
    Busy b(*this);
    return panel_inspect_->PutProperty(element, index_of(index), property, value);
}

HRESULT ComponentSession::find_element(const std::string& element,
                                       std::optional<std::int32_t> index, std::int32_t* id) {
    if (!panel_inspect_) return kNoObject;
    return panel_inspect_->FindElement(element, index_of(index), id);
}

HRESULT ComponentSession::click(std::int32_t id) {
    if (!panel_) return kNoObject;
    Busy b(*this);
    return panel_->Click(id);
}

HRESULT ComponentSession::arrow(std::int32_t id, bool up) {
    if (!panel_) return kNoObject;
    Busy b(*this);
    return panel_->Arrow(id, up);
}

HRESULT ComponentSession::pointer(kestrone::PointerAction action, std::int32_t buttons,
                                  std::int32_t shift, float x, float y) {
    if (!panel_) return kNoObject;
    Busy b(*this);
    return panel_->Pointer(action, buttons, shift, x, y);
}

HRESULT ComponentSession::raise_event(const std::string& handler, std::vector<Variant>& args) {
    if (!panel_inspect_) return kNoObject;
    Busy b(*this);
    return panel_inspect_->RaiseEvent(handler, args.data(), static_cast<std::int32_t>(args.size()));
}

HRESULT ComponentSession::tick(std::int32_t timer) {
    if (!panel_) return kNoObject;
    Busy b(*this);
    return panel_->Tick(timer);
}

}  // namespace host
