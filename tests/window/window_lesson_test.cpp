// A lesson opened in the window: its settings in the object, its arena, its program ready to run
// and its instructions beside the panel; a bad lesson told with its file and nothing of it used.
#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTextBrowser>
#include <algorithm>
#include <sstream>

#include "check_command.h"
#include "lesson.h"
#include "lesson_dialog.h"
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

// File > Examples > Lessons lists the shipped lessons, and choosing one opens it.
TEST_F(WindowTest, TheExamplesMenuOpensAShippedLesson) {
    QMenu* lessons = nullptr;
    for (QMenu* m : window_->menuBar()->findChildren<QMenu*>())
        if (m->title() == "&Lessons") lessons = m;
    ASSERT_TRUE(lessons);
    QStringList names;
    for (QAction* a : lessons->actions())
        names << a->text();
    EXPECT_EQ(names,
              QStringList({"light_maze.klesson", "line_track.klesson", "open_floor.klesson"}));
    lessons->actions()[1]->trigger();
    EXPECT_EQ(window_->lesson_path(), example("lessons/line_track.klesson"));
}

}  // namespace
}  // namespace window_testing

namespace window_testing {
namespace {

// Save puts the editor's program into the lesson and changes no other line of it; Save As a
// lesson makes a copy that the window then follows; a program with a mistake is not saved.
TEST_F(WindowTest, TheStudentsProgramSavesIntoTheLesson) {
    const std::string path = dir_.copy(example("lessons/open_floor.klesson"), "mine.klesson");
    std::string before = testing_support::read_file(path), error;
    ASSERT_TRUE(window_->open_lesson(path));
    const std::string mine = "# mine \"at last\"\nint bumps = 3\nDriveStop()\n";
    window_->editor()->setText(QString::fromStdString(mine));
    ASSERT_TRUE(window_->save_program());
    EXPECT_FALSE(window_->editor()->isModified());
    // The model: the file as it was, its program's line taken out.
    const auto without_program = [](std::string text) {
        const std::size_t at = text.find("  \"program\":");
        return text.erase(at, text.find('\n', at) - at);
    };
    EXPECT_EQ(without_program(testing_support::read_file(path)), without_program(before));
    EXPECT_EQ(lesson::read_lesson(path, nullptr, &error)->program, mine);

    const std::string copy = dir_.path() + "/copy.klesson";
    window_->editor()->setText("DriveForwards(100)\n");
    ASSERT_TRUE(window_->save_program_as(copy));
    EXPECT_EQ(window_->lesson_path(), copy);
    EXPECT_EQ(lesson::read_lesson(copy, nullptr, &error)->program, "DriveForwards(100)\n");
    EXPECT_EQ(lesson::read_lesson(path, nullptr, &error)->program, mine);

    before = testing_support::read_file(copy);
    window_->editor()->setText("DriveForward(100)\n");
    told_.clear();
    EXPECT_FALSE(window_->save_program());
    ASSERT_EQ(told_.size(), 1u);
    EXPECT_NE(told_[0].find("was not saved: " + copy + ": the program, line 1"), std::string::npos)
        << told_[0];
    EXPECT_EQ(testing_support::read_file(copy), before);
    // Edits the user will not give up keep another lesson from opening.
    window_->set_confirm_discard([] { return false; });
    window_->set_confirm_program_discard([] { return false; });
    EXPECT_FALSE(window_->open_lesson(path));  // the editor's edits
    window_->editor()->setModified(false);
    window_->session().set_store_entry("iThreshL", kestrone::Variant::long_(61));
    EXPECT_FALSE(window_->open_lesson(path));  // the project's
    EXPECT_EQ(window_->lesson_path(), copy);
}

// New lesson from the open program, arena and settings, the checks edited in the dialog: the
// file reads back as made, and `check` passes the program it holds.
TEST_F(WindowTest, ANewLessonIsMadeOfWhatIsOpen) {
    ASSERT_TRUE(window_->open_arena(example("line_track.world")));
    ASSERT_TRUE(window_->open_program(example("line_follower.kflow")));
    call("iThreshL", {kestrone::Variant::long_(93)}, true);
    window_->set_edit_lesson([](window::LessonDialog& d) {
        d.title_box()->setText("Track");
        d.instructions_box()->setPlainText("Follow *it*.");
        EXPECT_EQ(d.checks(), std::vector<std::string>{"run program 20000"});
        d.table()->item(0, 0)->setText("run program 15000");
        d.add_check(" expect field iMotorSpeed(0) == 0% ");
        d.table()->setCurrentCell(0, 0);
        for (const char* line : {"expect world in finish == True", "  "})
            d.add_check(line);
        d.move_check(1);
        d.move_check(1);  // no room below the last
        d.add_check("wrong");
        d.remove_check();
        return true;
    });
    const std::string path = dir_.path() + "/new.klesson";
    ASSERT_TRUE(window_->new_lesson(path));
    std::string error;
    const auto made = lesson::read_lesson(path, nullptr, &error);
    ASSERT_TRUE(made) << error;
    EXPECT_EQ(made->title, "Track");
    EXPECT_EQ(made->instructions, "Follow *it*.");
    EXPECT_EQ(made->checks,
              (std::vector<std::string>{"run program 15000", "expect world in finish == True",
                                        "expect field iMotorSpeed(0) == 0%"}));
    EXPECT_EQ(made->arena, testing_support::read_file(example("line_track.world")));
    EXPECT_EQ(made->program, testing_support::read_file(example("line_follower.kflow")));
    const auto threshold = std::find_if(made->settings.begin(), made->settings.end(),
                                        [](const auto& e) { return e.key == "iThreshL"; });
    ASSERT_NE(threshold, made->settings.end());
    EXPECT_EQ(number_of(threshold->value), 93);
    EXPECT_EQ(window_->lesson_path(), path);
    EXPECT_EQ(window_->findChild<QDockWidget*>("lesson")->windowTitle(), "Track");

    lesson::CheckOptions o;
    o.lesson = path;
    o.module = KESTRONE_MODULE;
    std::ostringstream out, err;
    EXPECT_EQ(lesson::run_check_command(o, out, err), 0) << out.str() << err.str();
}

}  // namespace
}  // namespace window_testing
