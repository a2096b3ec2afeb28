// The C of a program compiled by SDCC for the PIC16F877A and run in gpsim ends with the same
// variables as the interpreter: the 16-bit wrapping, C's division and shifts, byte storage, large
// literals and a stop at a division by 0, on the chip itself. Skipped where the PIC toolchain is
// not installed (scripts/setup-pic.sh builds it).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <map>
#include <regex>

#include "pic_compiler.h"
#include "program_support.h"
#include "support/console_driver.h"
#include "support/temp_dir.h"

namespace {

using program_testing::shell;

bool toolchain_present() {
    return shell("command -v gpsim").status == 0 && ::access(kflow::sdcc_path().c_str(), X_OK) == 0;
}

// Each value of interest as two bytes, low and high, so that the simulator shows them whole.
const char* const kValues[] = {
    "m + 1",     "n - 1",         "m * 3",     "n / -1",          "n % -1",     "s7 / 2",
    "-7 / 2",    "s7 % 2",        "7 % -2",    "s7 >> 1",         "n >> 15",    "s7 >> big",
    "1 << 15",   "m << 1",        "one << 16", "s7 << 3",         "40000",      "0xFFFF + 2",
    "m > 40000", "~s7 ^ 0x5A5A",  "!n",        "s7 < 0 && m > 0", "6 & 3 == 3", "1 | 2 ^ 3 & 5",
    "count",     "b300 + bm * 2",
};

std::string agreement_program() {
    std::string p =
        "int m = 32767\nint n = -32768\nint s7 = -7\nint one = 1\nint big = 20\n"
        "byte b300 = 300\nbyte bm = -1\nint count = 0\n"
        "repeat 0x8000\n    count = count + 1\nend\n";
    int k = 0;
    for (const char* e : kValues) {
        const std::string v = "v" + std::to_string(k);
        p += "int " + v + " = " + e + "\n";
        p += "byte l" + std::to_string(k) + " = " + v + "\n";
        p += "byte h" + std::to_string(k) + " = " + v + " >> 8\n";
        ++k;
    }
    return p;
}

// The byte variables of a program after it has run on the simulated chip.
std::map<std::string, int> run_on_chip(const std::string& source,
                                       const std::vector<std::string>& names, std::string* log) {
    testing_support::TempDir dir;
    dir.write("s/p.kflow", source);  // in a folder of one letter: the compiler runs there
    const auto saved = testing_support::run_console("bWaitForButton = 0\nwriteprops\nstore save " +
                                                    dir.path() + "/nowait.ktx\n");
    const auto built =
        shell("cd '" + dir.path() +
              "' && '" KESTRONE_HOST_BIN "' code s/p.kflow --project nowait.ktx --hex");
    *log = built.output;
    if (built.status != 0 || saved.exit_code != 0) return {};
    std::string script = "load s " + dir.path() + "/s/p.cod\nbreak c 4000000\nrun\n";
    for (const std::string& n : names)
        script += "_kfv_" + n + "\n";
    script += "quit\n";
    dir.write("run.stc", script);
    *log += shell("timeout 120 gpsim -i -c '" + dir.path() + "/run.stc'").output;
    std::map<std::string, int> out;
    const std::regex shown("_kfv_(\\w+) = 0x([0-9A-Fa-f]+)");
    for (std::sregex_iterator i(log->begin(), log->end(), shown), end; i != end; ++i)
        out[(*i)[1]] = std::stoi((*i)[2], nullptr, 16);
    return out;
}

void expect_chip_agrees(const std::string& source, const std::vector<std::string>& names) {
    const auto interpreted = program_testing::run_program(source);
    ASSERT_TRUE(interpreted->checked.program);
    std::map<std::string, int> expected;
    for (const std::string& n : names)
        expected[n] = interpreted->var(n) & 0xFF;
    std::string log;
    EXPECT_EQ(run_on_chip(source, names, &log), expected) << log;
}

// Where the toolchain is required the chip tests fail without it; elsewhere they are skipped.
#if KESTRONE_PIC_REQUIRED
#define NO_TOOLCHAIN() FAIL() << "no PIC toolchain at " << kflow::sdcc_path()
#else
#define NO_TOOLCHAIN() GTEST_SKIP() << "no PIC toolchain at " << kflow::sdcc_path()
#endif

TEST(Chip, ComputesWhatTheInterpreterComputes) {
    if (!toolchain_present()) NO_TOOLCHAIN();
    std::vector<std::string> names{"b300", "bm"};
    for (std::size_t k = 0; k < std::size(kValues); ++k) {
        names.push_back("l" + std::to_string(k));
        names.push_back("h" + std::to_string(k));
    }
    expect_chip_agrees(agreement_program(), names);
}

TEST(Chip, StopsAtADivisionByZeroAsTheInterpreterDoes) {
    if (!toolchain_present()) NO_TOOLCHAIN();
    expect_chip_agrees(
        "byte before = 1\nbyte after = 0\nint z = 0\nbefore = 2\nbefore = 9 / z\nafter = 3\n",
        {"before", "after"});
}

}  // namespace
