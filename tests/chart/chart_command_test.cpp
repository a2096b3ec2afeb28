// kestrone-host chart as a user runs it, against the real module: generated programs come out
// as SVGs with one titled icon per line of code in the program's order, a PNG at the zoom asked
// for, a faulty program's faults as `code` lists them, and the exit status of each failure.
#include <gtest/gtest.h>

#include <QImage>

#include "chart_test_support.h"
#include "support/console_driver.h"
#include "support/temp_dir.h"

namespace {

using testing_support::run_host;
using testing_support::TempDir;

int chart_run(const TempDir& dir, const std::string& args, std::string* out = nullptr) {
    const auto run = run_host("chart " + args, "", "", dir.path());
    if (out) *out = run.text();
    return run.exit_code;
}

TEST(ChartCommand, WritesOneTitledIconPerLineOfCodeInProgramOrder) {
    TempDir dir;
    for (unsigned seed = 1000; seed < 1012; ++seed) {
        const auto p = chart_testing::generate_program(seed);
        dir.write("p.kflow", p.source);
        std::string said;
        ASSERT_EQ(chart_run(dir, "p.kflow -o p.svg", &said), 0) << said;
        const std::string svg = testing_support::read_file(dir.path() + "/p.svg");
        EXPECT_EQ(chart_testing::titled_icons(svg), chart_testing::titles_of(p, 0))
            << "seed " << seed;
    }
}

TEST(ChartCommand, DrawsAPngAtItsZoom) {
    TempDir dir;
    dir.copy(KESTRONE_EXAMPLES "/line_follower.kflow", "f.kflow");
    for (const int zoom : {1, 3}) {
        const std::string name = "f" + std::to_string(zoom);
        ASSERT_EQ(chart_run(dir, "f.kflow -o " + name + ".svg --zoom " + std::to_string(zoom)), 0);
        ASSERT_EQ(chart_run(dir, "f.kflow -o " + name + ".png --zoom " + std::to_string(zoom)), 0);
    }
    const QImage one(QString::fromStdString(dir.path() + "/f1.png"));
    const QImage three(QString::fromStdString(dir.path() + "/f3.png"));
    ASSERT_FALSE(one.isNull());
    EXPECT_EQ(three.size(), one.size() * 3);
    EXPECT_NE(testing_support::read_file(dir.path() + "/f3.svg")
                  .find("width=\"" + std::to_string(three.width()) + "\""),
              std::string::npos);
}

TEST(ChartCommand, ListsFaultsAsCodeDoesAndTellsEachFailureByItsStatus) {
    TempDir dir;
    dir.write("bad.kflow", "int a = 99999\nLedOn(a, 1)\nrepeat 2\n");
    dir.write("good.kflow", "LedOn(3)\n");
    std::string charted;
    EXPECT_EQ(chart_run(dir, "bad.kflow -o bad.svg", &charted), 1);
    EXPECT_EQ(charted, run_host("code bad.kflow -o bad.c", "", "", dir.path()).text());
    EXPECT_EQ(testing_support::read_file(dir.path() + "/bad.svg"), "");
    const char* const failures[] = {"missing.kflow -o m.svg", "good.kflow -o good.txt",
                                    "good.kflow", "good.kflow -o no/such/dir/g.svg",
                                    "good.kflow -o g.svg --zoom 4"};
    for (const char* args : failures)
        EXPECT_EQ(chart_run(dir, args), 2) << args;
}

}  // namespace
