#include "core/rovanta.h"

#include "platform/vb_numeric.h"

namespace rovanta {

Rovanta::Rovanta(platform::ModuleFacts app, const platform::Services& services)
    : App(std::move(app)), services_(services) {
    panel.set_sink(this);
    UserControl_Initialize();
}

void Rovanta::UserControl_Initialize() {
    bInitialised = false;
    VERSION_STRING = "v" + vb::cstr(std::int64_t{App.Major}) + "." + vb::cstr(std::int64_t{App.Minor});
    // Every later look at the code file depends on its name, so it stands before the first read.
    sCodeFile = App.EXEName + ".c";
    SeekHelpFile();

    bIsAnalogue = vb::text_to_boolean(GetIniKeyValue("Settings", "IsAnalogue", "0"));
    bMultipleAllowed = vb::text_to_boolean(GetIniKeyValue("Settings", "MultipleAllowed", "0"));
    sDescription = GetIniKeyValue("Settings", "Description", "default");

    // The description has to stand first: an error comment in place of a block names it.
    sInitialisationCode = GetCodeFromFile("InitialisationCode");
    sInterruptCode = GetCodeFromFile("InterruptCode");

    bHasExclusiveInts = false;
    lSupportsKeys = 0;
    BuildPinTable();

    for (const SettingInfo& s : kSettings)
        if (s.integer) settings.*s.integer = s.start;
    settings.sDummyString1.clear();
    settings.sDummyString2.clear();
    iADCMax = 255;

    // The sensor bars and the wheels are laid out by their own subsystems. SetSliderValue reads
    // iADCMax, so the settings stand first.
    for (Integer i = 0; i < 5; ++i) {
        LayoutSlider(i);
        lADCVal[static_cast<std::size_t>(i)] = 0;
        InitSlider(i);
        SetSliderValue(i, lADCVal[static_cast<std::size_t>(i)]);
    }
    iWheelPhase = {0, 0};
    iMotorSpeed = {0, 0};
    InitWheel(0);
    InitWheel(1);
    UpdateDirection();

    bSimulating = false;
}

void Rovanta::SeekHelpFile() {
    const std::string stem =
        App.Path + platform::kPathSeparator + "help" + platform::kPathSeparator + App.EXEName;
    std::string path = stem + ".hlp";
    if (!platform::file_exists(path)) {
        path = stem + ".chm";
        if (!platform::file_exists(path)) path.clear();
    }
    if (!path.empty())
        App.HelpFile = path;
    else
        MsgBox("Can't find " + App.EXEName + " help file");
}

}  // namespace rovanta
