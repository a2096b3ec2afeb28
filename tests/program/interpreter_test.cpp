// The interpreter where faults hide: 16-bit wrapping, byte storage, C's division and shifts,
// precedence, short-circuits, counts evaluated once, else-if chains, stop, the step budget, a
// division by 0, and what reaches the component.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kestrone/status.h"
#include "program_support.h"

namespace {

using kflow::RunOutcome;
using program_testing::run_program;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::int32_t kDriveForwards = 4, kDriveStop = 6, kSetMotors = 9, kLedOn = 11,
                       kReadSwitch = 13, kReadLdr = 17;

// Runs a program that must pass its checks and finish.
std::unique_ptr<program_testing::Run> finished(const std::string& source) {
    auto run = run_program(source);
    EXPECT_TRUE(run->checked.program.has_value())
        << (run->checked.faults.empty() ? "" : run->checked.faults.front().text);
    EXPECT_EQ(run->outcome.end, RunOutcome::End::Finished) << run->outcome.message;
    return run;
}

TEST(Arithmetic, WrapsAt16BitsOnBothSides) {
    const auto run = finished(
        "int up = 32767 + 1\n"
        "int down = -32767 - 2\n"
        "int square = 200 * 200\n"
        "int lowest = -(0x8000)\n"
        "int pattern = 40000\n");
    EXPECT_EQ(run->var("up"), -32768);
    EXPECT_EQ(run->var("down"), 32767);
    EXPECT_EQ(run->var("square"), -25536);
    EXPECT_EQ(run->var("lowest"), -32768);
    EXPECT_EQ(run->var("pattern"), -25536);
}

TEST(Arithmetic, ByteKeepsItsLow8BitsButExpressionsDoNot) {
    const auto run = finished(
        "byte a = 300\n"
        "byte b = -1\n"
        "byte c = 255\n"
        "c = c + 1\n"
        "int sum = a + b\n");
    EXPECT_EQ(run->var("a"), 44);
    EXPECT_EQ(run->var("b"), 255);
    EXPECT_EQ(run->var("c"), 0);
    EXPECT_EQ(run->var("sum"), 299);
}

TEST(Arithmetic, DivisionAndRemainderAreCs) {
    const auto run = finished(
        "int q = -7 / 2\n"
        "int r = -7 % 2\n"
        "int s = 7 % -2\n"
        "int t = -32768 / -1\n"
        "int u = -32768 % -1\n");
    EXPECT_EQ(run->var("q"), -3);
    EXPECT_EQ(run->var("r"), -1);
    EXPECT_EQ(run->var("s"), 1);
    EXPECT_EQ(run->var("t"), -32768);
    EXPECT_EQ(run->var("u"), 0);
}

TEST(Arithmetic, ShiftsKeepTheSignAndEmptyFrom16On) {
    const auto run = finished(
        "int a = 1 << 15\n"
        "int b = 1 << 16\n"
        "int c = -7 >> 1\n"
        "int d = -1 >> 20\n"
        "int e = 0x4000 >> -1\n"
        "int f = 0x2A << 3\n"
        "int g = 0x8000 >> 15\n");
    EXPECT_EQ(run->var("a"), -32768);
    EXPECT_EQ(run->var("b"), 0);
    EXPECT_EQ(run->var("c"), -4);
    EXPECT_EQ(run->var("d"), -1);
    EXPECT_EQ(run->var("e"), 0);
    EXPECT_EQ(run->var("f"), 336);
    EXPECT_EQ(run->var("g"), -1);
}

TEST(Arithmetic, PrecedenceAndAssociativityAreCs) {
    const auto run = finished(
        "int a = 2 + 3 * 4\n"
        "int b = 6 & 3 == 3\n"
        "int c = 1 << 2 + 1\n"
        "int d = 1 | 2 ^ 3 & 5\n"
        "int e = 10 - 4 - 3\n"
        "int f = 100 / 10 / 5\n"
        "int g = 5 > 3 > 1\n"
        "int h = !0 + ~0 * -2\n"
        "int i = (2 + 3) * 4\n"
        "int j = 1 || 0 && 0\n"
        "int k = 16 >> 2 + 1\n");
    EXPECT_EQ(run->var("a"), 14);
    EXPECT_EQ(run->var("b"), 0);
    EXPECT_EQ(run->var("c"), 8);
    EXPECT_EQ(run->var("d"), 3);
    EXPECT_EQ(run->var("e"), 3);
    EXPECT_EQ(run->var("f"), 2);
    EXPECT_EQ(run->var("g"), 0);
    EXPECT_EQ(run->var("h"), 3);
    EXPECT_EQ(run->var("i"), 20);
    EXPECT_EQ(run->var("j"), 1);
    EXPECT_EQ(run->var("k"), 2);
}

TEST(Control, AndAndOrLeaveTheRightSideUncalledWhenTheLeftDecides) {
    const auto run = finished(
        "int a = 0 && ReadLdr()\n"
        "int b = 7 || ReadLdr()\n"
        "int c = 1 && ReadLdr()\n"
        "int d = 0 || ReadSwitch(1)\n");
    EXPECT_EQ(run->args_of(kReadLdr).size(), 1u);
    EXPECT_EQ(run->args_of(kReadSwitch).size(), 1u);
    EXPECT_EQ(run->var("a"), 0);
    EXPECT_EQ(run->var("b"), 1);
    EXPECT_EQ(run->var("c"), 1);  // the result 11 as a truth value
    EXPECT_EQ(run->var("d"), 1);
}

TEST(Control, RepeatCountsAreTakenOnceAndReadAsUnsigned) {
    auto run = program_testing::run_program(
        "int n = 3\n"
        "int count = 0\n"
        "repeat n\n"
        "    n = n + 1\n"
        "    count = count + 1\n"
        "end\n"
        "int inner = 0\n"
        "repeat ReadLdr()\n"
        "    repeat 3\n"
        "        inner = inner + 1\n"
        "    end\n"
        "end\n"
        "repeat 0\n"
        "    stop\n"
        "end\n");
    ASSERT_TRUE(run->checked.program);
    EXPECT_EQ(run->var("count"), 3);
    EXPECT_EQ(run->var("n"), 6);
    EXPECT_EQ(run->args_of(kReadLdr).size(), 1u);
    EXPECT_EQ(run->var("inner"), 11 * 3);  // the fake's first result is 11

    const auto wide = finished("int k = 0\nrepeat -32768\n    k = k + 1\nend\n");
    EXPECT_EQ(wide->var("k"), -32768);  // 32768 passes, as an unsigned count
}

TEST(Control, ElseIfChainTakesTheFirstArmThatHolds) {
    const auto run = finished(
        "int x = 0\n"
        "int seen = 0\n"
        "repeat 4\n"
        "    if x == 0\n"
        "        seen = seen + 1\n"
        "    else if x == 1\n"
        "        seen = seen + 10\n"
        "    else if x == 1\n"
        "        seen = seen + 1000\n"
        "    else\n"
        "        seen = seen + 100\n"
        "    end\n"
        "    x = x + 1\n"
        "end\n");
    EXPECT_EQ(run->var("seen"), 211);
}

TEST(Control, AnIfOnTheFirstLineJumpsPastItsArms) {
    const auto run = finished(
        "if ReadSwitch(0) == 0\n"  // the fake's first result is 11
        "    LedOn(1)\n"
        "else if 0\n"
        "    LedOn(2)\n"
        "end\n"
        "LedOn(3)\n");
    EXPECT_THAT(run->args_of(kLedOn), ElementsAre(ElementsAre(3)));
}

TEST(Control, StopInsideNestedLoopsEndsTheProgramThere) {
    const auto run = finished(
        "int i = 0\n"
        "forever\n"
        "    while 1\n"
        "        i = i + 1\n"
        "        if i == 5\n"
        "            stop\n"
        "        end\n"
        "    end\n"
        "end\n"
        "LedOn(1)\n");
    EXPECT_EQ(run->var("i"), 5);
    EXPECT_TRUE(run->args_of(kLedOn).empty());
    EXPECT_THAT(run->component.events, ElementsAre("start", "stop"));
}

TEST(Control, TheStepBudgetEndsALoopWithoutDelaysAtTheLineReached) {
    const auto run = run_program("int i = 0\nforever\n    i = i + 1\nend\n", {1000, 60000});
    EXPECT_EQ(run->outcome.end, RunOutcome::End::OutOfSteps);
    EXPECT_THAT(run->outcome.message,
                HasSubstr("test.kflow:3:5: the program was stopped after 1000 steps"));
    EXPECT_EQ(run->var("i"), 999);  // after the declaration, one step a turn with the way back
    EXPECT_EQ(run->component.stops, 1);
    // An empty loop has a step of its own to go round by.
    const auto empty = run_program("LedOn(1)\nforever\nend\n", {1000, 60000});
    EXPECT_THAT(empty->outcome.message, HasSubstr("test.kflow:2:1: the program was stopped"));
}

TEST(Control, TheClockLimitEndsALoopThatWaitsForever) {
    const auto run = run_program("forever\n    LedOn(1)\n    delay 1000\nend\n", {1000, 5500});
    EXPECT_EQ(run->outcome.end, RunOutcome::End::OutOfTime);
    EXPECT_EQ(run->outcome.message,
              "test.kflow:3:5: the program was stopped after 5500 ms at this line: does it run "
              "forever?");
    EXPECT_EQ(run->outcome.elapsed_ms, 5500);
    EXPECT_THAT(run->clock.waits, ElementsAre(1000, 1000, 1000, 1000, 1000, 500));
    EXPECT_EQ(run->args_of(kLedOn).size(), 6u);
    EXPECT_EQ(run->component.stops, 1);
}

TEST(Control, DivisionByZeroStopsTheProgramAtItsOperator) {
    for (const char* op : {"/", "%"}) {
        const auto run = run_program(std::string("int z = 0\nint before = 7\nLedOn(3)\n"
                                                 "before = 8 ") +
                                     op + " z\nLedOn(4)\n");
        EXPECT_EQ(run->outcome.end, RunOutcome::End::Failed);
        EXPECT_THAT(run->outcome.message, HasSubstr("test.kflow:4:12: "));
        EXPECT_THAT(run->outcome.message, HasSubstr("by 0"));
        EXPECT_EQ(run->var("before"), 7);
        EXPECT_THAT(run->args_of(kLedOn), ElementsAre(ElementsAre(3)));
        EXPECT_THAT(run->component.events, ElementsAre("start", "LedOn", "stop"));
    }
}

TEST(Component, ArgumentsTakeTheParameterTypeAndResultsTheReturnType) {
    auto run = std::make_unique<program_testing::Run>();
    run->component.result = [](std::int32_t id, std::size_t) {
        return id == kReadLdr ? 70000 : 0x1FF;
    };
    run->checked = kflow::check_program(
        "SetMotors(0, 300, -1, 256)\nint l = ReadLdr()\nint s = ReadSwitch(1)\n", "t.kflow",
        program_testing::table_of(run->component));
    ASSERT_TRUE(run->checked.program);
    run->interpreter = std::make_unique<kflow::Interpreter>(*run->checked.program, run->component);
    run->outcome = kflow::run_to_end(*run->interpreter, run->clock);
    EXPECT_THAT(run->args_of(kSetMotors), ElementsAre(ElementsAre(0, 44, 255, 0)));
    EXPECT_EQ(run->var("l"), 4464);  // 70000 in 16 bits
    EXPECT_EQ(run->var("s"), 255);   // a char result keeps 8 bits
}

TEST(Component, MacrosInOneExpressionAreCalledLeftToRight) {
    const auto run = finished("int r = ReadSwitch(0) - ReadLdr() * 2\n");
    EXPECT_THAT(run->component.events, ElementsAre("start", "ReadSwitch", "ReadLdr", "stop"));
    EXPECT_EQ(run->var("r"), 11 - 48 * 2);
}

TEST(Component, AFailingMacroStopsTheProgramWithItsStatus) {
    auto run = std::make_unique<program_testing::Run>();
    run->component.failing_id = kDriveForwards;
    run->component.failure = kestrone::basic_error_status(6);
    run->checked = kflow::check_program("DriveStop()\nDriveForwards(9)\nDriveStop()\n", "f.kflow",
                                        program_testing::table_of(run->component));
    run->interpreter = std::make_unique<kflow::Interpreter>(*run->checked.program, run->component);
    run->outcome = kflow::run_to_end(*run->interpreter, run->clock);
    EXPECT_EQ(run->outcome.end, RunOutcome::End::Failed);
    EXPECT_EQ(run->outcome.message,
              "f.kflow:2:1: the component failed to run 'DriveForwards' (error 6)");
    EXPECT_EQ(run->args_of(kDriveStop).size(), 1u);
}

TEST(Driver, DelaysGoToTheClockAsUnsignedMilliseconds) {
    const auto run = finished("delay 250\ndelay -1\ndelay 0x8000\ndelay 0\n");
    EXPECT_THAT(run->clock.waits, ElementsAre(250, 65535, 32768, 0));
    EXPECT_EQ(run->outcome.elapsed_ms, 250 + 65535 + 32768);
}

TEST(Driver, AProgramCanBeHaltedBetweenSlicesAndTellsItsLine) {
    program_testing::FakeComponent c(program_testing::FakeComponent::robot_macros());
    const auto checked =
        kflow::check_program("int n = 0\nforever\n    n = n + 1\n    delay 10\nend\n", "h.kflow",
                             program_testing::table_of(c));
    kflow::Interpreter run(*checked.program, c);
    EXPECT_EQ(run.resume(10).why, kflow::Pause::Why::Halted);  // not started
    EXPECT_EQ(run.variable("n"), std::nullopt);                // nothing to read yet
    ASSERT_EQ(run.start(), kestrone::S_OK);
    const kflow::Pause p = run.resume(100);
    EXPECT_EQ(p.why, kflow::Pause::Why::Delay);
    EXPECT_EQ(p.delay_ms, 10);
    EXPECT_EQ(run.place().line, 4);
    EXPECT_EQ(run.resume(1).why, kflow::Pause::Why::Slice);  // the delay went back to the set
    EXPECT_EQ(run.place().line, 3);
    run.stop("stopped by the user");
    EXPECT_EQ(run.state(), kflow::RunState::Halted);
    EXPECT_EQ(run.resume(10).why, kflow::Pause::Why::Halted);
    EXPECT_EQ(run.message(), "stopped by the user");
    EXPECT_EQ(run.variable("n"), 2);
    EXPECT_EQ(run.variable("m"), std::nullopt);
    EXPECT_EQ(c.stops, 1);

    // A new start begins from nothing.
    ASSERT_EQ(run.start(), kestrone::S_OK);
    EXPECT_EQ(run.variable("n"), 0);
    EXPECT_EQ(run.resume(2).why, kflow::Pause::Why::Slice);
    EXPECT_EQ(run.variable("n"), 1);
}

}  // namespace
