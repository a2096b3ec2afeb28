// The host's interface: each operation behind its boundary, with the pointers already checked.
#include "host/rovanta_object.h"

namespace rovanta {

void RovantaObject::query_MultipleAllowed(std::int32_t& pVal) {
    pVal = host_boolean(core_->definition.bMultipleAllowed);
}
void RovantaObject::query_MacroNames(Variant& pVal) {
    pVal = core_->MacroNames();
}
void RovantaObject::query_MacroIsFunction(std::int32_t lMacroID, std::int32_t& pVal) {
    pVal = core_->MacroIsFunction(lMacroID);
}
void RovantaObject::query_MacroParameters(std::int32_t lMacroID, Variant& pVal) {
    pVal = core_->MacroParameters(lMacroID);
}
void RovantaObject::query_MacroCode(std::int32_t lMacroID, std::string& pVal) {
    pVal = core_->MacroCode(lMacroID);
}
void RovantaObject::query_IsSimulating(std::int32_t& pVal) {
    pVal = core_->simulation.IsSimulating();
}
void RovantaObject::query_PinCount(std::int32_t& pVal) {
    pVal = core_->PinCount();
}
void RovantaObject::query_HasInitialisation(std::int32_t& pVal) {
    pVal = core_->HasInitialisation();
}
void RovantaObject::query_HasInterrupts(std::int32_t& pVal) {
    pVal = core_->HasInterrupts();
}
void RovantaObject::query_HasExclusiveInts(std::int32_t& pVal) {
    pVal = core_->HasExclusiveInts();
}
void RovantaObject::query_InitialisationCode(std::string& pVal) {
    pVal = core_->definition.sInitialisationCode;
}
void RovantaObject::query_InterruptCode(std::string& pVal) {
    pVal = core_->definition.sInterruptCode;
}
void RovantaObject::query_ExclusiveInterrupts(Variant& pVal) {
    pVal = core_->ExclusiveInterrupts();
}
void RovantaObject::query_PinName(std::int32_t PinID, std::string& pVal) {
    pVal = core_->PinName(PinID);
}
void RovantaObject::query_DesiredPort(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->DesiredPort(PinID);
}
void RovantaObject::query_Direction(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->Direction(PinID);
}
void RovantaObject::query_PortMandatory(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->PortMandatory(PinID);
}
void RovantaObject::query_SamePortAsID(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->SamePortAsID(PinID);
}
void RovantaObject::query_Description(std::string& pVal) {
    pVal = core_->Description();
}
void RovantaObject::query_DesiredBit(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->DesiredBit(PinID);
}
void RovantaObject::query_BitMandatory(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->BitMandatory(PinID);
}
void RovantaObject::query_Port(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->Port(PinID);
}
void RovantaObject::set_Port(std::int32_t PinID, std::int32_t RHS) {
    core_->LetPort(PinID, RHS);
}
void RovantaObject::query_Bit(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->Bit(PinID);
}
void RovantaObject::set_Bit(std::int32_t PinID, std::int32_t RHS) {
    core_->LetBit(PinID, RHS);
}
void RovantaObject::query_ConnectedOK(std::int32_t& pVal) {
    pVal = core_->ConnectedOK();
}
void RovantaObject::call_StartSimulation() {
    core_->simulation.StartSimulation();
}
void RovantaObject::call_StopSimulation() {
    core_->simulation.StopSimulation();
}
void RovantaObject::query_SimIODirection(std::int32_t PinID, std::int32_t& pVal) {
    pVal = core_->SimIODirection(PinID);
}
void RovantaObject::call_SimReadPins(Variant& pVal) {
    core_->SimReadPins(pVal);
}
void RovantaObject::call_SimWritePins(const Variant& NewVal) {
    core_->SimWritePins(NewVal);
}
void RovantaObject::call_SimMacroCall(std::int32_t lMacroID, const Variant& vParams,
                                      std::int32_t& pRetVal, Variant& pvAffected,
                                      std::int32_t& pCycles) {
    core_->simulation.SimMacroCall(lMacroID, vParams, pRetVal, pvAffected, pCycles);
}
// This component takes no keys from the host.
void RovantaObject::call_KeyDown(std::int32_t) {}
void RovantaObject::call_KeyUp(std::int32_t) {}
void RovantaObject::query_SupportsKeys(std::int32_t& pVal) {
    pVal = core_->definition.lSupportsKeys;
}
void RovantaObject::query_IsAnalogue(std::int32_t& pVal) {
    pVal = host_boolean(core_->definition.bIsAnalogue);
}
void RovantaObject::query_MacroIsPrivate(std::int32_t lMacroID, std::int32_t& pVal) {
    pVal = core_->MacroIsPrivate(lMacroID);
}
// The target facts are only ever written.
void RovantaObject::set_ClockSpeed(std::int32_t RHS) {
    core_->target.ClockSpeed = RHS;
}
void RovantaObject::set_PICAnalogueBits(std::int32_t RHS) {
    core_->target.PICAnalogueBits = RHS;
}
void RovantaObject::set_ADCCaptureCode(const std::string& RHS) {
    core_->target.ADCCaptureCode = RHS;
}
void RovantaObject::set_ADCReadHighCode(const std::string& RHS) {
    core_->target.ADCReadHighCode = RHS;
}
void RovantaObject::set_ADCReadLowCode(const std::string& RHS) {
    core_->target.ADCReadLowCode = RHS;
}
void RovantaObject::set_TargetController(const std::string& RHS) {
    core_->target.TargetController = RHS;
}
void RovantaObject::set_ADCReadIntCode(const std::string& RHS) {
    core_->target.ADCReadIntCode = RHS;
}
void RovantaObject::set_KestroneVersion(std::int32_t RHS) {
    core_->KestroneVersion(RHS);
}
void RovantaObject::query_ComponentVersion(std::int32_t& pVal) {
    pVal = core_->ComponentVersion();
}
// The general-purpose calls do nothing; their values stay as they are.
void RovantaObject::call_GeneralMethod(std::int32_t, Variant&) {}
void RovantaObject::set_GeneralPut(std::int32_t, Variant&) {}
void RovantaObject::query_GeneralGet(std::int32_t lID, Variant& pVal) {
    pVal = core_->GeneralGet(lID);
}
void RovantaObject::set_KtxFilename(const std::string& RHS) {
    core_->KtxFilename(RHS);
}
// This component has no nodes.
void RovantaObject::query_VNodeCount(std::int32_t& pVal) {
    pVal = 0;
}
void RovantaObject::query_VNodeProtocol(std::int32_t, std::int32_t& pVal) {
    pVal = 0;
}
void RovantaObject::query_VNodeName(std::int32_t, std::string& pVal) {
    pVal.clear();
}
void RovantaObject::query_VNodeMsgRead(std::int32_t lIdx, std::int32_t& lSize, Variant& pVal) {
    pVal = core_->VNodeMsgRead(lIdx, lSize);
}
void RovantaObject::set_VNodeMsgWrite(std::int32_t, std::int32_t, Variant&) {}
void RovantaObject::call_MacroCodeOverride(std::string& pVal) {
    core_->MacroCodeOverride(pVal);
}
void RovantaObject::query_CodeFilename(std::string& pVal) {
    pVal = core_->CodeFilePath();
}
void RovantaObject::query_DefinesCode(std::string& pVal) {
    pVal = core_->DefinesCode();
}
void RovantaObject::query_ReadCustomImages(std::int32_t, std::string& pVal) {
    pVal.clear();
}
void RovantaObject::set_WriteCustomImages(std::int32_t lID, const std::string& RHS) {
    core_->WriteCustomImages(lID, RHS);
}
void RovantaObject::call_SimMacroCall2(std::int32_t lMacroID, const Variant& vParams,
                                       Variant& pRetVal, Variant& pvAffected,
                                       std::int32_t& pCycles) {
    core_->simulation.SimMacroCall2(lMacroID, vParams, pRetVal, pvAffected, pCycles);
}
void RovantaObject::call_Refresh() {
    core_->simulation.Refresh();
}

}  // namespace rovanta
