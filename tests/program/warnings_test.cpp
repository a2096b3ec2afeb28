// Suggestions for misspelt names, against a model of the distance, and the warnings of lines that
// run but not as they read, with the faults in order of place.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>

#include "nearest_name.h"
#include "program_support.h"

namespace {

using program_testing::run_program;

// The distance by its definition, case folded beforehand: the last letter deleted, inserted or
// changed, or the last two swapped.
int model_distance(const std::string& a, const std::string& b) {
    const std::size_t n = a.size(), m = b.size();
    if (n == 0 || m == 0) return static_cast<int>(n + m);
    int d = std::min(
        {model_distance(a.substr(0, n - 1), b) + 1, model_distance(a, b.substr(0, m - 1)) + 1,
         model_distance(a.substr(0, n - 1), b.substr(0, m - 1)) + (a[n - 1] == b[m - 1] ? 0 : 1)});
    if (n > 1 && m > 1 && a[n - 1] == b[m - 2] && a[n - 2] == b[m - 1])
        d = std::min(d, model_distance(a.substr(0, n - 2), b.substr(0, m - 2)) + 1);
    return d;
}

std::string lower(std::string s) {
    for (char& c : s)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// Short names of few letters, so that swaps and near misses are common.
std::string random_name(std::mt19937& rng) {
    std::string s(rng() % 6, ' ');
    for (char& c : s)
        c = "abcAB"[rng() % 5];
    return s;
}

TEST(Suggestions, TheDistanceAgreesWithItsDefinitionWithinEachLimit) {
    std::mt19937 rng(7741);
    for (int i = 0; i < 600; ++i) {
        const std::string a = random_name(rng), b = random_name(rng);
        const int limit = static_cast<int>(rng() % 5);
        const int d = model_distance(lower(a), lower(b));
        EXPECT_EQ(kflow::name_distance(a, b, limit), d <= limit ? std::optional(d) : std::nullopt)
            << a << " " << b << " " << limit;
    }
}

TEST(Suggestions, TheNearestIsTheFirstOfTheNearestWithinAThirdOfTheLength) {
    std::mt19937 rng(2903);
    for (int i = 0; i < 400; ++i) {
        const std::string name = random_name(rng) + random_name(rng);
        std::vector<std::string> known(rng() % 6);
        for (std::string& k : known)
            k = random_name(rng) + random_name(rng);
        const std::string* expected = nullptr;
        int beaten = static_cast<int>(name.size()) / 3 + 1;  // the distance to come under
        for (const std::string& k : known)
            if (const int d = model_distance(lower(name), lower(k)); d < beaten) {
                expected = &k;
                beaten = d;
            }
        kflow::SuggestionBudget budget(1 << 20);
        kflow::NearestName near(name, budget);
        for (const std::string& k : known)
            near.offer(k);
        EXPECT_EQ(near.found(), expected) << name;
    }
}

TEST(Suggestions, NoneAreSoughtOnceTheBudgetIsSpent) {
    kflow::SuggestionBudget budget(20);
    const std::string known = "count";
    kflow::NearestName near("cuont", budget);
    EXPECT_FALSE(near.offer(known));  // 1 + 5 * 5 steps
    EXPECT_EQ(near.found(), nullptr);
    EXPECT_FALSE(budget.spend(1));
}

// Every diagnostic of a program in the order `code` lists them.
std::string diagnostics(const std::string& source) {
    const auto run = run_program(source);
    std::string out;
    for (const kflow::Diagnostic& d :
         kflow::in_order_of_place(run->checked.faults, run->checked.warnings))
        out += kflow::format_diagnostic("t", d) + "\n";
    return out;
}

struct Said {
    std::string source;
    std::string diagnostics;
};

const std::vector<Said> kSaid = {
    // A macro's name short of a letter, with one too many, one changed, two swapped, in other
    // capitals, and too far from any; a private macro is never offered.
    {"DriveForward(1)\n",
     "t:1:1: there is no macro 'DriveForward'; did you mean 'DriveForwards'?\n"},
    {"LedOnn(1)\n", "t:1:1: there is no macro 'LedOnn'; did you mean 'LedOn'?\n"},
    {"ReadLin(0)\n", "t:1:1: there is no macro 'ReadLin'; did you mean 'ReadLine'?\n"},
    {"LdeOn(1)\n", "t:1:1: there is no macro 'LdeOn'; did you mean 'LedOn'?\n"},
    {"ledon(1)\n",
     "t:1:1: there is no macro 'ledon'; did you mean 'LedOn'? Names must match in "
     "capitals too\n"},
    {"LxdOx(1)\n", "t:1:1: there is no macro 'LxdOx' in this component\n"},
    {"ReadAnalogu(0)\n", "t:1:1: there is no macro 'ReadAnalogu' in this component\n"},
    // Of two as near (LedOn by a change, LedOff by an insertion) the one listed first.
    {"LedOf(1)\n", "t:1:1: there is no macro 'LedOf'; did you mean 'LedOn'?\n"},
    {"int count\nint x = cuont + Cont\n",
     "t:2:9: there is no variable 'cuont'; did you mean 'count'? If not, declare it first, as int "
     "cuont = 0\n"
     "t:2:17: there is no variable 'Cont'; did you mean 'count'? If not, declare it first, as int "
     "Cont = 0\n"},
    // Warnings: a literal as written, with a minus, or worked out by the chip's rules.
    {"byte b = 40000\nb = -1\nb = 0x7F * 2 + 2\n",
     "t:1:10: warning: 'b' is a byte: 40000 is outside 0 to 255, so only its low 8 bits are kept: "
     "64\n"
     "t:2:5: warning: 'b' is a byte: -1 is outside 0 to 255, so only its low 8 bits are kept: 255\n"
     "t:3:5: warning: 'b' is a byte: 256 is outside 0 to 255, so only its low 8 bits are kept: "
     "0\n"},
    {"SetMotors(0, 255, -(-300), 3)\n",
     "t:1:19: warning: 'SetMotors' takes P3 as a char: 300 is outside 0 to 255, so only its low 8 "
     "bits are kept: 44\n"},
    {"repeat -40000\nend\ndelay 3 - 5\n",
     "t:1:8: warning: a count below 0: 'repeat' reads -40000 as 25536 times\n"
     "t:3:7: warning: a time below 0: 'delay' reads -2 as 65534 milliseconds\n"},
    {"if 2 > 1\nelse if ~0 == -1 && !7\nelse if 0 || 1\nend\n",
     "t:1:4: warning: the condition is always true: it is a constant, so any 'else' after it never "
     "runs\n"
     "t:2:9: warning: the condition is always false: it is a constant, so its lines never run\n"
     "t:3:9: warning: the condition is always true: it is a constant, so any 'else' after it never "
     "runs\n"},
    // None: values in range, an int, a literal taken as written, variables, calls, a division
    // by 0 (which stops the program as it runs).
    {"int i = 300\nbyte b = 255\nb = 0\nLedOn(255)\ndelay 40000\nrepeat 0xFFFF\nend\n"
     "b = i\nrepeat i - 1\nend\nif i\nelse if ReadSwitch(0)\nend\nLedOn(1 / 0 + 300)\n",
     ""},
    // Warnings beside the faults, in order of place; a byte that cannot be declared still warns.
    {"byte LedOn = 300\nBogus()\nrepeat -1\nend\n",
     "t:1:6: 'LedOn' is the name of a macro and cannot name a variable\n"
     "t:1:14: warning: 'LedOn' is a byte: 300 is outside 0 to 255, so only its low 8 bits are "
     "kept: 44\n"
     "t:2:1: there is no macro 'Bogus' in this component\n"
     "t:3:8: warning: a count below 0: 'repeat' reads -1 as 65535 times\n"},
};

class SaidOfAProgram : public testing::TestWithParam<Said> {};

TEST_P(SaidOfAProgram, IsEveryDiagnosticInOrder) {
    EXPECT_EQ(diagnostics(GetParam().source), GetParam().diagnostics);
}

INSTANTIATE_TEST_SUITE_P(Table, SaidOfAProgram, testing::ValuesIn(kSaid));

TEST(Warnings, StopNeitherTheRunNorThePlaceOfAnErrorBeforeThem) {
    const auto run = run_program("byte b = 300\nif 1\n    b = b + 1\nend\n");
    ASSERT_EQ(run->checked.warnings.size(), 2u);
    EXPECT_EQ(run->var("b"), 45);
    const kflow::Diagnostic error{{3, 4}, "e"},
        warning{{3, 4}, "w", kflow::Diagnostic::Severity::Warning};
    const auto both = kflow::in_order_of_place({error}, {warning});
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0].text, "e");
}

}  // namespace
