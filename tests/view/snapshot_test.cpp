// `snapshot FILE`: the console asks the host's view for a PNG of the panel; the console alone knows
// no view.
#include <gtest/gtest.h>

#include <QImage>
#include <sstream>

#include "console.h"
#include "panel_snapshot.h"
#include "panel_view.h"
#include "support/temp_dir.h"
#include "view_robot.h"

namespace {

using testing_support::TempDir;

TEST(PanelSnapshot, WritesThePanelAtZoomOneAsAPng) {
    view_testing::ViewRobot robot;
    robot.macro(4, {90});
    robot.advance(130);
    TempDir dir;
    const std::string path = dir.path() + "/panel.png";
    panelqt::PanelSnapshots snapshots;
    ASSERT_EQ(snapshots.write(robot.panel(), path), "");
    const QImage written(QString::fromStdString(path), "PNG");
    EXPECT_TRUE(written.convertToFormat(QImage::Format_RGB32) ==
                robot.render().convertToFormat(QImage::Format_RGB32));
    // A folder that is not there cannot take the file.
    const std::string why = snapshots.write(robot.panel(), dir.path() + "/none/panel.png");
    EXPECT_EQ(why.rfind("cannot write " + dir.path() + "/none/panel.png", 0), 0u) << why;
}

// The console alone knows no view: the host hands it one that gets the panel and the file, and
// its answer comes back.
TEST(ConsoleSnapshot, GoesToTheHostsViewAndAnswersWithIt) {
    std::ostringstream out;
    console::Console console(out);
    console.session().load_module(KESTRONE_MODULE);
    console.start();
    const auto run = [&](const std::string& line) {
        out.str("");
        console.execute(line);
        return out.str();
    };
    EXPECT_EQ(run("snapshot panel.png"), "fail no view built\n");
    std::vector<std::string> asked;
    kestrone::IKestronePanel* given = nullptr;
    std::string answer;
    console.set_snapshot([&](kestrone::IKestronePanel& panel, const std::string& path) {
        given = &panel;
        asked.push_back(path);
        return answer;
    });
    EXPECT_EQ(run("snapshot \"a b.png\""), "ok\n");
    EXPECT_EQ(given, console.session().panel());
    answer = "cannot write x: full";
    EXPECT_EQ(run("snapshot x"), "fail cannot write x: full\n");
    EXPECT_EQ(run("snapshot a b").rfind("fail ", 0), 0u);  // never reaches the view
    EXPECT_EQ(asked, (std::vector<std::string>{"a b.png", "x"}));
}

}  // namespace
