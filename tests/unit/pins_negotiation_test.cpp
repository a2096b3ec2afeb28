// Pin negotiation and the simulated levels, through the host's interface.
#include <gtest/gtest.h>

#include <functional>

#include "host_fixture.h"
#include "platform/vb_numeric.h"

namespace {

using host_testing::Robot;
using kestrone::HRESULT;
using kestrone::Variant;
using kestrone::VarType;
using I = kestrone::IKestroneComponentV5;
using PinQuery = HRESULT (I::*)(std::int32_t, std::int32_t*) noexcept;

std::int32_t ask(Robot& robot, PinQuery query, std::int32_t id) {
    std::int32_t value = 12345;
    EXPECT_EQ((robot.object().*query)(id, &value), kestrone::S_OK);
    return value;
}

struct QueryCase {
    const char* name;
    PinQuery query;
    std::int32_t pin0, pin1, pin2;
};

// Every guarded query, on each pin and past both ends of the table.
TEST(PinQueries, AnswerFromThePinTableAndZeroOutsideIt) {
    const QueryCase cases[] = {
        {"Port", &I::get_Port, 1, -1, 2},
        {"Bit", &I::get_Bit, 5, 0, 7},
        {"DesiredBit", &I::get_DesiredBit, 5, 0, 7},
        {"Direction", &I::get_Direction, 1, 2, 3},
        {"SimIODirection", &I::get_SimIODirection, 1, 2, 3},
        {"PortMandatory", &I::get_PortMandatory, -1, 0, 0},
        {"BitMandatory", &I::get_BitMandatory, -1, 0, 0},
        {"SamePortAsID", &I::get_SamePortAsID, 0, 0, 1},
    };
    Robot robot(host_testing::kThreePins);
    for (const QueryCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ask(robot, c.query, 0), c.pin0);
        EXPECT_EQ(ask(robot, c.query, 1), c.pin1);
        EXPECT_EQ(ask(robot, c.query, 2), c.pin2);
        EXPECT_EQ(ask(robot, c.query, 3), 0);
        EXPECT_EQ(ask(robot, c.query, -1), 0);
        EXPECT_EQ(ask(robot, c.query, INT32_MIN), 0);
    }
    EXPECT_TRUE(robot.services.messages.empty());
}

TEST(PinQueries, DesiredPortAloneFailsOutsideTheTable) {
    Robot robot(host_testing::kThreePins);
    EXPECT_EQ(ask(robot, &I::get_DesiredPort, 2), 2);
    for (std::int32_t id : {-1, 3, INT32_MAX}) {
        std::int32_t value = 77;
        EXPECT_EQ(robot.object().get_DesiredPort(id, &value), kestrone::basic_error_status(9));
        EXPECT_EQ(value, 77);
    }
    EXPECT_TRUE(robot.services.messages.empty());
}

TEST(PinQueries, TheFallbackPinAnswersForIdZero) {
    Robot robot(host_testing::kNoPins);
    EXPECT_EQ(ask(robot, &I::get_Direction, 0), 2);
    EXPECT_EQ(ask(robot, &I::get_SamePortAsID, 0), -1);
    EXPECT_EQ(ask(robot, &I::get_Port, 0), 0);
    EXPECT_EQ(ask(robot, &I::get_Direction, 1), 0);
    std::int32_t ok = 0;
    ASSERT_EQ(robot.object().get_ConnectedOK(&ok), kestrone::S_OK);
    EXPECT_EQ(ok, -1);
    std::string text;
    ASSERT_EQ(robot.object().get_Description(&text), kestrone::S_OK);
    EXPECT_EQ(text, "Bare");
}

TEST(ConnectedOK, AnyUnplacedPinMakesItFalse) {
    Robot unplaced(host_testing::kThreePins);
    Robot placed(host_testing::kTwoPlacedPins);
    std::int32_t a = 1, b = 1;
    ASSERT_EQ(unplaced.object().get_ConnectedOK(&a), kestrone::S_OK);
    ASSERT_EQ(placed.object().get_ConnectedOK(&b), kestrone::S_OK);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, -1);
    // A -1 in Bit alone counts as well.
    placed.core().pin_table.Pins(1).Bit = -1;
    ASSERT_EQ(placed.object().get_ConnectedOK(&b), kestrone::S_OK);
    EXPECT_EQ(b, 0);
}

