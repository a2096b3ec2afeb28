// The handlers of the panel's events, as data: what each element raises reaches its handler, and
// any handler can be raised by name with its arguments converted as the event passes them.
#include <array>

#include "platform/vb_numeric.h"
#include "simulation/simulation.h"

namespace rovanta {

using kestrone::VarType;
using panel::Event;

namespace {

// Where the handlers live: the sensor bars take the pointer and the arrows, the simulation the
// rest.
struct Targets {
    Simulation& simulation;
    SensorBars& bars;
};

struct EventHandler {
    std::string_view name;     // element _ event
    std::string_view element;  // "UserControl" for the panel's own
    Event event;
    std::uint8_t count;
    std::array<VarType, 5> params;
    void (*call)(const Targets&, Variant*);
};

constexpr std::array<VarType, 5> kMouse{VarType::Integer, VarType::Integer, VarType::Integer,
                                        VarType::Single, VarType::Single};
constexpr std::array<VarType, 5> kIndex{VarType::Integer};
constexpr std::array<VarType, 5> kNone{};

template <void (SensorBars::*handler)(Integer&, Integer&, Integer&, float&, float&)>
void mouse(const Targets& t, Variant* a) {
    Integer index = a[0].as_integer(), button = a[1].as_integer(), shift = a[2].as_integer();
    float x = a[3].as_single(), y = a[4].as_single();
    (t.bars.*handler)(index, button, shift, x, y);
}

template <void (Simulation::*handler)()>
void plain(const Targets& t, Variant*) {
    (t.simulation.*handler)();
}

const EventHandler kHandlers[] = {
    {"frameADC_MouseDown", "frameADC", Event::MouseDown, 5, kMouse,
     &mouse<&SensorBars::frameADC_MouseDown>},
    {"frameADC_MouseMove", "frameADC", Event::MouseMove, 5, kMouse,
     &mouse<&SensorBars::frameADC_MouseMove>},
    {"imSlideBar_MouseDown", "imSlideBar", Event::MouseDown, 5, kMouse,
     &mouse<&SensorBars::imSlideBar_MouseDown>},
    {"imSlideBar_MouseMove", "imSlideBar", Event::MouseMove, 5, kMouse,
     &mouse<&SensorBars::imSlideBar_MouseMove>},
    {"imSlideBase_MouseDown", "imSlideBase", Event::MouseDown, 5, kMouse,
     &mouse<&SensorBars::imSlideBase_MouseDown>},
    {"imSlideBase_MouseMove", "imSlideBase", Event::MouseMove, 5, kMouse,
     &mouse<&SensorBars::imSlideBase_MouseMove>},
    {"updownADC_Change", "updownADC", Event::Change, 1, kIndex,
     [](const Targets& t, Variant* a) {
         Integer index = a[0].as_integer();
         t.bars.updownADC_Change(index);
     }},
    {"chkSwitchLeft_Click", "chkSwitchLeft", Event::Click, 0, kNone,
     &plain<&Simulation::chkSwitchLeft_Click>},
    {"chkSwitchRight_Click", "chkSwitchRight", Event::Click, 0, kNone,
     &plain<&Simulation::chkSwitchRight_Click>},
    {"chkLineLeft_Click", "chkLineLeft", Event::Click, 0, kNone,
     &plain<&Simulation::chkLineLeft_Click>},
    {"chkLineRight_Click", "chkLineRight", Event::Click, 0, kNone,
     &plain<&Simulation::chkLineRight_Click>},
    {"Timer1_Timer", "Timer1", Event::Timer, 1, kIndex,
     [](const Targets& t, Variant* a) { t.simulation.Timer1_Timer(a[0].as_integer()); }},
    {"UserControl_Resize", "UserControl", Event::Resize, 0, kNone,
     &plain<&Simulation::UserControl_Resize>},
    {"UserControl_Paint", "UserControl", Event::Paint, 0, kNone,
     &plain<&Simulation::UserControl_Paint>},
};

const EventHandler* handler_for(std::string_view element, Event event) {
    for (const EventHandler& h : kHandlers)
        if (h.event == event && h.element == element) return &h;
    return nullptr;
}

}  // namespace

void Simulation::panel_event(const panel::Element* element, Event event,
                             const panel::MouseArgs* m) {
    const EventHandler* h =
        handler_for(element ? std::string_view(element->name) : "UserControl", event);
    if (!h) return;  // an element without a handler for it
    std::array<Variant, 5> args;
    std::size_t n = 0;
    if (element && element->index >= 0)
        args[n++] = Variant::integer(static_cast<Integer>(element->index));
    if (m) {
        args[n++] = Variant::integer(m->button);
        args[n++] = Variant::integer(m->shift);
        args[n++] = Variant::single(m->x);
        args[n++] = Variant::single(m->y);
    }
    h->call(Targets{*this, bars_}, args.data());
}

Simulation::EventLookup Simulation::RaiseEvent(std::string_view handler,
                                               std::vector<Variant>& args) {
    for (const EventHandler& h : kHandlers) {
        if (h.name != handler) continue;
        if (args.size() != h.count) return EventLookup::BadCount;
        for (std::size_t i = 0; i < args.size(); ++i)
            args[i] = vb::coerce(args[i], h.params[i]);
        h.call(Targets{*this, bars_}, args.data());
        return EventLookup::Found;
    }
    return EventLookup::Unknown;
}

void Simulation::UserControl_Resize() {
    // The panel takes back the size of its bottom-right corner, the right motor's frame, read
    // afresh each time; Width before Height.
    const int frame = panel_.ids().frameMotor[1];
    panel_.set_width_twips(
        panel_.pixels_to_twips_x(vb::fadd(panel_.at(frame).left, panel_.at(frame).width)));
    panel_.set_height_twips(
        panel_.pixels_to_twips_y(vb::fadd(panel_.at(frame).top, panel_.at(frame).height)));
}

void Simulation::SitePanel() {
    // A container raises Resize when it first sizes the panel.
    UserControl_Resize();
}

}  // namespace rovanta
