// The inspection interface reads the object's fields by the names they have always had, wherever
// the subsystem that owns each one keeps it.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host_fixture.h"

namespace {

using kestrone::Variant;

struct Field {
    const char* name;
    std::optional<std::int32_t> index;
    const char* member;
    std::function<void(rovanta::Rovanta&)> change;
};

// One change to each field, to a value that its start-up value is not.
const std::vector<Field>& fields() {
    using R = rovanta::Rovanta;
    static const std::vector<Field> all = {
        {"iVersionMajor", {}, "", [](R& r) { r.link.iVersionMajor = 301; }},
        {"iVersionMinor", {}, "", [](R& r) { r.link.iVersionMinor = 302; }},
        {"VERSION_STRING", {}, "", [](R& r) { r.link.VERSION_STRING = "v9.4"; }},
        {"bSimulating", {}, "", [](R& r) { r.run.bSimulating = true; }},
        {"bHasExclusiveInts", {}, "", [](R& r) { r.definition.bHasExclusiveInts = true; }},
        {"lExclusiveInterrupts",
         {},
         "",
         [](R& r) { r.definition.lExclusiveInterrupts.redim(2, 3); }},
        {"bMultipleAllowed", {}, "", [](R& r) { r.definition.bMultipleAllowed = true; }},
        {"bIsAnalogue", {}, "", [](R& r) { r.definition.bIsAnalogue = true; }},
        {"sDescription", {}, "", [](R& r) { r.definition.sDescription = "other robot"; }},
        {"lSupportsKeys", {}, "", [](R& r) { r.definition.lSupportsKeys = 70001; }},
        {"sInitialisationCode", {}, "", [](R& r) { r.definition.sInitialisationCode = "i();"; }},
        {"sInterruptCode", {}, "", [](R& r) { r.definition.sInterruptCode = "q();"; }},
        {"TargetController", {}, "", [](R& r) { r.target.TargetController = "PIC16F88"; }},
        {"ClockSpeed", {}, "", [](R& r) { r.target.ClockSpeed = 19660800; }},
        {"ADCCaptureCode", {}, "", [](R& r) { r.target.ADCCaptureCode = "cap"; }},
        {"ADCReadHighCode", {}, "", [](R& r) { r.target.ADCReadHighCode = "hi"; }},
        {"ADCReadLowCode", {}, "", [](R& r) { r.target.ADCReadLowCode = "lo"; }},
        {"ADCReadIntCode", {}, "", [](R& r) { r.target.ADCReadIntCode = "int"; }},
        {"PICAnalogueBits", {}, "", [](R& r) { r.target.PICAnalogueBits = 10; }},
        {"Pins", 2, "Bit", [](R& r) { r.pin_table.Pins(2).Bit = 6; }},
        {"lPinCount", {}, "", [](R& r) { r.pin_table.lPinCount = 41; }},
        {"lMacroCount", {}, "", [](R& r) { r.macro_table.lMacroCount = 43; }},
        {"lADCVal", 3, "", [](R& r) { r.sensors.lADCVal[3] = 197; }},
        {"lSliderPos", 1, "", [](R& r) { r.sensors.lSliderPos[1] = -17; }},
        {"vSliderMax", 4, "", [](R& r) { r.sensors.vSliderMax[4] = Variant::single(12.5f); }},
        {"vSliderMin", 0, "", [](R& r) { r.sensors.vSliderMin[0] = Variant::single(-2.25f); }},
        {"iADCMax", {}, "", [](R& r) { r.sensors.iADCMax = 1023; }},
        {"iWheelPhase", 1, "", [](R& r) { r.motors.iWheelPhase[1] = 7; }},
        {"iMotorSpeed", 0, "", [](R& r) { r.motors.iMotorSpeed[0] = -130; }},
        {"bSwitchLatch", {}, "", [](R& r) { r.run.bSwitchLatch = true; }},
        {"iWheelTravel", 0, "", [](R& r) { r.motors.iWheelTravel[0] = 901; }},
        {"iWheelCentre", 1, "", [](R& r) { r.motors.iWheelCentre[1] = 802; }},
        {"bInitialised", {}, "", [](R& r) { r.link.bInitialised = true; }},
        {"sCodeFile", {}, "", [](R& r) { r.link.sCodeFile = "Other.c"; }},
        {"sKtxFile", {}, "", [](R& r) { r.link.sKtxFile = "x.ktx"; }},
        {"bPinsChanged", {}, "", [](R& r) { r.link.bPinsChanged = true; }},
        {"HelpFile", {}, "", [](R& r) { r.App.HelpFile = "elsewhere.chm"; }},
        {"iMotorBias", {}, "", [](R& r) { r.settings.iMotorBias = -25; }},
        {"sDummyString2", {}, "", [](R& r) { r.settings.sDummyString2 = "two"; }},
    };
    return all;
}

std::vector<Variant> read_all(host_testing::Robot& robot) {
    std::vector<Variant> values;
    for (const Field& f : fields()) {
        Variant v;
        const std::int32_t* index = f.index ? &*f.index : nullptr;
        EXPECT_EQ(robot.object().GetField(f.name, index, f.member, &v), kestrone::S_OK) << f.name;
        values.push_back(v);
    }
    return values;
}

// A change to one field shows under its own name and under no other.
TEST(FieldTable, EachNameReadsItsOwnField) {
    host_testing::Robot robot(host_testing::kThreePins);
    const std::vector<Field>& all = fields();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::vector<Variant> before = read_all(robot);
        all[i].change(robot.core());
        const std::vector<Variant> after = read_all(robot);
        for (std::size_t j = 0; j < all.size(); ++j) {
            if (j == i)
                EXPECT_NE(after[j], before[j]) << all[i].name << " did not change";
            else
                EXPECT_EQ(after[j], before[j]) << all[j].name << " changed with " << all[i].name;
        }
    }
}

}  // namespace
