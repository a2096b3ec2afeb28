#include "host/panel_facet.h"

#include <new>

#include "host/guarded_call.h"
#include "panel/colours.h"
#include "panel/element_view.h"
#include "panel/picture_data.h"
#include "panel/properties.h"

namespace rovanta {

using kestrone::HRESULT;
using kestrone::S_OK;

HRESULT PanelFacet::create(kestrone::IUnknown* owner, Rovanta& core, const kestrone::Guid& iid,
                           void** ppv) noexcept {
    return kestrone::hand_out(new (std::nothrow) PanelFacet(owner, core), iid, ppv);
}

// ---- IKestronePanel

HRESULT PanelFacet::GetElementCount(std::int32_t* count) noexcept {
    if (!count) return kestrone::E_POINTER;
    *count = core_.panel.count();
    return S_OK;
}

HRESULT PanelFacet::GetElement(std::int32_t id, kestrone::ElementInfo* info) noexcept {
    if (!info) return kestrone::E_POINTER;
    if (id < 0 || id >= core_.panel.count()) return kestrone::E_INVALIDARG;
    return guarded_call([&] { *info = core_.panel.at(id); });
}

HRESULT PanelFacet::GetRevision(std::uint64_t* revision) noexcept {
    if (!revision) return kestrone::E_POINTER;
    *revision = core_.panel.revision();
    return S_OK;
}

HRESULT PanelFacet::GetChangedElements(std::uint64_t since, std::vector<std::int32_t>* ids,
                                       std::uint64_t* now) noexcept {
    if (!ids || !now) return kestrone::E_POINTER;
    return guarded_call([&] {
        core_.panel.changed_since(since, *ids);
        *now = core_.panel.revision();
    });
}

HRESULT PanelFacet::GetSize(float* width_twips, float* height_twips) noexcept {
    if (!width_twips || !height_twips) return kestrone::E_POINTER;
    *width_twips = core_.panel.width_twips();
    *height_twips = core_.panel.height_twips();
    return S_OK;
}

HRESULT PanelFacet::GetTwipsPerPixel(float* twips) noexcept {
    if (!twips) return kestrone::E_POINTER;
    *twips = core_.panel.twips_per_pixel();
    return S_OK;
}

HRESULT PanelFacet::GetBackColour(kestrone::Rgba* colour) noexcept {
    if (!colour) return kestrone::E_POINTER;
    *colour = panel::resolve_colour(core_.panel.back_colour());
    return S_OK;
}

HRESULT PanelFacet::SetSize(float width_twips, float height_twips) noexcept {
    return guarded_call([&] {
        core_.panel.set_width_twips(width_twips);
        core_.panel.set_height_twips(height_twips);
    });
}

HRESULT PanelFacet::Paint() noexcept {
    return guarded_call([&] { core_.panel.paint(); });
}

// While the component holds the thread the panel takes no input, as under a modal box.
HRESULT PanelFacet::Pointer(kestrone::PointerAction action, std::int32_t buttons,
                            std::int32_t shift, float x, float y) noexcept {
    if (action != kestrone::PointerAction::Down && action != kestrone::PointerAction::Move &&
        action != kestrone::PointerAction::Up)
        return kestrone::E_INVALIDARG;
    if (core_.HoldingThread()) {
        // A release still ends the press, so that no element keeps the pointer afterwards.
        if (action == kestrone::PointerAction::Up) core_.panel.release_capture();
        return kestrone::S_FALSE;
    }
    return guarded_call([&] { core_.panel.pointer(action, buttons, shift, x, y); });
}

HRESULT PanelFacet::Click(std::int32_t id) noexcept {
    if (id < 0 || id >= core_.panel.count()) return kestrone::E_INVALIDARG;
    if (core_.HoldingThread()) return kestrone::S_FALSE;
    return guarded_call([&] { core_.panel.click(id); });
}

HRESULT PanelFacet::Arrow(std::int32_t id, bool up) noexcept {
    if (id < 0 || id >= core_.panel.count()) return kestrone::E_INVALIDARG;
    if (core_.HoldingThread()) return kestrone::S_FALSE;
    return guarded_call([&] { core_.panel.arrow(id, up); });
}

HRESULT PanelFacet::GetFocus(std::int32_t* id) noexcept {
    if (!id) return kestrone::E_POINTER;
    *id = core_.panel.focus();
    return S_OK;
}

HRESULT PanelFacet::SetFocus(std::int32_t id) noexcept {
    if (id < 0 || id >= core_.panel.count() || !core_.panel.takes_focus(id))
        return kestrone::E_INVALIDARG;
    core_.panel.set_focus(id);
    return S_OK;
}

HRESULT PanelFacet::GetElementView(std::int32_t id, kestrone::ElementView* view) noexcept {
    if (!view) return kestrone::E_POINTER;
    if (id < 0 || id >= core_.panel.count()) return kestrone::E_INVALIDARG;
    return guarded_call([&] { *view = panel::element_view(core_.panel, id); });
}

HRESULT PanelFacet::GetPaintOrder(std::vector<std::int32_t>* back_to_front) noexcept {
    if (!back_to_front) return kestrone::E_POINTER;
    const std::vector<int>& order = core_.panel.paint_order();
    return guarded_call([&] { back_to_front->assign(order.begin(), order.end()); });
}

HRESULT PanelFacet::GetPicture(std::uint32_t picture, std::int32_t* width, std::int32_t* height,
                               std::vector<std::uint8_t>* rgba) noexcept {
    if (!width || !height || !rgba) return kestrone::E_POINTER;
    // A role is a byte: a larger number names no picture, whatever its low byte.
    const panel::PictureData* data =
        picture <= 0xFF ? panel::picture_data(static_cast<panel::PictureRole>(picture)) : nullptr;
    if (!data) return kestrone::E_INVALIDARG;
    const auto bytes =
        static_cast<std::size_t>(data->width) * static_cast<std::size_t>(data->height) * 4;
    return guarded_call([&] {
        rgba->assign(data->rgba, data->rgba + bytes);
        *width = data->width;
        *height = data->height;
    });
}

HRESULT PanelFacet::GetClock(std::int64_t* now_ms) noexcept {
    if (!now_ms) return kestrone::E_POINTER;
    *now_ms = core_.panel.now();
    return S_OK;
}

HRESULT PanelFacet::NextTick(std::int64_t* due_ms, std::int32_t* timer) noexcept {
    if (!due_ms || !timer) return kestrone::E_POINTER;
    // A kept tick is due at once, but only once the thread is free to take it.
    const int kept = core_.HoldingThread() ? -1 : core_.panel.kept_tick();
    std::int64_t due = 0;
    int t = -1;
    if (kept >= 0) {
        due = core_.panel.now();
        t = kept;
    } else if (!core_.panel.next_tick(&due, &t)) {
        due = 0;
        t = -1;
    }
    *due_ms = due;
    *timer = t;
    return S_OK;
}

HRESULT PanelFacet::Tick(std::int32_t timer) noexcept {
    if (timer < 0 || timer >= core_.panel.timer_count())
        return kestrone::basic_error_status(vb::kControlArrayElementMissing);
    if (core_.HoldingThread()) {
        core_.panel.keep_tick(timer);
        return kestrone::S_FALSE;
    }
    return guarded_call([&] {
        core_.panel.advance_to(core_.panel.now(), false);  // what was kept comes first
        core_.panel.tick(timer);
    });
}

HRESULT PanelFacet::AdvanceTo(std::int64_t now_ms, std::int64_t* ticks) noexcept {
    if (!ticks) return kestrone::E_POINTER;
    *ticks = 0;
    const bool held = core_.HoldingThread();
    const HRESULT hr = guarded_call([&] { *ticks = core_.panel.advance_to(now_ms, held); });
    return held && hr == S_OK ? kestrone::S_FALSE : hr;
}

HRESULT PanelFacet::RaiseNextTick(std::int64_t until_ms, std::int64_t* at_ms,
                                  std::int32_t* timer) noexcept {
    if (!at_ms || !timer) return kestrone::E_POINTER;
    *timer = -1;
    if (core_.HoldingThread()) return kestrone::S_FALSE;
    bool raised = false;
    const HRESULT hr = guarded_call([&] {
        int t = -1;
        raised = core_.panel.raise_next(until_ms, at_ms, &t);
        *timer = t;
    });
    if (kestrone::failed(hr)) return hr;
    return raised ? S_OK : kestrone::S_FALSE;
}

// ---- IKestronePanelInspection

HRESULT PanelFacet::lookup(const std::string& element, const std::int32_t* index, int* id) {
    const panel::Panel& p = core_.panel;
    *id = p.find(element, index ? *index : -1);
    if (*id >= 0) return S_OK;
    // A control array asked for an index it lacks; anything else is no such element.
    if (index && p.is_control_array(element))
        return kestrone::basic_error_status(vb::kControlArrayElementMissing);
    return kestrone::DISP_E_UNKNOWNNAME;
}

HRESULT PanelFacet::GetProperty(const std::string& element, const std::int32_t* index,
                                const std::string& property, kestrone::Variant* value) noexcept {
    if (!value) return kestrone::E_POINTER;
    panel::PropertyLookup found = panel::PropertyLookup::Found;
    HRESULT hr;
    if (element == "UserControl" && !index) {
        hr = guarded_call([&] { found = get_panel_property(core_.panel, property, *value); });
    } else {
        int id = -1;
        hr = lookup(element, index, &id);
        if (kestrone::failed(hr)) return hr;
        hr = guarded_call([&] { found = get_property(core_.panel, id, property, *value); });
    }
    if (kestrone::failed(hr)) return hr;
    return found == panel::PropertyLookup::Found ? S_OK : kestrone::DISP_E_UNKNOWNNAME;
}

HRESULT PanelFacet::PutProperty(const std::string& element, const std::int32_t* index,
                                const std::string& property,
                                const kestrone::Variant& value) noexcept {
    panel::PropertyLookup found = panel::PropertyLookup::Found;
    HRESULT hr;
    if (element == "UserControl" && !index) {
        hr = guarded_call([&] { found = put_panel_property(core_.panel, property, value); });
    } else {
        int id = -1;
        hr = lookup(element, index, &id);
        if (kestrone::failed(hr)) return hr;
        hr = guarded_call([&] { found = put_property(core_.panel, id, property, value); });
    }
    if (kestrone::failed(hr)) return hr;
    return found == panel::PropertyLookup::Found ? S_OK : kestrone::DISP_E_UNKNOWNNAME;
}

HRESULT PanelFacet::FindElement(const std::string& element, const std::int32_t* index,
                                std::int32_t* id) noexcept {
    if (!id) return kestrone::E_POINTER;
    int found = -1;
    const HRESULT hr = lookup(element, index, &found);
    *id = found;
    return hr;
}

HRESULT PanelFacet::RaiseEvent(const std::string& handler, kestrone::Variant* args,
                               std::int32_t argc) noexcept {
    if (argc < 0 || (argc > 0 && !args)) return kestrone::E_INVALIDARG;
    Simulation::EventLookup found = Simulation::EventLookup::Found;
    std::vector<kestrone::Variant> list(args, args + argc);
    const HRESULT hr = guarded_call([&] { found = core_.simulation.RaiseEvent(handler, list); });
    if (kestrone::failed(hr)) return hr;
    if (found == Simulation::EventLookup::Unknown) return kestrone::DISP_E_UNKNOWNNAME;
    if (found == Simulation::EventLookup::BadCount) return kestrone::DISP_E_BADPARAMCOUNT;
    // By-reference arguments come back as the handler left them.
    std::copy(list.begin(), list.end(), args);
    return S_OK;
}

}  // namespace rovanta
