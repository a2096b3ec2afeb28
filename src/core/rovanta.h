// Rovanta: the component object. It owns the whole state of the robot; each subsystem's
// operations live in its own folder.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/kt_macro.h"
#include "core/kt_pin.h"
#include "core/settings.h"
#include "core/vb_array.h"
#include "kestrone/store.h"
#include "kestrone/variant.h"
#include "panel/panel.h"
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

class Rovanta : private panel::PanelEvents {
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

    // --- simulation (simulation/*.cpp). Handlers get the caller's vParams as a const view,
    // which serves as their private copy: they can't change it.
    void SimMacroCall(Long lMacroID, const Variant& vParams, Long& pRetVal, Variant& pvAffected,
                      Long& pCycles);
    void SimMacroCall2(Long lMacroID, const Variant& vParams, Variant& pRetVal,
                       Variant& pvAffected, Long& pCycles);
    Long IsSimulating() const { return bSimulating ? -1 : 0; }
    void StartSimulation();
    void StopSimulation();
    void Refresh();
    void UserControl_Paint();
    // the handlers of macros 4 to 20; `slot` is the result of those that give one
    void SimDriveForwards(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimDriveBackwards(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimDriveStop(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimSpinLeft(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimSpinRight(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimSetMotors(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimWriteLeds(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimLedOn(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimLedOff(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadSwitch(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimWaitSwitch(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimPlayTone(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadMic(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadLdr(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimTestSideSensor(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadSideSensor(const Variant& vParams, Variant& pvAffected, Long& slot);
    void SimReadLine(const Variant& vParams, Variant& pvAffected, Long& slot);
    // wheels, heading, LEDs, inputs
    void InitWheel(Integer Index);
    void DrawWheel(Integer Index, Integer Phase);
    void Timer1_Timer(Integer Index);
    void UpdateDirection();
    void DrawLeds();
    void chkSwitchLeft_Click();
    void chkSwitchRight_Click();
    void chkLineLeft_Click();
    void chkLineRight_Click();

    // --- sensors (sensors/*.cpp)
    void LayoutSlider(Integer Index);
    void InitSlider(Integer Index);
    void SetSliderValue(Integer Index, Long Value);
    void ShowSliderValue(Integer Index);
    void updownADC_Change(Integer& Index);
    void SliderMouseEvent(Integer Index, float X, float Y);
    void frameADC_MouseDown(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void frameADC_MouseMove(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void imSlideBar_MouseDown(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void imSlideBar_MouseMove(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void imSlideBase_MouseDown(Integer& Index, Integer& Button, Integer& Shift, float& X,
                               float& Y);
    void imSlideBase_MouseMove(Integer& Index, Integer& Button, Integer& Shift, float& X,
                               float& Y);

    // --- the panel's own events, and any handler raised by name (simulation/panel_events.cpp)
    void UserControl_Resize();
    enum class EventLookup { Found, Unknown, BadCount };
    // Runs the handler NAME with `args`, converted as the event passes them.
    EventLookup RaiseEvent(std::string_view handler, std::vector<Variant>& args);
    // The container sites the panel: its first sizing.
    void SitePanel();
    // A message box or a tone holds the thread: timer ticks wait.
    bool HoldingThread() const { return services_.holding(); }

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
    // the panel and its elements (panel/)
    panel::Panel panel;

    // The platform: the module's facts, the message box and tone, file number 1.
    platform::ModuleFacts App;

  private:
    // What the panel's elements raise, to their handlers (simulation/panel_events.cpp).
    void panel_event(const panel::Element* element, panel::Event event,
                     const panel::MouseArgs* mouse) override;

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
