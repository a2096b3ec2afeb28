// The arena editor driven by the mouse as a user drives it: what is drawn is saved and loads into
// the world with those items and no others; moves, deletions, undo and redo of an opened arena
// keep its untouched lines; and the robot stays put while the editor is open.
#include <QApplication>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QMouseEvent>
#include <QTest>
#include <fstream>
#include <sstream>

#include "arena_editor.h"
#include "arena_writer.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

using world::Tool;
using world::Vec;

std::string file_text(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class ArenaEditTest : public WindowTest {
  protected:
    ArenaEditTest() { window_->show(); }
    world::ArenaEditor& editor() { return *window_->arena_editor(); }
    QPoint px(Vec at) { return editor().canvas()->to_pixels(at).toPoint(); }
    void click(Vec at) {
        QTest::mousePress(editor().canvas(), Qt::LeftButton, {}, px(at));
        QTest::mouseRelease(editor().canvas(), Qt::LeftButton, {}, px(at));
    }
    void drag(Tool tool, Vec from, Vec to) {
        editor().set_tool(tool);
        QTest::mousePress(editor().canvas(), Qt::LeftButton, {}, px(from));
        QTest::mouseMove(editor().canvas(), px((1 / 3.0) * (from + from + to)));
        QTest::mouseMove(editor().canvas(), px(to));
        QTest::mouseRelease(editor().canvas(), Qt::LeftButton, {}, px(to));
    }
    bool simulating() { return field("bSimulating") != 0; }
};

TEST_F(ArenaEditTest, WhatIsDrawnWithTheMouseIsWhatTheWorldLoads) {
    ASSERT_TRUE(window_->new_arena(2000, 1500));
    // The floor fills the canvas along one side inside its rim, centred along the other.
    const QPointF corner = editor().canvas()->to_pixels({0, 1500}),
                  far = editor().canvas()->to_pixels({2000, 0});
    const QSize room = editor().canvas()->size();
    EXPECT_NEAR(corner.x() + corner.y() - room.width() - room.height() + far.x() + far.y(), 0, 1);
    EXPECT_NEAR(std::min(corner.x(), corner.y()), 8, 0.5);
    drag(Tool::Wall, {500, 500}, {550, 1000});
    editor().set_tool(Tool::Line);
    for (Vec p : {Vec{200, 250}, Vec{1000, 200}, Vec{1050, 800}})
        click(p);
    QTest::mouseDClick(editor().canvas(), Qt::LeftButton, {}, px({1050, 800}));
    EXPECT_TRUE(editor().canvas()->drawn_path().empty());  // ended by the double click
    // The line just drawn is selected: the width box changes it, the intensity box does not.
    for (auto* spin : editor().findChildren<QDoubleSpinBox*>())
        spin->setValue(spin->prefix().startsWith("intensity") ? 0.3 : 35);
    editor().set_tool(Tool::Light);
    click({1800, 1300});
    drag(Tool::Zone, {1800, 600}, {1500, 200});
    editor().set_tool(Tool::Line);  // a line of two points, ended by Return
    click({1900, 100});
    click({1900, 1400});
    QTest::keyClick(editor().canvas(), Qt::Key_Return);
    drag(Tool::Start, {300, 1200}, {300, 1400});
    // A wall across the start would make a file the reader refuses: it is not drawn.
    drag(Tool::Wall, {250, 1200}, {350, 1200});
    EXPECT_FALSE(editor().message().isEmpty());

    const std::string path = dir_.path() + "/drawn.world";
    ASSERT_TRUE(window_->save_arena_as(path));
    ASSERT_TRUE(window_->close_arena_editor());
    ASSERT_TRUE(window_->world().loaded());
    const world::Arena& a = window_->world().arena();
    ASSERT_EQ(a.walls.size(), 5u);
    EXPECT_EQ(a.walls[4].a, (Vec{500, 500}));
    EXPECT_EQ(a.walls[4].b, (Vec{550, 1000}));
    ASSERT_EQ(a.lines.size(), 2u);
    EXPECT_EQ(a.lines[0].points, (std::vector<Vec>{{200, 250}, {1000, 200}, {1050, 800}}));
    EXPECT_EQ(a.lines[1].points, (std::vector<Vec>{{1900, 100}, {1900, 1400}}));
    EXPECT_EQ(a.lines[0].width, 35);
    ASSERT_EQ(a.lights.size(), 1u);
    EXPECT_EQ(a.lights[0].at, (Vec{1800, 1300}));
    EXPECT_DOUBLE_EQ(a.lights[0].intensity, 0.3);
    ASSERT_EQ(a.zones.size(), 1u);
    EXPECT_EQ(a.zones[0].corner, (Vec{1500, 200}));
    EXPECT_EQ(a.zones[0].width * 10 + a.zones[0].height, 3400);
    EXPECT_EQ(world::whole_pose(a.start).heading, 90);
    EXPECT_EQ(a.start.centre, (Vec{300, 1200}));
    const auto& lines = window_->recorder().lines();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "world load \"" + path + "\""), lines.end());
}

