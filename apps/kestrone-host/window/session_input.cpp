#include "session_input.h"

namespace window {

using kestrone::HRESULT;
using kestrone::PointerAction;

std::string element_word(kestrone::IKestronePanel& panel, std::int32_t id) {
    kestrone::ElementInfo info;
    if (panel.GetElement(id, &info) != kestrone::S_OK) return {};
    if (info.index < 0) return info.name;
    return info.name + "(" + std::to_string(info.index) + ")";
}

SessionInput::SessionInput(host::ComponentSession& session, ActionRecorder& recorder,
                           std::function<void()> catch_up)
    : session_(session), recorder_(recorder), catch_up_(std::move(catch_up)) {}

HRESULT SessionInput::noted(HRESULT hr, const std::string& line) {
    if (hr != kestrone::S_FALSE) recorder_.note(line);
    return hr;
}

HRESULT SessionInput::pointer(PointerAction action, std::int32_t buttons, std::int32_t shift,
                              float x, float y) {
    static constexpr const char* kVerbs[] = {"down", "move", "up"};
    if (catch_up_) catch_up_();
    const HRESULT hr = session_.pointer(action, buttons, shift, x, y);
    return noted(hr, std::string("mouse ") + kVerbs[static_cast<int>(action)] + " " +
                         std::to_string(buttons) + " " + coordinate_text(x) + " " +
                         coordinate_text(y));
}

HRESULT SessionInput::click(std::int32_t id) {
    if (catch_up_) catch_up_();
    kestrone::IKestronePanel* panel = session_.panel();
    if (!panel) return host::kNoObject;
    const std::string word = element_word(*panel, id);
    const HRESULT hr = session_.click(id);
    return word.empty() ? hr : noted(hr, "click " + word);
}

HRESULT SessionInput::arrow(std::int32_t id, bool up) {
    if (catch_up_) catch_up_();
    kestrone::IKestronePanel* panel = session_.panel();
    if (!panel) return host::kNoObject;
    const std::string word = element_word(*panel, id);
    const HRESULT hr = session_.arrow(id, up);
    return word.empty() ? hr : noted(hr, "arrow " + word + (up ? " up" : " down"));
}

}  // namespace window
