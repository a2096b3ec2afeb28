#include "core/rovanta_core.h"

#include "platform/vb_numeric.h"

namespace rovanta {

RovantaCore::RovantaCore(platform::ModuleFacts app, const platform::Services& services)
    : App(std::move(app)), services_(services) {}

void RovantaCore::StartUp() {
    link.bInitialised = false;
    link.VERSION_STRING =
        "v" + vb::cstr(std::int64_t{App.Major}) + "." + vb::cstr(std::int64_t{App.Minor});
    // Every later look at the code file depends on its name, so it stands before the first read.
    link.sCodeFile = App.EXEName + ".c";
    SeekHelpFile();

    definition.bIsAnalogue = vb::text_to_boolean(GetIniKeyValue("Settings", "IsAnalogue", "0"));
    definition.bMultipleAllowed =
        vb::text_to_boolean(GetIniKeyValue("Settings", "MultipleAllowed", "0"));
    definition.sDescription = GetIniKeyValue("Settings", "Description", "default");

    // The description has to stand first: an error comment in place of a block names it.
    definition.sInitialisationCode = GetCodeFromFile("InitialisationCode");
    definition.sInterruptCode = GetCodeFromFile("InterruptCode");

    definition.bHasExclusiveInts = false;
    definition.lSupportsKeys = 0;
    BuildPinTable();

    // Written directly: bReturnInt's change of full scale is not a step of the start-up.
    for (const SettingInfo& s : kSettings)
        if (s.integer) settings.*s.integer = s.start;
    settings.sDummyString1.clear();
    settings.sDummyString2.clear();
}

void RovantaCore::SeekHelpFile() {
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
