// The program's life in the window: debugged by its keys against a model of the program, the file
// changed on disk, the project that remembers its program and arena, and the hex built aside.
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <random>

#include "support/temp_dir.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

class WindowProgramTest : public WindowTest {
  protected:
    // The action the key runs, as the user's key would.
    void press(QKeySequence key) {
        for (QAction* a : window_->findChildren<QAction*>())
            if (a->shortcut() == key) return a->trigger();
        ADD_FAILURE() << "no action on " << key.toString().toStdString();
    }
    // Whether Pause, Continue and Stop are on, by their keys.
    std::vector<bool> pause_continue_stop() {
        std::vector<bool> on;
        for (const QKeySequence& key : {QKeySequence(Qt::Key_F6), QKeySequence(Qt::Key_F8),
                                        QKeySequence(Qt::SHIFT | Qt::Key_F9)})
            for (QAction* a : window_->findChildren<QAction*>())
                if (a->shortcut() == key) on.push_back(a->isEnabled());
        return on;
    }
    // The variables dock as name = value, and the names it highlights.
    std::map<std::string, int> shown(std::set<std::string>* highlighted) {
        std::map<std::string, int> out;
        const QTableWidget& v = *window_->variables();
        for (int row = 0; row < v.rowCount(); ++row) {
            const std::string name = v.item(row, 0)->text().toStdString();
            out[name] = v.item(row, 1)->text().toInt();
            if (v.item(row, 1)->background().style() != Qt::NoBrush) highlighted->insert(name);
        }
        return out;
    }
    testing_support::TempDir dir_;
};

// The loop's lines and what each does to the model; the numbers of the lines follow from the table.
TEST_F(WindowProgramTest, StepsAndBreakpointsStopWhereTheModelSaysWithTheValuesItHas) {
    const std::string head = "int n = 0\nint m = 5\nforever\n";
    const int first = 4;  // the loop's first line
    struct Line {
        const char* text;
        void (*effect)(std::map<std::string, int>&);
    };
    const Line body[] = {{"    n = n + 3", [](auto& v) { v["n"] += 3; }},
                         {"    m = m - n", [](auto& v) { v["m"] -= v["n"]; }},
                         {"    delay 10", [](auto&) {}}};
    std::string text = head;
    for (const Line& l : body)
        text += std::string(l.text) + "\n";
    window_->editor()->setText(QString::fromStdString(text + "end\n"));
    window_->editor()->toggle_breakpoint(first + 1);
    press(Qt::Key_F9);
    // Paused, the stage stands still while real time passes, and the panel still takes a click.
    const std::int64_t held = window_->stage().now();
    elapse(400);
    EXPECT_EQ(window_->stage().now(), held);
    const std::int32_t unclicked = property("chkSwitchLeft", -1, "Value");
    window_->input().click(element("chkSwitchLeft"));
    EXPECT_NE(property("chkSwitchLeft", -1, "Value"), unclicked);
    EXPECT_EQ(pause_continue_stop(), (std::vector<bool>{false, true, true}));
    std::map<std::string, int> model{{"n", 3}, {"m", 5}};
    int at = first + 1;
    std::mt19937 rng(7);
    for (int move = 0; move < 12; ++move) {
        ASSERT_TRUE(window_->stage().program().paused()) << "move " << move;
        EXPECT_EQ(window_->editor()->shown_line(), at);
        std::set<std::string> lit;
        EXPECT_EQ(shown(&lit), model) << "move " << move;
        // A step or a continue, as the generator says; the model runs to the same stop.
        const std::map<std::string, int> before = model;
        const bool step = rng() % 3 != 0;
        do {
            body[at - first].effect(model);
            at = first + (at - first + 1) % static_cast<int>(std::size(body));
        } while (!step && at != first + 1);
        press(step ? Qt::Key_F10 : Qt::Key_F8);
        elapse(15);
        std::set<std::string> changed;
        for (const auto& [name, value] : model)
            if (before.at(name) != value) changed.insert(name);
        lit.clear();
        shown(&lit);
        EXPECT_EQ(lit, changed) << "move " << move;
    }
    press(Qt::SHIFT | Qt::Key_F9);
    EXPECT_FALSE(window_->stage().program().running());
    EXPECT_EQ(pause_continue_stop(), (std::vector<bool>{false, false, false}));
}

// Running, the variables dock takes up the values once a display frame, not at each slice.
TEST_F(WindowProgramTest, RunningTheVariablesFollowOnceAFrame) {
    window_->editor()->setText("int n = 0\nforever\n    n = n + 1\n    delay 10\nend\n");
    press(Qt::Key_F9);
    elapse(200, 10);
    std::set<std::string> lit;
    EXPECT_EQ(shown(&lit).at("n"), 0);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return shown(&lit).at("n") == window_->stage().program().variable("n"); }, 1000));
    EXPECT_GT(shown(&lit).at("n"), 10);
}