// The pointer takes an item within six pixels of it and no farther; a new arena does not take
// the place of edits the user keeps.
TEST_F(ArenaEditTest, ThePointerReachesSixPixelsAndKeptEditsStayOpen) {
    EXPECT_FALSE(window_->save_arena_as(dir_.path() + "/none.world"));  // nothing to save yet
    EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(dir_.path() + "/none.world")));
    ASSERT_TRUE(window_->edit_arena());  // none open: a new one
    EXPECT_EQ(world::write_arena(editor().document()).substr(0, 15), "size 2000 1500\n");
    drag(Tool::Start, {300, 300}, {600, 300});  // turned to face along x: 0 degrees
    EXPECT_EQ(editor().document().start().degrees, 0);
    drag(Tool::Wall, {1600, 300}, {1600, 1200});  // clear of the start
    editor().set_tool(Tool::Select);
    const QPointF on = editor().canvas()->to_pixels({1600, 750});
    for (const double off : {5.5, 6.5}) {
        const QPointF at = on + QPointF(off, 0);
        for (const auto& [type, buttons] : {std::pair{QEvent::MouseButtonPress, Qt::LeftButton},
                                            std::pair{QEvent::MouseButtonRelease, Qt::NoButton}}) {
            QMouseEvent e(type, at, editor().canvas()->mapToGlobal(at), Qt::LeftButton, buttons,
                          {});
            QApplication::sendEvent(editor().canvas(), &e);
        }
        EXPECT_EQ(editor().canvas()->selected().has_value(), off < 6) << off;
    }
    for (const bool discard : {false, true}) {
        window_->set_confirm_arena_discard([discard] { return discard; });
        EXPECT_EQ(window_->new_arena(1000, 800), discard);
        EXPECT_EQ(editor().document().items().size(), discard ? 0u : 1u);
    }
}

TEST_F(ArenaEditTest, AnOpenedArenaKeepsItsUntouchedLinesThroughMovesDeletesUndoAndRedo) {
    const std::string original = file_text(example("line_track.world"));
    const std::string path = dir_.write("track.world", original);
    ASSERT_TRUE(window_->open_arena(path));
    ASSERT_TRUE(window_->edit_arena());
    // The robot stays put while the editor is open, and runs again once it is closed.
    window_->start_simulation();
    EXPECT_FALSE(simulating());
    EXPECT_TRUE(window_->status_text().startsWith("Editing arena"));

    editor().set_grid(50);
    drag(Tool::Select, {1200, 600}, {1100, 500});  // the zone, down and left
    editor().set_tool(Tool::Select);
    click({1300, 580});  // the finish bar
    QTest::keyClick(editor().canvas(), Qt::Key_Delete);
    const std::string edited = world::write_arena(editor().document());
    editor().undo_stack().undo();
    editor().undo_stack().undo();
    EXPECT_EQ(world::write_arena(editor().document()), original);
    editor().undo_stack().redo();
    editor().undo_stack().redo();
    ASSERT_TRUE(window_->save_arena());
    ASSERT_TRUE(window_->close_arena_editor());

    const std::string saved = file_text(path);
    EXPECT_EQ(saved, edited);
    const world::Arena& a = window_->world().arena();
    ASSERT_EQ(a.zones.size(), 1u);
    EXPECT_EQ(a.zones[0].corner, (Vec{1050, 280}));
    EXPECT_EQ(a.lines.size(), 1u);
    // Both comment lines and the track's own line stand as they were; the bar's line is gone.
    std::istringstream lines(original);
    for (std::string line; std::getline(lines, line);)
        EXPECT_EQ(saved.find(line) != std::string::npos,
                  line.rfind("zone", 0) != 0 && line.rfind("line 40", 0) != 0)
            << line;
    window_->start_simulation();
    EXPECT_TRUE(simulating());
}

}  // namespace
}  // namespace window_testing
