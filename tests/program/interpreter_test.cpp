// The interpreter where faults hide: 16-bit wrapping, byte storage, C's division and shifts,
// precedence, short-circuits, counts evaluated once, else-if chains, stop, the limits of a run,
// a division by 0, and what reaches the component.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kestrone/status.h"
#include "program_support.h"

namespace {

using kflow::RunOutcome;
using program_testing::run_program;
using testing::ElementsAre;
using testing::EndsWith;
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

struct Value {
    const char* type;
    const char* expression;
    int value;
};

// Wrapping at both ends, literals above 32767 read as their 16 bits, a byte's low 8 bits, C's
// division, remainder and shifts (by 16 or more, or negative, they empty the value), and C's
// precedence and associativity.
const Value kValues[] = {{"int", "32767 + 1", -32768}, {"int", "-32767 - 2", 32767},
                         {"int", "200 * 200", -25536}, {"int", "-(0x8000)", -32768},
                         {"int", "40000", -25536},     {"byte", "300", 44},
                         {"byte", "-1", 255},          {"byte", "255 + 1", 0},
                         {"int", "-7 / 2", -3},        {"int", "-7 % 2", -1},
                         {"int", "7 % -2", 1},         {"int", "-32768 / -1", -32768},
                         {"int", "-32768 % -1", 0},    {"int", "1 << 15", -32768},
                         {"int", "1 << 16", 0},        {"int", "-7 >> 1", -4},
                         {"int", "-1 >> 20", -1},      {"int", "0x4000 >> -1", 0},
                         {"int", "0x2A << 3", 336},    {"int", "0x8000 >> 15", -1},
                         {"int", "2 + 3 * 4", 14},     {"int", "6 & 3 == 3", 0},
                         {"int", "1 << 2 + 1", 8},     {"int", "1 | 2 ^ 3 & 5", 3},
                         {"int", "10 - 4 - 3", 3},     {"int", "100 / 10 / 5", 2},
                         {"int", "5 > 3 > 1", 0},      {"int", "!0 + ~0 * -2", 3},
                         {"int", "(2 + 3) * 4", 20},   {"int", "1 || 0 && 0", 1},
                         {"int", "16 >> 2 + 1", 2},    {"int", "-3 <= -3 != 3 >= 4", 1}};

TEST(Arithmetic, EachValueIsCsOn16BitsAndBytesKeep8) {
    std::string source;
    for (std::size_t k = 0; k < std::size(kValues); ++k)
        source += std::string(kValues[k].type) + " v" + std::to_string(k) + " = " +
                  kValues[k].expression + "\n";
    // Expressions over bytes are not cut to 8 bits; an assignment to a byte is.
    source += "byte c = 255\nc = c + 1\nint sum = v5 + v6\n";
    const auto run = finished(source);
    for (std::size_t k = 0; k < std::size(kValues); ++k)
        EXPECT_EQ(run->var("v" + std::to_string(k)), kValues[k].value) << kValues[k].expression;
    EXPECT_EQ(run->var("c"), 0);
    EXPECT_EQ(run->var("sum"), 299);
}

TEST(Control, AndAndOrLeaveTheRightSideUncalledWhenTheLeftDecides) {
    const auto run = finished(
        "int a = 0 && ReadLdr()\nint b = 7 || ReadLdr()\nint c = 1 && ReadLdr()\n"
        "int d = 0 || ReadSwitch(1)\n");
    EXPECT_EQ(run->args_of(kReadLdr).size(), 1u);
    EXPECT_EQ(run->args_of(kReadSwitch).size(), 1u);
    EXPECT_EQ(run->var("a"), 0);
    EXPECT_EQ(run->var("b"), 1);
    EXPECT_EQ(run->var("c"), 1);  // the result 11 as a truth value
    EXPECT_EQ(run->var("d"), 1);
}

TEST(Control, RepeatCountsAreTakenOnceAndReadAsUnsigned) {
    const auto run = finished(
        "int n = 3\nint count = 0\n"
        "repeat n\n    n = n + 1\n    count = count + 1\nend\n"
        "int inner = 0\n"
        "repeat ReadLdr()\n    repeat 3\n        inner = inner + 1\n    end\nend\n"
        "repeat 0\n    stop\nend\n"
        "int k = 0\nrepeat -32768\n    k = k + 1\nend\n");
    EXPECT_EQ(run->var("count"), 3);
    EXPECT_EQ(run->var("n"), 6);
    EXPECT_EQ(run->args_of(kReadLdr).size(), 1u);
    EXPECT_EQ(run->var("inner"), 11 * 3);  // the fake's first result is 11
    EXPECT_EQ(run->var("k"), -32768);      // 32768 passes, as an unsigned count
}

TEST(Control, ElseIfChainsTakeTheFirstArmThatHolds) {
    const auto run = finished(
        "int x = 0\nint seen = 0\n"
        "repeat 4\n"
        "    if x == 0\n        seen = seen + 1\n"
        "    else if x == 1\n        seen = seen + 10\n"
        "    else if x == 1\n        seen = seen + 1000\n"
        "    else\n        seen = seen + 100\n"
        "    end\n"
        "    x = x + 1\n"
        "end\n");
    EXPECT_EQ(run->var("seen"), 211);
    // An if on the first line jumps past its arms.
    const auto first =
        finished("if ReadSwitch(0) == 0\n    LedOn(1)\nelse if 0\n    LedOn(2)\nend\nLedOn(3)\n");
    EXPECT_THAT(first->args_of(kLedOn), ElementsAre(ElementsAre(3)));
}

TEST(Control, StopInsideNestedLoopsEndsTheProgramThere) {
    const auto run = finished(
        "int i = 0\n"
        "forever\n    while 1\n        i = i + 1\n        if i == 5\n            stop\n"
        "        end\n    end\nend\n"
        "LedOn(1)\n");
    EXPECT_EQ(run->var("i"), 5);
    EXPECT_TRUE(run->args_of(kLedOn).empty());
    EXPECT_THAT(run->component.events, ElementsAre("start", "stop"));
}

TEST(Limits, TheStepBudgetEndsALoopWithoutDelaysAtTheLineReached) {
    const auto run = run_program("int i = 0\nforever\n    i = i + 1\nend\n", {1000, 60000});
    EXPECT_EQ(run->outcome.end, RunOutcome::End::OutOfSteps);
    EXPECT_EQ(run->outcome.message,
              "test.kflow:3:5: the program was stopped at this line: its budget of 1000 steps ran "
              "out in a loop. Does the loop run on and on? A delay in it lets time pass");
    EXPECT_EQ(run->var("i"), 999);  // after the declaration, one step a turn with the way back
    EXPECT_EQ(run->component.stops, 1);
    // An empty loop has a step of its own to go round by.
    const auto empty = run_program("LedOn(1)\nforever\nend\n", {1000, 60000});
    EXPECT_THAT(empty->outcome.message, HasSubstr("test.kflow:2:1: the program was stopped"));
    // A line after a loop is not in one: no loop is spoken of.
    EXPECT_THAT(
        run_program("repeat 1\n    LedOn(1)\nend\nLedOn(2)\nLedOn(3)\n", {5, 60000})
            ->outcome.message,
        EndsWith(":4:1: the program was stopped at this line: its budget of 5 steps ran out"));
    // The budget is the whole run's: delays do not renew it.
    const auto waits = run_program("forever\n    LedOn(1)\n    delay 1\nend\n", {1000, 60000});
    EXPECT_EQ(waits->outcome.end, RunOutcome::End::OutOfSteps);
    EXPECT_LT(waits->outcome.elapsed_ms, 1000);
}

TEST(Limits, TheClockLimitEndsALoopThatWaitsForever) {
    const auto run = run_program("forever\n    LedOn(1)\n    delay 1000\nend\n", {1000, 5500});
    EXPECT_EQ(run->outcome.end, RunOutcome::End::OutOfTime);
    EXPECT_EQ(run->outcome.message,
              "test.kflow:3:5: the program was stopped after 5500 ms at this line: does it run "
              "forever?");
    EXPECT_EQ(run->outcome.elapsed_ms, 5500);
    EXPECT_THAT(run->clock.waits, ElementsAre(1000, 1000, 1000, 1000, 1000, 500));
    EXPECT_EQ(run->args_of(kLedOn).size(), 6u);
    EXPECT_EQ(run->component.stops, 1);
    // Delays are unsigned milliseconds.
    const auto delays = finished("delay 250\ndelay -1\ndelay 0x8000\ndelay 0\n");
    EXPECT_THAT(delays->clock.waits, ElementsAre(250, 65535, 32768, 0));
    EXPECT_EQ(delays->outcome.elapsed_ms, 250 + 65535 + 32768);
}

TEST(Limits, ADivisionByZeroStopsTheProgramAtItsOperator) {
    for (const char* op : {"/", "%"}) {
        const auto run =
            run_program(std::string("int z = 0\nint before = 7\nLedOn(3)\nbefore = 8 ") + op +
                        " z\nLedOn(4)\n");
        EXPECT_EQ(run->outcome.end, RunOutcome::End::Failed);
        EXPECT_THAT(run->outcome.message, HasSubstr("test.kflow:4:12: "));
        EXPECT_THAT(run->outcome.message, HasSubstr("by 0"));
        EXPECT_EQ(run->var("before"), 7);
        EXPECT_THAT(run->component.events, ElementsAre("start", "LedOn", "stop"));
    }
}

TEST(Component, ArgumentsTakeTheParameterTypeAndResultsTheReturnType) {
    const auto run = run_program(
        "SetMotors(0, 300, -1, 256)\nint l = ReadLdr()\nint s = ReadSwitch(1)\n", {},
        [](program_testing::FakeComponent& c) {
            c.result = [](std::int32_t id, std::size_t) { return id == kReadLdr ? 70000 : 0x1FF; };
        });
    EXPECT_THAT(run->args_of(kSetMotors), ElementsAre(ElementsAre(0, 44, 255, 0)));
    EXPECT_EQ(run->var("l"), 4464);  // 70000 in 16 bits
    EXPECT_EQ(run->var("s"), 255);   // a char result keeps 8 bits
    // Macros in one expression are called left to right.
    const auto order = finished("int r = ReadSwitch(0) - ReadLdr() * 2\n");
    EXPECT_THAT(order->component.events, ElementsAre("start", "ReadSwitch", "ReadLdr", "stop"));
    EXPECT_EQ(order->var("r"), 11 - 48 * 2);
}

TEST(Component, AFailingMacroStopsTheProgramWithItsStatus) {
    const std::pair<kestrone::HRESULT, const char*> statuses[] = {
        {kestrone::basic_error_status(6), "error 6"}, {kestrone::E_NOTIMPL, "status 0x80004001"}};
    for (const auto& [status, words] : statuses) {
        const auto run = run_program("DriveStop()\nDriveForwards(9)\nDriveStop()\n", {},
                                     [&](program_testing::FakeComponent& c) {
                                         c.failing_id = kDriveForwards;
                                         c.failure = status;
                                     });
        EXPECT_EQ(run->outcome.end, RunOutcome::End::Failed);
        EXPECT_EQ(run->outcome.message,
                  std::string("test.kflow:2:1: the component failed to run 'DriveForwards' (") +
                      words + ")");
        EXPECT_EQ(run->args_of(kDriveStop).size(), 1u);
    }
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
    EXPECT_EQ(run.resume(1).why, kflow::Pause::Why::Slice);
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