TEST_F(WindowProgramTest, AFileChangedOnDiskComesInUnlessTheUserKeepsTheirEdits) {
    const std::string path = dir_.write("p.kflow", "LedOn(1)\n");
    ASSERT_TRUE(window_->open_program(path));
    const auto rewrite = [&](const char* text) {
        QFile f(QString::fromStdString(path));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(text);
    };
    rewrite("LedOn(2)\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return window_->editor()->text() == "LedOn(2)\n"; }, 3000));
    window_->set_confirm_reload([] { return false; });
    window_->editor()->append("LedOn(3)\n");
    rewrite("LedOn(4)\n");
    QTest::qWait(300);
    EXPECT_EQ(window_->editor()->text(), "LedOn(2)\nLedOn(3)\n");
    // Saved elsewhere, the file holds the editor's text as it stands.
    const std::string other = dir_.path() + "/q.kflow";
    ASSERT_TRUE(window_->save_program_as(other));
    EXPECT_EQ(testing_support::read_file(other), window_->editor()->text().toStdString());
    // Where no file can be written the save fails and says so.
    told_.clear();
    EXPECT_FALSE(window_->save_program_as(dir_.path() + "/missing/q.kflow"));
    ASSERT_EQ(told_.size(), 1u);
    EXPECT_NE(told_[0].find("cannot save the program"), std::string::npos) << told_[0];
}

TEST_F(WindowProgramTest, AProjectReopensToItsProgramAndArenaWrittenRelativeToIt) {
    const std::string program = dir_.write("work/go.kflow", "LedOn(5)\n");
    const std::string arena = dir_.copy(example("line_track.world"), "work/track.world");
    ASSERT_TRUE(window_->open_program(program));
    ASSERT_TRUE(window_->open_arena(arena));
    const std::string project = dir_.path() + "/robot.kproj";
    ASSERT_TRUE(window_->save_project_as(project));
    const std::string saved = testing_support::read_file(project);
    EXPECT_NE(saved.find("\"work/go.kflow\""), std::string::npos) << saved;
    EXPECT_EQ(saved.find(dir_.path()), std::string::npos) << saved;
    window_->set_confirm_discard([] { return true; });
    ASSERT_TRUE(window_->new_project());
    window_->close_arena();
    ASSERT_TRUE(window_->new_program());
    ASSERT_TRUE(window_->open_project(project));
    EXPECT_EQ(window_->program_pane()->program_path().toStdString(), program);
    EXPECT_EQ(window_->editor()->text(), "LedOn(5)\n");
    EXPECT_TRUE(window_->world().loaded());
}

TEST_F(WindowProgramTest, TheHexIsBuiltAsideWhileTheWindowGoesOn) {
    window_->editor()->setText("int k = 2\nLedOn(k)\ndelay 50\n");
    const std::string hex = dir_.path() + "/out.hex";
    QSignalSpy done(&window_->hex(), &window::HexBuilder::finished);
    ASSERT_TRUE(window_->save_hex(hex));
    // Still compiling when the call returns: the window's thread did not wait for it.
    EXPECT_TRUE(window_->hex().busy());
    ASSERT_TRUE(done.wait(60000));
    EXPECT_TRUE(done.at(0).at(0).toBool()) << done.at(0).at(1).toString().toStdString();
    EXPECT_EQ(testing_support::read_file(hex).substr(0, 1), ":");
}

// Recent files against a model (newest first, no repeats, the newest eight), kept with the zoom for
// the next start.
TEST_F(WindowProgramTest, TheRecentFilesAndTheZoomAreKeptForTheNextStart) {
    std::vector<std::string> files, model;
    for (int i = 0; i < 11; ++i)
        files.push_back(dir_.write("p" + std::to_string(i) + ".kflow", "LedOn(1)\n"));
    std::mt19937 rng(11);
    for (int open = 0; open < 30; ++open) {
        const std::string& f = files[rng() % files.size()];
        ASSERT_TRUE(window_->open_program(f));
        std::erase(model, f);
        model.insert(model.begin(), f);
        if (model.size() > window::WindowSettings::kMostRecent) model.pop_back();
    }
    // The docks' text grows with the zoom, 0.4 of the application's size a step.
    for (const int zoom : {2, 7}) {
        window_->set_zoom(zoom);
        const double scale = 1 + 0.4 * (window_->zoom() - 1);
        for (const QWidget* w : {static_cast<QWidget*>(window_->problems()),
                                 static_cast<QWidget*>(window_->variables())})
            EXPECT_DOUBLE_EQ(w->font().pointSizeF(), QApplication::font().pointSizeF() * scale);
    }
    EXPECT_EQ(window_->zoom(), 3);
    ASSERT_TRUE(window_->close());
    window::WindowOptions options;
    options.settings = settings_dir_.path() + "/window.conf";
    window::MainWindow next(options, [] { return std::int64_t{0}; });
    EXPECT_EQ(next.zoom(), 3);
    std::vector<std::string> kept;
    for (const QString& f : next.settings().recent())
        kept.push_back(f.toStdString());
    EXPECT_EQ(kept, model);
}

}  // namespace
}  // namespace window_testing
