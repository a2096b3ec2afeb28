// Rovanta: the component object. It owns the whole state of the robot; each subsystem's
// operations live in its own folder.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/kt_macro.h"
#include "core/kt_pin.h"
#include "core/settings.h"
#include "core/vb_array.h"
#include "kestrone/store.h"
#include "kestrone/variant.h"
#include "platform/module_facts.h"
#include "platform/services.h"
#include "platform/text_file.h"

namespace rovanta {

using kestrone::Variant;
using Integer = std::int16_t;
using Long = std::int32_t;

// What the host tells of its target chip; only ever written.
struct TargetFacts {
    std::string TargetController;
    Long ClockSpeed = 0;
    std::string ADCCaptureCode;
    std::string ADCReadHighCode;
    std::string ADCReadLowCode;
    std::string ADCReadIntCode;
    Long PICAnalogueBits = 0;
};

class Rovanta {
  public:
    // Runs UserControl_Initialize, with its messages through `services`.
    Rovanta(platform::ModuleFacts app, const platform::Services& services);
    Rovanta(const Rovanta&) = delete;
    Rovanta& operator=(const Rovanta&) = delete;

    // --- start-up
    void UserControl_Initialize();

    // --- definition file
    std::string GetIniKeyValue(const std::string& lpApplicationName, const std::string& lpKeyName,
                               const std::string& lpDefault);
    std::string CodeFilePath() const;

    // --- pin table
    void setupAPin(Long ArrayNumber, const std::string& PinName, Long PortAorB,
                   bool MustUseThatPort, Long SamePortAsPinX, Long PinNum, bool MustUseThatPin,
                   Long PinDirection, bool PinValue);
    Long PinCount() const { return lPinCount; }
    std::string PinName(Long PinID) const;

    // --- macro table
    void KestroneVersion(Long RHS);
    void LoadMacros();
    Variant MacroNames() const;
    Long MacroIsFunction(Long lMacroID) const;
    Long MacroIsPrivate(Long lMacroID) const;
    Variant MacroParameters(Long lMacroID) const;

    // --- code text
    std::string GetCodeFromFile(const std::string& lpCodeName);
    std::string MacroCode(Long lMacroID);
    std::string DefinesCode() { return GetCodeFromFile("DefinesCode"); }
    Long HasInitialisation() const { return sInitialisationCode.empty() ? 0 : -1; }
    Long HasInterrupts() const { return sInterruptCode.empty() ? 0 : -1; }
    Long HasExclusiveInts() const { return bHasExclusiveInts ? -1 : 0; }
    Variant ExclusiveInterrupts() const;
    void MacroCodeOverride(std::string& pVal) const { ReplaceSettingTokens(pVal); }
    void ReplaceSettingTokens(std::string& text) const;
    void KtxFilename(const std::string& RHS);

    // --- settings (the properties of the control)
    Variant GetSetting(const SettingInfo& setting) const;
    void LetSetting(const SettingInfo& setting, const Variant& value);

    // --- host interface facts
    Long ComponentVersion() const { return Long{App.Major} * 256 + App.Minor; }
    Variant GeneralGet(Long lID);
    void WriteCustomImages(Long lID, const std::string& RHS);
    Variant VNodeMsgRead(Long lIdx, Long& lSize) const;

    // --- pin negotiation and simulated port access (host/pin_negotiation.cpp). The guarded
    // queries answer 0 for an id outside Pins; DesiredPort alone fails with error 9.
    Long DesiredPort(Long PinID) const;
    Long Direction(Long PinID) const;
    Long PortMandatory(Long PinID) const;
    Long SamePortAsID(Long PinID) const;
    Long DesiredBit(Long PinID) const;
    Long BitMandatory(Long PinID) const;
    Long Port(Long PinID) const;
    void LetPort(Long PinID, Long RHS);
    Long Bit(Long PinID) const;
    void LetBit(Long PinID, Long RHS);
    Long ConnectedOK() const;
    Long SimIODirection(Long PinID) const { return Direction(PinID); }
    const std::string& Description() const { return sDescription; }
    void SimReadPins(Variant& pVal);
    void SimWritePins(const Variant& NewVal);

    // --- stored settings (host/stored_settings.cpp): both walks go key by key and stop at
    // the first failure, raised as a Basic error or as StoreFailure for the store's own.
    void UserControl_WriteProperties(kestrone::IKestroneStore& PropBag);
    void UserControl_ReadProperties(kestrone::IKestroneStore& PropBag);

    // --- the object's state, in the order of declaration
    Integer iVersionMajor = 0;
    Integer iVersionMinor = 0;
    std::string VERSION_STRING;
    bool bSimulating = false;
    bool bHasExclusiveInts = false;
    VbArray<Long> lExclusiveInterrupts;
    bool bMultipleAllowed = false;
    bool bIsAnalogue = false;
    std::string sDescription;
    Long lSupportsKeys = 0;
    std::string sInitialisationCode;
    std::string sInterruptCode;
    TargetFacts target;
    VbArray<KTPin> Pins;
    Long lPinCount = 0;
    Long lMacroCount = 0;
    VbArray<KTMacro> Macros;
    Settings settings;
    // sensors
    std::array<Long, 5> lADCVal{};
    std::array<Long, 5> lSliderPos{};
    std::array<Variant, 5> vSliderMax{};
    std::array<Variant, 5> vSliderMin{};
    Integer iADCMax = 0;
    // motors and inputs
    std::array<Integer, 2> iWheelPhase{};
    std::array<Integer, 2> iMotorSpeed{};
    bool bSwitchLatch = false;
    std::array<Integer, 2> iWheelTravel{};
    std::array<Integer, 2> iWheelCentre{};
    // code file and host
    bool bInitialised = false;
    std::string sCodeFile;
    std::string sKtxFile;
    bool bPinsChanged = false;

    // The platform: the module's facts, the message box and tone, file number 1.
    platform::ModuleFacts App;

  private:
    void MsgBox(const std::string& text) const { services_.message_box(text); }
    void SeekHelpFile();
    void BuildPinTable();
    void ReportMissingCodeFile();

    const platform::Services& services_;
    platform::InputFile file1_;
};

// A Boolean as the host receives it: True is -1.
inline Long host_boolean(bool b) {
    return b ? -1 : 0;
}

}  // namespace rovanta
