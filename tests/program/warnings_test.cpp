// Suggestions for misspelt names, against a model of the distance, and what is said of programs
// with faults and warnings, in order of place.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <tuple>

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

// `name` after `edits` random deletions, insertions or changes of a letter: a near miss.
std::string edited(std::string name, unsigned edits, std::mt19937& rng) {
    for (; edits > 0; --edits) {
        const std::size_t at = name.empty() ? 0 : rng() % name.size();
        const char letter = "abcAB"[rng() % 5];
        if (const unsigned kind = rng() % 3; kind == 0 && !name.empty())
            name.erase(at, 1);
        else if (kind == 1 || name.empty())
            name.insert(at, 1, letter);
        else
            name[at] = letter;
    }
    return name;
}

TEST(Suggestions, TheNearestIsTheFirstOfTheNearestWithinAThirdOfTheLength) {
    std::mt19937 rng(2903);
    for (int i = 0; i < 600; ++i) {
        const std::string name = random_name(rng) + random_name(rng);
        std::vector<std::string> known(rng() % 6);
        const std::string* expected = nullptr;
        int beaten = static_cast<int>(name.size()) / 3 + 1;  // the distance to come under
        for (std::string& k : known) {
            k = rng() % 2 ? random_name(rng) + random_name(rng) : edited(name, rng() % 4, rng);
            const int d = model_distance(lower(name), lower(k)),
                      limit = static_cast<int>(rng() % 5);
            EXPECT_EQ(kflow::name_distance(name, k, limit),
                      d <= limit ? std::optional(d) : std::nullopt)
                << name << " " << k << " " << limit;
            if (d < beaten) std::tie(expected, beaten) = std::pair(&k, d);
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

// Every diagnostic of a program in the order `code` lists them. The warnings of bytes, chars,
// counts and conditions meet random programs in the chip's differential test.
std::string diagnostics(const std::string& source) {
    const auto run = run_program(source);
    std::string out;
    for (const kflow::Diagnostic& d :
         kflow::in_order_of_place(run->checked.faults, run->checked.warnings))
        out += kflow::format_diagnostic("t", d) + "\n";
    return out;
}

const char* const kMacro = "t:1:1: there is no macro ";
const std::vector<std::pair<std::string, std::string>> kSaid = {
    // Short of a letter, in other capitals, too far from any, near a private one only.
    {"DriveForward(1)\n", "'DriveForward'; did you mean 'DriveForwards'?\n"},
    {"ledon(1)\n", "'ledon'; did you mean 'LedOn'? Names must match in capitals too\n"},
    {"LxdOx(1)\n", "'LxdOx' in this component\n"},
    {"ReadAnalogu(0)\n", "'ReadAnalogu' in this component\n"},
    {"int count\nint x = cuont + Cont\n",
     "t:2:9: there is no variable 'cuont'; did you mean 'count'? If not, declare it first, as int "
     "cuont = 0\nt:2:17: there is no variable 'Cont'; did you mean 'count'? If not, declare it "
     "first, as int Cont = 0\n"},
    // Times as written, beyond 16 bits, beyond 32; none for a variable or a division by 0.
    {"delay 1000 * 70\ndelay (3 - 5)\ndelay 40000\ndelay 65535 * 65535 * 2\ndelay 1 << 2\n"
     "int i\ndelay i - 1\ndelay 1 / (40000 < 0) - 1\n",
     "t:1:7: warning: a time outside 0 to 65535: 'delay' reads 70000 as 4464 milliseconds\n"
     "t:2:8: warning: a time outside 0 to 65535: 'delay' reads -2 as 65534 milliseconds\n"
     "t:4:7: warning: a time outside 0 to 65535: 'delay' reads a value beyond 32 bits as 2 "
     "milliseconds\n"},
    // Values worked out as the chip would: a shift by 0, a truth of a number other than 1.
    {"byte b = 300 << 0\nbyte c = (2 || 0) * 300\n",
     "t:1:10: warning: 'b' is a byte: 300 is outside 0 to 255, so only its low 8 bits are kept: "
     "44\nt:2:11: warning: 'c' is a byte: 300 is outside 0 to 255, so only its low 8 bits are "
     "kept: 44\n"},
    // Warnings beside the faults, in order of place; a byte that cannot be declared still warns.
    {"byte LedOn = 300\nBogus()\n",
     "t:1:6: 'LedOn' is the name of a macro and cannot name a variable\n"
     "t:1:14: warning: 'LedOn' is a byte: 300 is outside 0 to 255, so only its low 8 bits are "
     "kept: 44\nt:2:1: there is no macro 'Bogus' in this component\n"},
};

TEST(Diagnostics, OfEachProgramAreSaidInOrderOfPlace) {
    for (const auto& [source, said] : kSaid)
        EXPECT_EQ(diagnostics(source), said.starts_with("t:") ? said : kMacro + said) << source;
}

}  // namespace
