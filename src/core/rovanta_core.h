// The core of the Rovanta object: its link to the code file and the host, the definition, the pin
// and macro tables, the settings and the panel, with the operations on them. The whole object
// (host/rovanta.h) builds on it and adds the sensors and the simulation; the core never calls
// up into them, so its own part of the start-up stands alone.
#pragma once

#include <string>

#include "core/core_state.h"
#include "core/settings.h"
#include "kestrone/variant.h"
#include "panel/panel_model.h"
#include "platform/module_facts.h"
#include "platform/platform_services.h"
#include "platform/text_file.h"

namespace rovanta {

using kestrone::Variant;

class RovantaCore {
  public:
    RovantaCore(const RovantaCore&) = delete;
    RovantaCore& operator=(const RovantaCore&) = delete;

    // --- definition file
    std::string GetIniKeyValue(const std::string& lpApplicationName, const std::string& lpKeyName,
                               const std::string& lpDefault);
    std::string CodeFilePath() const;

    // --- pin table
    void setupAPin(Long ArrayNumber, const std::string& PinName, Long PortAorB,
                   bool MustUseThatPort, Long SamePortAsPinX, Long PinNum, bool MustUseThatPin,
                   Long PinDirection, bool PinValue);
    Long PinCount() const { return pin_table.lPinCount; }
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
    Long HasInitialisation() const { return definition.sInitialisationCode.empty() ? 0 : -1; }
    Long HasInterrupts() const { return definition.sInterruptCode.empty() ? 0 : -1; }
    Long HasExclusiveInts() const { return definition.bHasExclusiveInts ? -1 : 0; }
    Variant ExclusiveInterrupts() const;
    void MacroCodeOverride(std::string& pVal) const { ReplaceSettingTokens(pVal); }
    void ReplaceSettingTokens(std::string& text) const;
    void KtxFilename(const std::string& RHS);

    // --- settings: a read gives the field (a write is the whole object's: it moves the sensors)
    Variant GetSetting(const SettingInfo& setting) const { return get_setting(settings, setting); }

    Long ComponentVersion() const { return Long{App.Major} * 256 + App.Minor; }
    const std::string& Description() const { return definition.sDescription; }

    // A message box or a tone holds the thread: timer ticks wait.
    bool HoldingThread() const { return services_.holding(); }
    const platform::Services& services() const { return services_; }
    void MsgBox(const std::string& text) const { services_.message_box(text); }

    // --- the core's state, by subsystem
    HostLink link;
    Definition definition;
    TargetFacts target;
    PinTable pin_table;
    MacroTable macro_table;
    Settings settings;
    // the panel and its elements (panel/)
    panel::Panel panel;

    // The platform: the module's facts, the message box and tone, file number 1.
    platform::ModuleFacts App;

  protected:
    // Nothing runs yet: the whole object runs the start-up once all its parts stand.
    RovantaCore(platform::ModuleFacts app, const platform::Services& services);
    ~RovantaCore() = default;

    // The core's steps of UserControl_Initialize: everything up to the settings' start values.
    void StartUp();

  private:
    void SeekHelpFile();
    void BuildPinTable();
    void ReportMissingCodeFile();

    const platform::Services& services_;
    platform::InputFile file1_;
};

}  // namespace rovanta
