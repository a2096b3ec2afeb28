#include "signal_reader.h"

#include <array>

namespace signal_log {

using kestrone::Variant;

SignalReader::SignalReader(stage::Stage& stage)
    : stage_(stage),
      fields_{
          {{"iWheelPhase", kPhaseLeft, 2}, {"iMotorSpeed", kMotorLeft, 2}, {"lADCVal", kLdr, 5}}} {}

void SignalReader::read_field(Values& values, FieldIndex which) {
    const Field& f = fields_[which];
    Variant v;
    if (kestrone::failed(stage_.session().field(f.name, std::nullopt, "", &v)) || !v.is_array())
        return;
    const auto& items = v.as_array().items;
    for (std::size_t i = 0; i < items.size() && i < f.count; ++i) {
        if (items[i].type() == kestrone::VarType::Integer)
            values[f.first + i] = items[i].as_integer();
        if (items[i].type() == kestrone::VarType::Long) values[f.first + i] = items[i].as_long();
    }
}

void SignalReader::read_pose(Values& values) {
    const world::World& w = stage_.world();
    if (!w.loaded()) {
        values[kX] = values[kY] = values[kTheta] = kAbsent;
        return;
    }
    const world::WholePose p = world::whole_pose(w.pose());
    values[kX] = p.x;
    values[kY] = p.y;
    values[kTheta] = p.heading;
}

namespace {
struct NamedElement {
    const char* name;
    std::int32_t count;  // members of its control array; 0 for a single element
    std::uint8_t role;   // a SignalReader::Role
    std::uint8_t first;  // the first member's LED bit, box signal or picture number
};
}  // namespace

void SignalReader::find_elements() {
    host::ComponentSession& session = stage_.session();
    kestrone::IKestronePanel* panel = session.panel();
    panel_ = panel;
    elements_.clear();
    headings_.clear();
    std::int32_t count = 0;
    if (!panel || kestrone::failed(panel->GetElementCount(&count))) return;
    elements_.resize(static_cast<std::size_t>(count));
    const auto place = [&](const char* name, std::optional<std::int32_t> index, Role role,
                           std::uint8_t arg) {
        std::int32_t id = -1;
        if (kestrone::failed(session.find_element(name, index, &id)) || id < 0 || id >= count)
            return;
        elements_[static_cast<std::size_t>(id)] = {role, arg};
        if (role != Role::Heading) return;
        if (headings_.size() <= arg) headings_.resize(arg + 1u, -1);
        headings_[arg] = id;
    };
    constexpr auto kLed = static_cast<std::uint8_t>(Role::Led),
                   kBox = static_cast<std::uint8_t>(Role::Box),
                   kPicture = static_cast<std::uint8_t>(Role::Heading);
    constexpr std::array<NamedElement, 6> kElements{{
        {"imageLedOn", 8, kLed, 0},
        {"chkSwitchLeft", 0, kBox, kSwitchLeft},
        {"chkSwitchRight", 0, kBox, kSwitchRight},
        {"chkLineLeft", 0, kBox, kLineLeft},
        {"chkLineRight", 0, kBox, kLineRight},
        {"imDirection", 13, kPicture, 0},
    }};
    for (const NamedElement& e : kElements) {
        if (e.count == 0) place(e.name, std::nullopt, static_cast<Role>(e.role), e.first);
        for (std::int32_t i = 0; i < e.count; ++i)
            place(e.name, i, static_cast<Role>(e.role), static_cast<std::uint8_t>(e.first + i));
    }
}

void SignalReader::read_element(Values& values, std::int32_t id) {
    const Element& e = elements_[static_cast<std::size_t>(id)];
    if (e.role == Role::None || e.role == Role::Heading) return;
    kestrone::ElementInfo info;
    if (kestrone::failed(stage_.session().panel()->GetElement(id, &info))) return;
    if (e.role == Role::Box) {
        values[e.arg] = info.check_value;
        return;
    }
    const std::int32_t bit = 1 << e.arg;
    values[kLeds] = info.visible ? values[kLeds] | bit : values[kLeds] & ~bit;
}

// The picture shown: the first visible one (the component shows one at a time); 0 if none.
void SignalReader::read_heading(Values& values) {
    kestrone::IKestronePanel* panel = stage_.session().panel();
    kestrone::ElementInfo info;
    values[kHeading] = 0;
    for (std::size_t k = 0; k < headings_.size(); ++k)
        if (headings_[k] >= 0 && !kestrone::failed(panel->GetElement(headings_[k], &info)) &&
            info.visible) {
            values[kHeading] = static_cast<std::int32_t>(k);
            return;
        }
}

void SignalReader::read_panel_changes(Values& values) {
    kestrone::IKestronePanel* panel = stage_.session().panel();
    if (!panel) return;
    if (panel != panel_) {
        read_all(values);
        return;
    }
    std::uint64_t now = 0;
    if (kestrone::failed(panel->GetChangedElements(revision_, &changed_, &now))) return;
    revision_ = now;
    // One heading picture is shown at a time: a changed one that shows is the heading; only
    // when the one shown was hidden without another shown must all be looked at.
    std::optional<std::int32_t> shown;
    bool hidden = false;
    for (const std::int32_t id : changed_) {
        if (id < 0 || static_cast<std::size_t>(id) >= elements_.size()) continue;
        const Element& e = elements_[static_cast<std::size_t>(id)];
        if (e.role != Role::Heading) {
            read_element(values, id);
            continue;
        }
        kestrone::ElementInfo info;
        if (kestrone::failed(panel->GetElement(id, &info))) continue;
        if (info.visible) shown = e.arg;
        hidden = hidden || (!info.visible && e.arg == values[kHeading]);
    }
    if (shown)
        values[kHeading] = *shown;
    else if (hidden)
        read_heading(values);
}

void SignalReader::read_all(Values& values) {
    for (const FieldIndex f : {kPhases, kMotors, kSensors})
        read_field(values, f);
    read_pose(values);
    find_elements();
    kestrone::IKestronePanel* panel = stage_.session().panel();
    if (!panel || kestrone::failed(panel->GetRevision(&revision_))) return;
    for (std::size_t id = 0; id < elements_.size(); ++id)
        read_element(values, static_cast<std::int32_t>(id));
    read_heading(values);
}

void SignalReader::check_heading(Values& values) {
    kestrone::IKestronePanel* panel = stage_.session().panel();
    const auto shown = static_cast<std::size_t>(values[kHeading]);
    if (!panel || panel != panel_) return read_panel_changes(values);
    kestrone::ElementInfo info;
    if (shown < headings_.size() && headings_[shown] >= 0 &&
        !kestrone::failed(panel->GetElement(headings_[shown], &info)) && info.visible)
        return;
    read_heading(values);
}

void SignalReader::read_tick(Values& values) {
    read_field(values, kPhases);
    check_heading(values);
}

void SignalReader::read_wheels(Values& values) {
    read_field(values, kPhases);
    read_panel_changes(values);
}

void SignalReader::read_world(Values& values) {
    read_field(values, kSensors);
    read_pose(values);
    read_panel_changes(values);
}

void SignalReader::read_program(Values& values) {
    for (const FieldIndex f : {kPhases, kMotors, kSensors})
        read_field(values, f);
    read_pose(values);
    read_panel_changes(values);
}

}  // namespace signal_log
