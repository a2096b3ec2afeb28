// The session's object: the module, the object and its interfaces, calls by name, fields, and
// the clock's primitives.
#include "component_session.h"

#include <algorithm>
#include <limits>

#include "session_busy.h"

namespace host {

using kestrone::HRESULT;
using kestrone::Variant;

ComponentSession::ComponentSession(kestrone::IHostServices& services, ProjectCodec codec)
    : services_(services), codec_(std::move(codec)) {}

ComponentSession::~ComponentSession() {
    depth_ = 0;
    release_object();
}

bool ComponentSession::load_module(const std::string& path, std::string* error) {
    std::string why;
    auto loaded = ComponentModule::open(path, why);
    if (!loaded) {
        load_error_ = why;
        if (error) *error = why;
        return false;
    }
    module_ = std::move(loaded);
    load_error_.clear();
    return true;
}

// The interfaces go before the object, and all of it before the services they were lent.
HRESULT ComponentSession::release_object() {
    if (busy()) return kSessionBusy;
    if (object_) last_now_ = now();
    if (on_release_) on_release_();
    page_.reset();
    pages_.reset();
    persist_.reset();
    panel_inspect_.reset();
    panel_.reset();
    inspect_.reset();
    dispatch_.reset();
    component_.reset();
    object_.reset();
    return kestrone::S_OK;
}

HRESULT ComponentSession::create_object() {
    if (busy()) return kSessionBusy;
    release_object();
    if (!module_) return kNoObject;
    kestrone::ComPtr<kestrone::IUnknown> object;
    HRESULT hr;
    {
        Busy b(*this);
        hr = module_->create(&services_, object);
    }
    if (kestrone::failed(hr)) return hr;
    object_ = object;
    query_interfaces();
    // The new panel's clock starts again: the session's time carries on from where it stood.
    std::int64_t panel_now = 0;
    if (panel_) panel_->GetClock(&panel_now);
    clock_offset_ = last_now_ - panel_now;
    return hr;
}

void ComponentSession::query_interfaces() {
    using namespace kestrone;
    component_ = object_.query<IKestroneComponentV5>(IID_IKestroneComponentV5);
    dispatch_ = object_.query<IKestroneDispatch>(IID_IKestroneDispatch);
    inspect_ = object_.query<IKestroneInspection>(IID_IKestroneInspection);
    persist_ = object_.query<IKestronePersist>(IID_IKestronePersist);
    pages_ = object_.query<IKestronePropertyPages>(IID_IKestronePropertyPages);
    panel_ = object_.query<IKestronePanel>(IID_IKestronePanel);
    panel_inspect_ = object_.query<IKestronePanelInspection>(IID_IKestronePanelInspection);
}

bool ComponentSession::offers(Facet facet) const {
    switch (facet) {
        case Facet::Host:
            return static_cast<bool>(component_);
        case Facet::Calls:
            return static_cast<bool>(dispatch_);
        case Facet::Fields:
            return static_cast<bool>(inspect_);
        case Facet::Settings:
            return static_cast<bool>(persist_);
        case Facet::Page:
            return static_cast<bool>(pages_);
        case Facet::Panel:
            return panel_ && panel_inspect_;
    }
    return false;
}

HRESULT ComponentSession::make_ready(const ObjectRecipe& recipe) {
    if (!object_ || !component_) return kNoObject;
    Busy b(*this);
    return ready_object(*object_.get(), recipe);
}

std::optional<Operation> ComponentSession::find_operation(std::string_view name, bool write) {
    using kestrone::InvokeKind;
    const auto fits = [&](const kestrone::MemberInfo& m) {
        return m.name == name && (m.kind == InvokeKind::Set) == write;
    };
    for (std::size_t i = 0; i < kestrone::kComponentV5Members.size(); ++i)
        if (fits(kestrone::kComponentV5Members[i]))
            return Operation{kestrone::Interface::ComponentV5, static_cast<std::int32_t>(i),
                             &kestrone::kComponentV5Members[i]};
    for (std::size_t i = 0; i < kestrone::kRovantaMembers.size(); ++i)
        if (fits(kestrone::kRovantaMembers[i]))
            return Operation{kestrone::Interface::Rovanta, static_cast<std::int32_t>(i),
                             &kestrone::kRovantaMembers[i]};
    return std::nullopt;
}

bool ComponentSession::has_operation(std::string_view name) {
    return find_operation(name, false) || find_operation(name, true);
}

HRESULT ComponentSession::call(const Operation& op, std::vector<Variant>& args, Variant* result) {
    if (!dispatch_) return kNoObject;
    if (args.size() != op.info->param_count) return kestrone::DISP_E_BADPARAMCOUNT;
    Busy b(*this);
    return dispatch_->Invoke(op.iface, op.number, args.data(),
                             static_cast<std::int32_t>(args.size()), result);
}

HRESULT ComponentSession::start_simulation() {
    if (!component_) return kNoObject;
    Busy b(*this);
    return component_->StartSimulation();
}

HRESULT ComponentSession::stop_simulation() {
    if (!component_) return kNoObject;
    Busy b(*this);
    return component_->StopSimulation();
}

HRESULT ComponentSession::field(const std::string& name, std::optional<std::int32_t> index,
                                const std::string& member, Variant* value) {
    if (!inspect_) return kNoObject;
    return inspect_->GetField(name, index ? &*index : nullptr, member, value);
}

namespace {
constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kEarliest = std::numeric_limits<std::int64_t>::min();

// a + b, held at the ends of the range.
std::int64_t saturated_sum(std::int64_t a, std::int64_t b) {
    if (b > 0 && a > kFarthest - b) return kFarthest;
    if (b < 0 && a < kEarliest - b) return kEarliest;
    return a + b;
}
}  // namespace

std::int64_t ComponentSession::now() const {
    if (!panel_) return last_now_;
    std::int64_t panel_now = 0;
    panel_->GetClock(&panel_now);
    return saturated_sum(panel_now, clock_offset_);
}

std::int64_t ComponentSession::panel_clock() const {
    std::int64_t panel_now = 0;
    if (panel_) panel_->GetClock(&panel_now);
    return panel_now;
}

// The offset never reaches the lowest 64-bit value: the session's time starts at 0 and the
// panels' clocks never go below it.
std::int64_t ComponentSession::panel_time(std::int64_t session_time) const {
    return saturated_sum(session_time, -clock_offset_);
}

bool ComponentSession::next_tick(std::int64_t* at) const {
    if (!panel_) return false;
    std::int64_t due = 0, panel_now = 0;
    std::int32_t timer = -1;
    if (panel_->NextTick(&due, &timer) != kestrone::S_OK || timer < 0) return false;
    panel_->GetClock(&panel_now);
    *at = saturated_sum(now(), std::max<std::int64_t>(0, due - panel_now));
    return true;
}

bool ComponentSession::raise_next_tick(std::int64_t until, std::int64_t* at, std::int32_t* timer) {
    if (!panel_) return false;
    std::int64_t panel_at = 0;
    HRESULT hr;
    {
        Busy b(*this);
        hr = panel_->RaiseNextTick(panel_time(until), &panel_at, timer);
    }
    if (hr != kestrone::S_OK) return false;
    *at = saturated_sum(panel_at, clock_offset_);
    return true;
}

HRESULT ComponentSession::bring_panel_to(std::int64_t when, std::int64_t* ticks) {
    std::int64_t raised = 0;
    if (ticks) *ticks = 0;
    if (!panel_) return kNoObject;
    HRESULT hr;
    {
        Busy b(*this);
        hr = panel_->AdvanceTo(panel_time(when), &raised);
    }
    if (ticks) *ticks = raised;
    return hr;
}

}  // namespace host
