// The panel view's input as the commands it amounts to: a click, an arrow or the pointer, run
// and recorded through the action runner.
#pragma once

#include <string>

#include "action_runner.h"
#include "command_support.h"
#include "panel_view.h"

namespace window {

class ViewInput : public panelqt::PanelInput {
  public:
    explicit ViewInput(ActionRunner& runner) : runner_(runner) {}

    kestrone::HRESULT pointer(kestrone::PointerAction action, std::int32_t buttons,
                              std::int32_t shift, float x, float y) override;
    kestrone::HRESULT click(std::int32_t id) override;
    kestrone::HRESULT arrow(std::int32_t id, bool up) override;

  private:
    ActionRunner& runner_;
};

// An element as the console names it; nullopt for none.
std::optional<commands::ElementRef> element_ref(kestrone::IKestronePanel& panel, std::int32_t id);

}  // namespace window
