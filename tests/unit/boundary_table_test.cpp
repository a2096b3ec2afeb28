// The module boundary, table-driven: every member of both interfaces called by number with a
// value of every kind in every argument place, arrays with odd bounds and huge ones. Each call
// answers with a status of its own (a Basic error where a conversion or the logic fails) and
// never with the internal error that marks an exception the component did not expect; the
// object still answers afterwards. Under the sanitizers the same run proves no leak and no fault.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "host/dispatch.h"
#include "host_fixture.h"
#include "kestrone/typelib.h"

namespace {

using kestrone::HRESULT;
using kestrone::MemberInfo;
using kestrone::Variant;
using kestrone::VarType;

using testing_support::read_file;
// The shipped code file: its macro table reaches every simulated macro.
const char* const kShipped = KESTRONE_SHIPPED_CODE_FILE;

constexpr std::int32_t kMinLong = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMaxLong = std::numeric_limits<std::int32_t>::max();

Variant variants(std::int32_t lower, std::vector<Variant> items) {
    return Variant::array(VarType::Variant, lower, std::move(items));
}

// One value of every kind, with the edges each kind has.
std::vector<Variant> every_kind() {
    const double nan = std::nan("");
    std::vector<Variant> all{
        Variant{},
        Variant::integer(-32768),
        Variant::integer(32767),
        Variant::long_(kMinLong),
        Variant::long_(kMaxLong),
        Variant::long_(-1),
        Variant::single(std::numeric_limits<float>::infinity()),
        Variant::single(-0.5f),
        Variant::double_(nan),
        Variant::double_(1e300),
        Variant::double_(-2147483648.5),
        Variant::boolean(true),
        Variant::string(""),
        Variant::string("1e10"),
        Variant::string(" -12.5 "),
        Variant::string(std::string(70000, '%') + "a"),
        Variant::string(std::string("\0\xff", 2)),
        Variant::byte(0xA5),
        variants(0, {}),
        // Empty from the lowest bound: its upper bound lies below any Long (a crash found by
        // fuzzing SimMacroCall: the bound wrapped round and every index seemed inside).
        variants(kMinLong, {}),
        Variant::array(VarType::Long, kMinLong, {}),
        variants(kMinLong, {Variant::integer(3), Variant::string("x"), Variant{}}),
        variants(kMaxLong, {Variant::long_(1)}),
        variants(-7, {Variant::integer(0), Variant::integer(200), Variant::integer(255),
                      Variant::integer(56)}),
        variants(0, {Variant::string("abc"), Variant::double_(nan), Variant::single(1e30f),
                     Variant::boolean(true), Variant::byte(7)}),
        variants(0, {variants(0, {Variant::long_(1)}), Variant{}, Variant::long_(kMaxLong)}),
        Variant::array(VarType::Byte, 1, {Variant::byte(1), Variant::byte(2)}),
        Variant::array(VarType::Long, 0, {Variant::long_(kMinLong), Variant::long_(kMaxLong)}),
        Variant::array(VarType::String, 3, {Variant::string("7")}),
        Variant::array(VarType::Double, 0, {Variant::double_(1e300), Variant::double_(-1e300)}),
        Variant::array(VarType::Boolean, -1, {Variant::boolean(false)}),
    };
    return all;
}

// A value that each parameter type takes without complaint, so that the odd one out is the value
// under test.
Variant ordinary(VarType type) {
    switch (type) {
        case VarType::Long:
        case VarType::Integer:
            return Variant::long_(4);
        case VarType::Boolean:
            return Variant::boolean(false);
        case VarType::String:
            return Variant::string("%a");
        default:
            return variants(0, {Variant::integer(0), Variant::integer(200), Variant::integer(255),
                                Variant::integer(56)});
    }
}

// What a call may answer: success, or a failure that says what it is. An internal error (51) is
// an exception that escaped the logic's own checks.
::testing::AssertionResult is_a_status(HRESULT hr) {
    if (kestrone::succeeded(hr)) return ::testing::AssertionSuccess();
    const int basic = kestrone::basic_error_number(hr);
    if (basic == 51) return ::testing::AssertionFailure() << "internal error";
    if (basic != 0 || hr == kestrone::E_POINTER || hr == kestrone::E_INVALIDARG)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "unknown status 0x" << std::hex << static_cast<std::uint32_t>(hr);
}

// Each member with `value` in argument place `at` and ordinary values elsewhere; `at` past the
// arguments puts the value in every place at once.
template <class Target, std::size_t N>
void call_every_member(Target& target, const std::array<MemberInfo, N>& members,
                       const Variant& value, std::size_t at) {
    for (std::size_t k = 0; k < N; ++k) {
        const MemberInfo& m = members[k];
        if (at < 9 && at >= m.param_count) continue;
        std::vector<Variant> args;
        for (std::size_t j = 0; j < m.param_count; ++j)
            args.push_back(j == at || at >= 9 ? value : ordinary(m.params[j].type));
        Variant result = Variant::string("before");
        const HRESULT hr = rovanta::invoke_member(target, static_cast<std::int32_t>(k), args.data(),
                                                  m.param_count, &result);
        EXPECT_TRUE(is_a_status(hr)) << m.name << " argument " << at;
    }
}

// The object still answers its plainest questions as a fresh one does: its description, its pin
// table and a macro's text out of the code file.
void expect_still_answers(host_testing::Robot& robot) {
    host_testing::Robot fresh(read_file(kShipped));
    kestrone::IKestroneComponentV5& c = robot.object();
    kestrone::IKestroneComponentV5& f = fresh.object();
    f.put_KestroneVersion(kestrone::kHostVersion);
    std::string text, expected;
    EXPECT_EQ(c.get_Description(&text), kestrone::S_OK);
    EXPECT_EQ(f.get_Description(&expected), kestrone::S_OK);
    EXPECT_EQ(text, expected);
    std::int32_t count = -1, fresh_count = -2;
    EXPECT_EQ(c.get_PinCount(&count), kestrone::S_OK);
    EXPECT_EQ(f.get_PinCount(&fresh_count), kestrone::S_OK);
    EXPECT_EQ(count, fresh_count);
    c.put_KestroneVersion(kestrone::kHostVersion);
    EXPECT_EQ(c.get_MacroCode(9, &text), kestrone::S_OK);
    EXPECT_EQ(f.get_MacroCode(9, &expected), kestrone::S_OK);
    EXPECT_EQ(text, expected);
    EXPECT_FALSE(text.empty());
}

TEST(Boundary, EveryMemberTakesAValueOfEveryKindInEveryPlace) {
    host_testing::Robot robot(read_file(kShipped));
    auto& host = static_cast<kestrone::IKestroneComponentV5&>(robot.object());
    auto& control = static_cast<kestrone::IRovanta&>(robot.object());
    ASSERT_EQ(host.put_KestroneVersion(kestrone::kHostVersion), kestrone::S_OK);
    ASSERT_EQ(host.StartSimulation(), kestrone::S_OK);
    for (const Variant& value : every_kind()) {
        for (std::size_t at = 0; at <= 9; ++at) {
            call_every_member(host, kestrone::kComponentV5Members, value, at);
            call_every_member(control, kestrone::kRovantaMembers, value, at);
        }
        // A member may have changed the version or stopped the run: both come back for the next.
        ASSERT_EQ(host.put_KestroneVersion(kestrone::kHostVersion), kestrone::S_OK);
        host.StartSimulation();
    }
    expect_still_answers(robot);
}

// The input the fuzzer found: WriteLeds (10) with an empty array from -2147483648.
TEST(Boundary, AnEmptyArrayFromTheLowestBoundHasNoElementZero) {
    host_testing::Robot robot(read_file(kShipped));
    auto& host = static_cast<kestrone::IKestroneComponentV5&>(robot.object());
    ASSERT_EQ(host.put_KestroneVersion(kestrone::kHostVersion), kestrone::S_OK);
    ASSERT_EQ(host.StartSimulation(), kestrone::S_OK);
    std::int32_t ret = 0, cycles = 0;
    Variant affected;
    for (const std::int32_t lower : {kMinLong, kMinLong + 1, -1})
        EXPECT_EQ(host.SimMacroCall(10, variants(lower, {}), &ret, &affected, &cycles),
                  kestrone::basic_error_status(9))
            << lower;
    EXPECT_EQ(
        host.SimMacroCall(10, variants(kMaxLong, {Variant::long_(5)}), &ret, &affected, &cycles),
        kestrone::basic_error_status(9));
    EXPECT_EQ(host.SimMacroCall(10, variants(0, {Variant::long_(5)}), &ret, &affected, &cycles),
              kestrone::S_OK);
    EXPECT_TRUE(affected.is_array());
}

TEST(Boundary, BeforeTheMacroTableAndAfterTheRunNothingFailsUnexpectedly) {
    // No version told yet: the macro table is unallocated and every macro call meets that.
    host_testing::Robot robot(read_file(kShipped));
    auto& host = static_cast<kestrone::IKestroneComponentV5&>(robot.object());
    for (const Variant& value : every_kind())
        call_every_member(host, kestrone::kComponentV5Members, value, 9);
    expect_still_answers(robot);
}

// 131072 items in every tagged-value place: read through, refused or ignored, never copied
// past its bounds.
TEST(Boundary, HugeArraysInEveryTaggedPlace) {
    host_testing::Robot robot(read_file(kShipped));
    auto& host = static_cast<kestrone::IKestroneComponentV5&>(robot.object());
    ASSERT_EQ(host.put_KestroneVersion(kestrone::kHostVersion), kestrone::S_OK);
    ASSERT_EQ(host.StartSimulation(), kestrone::S_OK);
    const std::vector<Variant> huge{
        variants(-3, std::vector<Variant>(1 << 17, Variant::integer(255))),
        Variant::array(VarType::Byte, 0, std::vector<Variant>(1 << 17, Variant::byte(1))),
    };
    for (const Variant& value : huge)
        for (std::size_t k = 0; k < kestrone::kComponentV5Members.size(); ++k) {
            const MemberInfo& m = kestrone::kComponentV5Members[k];
            for (std::size_t at = 0; at < m.param_count; ++at) {
                if (m.params[at].type != VarType::Variant) continue;
                std::vector<Variant> args;
                for (std::size_t j = 0; j < m.param_count; ++j)
                    args.push_back(j == at ? value : ordinary(m.params[j].type));
                const HRESULT hr = rovanta::invoke_member(host, static_cast<std::int32_t>(k),
                                                          args.data(), m.param_count, nullptr);
                EXPECT_TRUE(is_a_status(hr)) << m.name << " argument " << at;
            }
        }
    expect_still_answers(robot);
}

}  // namespace
