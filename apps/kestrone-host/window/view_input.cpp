#include "view_input.h"

#include "panel_commands.h"

namespace window {

using kestrone::HRESULT;

namespace {
HRESULT status_of(const std::optional<commands::Reply>& delivered) {
    if (!delivered) return kestrone::S_FALSE;
    const commands::Reply& reply = *delivered;
    switch (reply.kind) {
        case commands::Reply::Kind::Ok:
            return kestrone::S_OK;
        case commands::Reply::Kind::Error:
            return reply.status;
        case commands::Reply::Kind::Fail:
            break;
    }
    return kestrone::E_FAIL;
}
}  // namespace

std::optional<commands::ElementRef> element_ref(kestrone::IKestronePanel& panel, std::int32_t id) {
    kestrone::ElementInfo info;
    if (panel.GetElement(id, &info) != kestrone::S_OK || info.name.empty()) return std::nullopt;
    return commands::ElementRef{info.name,
                                info.index < 0 ? std::nullopt : std::optional(info.index)};
}

HRESULT ViewInput::pointer(kestrone::PointerAction action, std::int32_t buttons, std::int32_t shift,
                           float x, float y) {
    return status_of(runner_.input(commands::Mouse{action, buttons, x, y, shift}));
}

HRESULT ViewInput::click(std::int32_t id) {
    kestrone::IKestronePanel* panel = runner_.context().stage.session().panel();
    const auto element = panel ? element_ref(*panel, id) : std::nullopt;
    if (!element) return host::kNoObject;
    return status_of(runner_.input(commands::Click{*element}));
}

HRESULT ViewInput::arrow(std::int32_t id, bool up) {
    kestrone::IKestronePanel* panel = runner_.context().stage.session().panel();
    const auto element = panel ? element_ref(*panel, id) : std::nullopt;
    if (!element) return host::kNoObject;
    return status_of(runner_.input(commands::Arrow{*element, up}));
}

}  // namespace window
