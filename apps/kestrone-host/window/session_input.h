// The panel view's input routed through the host session: the clock is brought to now first, so
// that the action lands at its moment, and whatever the panel took is recorded as a console line.
#pragma once

#include <functional>
#include <string>

#include "action_recorder.h"
#include "component_session.h"
#include "panel_view.h"

namespace window {

class SessionInput : public panelqt::PanelInput {
  public:
    SessionInput(host::ComponentSession& session, ActionRecorder& recorder,
                 std::function<void()> catch_up);

    kestrone::HRESULT pointer(kestrone::PointerAction action, std::int32_t buttons,
                              std::int32_t shift, float x, float y) override;
    kestrone::HRESULT click(std::int32_t id) override;
    kestrone::HRESULT arrow(std::int32_t id, bool up) override;

  private:
    // Records `line` unless the panel refused the input (S_FALSE while the thread is held): a
    // replay must not deliver what the window did not.
    kestrone::HRESULT noted(kestrone::HRESULT hr, const std::string& line);

    host::ComponentSession& session_;
    ActionRecorder& recorder_;
    std::function<void()> catch_up_;
};

// An element as the console names it: NAME, or NAME(INDEX) in a control array; empty for none.
std::string element_word(kestrone::IKestronePanel& panel, std::int32_t id);

}  // namespace window
