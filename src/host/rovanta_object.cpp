#include "host/rovanta_object.h"

#include "core/field_table.h"
#include "host/guarded_call.h"
#include "host/panel_facet.h"
#include "host/property_page.h"
#include "host/stored_settings.h"

namespace rovanta {

using kestrone::Guid;
using kestrone::HRESULT;
using kestrone::S_OK;

std::atomic<long>& module_lock_count() {
    static std::atomic<long> count{0};
    return count;
}

RovantaObject::RovantaObject(const platform::ModuleFacts& app, kestrone::IHostServices* host)
    : services_(host), core_(std::make_unique<Rovanta>(app, services_)) {
    core_->SitePanel();
    ++module_lock_count();
}

RovantaObject::~RovantaObject() {
    --module_lock_count();
}

HRESULT RovantaObject::create(const platform::ModuleFacts& app, kestrone::IHostServices* host,
                              RovantaObject** out) noexcept {
    if (!out) return kestrone::E_POINTER;
    *out = nullptr;
    return guarded_call([&] { *out = new RovantaObject(app, host); });
}

HRESULT RovantaObject::QueryInterface(const Guid& iid, void** ppv) noexcept {
    if (!ppv) return kestrone::E_POINTER;
    *ppv = nullptr;
    if (iid == kestrone::IID_IUnknown || iid == kestrone::IID_IKestroneComponentV5)
        *ppv = static_cast<kestrone::IKestroneComponentV5*>(this);
    else if (iid == kestrone::IID_IRovanta)
        *ppv = static_cast<kestrone::IRovanta*>(this);
    else if (iid == kestrone::IID_IKestroneDispatch)
        *ppv = static_cast<kestrone::IKestroneDispatch*>(this);
    else if (iid == kestrone::IID_IKestroneInspection)
        *ppv = static_cast<kestrone::IKestroneInspection*>(this);
    else if (iid == kestrone::IID_IKestronePersist)
        *ppv = static_cast<kestrone::IKestronePersist*>(this);
    else if (iid == kestrone::IID_IKestronePropertyPages)
        *ppv = static_cast<kestrone::IKestronePropertyPages*>(this);
    else if (iid == kestrone::IID_IKestronePanel || iid == kestrone::IID_IKestronePanelInspection)
        return PanelFacet::create(static_cast<kestrone::IKestroneComponentV5*>(this), *core_, iid,
                                  ppv);
    else
        return kestrone::E_NOINTERFACE;
    AddRef();
    return S_OK;
}

std::uint32_t RovantaObject::AddRef() noexcept {
    return ++refs_;
}

std::uint32_t RovantaObject::Release() noexcept {
    const std::uint32_t left = --refs_;
    if (left == 0) delete this;
    return left;
}

// ---- IKestroneComponentV5

HRESULT RovantaObject::get_MultipleAllowed(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = host_boolean(core_->bMultipleAllowed); });
}
HRESULT RovantaObject::get_MacroNames(Variant* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->MacroNames(); });
}
HRESULT RovantaObject::get_MacroIsFunction(std::int32_t lMacroID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->MacroIsFunction(lMacroID); });
}
HRESULT RovantaObject::get_MacroParameters(std::int32_t lMacroID, Variant* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->MacroParameters(lMacroID); });
}
HRESULT RovantaObject::get_MacroCode(std::int32_t lMacroID, std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->MacroCode(lMacroID); });
}
HRESULT RovantaObject::get_IsSimulating(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->IsSimulating(); });
}
HRESULT RovantaObject::get_PinCount(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->PinCount(); });
}
HRESULT RovantaObject::get_HasInitialisation(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->HasInitialisation(); });
}
HRESULT RovantaObject::get_HasInterrupts(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->HasInterrupts(); });
}
HRESULT RovantaObject::get_HasExclusiveInts(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->HasExclusiveInts(); });
}
HRESULT RovantaObject::get_InitialisationCode(std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->sInitialisationCode; });
}
HRESULT RovantaObject::get_InterruptCode(std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->sInterruptCode; });
}
HRESULT RovantaObject::get_ExclusiveInterrupts(Variant* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->ExclusiveInterrupts(); });
}
HRESULT RovantaObject::get_PinName(std::int32_t PinID, std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->PinName(PinID); });
}
HRESULT RovantaObject::get_DesiredPort(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->DesiredPort(PinID); });
}
HRESULT RovantaObject::get_Direction(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->Direction(PinID); });
}
HRESULT RovantaObject::get_PortMandatory(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->PortMandatory(PinID); });
}
HRESULT RovantaObject::get_SamePortAsID(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->SamePortAsID(PinID); });
}
HRESULT RovantaObject::get_Description(std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->Description(); });
}
HRESULT RovantaObject::get_DesiredBit(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->DesiredBit(PinID); });
}
HRESULT RovantaObject::get_BitMandatory(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->BitMandatory(PinID); });
}
HRESULT RovantaObject::get_Port(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->Port(PinID); });
}
HRESULT RovantaObject::put_Port(std::int32_t PinID, std::int32_t RHS) noexcept {
    return guarded_call([&] { core_->LetPort(PinID, RHS); });
}
HRESULT RovantaObject::get_Bit(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->Bit(PinID); });
}
HRESULT RovantaObject::put_Bit(std::int32_t PinID, std::int32_t RHS) noexcept {
    return guarded_call([&] { core_->LetBit(PinID, RHS); });
}
HRESULT RovantaObject::get_ConnectedOK(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->ConnectedOK(); });
}
HRESULT RovantaObject::StartSimulation() noexcept {
    return guarded_call([&] { core_->StartSimulation(); });
}
HRESULT RovantaObject::StopSimulation() noexcept {
    return guarded_call([&] { core_->StopSimulation(); });
}
HRESULT RovantaObject::get_SimIODirection(std::int32_t PinID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->SimIODirection(PinID); });
}
HRESULT RovantaObject::SimReadPins(Variant* pVal) noexcept {
    return guarded_call([&] { core_->SimReadPins(*pVal); });
}
HRESULT RovantaObject::SimWritePins(const Variant& NewVal) noexcept {
    return guarded_call([&] { core_->SimWritePins(NewVal); });
}
HRESULT RovantaObject::SimMacroCall(std::int32_t lMacroID, const Variant& vParams,
                                    std::int32_t* pRetVal, Variant* pvAffected,
                                    std::int32_t* pCycles) noexcept {
    if (!pRetVal || !pvAffected || !pCycles) return kestrone::E_POINTER;
    return guarded_call(
        [&] { core_->SimMacroCall(lMacroID, vParams, *pRetVal, *pvAffected, *pCycles); });
}
HRESULT RovantaObject::KeyDown(std::int32_t) noexcept {
    return S_OK;
}
HRESULT RovantaObject::KeyUp(std::int32_t) noexcept {
    return S_OK;
}
HRESULT RovantaObject::get_SupportsKeys(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->lSupportsKeys; });
}
HRESULT RovantaObject::get_IsAnalogue(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = host_boolean(core_->bIsAnalogue); });
}
HRESULT RovantaObject::get_MacroIsPrivate(std::int32_t lMacroID, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->MacroIsPrivate(lMacroID); });
}
// The target facts are only ever written.
HRESULT RovantaObject::put_ClockSpeed(std::int32_t RHS) noexcept {
    return guarded_call([&] { core_->target.ClockSpeed = RHS; });
}
HRESULT RovantaObject::put_PICAnalogueBits(std::int32_t RHS) noexcept {
    return guarded_call([&] { core_->target.PICAnalogueBits = RHS; });
}
HRESULT RovantaObject::put_ADCCaptureCode(const std::string& RHS) noexcept {
    return guarded_call([&] { core_->target.ADCCaptureCode = RHS; });
}
HRESULT RovantaObject::put_ADCReadHighCode(const std::string& RHS) noexcept {
    return guarded_call([&] { core_->target.ADCReadHighCode = RHS; });
}
HRESULT RovantaObject::put_ADCReadLowCode(const std::string& RHS) noexcept {
    return guarded_call([&] { core_->target.ADCReadLowCode = RHS; });
}
HRESULT RovantaObject::put_TargetController(const std::string& RHS) noexcept {
    return guarded_call([&] { core_->target.TargetController = RHS; });
}
HRESULT RovantaObject::put_ADCReadIntCode(const std::string& RHS) noexcept {
    return guarded_call([&] { core_->target.ADCReadIntCode = RHS; });
}
HRESULT RovantaObject::put_KestroneVersion(std::int32_t RHS) noexcept {
    return guarded_call([&] { core_->KestroneVersion(RHS); });
}
HRESULT RovantaObject::get_ComponentVersion(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->ComponentVersion(); });
}
HRESULT RovantaObject::GeneralMethod(std::int32_t, Variant*) noexcept {
    return S_OK;
}
HRESULT RovantaObject::put_GeneralPut(std::int32_t, Variant*) noexcept {
    return S_OK;
}
HRESULT RovantaObject::get_GeneralGet(std::int32_t lID, Variant* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->GeneralGet(lID); });
}
HRESULT RovantaObject::put_KtxFilename(const std::string& RHS) noexcept {
    return guarded_call([&] { core_->KtxFilename(RHS); });
}
HRESULT RovantaObject::get_VNodeCount(std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = 0; });
}
HRESULT RovantaObject::get_VNodeProtocol(std::int32_t, std::int32_t* pVal) noexcept {
    return guarded_call([&] { *pVal = 0; });
}
HRESULT RovantaObject::get_VNodeName(std::int32_t, std::string* pVal) noexcept {
    return guarded_call([&] { pVal->clear(); });
}
HRESULT RovantaObject::get_VNodeMsgRead(std::int32_t lIdx, std::int32_t* lSize,
                                        Variant* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->VNodeMsgRead(lIdx, *lSize); });
}
HRESULT RovantaObject::put_VNodeMsgWrite(std::int32_t, std::int32_t, Variant*) noexcept {
    return S_OK;
}
HRESULT RovantaObject::MacroCodeOverride(std::string* pVal) noexcept {
    return guarded_call([&] { core_->MacroCodeOverride(*pVal); });
}
HRESULT RovantaObject::get_CodeFilename(std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->CodeFilePath(); });
}
HRESULT RovantaObject::get_DefinesCode(std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->DefinesCode(); });
}
HRESULT RovantaObject::get_ReadCustomImages(std::int32_t, std::string* pVal) noexcept {
    return guarded_call([&] { pVal->clear(); });
}
HRESULT RovantaObject::put_WriteCustomImages(std::int32_t lID, const std::string& RHS) noexcept {
    return guarded_call([&] { core_->WriteCustomImages(lID, RHS); });
}
HRESULT RovantaObject::SimMacroCall2(std::int32_t lMacroID, const Variant& vParams,
                                     Variant* pRetVal, Variant* pvAffected,
                                     std::int32_t* pCycles) noexcept {
    if (!pRetVal || !pvAffected || !pCycles) return kestrone::E_POINTER;
    return guarded_call(
        [&] { core_->SimMacroCall2(lMacroID, vParams, *pRetVal, *pvAffected, *pCycles); });
}
HRESULT RovantaObject::Refresh() noexcept {
    return guarded_call([&] { core_->Refresh(); });
}

