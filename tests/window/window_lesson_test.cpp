// A lesson opened in the window: its settings in the object, its arena, its program ready to run
// and its instructions beside the panel; a bad lesson told with its file and nothing of it used.
#include <QDockWidget>
#include <QTextBrowser>

#include "support/temp_dir.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

TEST_F(WindowTest, ALessonBringsItsSettingsArenaProgramAndInstructions) {
    testing_support::TempDir dir;
    const std::string good = dir.write("l.klesson", R"({"lesson": 1, "title": "Drive on",
        "instructions": "Drive **forwards**.",
        "arena": "size 1300 900\nrobot 300 300 0\n",
        "program": "DriveForwards(200)\ndelay 500\nDriveStop()\n",
        "settings": [["iThreshL", "77%"]], "checks": []})");
    ASSERT_TRUE(window_->open_lesson(good));
    EXPECT_EQ(field("iThreshL"), 77);
    EXPECT_EQ(window_->world().arena().width, 1300);
    EXPECT_TRUE(window_->status_text().contains("the arena sets the line sensors"));
    auto* dock = window_->findChild<QDockWidget*>("lesson");
    ASSERT_TRUE(dock);
    EXPECT_TRUE(dock->isVisibleTo(window_.get()));
    EXPECT_EQ(dock->windowTitle(), "Drive on");
    EXPECT_TRUE(dock->findChild<QTextBrowser*>()->toPlainText().startsWith("Drive forwards"));
    // Start runs the lesson's program, which drives the robot along.
    window_->start_simulation();
    elapse(600);
    EXPECT_GT(world::whole_pose(window_->world().pose()).x, 350);

    const std::string bad = dir.write("bad.klesson", R"({"lesson": 1, "arena": "size 9 9\n"})");
    EXPECT_FALSE(window_->open_lesson(bad));
    ASSERT_EQ(told_.size(), 1u);
    EXPECT_EQ(told_[0].rfind("The lesson could not be opened: " + bad + ": the arena", 0), 0u)
        << told_[0];
    EXPECT_EQ(window_->world().arena().width, 1300);
    EXPECT_EQ(dock->windowTitle(), "Drive on");
}

}  // namespace
}  // namespace window_testing
