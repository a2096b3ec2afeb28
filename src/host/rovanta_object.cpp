#include "host/rovanta_object.h"

#include "host/field_table.h"
#include "host/guarded_call.h"
#include "host/panel_facet.h"
#include "host/property_page_object.h"
#include "host/stored_settings.h"

namespace rovanta {

using kestrone::Guid;
using kestrone::HRESULT;
using kestrone::S_OK;

RovantaObject::RovantaObject(const platform::ModuleFacts& app, kestrone::IHostServices* host)
    : services_(host), core_(std::make_unique<Rovanta>(app, services_)) {
    core_->simulation.SitePanel();
}

RovantaObject::~RovantaObject() = default;

HRESULT RovantaObject::create(const platform::ModuleFacts& app, kestrone::IHostServices* host,
                              RovantaObject** out) noexcept {
    if (!out) return kestrone::E_POINTER;
    *out = nullptr;
    return guarded_call([&] { *out = new RovantaObject(app, host); });
}

HRESULT RovantaObject::query_other(const Guid& iid, void** ppv) noexcept {
    if (iid == kestrone::IID_IKestronePanel || iid == kestrone::IID_IKestronePanelInspection)
        return PanelFacet::create(identity(), *core_, iid, ppv);
    return kestrone::E_NOINTERFACE;
}

// ---- IRovanta

void RovantaObject::query_iVersionMajor(std::int16_t& pVal) {
    pVal = core_->link.iVersionMajor;
}
void RovantaObject::set_iVersionMajor(std::int16_t RHS) {
    core_->link.iVersionMajor = RHS;
}
void RovantaObject::query_iVersionMinor(std::int16_t& pVal) {
    pVal = core_->link.iVersionMinor;
}
void RovantaObject::set_iVersionMinor(std::int16_t RHS) {
    core_->link.iVersionMinor = RHS;
}
void RovantaObject::query_VERSION_STRING(std::string& pVal) {
    pVal = core_->link.VERSION_STRING;
}
void RovantaObject::set_VERSION_STRING(const std::string& RHS) {
    core_->link.VERSION_STRING = RHS;
}
void RovantaObject::call_GetIniKeyValue(const std::string& lpApplicationName,
                                        const std::string& lpKeyName, const std::string& lpDefault,
                                        std::string& pResult) {
    pResult = core_->GetIniKeyValue(lpApplicationName, lpKeyName, lpDefault);
}
void RovantaObject::call_GetCodeFromFile(const std::string& lpCodeName, std::string& pResult) {
    pResult = core_->GetCodeFromFile(lpCodeName);
}
// The node operations a second time, with the same bodies.
void RovantaObject::query_IKestroneComponentV5_VNodeCount(std::int32_t& pVal) {
    query_VNodeCount(pVal);
}
void RovantaObject::query_IKestroneComponentV5_VNodeProtocol(std::int32_t lIdx,
                                                             std::int32_t& pVal) {
    query_VNodeProtocol(lIdx, pVal);
}
void RovantaObject::query_IKestroneComponentV5_VNodeName(std::int32_t lIdx, std::string& pVal) {
    query_VNodeName(lIdx, pVal);
}
void RovantaObject::query_IKestroneComponentV5_VNodeMsgRead(std::int32_t lIdx, std::int32_t& lSize,
                                                            Variant& pVal) {
    query_VNodeMsgRead(lIdx, lSize, pVal);
}
void RovantaObject::set_IKestroneComponentV5_VNodeMsgWrite(std::int32_t lIdx, std::int32_t lSize,
                                                           Variant& msg) {
    set_VNodeMsgWrite(lIdx, lSize, msg);
}
void RovantaObject::call_setupAPin(std::int32_t ArrayNumber, const std::string& PinName,
                                   std::int32_t PortAorB, bool MustUseThatPort,
                                   std::int32_t SamePortAsPinX, std::int32_t PinNum,
                                   bool MustUseThatPin, std::int32_t PinDirection, bool PinValue) {
    core_->setupAPin(ArrayNumber, PinName, PortAorB, MustUseThatPort, SamePortAsPinX, PinNum,
                     MustUseThatPin, PinDirection, PinValue);
}

namespace {
// The setting of that name and kind; error 438 for none.
const SettingInfo& setting_named(std::string_view name, bool text) {
    const SettingInfo* s = find_setting(name);
    if (!s || (s->text != nullptr) != text) vb::raise_error(vb::kNoSuchMember);
    return *s;
}
}  // namespace

void RovantaObject::read_setting(std::string_view name, std::int16_t& value) {
    value = core_->GetSetting(setting_named(name, false)).as_integer();
}
void RovantaObject::read_setting(std::string_view name, std::string& value) {
    value = core_->GetSetting(setting_named(name, true)).as_string();
}
void RovantaObject::write_setting(std::string_view name, std::int16_t value) {
    core_->LetSetting(setting_named(name, false), Variant::integer(value));
}
void RovantaObject::write_setting(std::string_view name, const std::string& value) {
    core_->LetSetting(setting_named(name, true), Variant::string(value));
}

// ---- IKestroneInspection

HRESULT RovantaObject::GetField(const std::string& name, const std::int32_t* index,
                                const std::string& member, Variant* value) noexcept {
    if (!value) return kestrone::E_POINTER;
    FieldLookup found = FieldLookup::Found;
    const HRESULT hr =
        guarded_call([&] { found = read_field(*core_, name, index, member, *value); });
    if (kestrone::failed(hr)) return hr;
    return found == FieldLookup::Found ? S_OK : kestrone::DISP_E_UNKNOWNNAME;
}

// ---- IKestronePersist

namespace {
// A walk over the host's store: a value that does not convert is a Basic error, a failure of
// the store comes back as the store gave it.
template <class Walk>
HRESULT store_walk(kestrone::IKestroneStore* store, Walk walk) noexcept {
    if (!store) return kestrone::E_POINTER;
    HRESULT store_status = S_OK;
    const HRESULT hr = guarded_call([&] {
        try {
            walk(*store);
        } catch (const StoreFailure& e) {
            store_status = e.status();
        }
    });
    return kestrone::failed(hr) ? hr : store_status;
}
}  // namespace

HRESULT RovantaObject::WriteProperties(kestrone::IKestroneStore* store) noexcept {
    return store_walk(store,
                      [&](kestrone::IKestroneStore& s) { core_->UserControl_WriteProperties(s); });
}
HRESULT RovantaObject::ReadProperties(kestrone::IKestroneStore* store) noexcept {
    return store_walk(store,
                      [&](kestrone::IKestroneStore& s) { core_->UserControl_ReadProperties(s); });
}

// ---- IKestronePropertyPages

HRESULT RovantaObject::CreatePropertyPage(kestrone::IKestronePropertyPage** page) noexcept {
    return PropertyPageObject::create(core_->App, page);
}

}  // namespace rovanta