// ---- IRovanta

HRESULT RovantaObject::get_iVersionMajor(std::int16_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->iVersionMajor; });
}
HRESULT RovantaObject::put_iVersionMajor(std::int16_t RHS) noexcept {
    return guarded_call([&] { core_->iVersionMajor = RHS; });
}
HRESULT RovantaObject::get_iVersionMinor(std::int16_t* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->iVersionMinor; });
}
HRESULT RovantaObject::put_iVersionMinor(std::int16_t RHS) noexcept {
    return guarded_call([&] { core_->iVersionMinor = RHS; });
}
HRESULT RovantaObject::get_VERSION_STRING(std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->VERSION_STRING; });
}
HRESULT RovantaObject::put_VERSION_STRING(const std::string& RHS) noexcept {
    return guarded_call([&] { core_->VERSION_STRING = RHS; });
}
HRESULT RovantaObject::GetIniKeyValue(const std::string& lpApplicationName,
                                      const std::string& lpKeyName, const std::string& lpDefault,
                                      std::string* pResult) noexcept {
    return guarded_call(
        [&] { *pResult = core_->GetIniKeyValue(lpApplicationName, lpKeyName, lpDefault); });
}
HRESULT RovantaObject::GetCodeFromFile(const std::string& lpCodeName,
                                       std::string* pResult) noexcept {
    return guarded_call([&] { *pResult = core_->GetCodeFromFile(lpCodeName); });
}
// The node operations a second time, with the same bodies.
HRESULT RovantaObject::IKestroneComponentV5_VNodeCount(std::int32_t* pVal) noexcept {
    return get_VNodeCount(pVal);
}
HRESULT RovantaObject::IKestroneComponentV5_VNodeProtocol(std::int32_t lIdx,
                                                          std::int32_t* pVal) noexcept {
    return get_VNodeProtocol(lIdx, pVal);
}
HRESULT RovantaObject::IKestroneComponentV5_VNodeName(std::int32_t lIdx,
                                                      std::string* pVal) noexcept {
    return get_VNodeName(lIdx, pVal);
}
HRESULT RovantaObject::IKestroneComponentV5_VNodeMsgRead(std::int32_t lIdx, std::int32_t* lSize,
                                                         Variant* pVal) noexcept {
    return get_VNodeMsgRead(lIdx, lSize, pVal);
}
HRESULT RovantaObject::IKestroneComponentV5_VNodeMsgWrite(std::int32_t lIdx, std::int32_t lSize,
                                                          Variant* msg) noexcept {
    return put_VNodeMsgWrite(lIdx, lSize, msg);
}