std::vector<bool> levels(Robot& robot) {
    std::vector<bool> out;
    for (const rovanta::KTPin& p : robot.core().pin_table.Pins.items())
        out.push_back(p.SimValue);
    return out;
}

Variant typed(VarType type, std::int32_t lower, std::vector<Variant> items) {
    return Variant::array(type, lower, std::move(items));
}

struct WriteCase {
    const char* name;
    Variant value;
    HRESULT status;
    std::vector<bool> after;  // levels of the three pins afterwards (all start False but C)
};

// Every kind of array a host may pass, and the ways an argument can fail part way.
TEST(SimWritePins, TakesEveryArrayKindAndStopsAtTheFirstBadElement) {
    using V = Variant;
    const HRESULT ok = kestrone::S_OK, mismatch = kestrone::basic_error_status(13),
                  subscript = kestrone::basic_error_status(9);
    const WriteCase cases[] = {
        // Numbers of every width: one too big for 16 bits is still not 0.
        {"numbers",
         typed(VarType::Variant, 0, {V::integer(1), V::double_(0), V::long_(-70000)}),
         ok,
         {true, false, true}},
        {"Single",
         typed(VarType::Single, 0, {V::single(0.25f), V::single(0), V::single(-0.0f)}),
         ok,
         {true, false, false}},
        {"String",
         typed(VarType::String, 0, {V::string("True"), V::string(" 0 "), V::string("2")}),
         ok,
         {true, false, true}},
        {"Byte",
         typed(VarType::Byte, 0, {V::byte(0), V::byte(255), V::byte(1)}),
         ok,
         {false, true, true}},
        {"Variant",
         typed(VarType::Variant, 0, {V::string("false"), V::integer(4), V()}),
         ok,
         {false, true, false}},
        {"longer than the table",
         typed(VarType::Integer, 0, {V::integer(1), V::integer(1), V::integer(1), V::string("x")}),
         ok,
         {true, true, true}},
        // Failures: the pins before the bad element keep their new levels.
        {"not an array", V::integer(1), mismatch, {false, false, true}},
        {"empty", V(), mismatch, {false, false, true}},
        {"too short",
         typed(VarType::Boolean, 0, {V::boolean(true), V::boolean(true)}),
         subscript,
         {true, true, true}},
        {"empty array", typed(VarType::Variant, 0, {}), subscript, {false, false, true}},
        {"lower bound 1",
         typed(VarType::Integer, 1, {V::integer(1), V::integer(1), V::integer(1)}),
         subscript,
         {false, false, true}},
        {"text that is no number",
         typed(VarType::String, 0, {V::string("1"), V::string("yes"), V::string("1")}),
         mismatch,
         {true, false, true}},
        {"an array inside",
         typed(VarType::Variant, 0, {V::integer(1), typed(VarType::Integer, 0, {}), V::integer(0)}),
         mismatch,
         {true, false, true}},
    };
    for (const WriteCase& c : cases) {
        SCOPED_TRACE(c.name);
        Robot robot(host_testing::kThreePins);
        EXPECT_EQ(robot.object().SimWritePins(c.value), c.status);
        EXPECT_EQ(levels(robot), c.after);
        EXPECT_EQ(robot.core().link.bPinsChanged, c.status == ok);
    }
}

TEST(SimPins, WithNoPinsTheArgumentIsLeftAloneAndTheFlagStillRises) {
    Robot robot(host_testing::kNoPins);
    Variant keep = Variant::string("as passed");
    ASSERT_EQ(robot.object().SimReadPins(&keep), kestrone::S_OK);
    EXPECT_EQ(keep, Variant::string("as passed"));
    EXPECT_TRUE(robot.core().link.bPinsChanged);
    robot.core().link.bPinsChanged = false;
    EXPECT_EQ(robot.object().SimWritePins(Variant::string("not looked at")), kestrone::S_OK);
    EXPECT_TRUE(robot.core().link.bPinsChanged);
    EXPECT_FALSE(robot.core().pin_table.Pins(0).SimValue);
}

}  // namespace
