// A module that numbers its macros up to the last 32-bit id, or reports absurd counts: the host's
// report lists what can be named and counts the rest, and no program is checked against such a
// table.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <sstream>

#include "fake_component.h"
#include "info_report.h"
#include "macro_table.h"

namespace {

using program_testing::FakeComponent;
using testing::EndsWith;
using testing::HasSubstr;

std::string macro_report(FakeComponent& c) {
    kestrone::Variant names;
    c.get_MacroNames(&names);
    std::ostringstream out;
    host::write_macros(c, names.as_array(), out);
    return out.str();
}

TEST(ModuleLists, IdsPastTheLastAndAbsurdCountsEndTheListing) {
    FakeComponent top(FakeComponent::robot_macros());  // 21 macros
    top.first_id = INT32_MAX - 1;
    EXPECT_THAT(macro_report(top),
                EndsWith("  2147483646  int ReadAnalogue(char P1)  [private]\n"
                         "  2147483647  void WaitForStart()\n"
                         "  ... and 19 more past the id 2147483647, which no call can name\n"));
    std::string error;
    EXPECT_FALSE(kflow::MacroTable::read(top, &error));
    EXPECT_THAT(error, HasSubstr("past 2147483647"));
    top.first_id = INT32_MAX - 20;  // the last macro takes the last id
    EXPECT_TRUE(kflow::MacroTable::read(top, &error));
    EXPECT_THAT(macro_report(top), EndsWith("  2147483647  char ReadLine(char P1)\n"));

    FakeComponent crowd(
        std::vector<program_testing::FakeMacro>(host::kMostListed + 5, {"M", "void", {}, false}));
    crowd.pin_count = INT32_MAX;
    const std::string macros = macro_report(crowd);
    EXPECT_THAT(macros, EndsWith("  999  void M()\n  ... and 5 more, not listed: no component "
                                 "has so many\n"));
    std::ostringstream pins;
    host::write_pins(crowd, pins);
    EXPECT_THAT(pins.str(), EndsWith("... and 2147482647 more, not listed: no component has so "
                                     "many\n"));
}

}  // namespace