namespace {
// The setting behind a property number of the control's interface; error 438 for none.
const SettingInfo& setting_of(int setting, bool text) {
    if (setting < 0 || setting >= static_cast<int>(kestrone::kSettingNames.size()) ||
        (setting >= kestrone::kFirstStringSetting) != text)
        vb::raise_error(vb::kNoSuchMember);
    return *find_setting(kestrone::kSettingNames[static_cast<std::size_t>(setting)]);
}
}  // namespace

HRESULT RovantaObject::get_IntegerSetting(int setting, std::int16_t* pVal) noexcept {
    return guarded_call(
        [&] { *pVal = core_->GetSetting(setting_of(setting, false)).as_integer(); });
}
HRESULT RovantaObject::put_IntegerSetting(int setting, std::int16_t RHS) noexcept {
    return guarded_call(
        [&] { core_->LetSetting(setting_of(setting, false), Variant::integer(RHS)); });
}
HRESULT RovantaObject::get_StringSetting(int setting, std::string* pVal) noexcept {
    return guarded_call([&] { *pVal = core_->GetSetting(setting_of(setting, true)).as_string(); });
}
HRESULT RovantaObject::put_StringSetting(int setting, const std::string& RHS) noexcept {
    return guarded_call(
        [&] { core_->LetSetting(setting_of(setting, true), Variant::string(RHS)); });
}
HRESULT RovantaObject::setupAPin(std::int32_t ArrayNumber, const std::string& PinName,
                                 std::int32_t PortAorB, bool MustUseThatPort,
                                 std::int32_t SamePortAsPinX, std::int32_t PinNum,
                                 bool MustUseThatPin, std::int32_t PinDirection,
                                 bool PinValue) noexcept {
    return guarded_call([&] {
        core_->setupAPin(ArrayNumber, PinName, PortAorB, MustUseThatPort, SamePortAsPinX, PinNum,
                         MustUseThatPin, PinDirection, PinValue);
    });
}

// ---- IKestroneInspection

HRESULT RovantaObject::GetField(const std::string& name, const std::int32_t* index,
                                const std::string& member, Variant* value) noexcept {
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
