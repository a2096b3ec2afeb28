// The window's own actions: the property dialog around the page, project files with their mark
// for unsaved changes, and what the user is told when something fails.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QRect>
#include <QTest>
#include <QTimer>

#include "properties_dialog.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

using kestrone::Variant;

class WindowActionsTest : public WindowTest {
  protected:
    std::int32_t setting(const std::string& name) { return number_of(call(name)); }
};

TEST_F(WindowActionsTest, ApplyingThePageChangesTheSettingsAndMarksTheProjectUnsaved) {
    auto dialog = window_->make_properties();
    ASSERT_NE(dialog, nullptr);
    // The wait for a button is on by default: its box opens ticked, and a click clears it.
    auto* wait = qobject_cast<QCheckBox*>(dialog->widget("chkWaitForButton"));
    ASSERT_NE(wait, nullptr);
    EXPECT_EQ(wait->checkState(), Qt::Checked);
    wait->click();
    type_into(*dialog, "txtiThreshR", "300");
    qobject_cast<QRadioButton*>(dialog->widget("optInt"))->click();
    EXPECT_TRUE(dialog->apply_button()->isEnabled());
    EXPECT_FALSE(window_->session().dirty());
    dialog->apply_button()->click();
    EXPECT_EQ(setting("iThreshR"), 300);
    EXPECT_EQ(setting("bReturnInt"), 1);
    EXPECT_EQ(setting("bWaitForButton"), 0);
    EXPECT_EQ(field("iADCMax"), 1023);
    // The frame clears Changed after a good apply, and Apply goes grey with it.
    EXPECT_FALSE(dialog->apply_button()->isEnabled());
    EXPECT_TRUE(window_->session().dirty());
    EXPECT_TRUE(window_->isWindowModified());
    dialog->ok();
    EXPECT_FALSE(window_->session().page_open());
}

TEST_F(WindowActionsTest, AFailedApplyIsToldAndLeavesTheLaterSettings) {
    const std::int32_t front = setting("iThreshF");
    auto dialog = window_->make_properties();
    ASSERT_NE(dialog, nullptr);
    type_into(*dialog, "txtiThreshR", "77");
    type_into(*dialog, "txtiThreshF", "many");
    EXPECT_FALSE(dialog->apply());
    EXPECT_EQ(setting("iThreshR"), 77);
    EXPECT_EQ(setting("iThreshF"), front);
    ASSERT_EQ(told_.size(), 1u);
    EXPECT_NE(told_[0].find("Type mismatch"), std::string::npos) << told_[0];
    // Cancel closes the page without another apply.
    dialog->cancel();
    EXPECT_FALSE(window_->session().page_open());
    EXPECT_EQ(setting("iThreshR"), 77);
}

TEST_F(WindowActionsTest, ADamagedProjectFileLeavesTheOpenProjectAsItWas) {
    call("iThreshL", {Variant::integer(42)}, true);
    const std::string good = dir_.path() + "/good.kproj";
    ASSERT_TRUE(window_->save_project_as(good));
    EXPECT_FALSE(window_->isWindowModified());
    EXPECT_TRUE(window_->windowTitle().startsWith("good"));
    // An unsaved change through the page.
    auto dialog = window_->make_properties();
    type_into(*dialog, "txtiThreshL", "43");
    dialog->ok();
    ASSERT_TRUE(window_->session().dirty());
    const auto entries = window_->session().store().entries().size();
    kestrone::IKestronePanel* panel = window_->session().panel();

    const std::string bad = dir_.write("bad.kproj", "{\"entries\": [ {\"key\": ");
    int asked = 0;
    window_->set_confirm_discard([&] { return ++asked, true; });
    EXPECT_FALSE(window_->open_project(bad));
    EXPECT_EQ(asked, 1);
    ASSERT_EQ(told_.size(), 1u);
    EXPECT_NE(told_[0].find("bad.kproj"), std::string::npos) << told_[0];
    EXPECT_EQ(window_->session().project_path(), good);
    EXPECT_TRUE(window_->session().dirty());
    EXPECT_TRUE(window_->isWindowModified());
    EXPECT_EQ(window_->session().store().entries().size(), entries);
    EXPECT_EQ(window_->session().panel(), panel);
    EXPECT_EQ(setting("iThreshL"), 43);
    // A save that cannot be written is told and leaves the change unsaved.
    EXPECT_FALSE(window_->save_project_as(dir_.path() + "/missing/other.kproj"));
    ASSERT_EQ(told_.size(), 2u);
    EXPECT_NE(told_[1].find("could not be saved"), std::string::npos) << told_[1];
    EXPECT_TRUE(window_->session().dirty());

    // Kept when the user will not give the change up; the good file then opens with its settings.
    window_->set_confirm_discard([] { return false; });
    EXPECT_FALSE(window_->open_project(good));
    EXPECT_EQ(setting("iThreshL"), 43);
    window_->set_confirm_discard([] { return true; });
    EXPECT_TRUE(window_->open_project(good));
    EXPECT_EQ(setting("iThreshL"), 42);
    EXPECT_FALSE(window_->session().dirty());
}

TEST_F(WindowActionsTest, UnsavedChangesAreAskedForBeforeNewAndKeptWhenTheUserSaysNo) {
    auto dialog = window_->make_properties();
    type_into(*dialog, "txtiThreshF", "12");
    dialog->ok();
    kestrone::IKestronePanel* panel = window_->session().panel();
    // An untitled project has no file to save to: the user is asked for one instead.
    EXPECT_FALSE(window_->save_project());
    EXPECT_TRUE(window_->session().dirty());
    // The question itself, answered Cancel: the project stays.
    window_->set_confirm_discard(nullptr);
    QTimer::singleShot(0, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->button(QMessageBox::Cancel)->click();
    });
    EXPECT_FALSE(window_->new_project());
    EXPECT_EQ(setting("iThreshF"), 12);
    window_->set_confirm_discard([] { return false; });
    EXPECT_FALSE(window_->new_project());
    EXPECT_EQ(window_->session().panel(), panel);
    EXPECT_EQ(setting("iThreshF"), 12);
    EXPECT_FALSE(window_->close());
    window_->set_confirm_discard([] { return true; });
    EXPECT_TRUE(window_->new_project());
    EXPECT_NE(setting("iThreshF"), 12);
    EXPECT_FALSE(window_->session().dirty());
    EXPECT_TRUE(window_->windowTitle().startsWith("Untitled"));
}

TEST_F(WindowActionsTest, AProgramWithAFaultIsToldWithItsPlaceAndNothingRuns) {
    const std::string path = dir_.write("broken.kflow", "int a\nforever {\n  a = = 1\n}\n");
    // The editor takes it as it is, for the user to mend; running it tells the fault's place.
    EXPECT_TRUE(window_->open_program(path));
    EXPECT_TRUE(told_.empty());
    window_->run_program();
    EXPECT_EQ(field("bSimulating"), 0);
    ASSERT_EQ(told_.size(), 1u);
    EXPECT_NE(told_[0].find("broken.kflow:2:1:"), std::string::npos) << told_[0];
}

TEST(WindowStartTest, AMissingModuleIsToldAndLeavesNoObject) {
    window::WindowOptions options;
    options.module = "/nonexistent/KT5_Rovanta.so";
    window::MainWindow window(options, [] { return std::int64_t{0}; });
    std::vector<std::string> told;
    window.services().set_box_handler([&](QWidget* box) {
        told.push_back(static_cast<QMessageBox*>(box)->text().toStdString());
        box->close();
    });
    EXPECT_FALSE(window.start());
    ASSERT_EQ(told.size(), 1u);
    EXPECT_NE(told[0].find("/nonexistent/KT5_Rovanta.so"), std::string::npos) << told[0];
    EXPECT_EQ(window.view(), nullptr);
    EXPECT_FALSE(window.session().has_object());
}

// At zoom 2, as at 1: every widget at twice its place, its caption whole in the dialogue font,
// the option buttons one Tab stop that the arrows move through, and no limit on the text.
TEST_F(WindowActionsTest, ThePagesWidgetsStandAtTheirPlacesAndTabInTheirOrder) {
    window_->set_zoom(2);
    auto dialog = window_->make_properties();
    ASSERT_NE(dialog, nullptr);
    // 1500, 1260, 1560 and 330 twips inside its frame.
    EXPECT_EQ(dialog->widget("txtiThreshR")->geometry(), QRect(200, 168, 208, 44));
    EXPECT_EQ(dialog->widget("txtiThreshR")->parentWidget(), dialog->widget("Frame1"));
    EXPECT_EQ(dialog->widget("lblBiasLeft")->parentWidget(), dialog->widget("Frame3"));
    EXPECT_EQ(dialog->widget("Frame3")->geometry(), QRect(32, 400, 738, 194));
    for (QWidget* w : dialog->findChildren<QWidget*>()) {
        if (qobject_cast<QLabel*>(w) || qobject_cast<QAbstractButton*>(w)) {
            EXPECT_LE(w->sizeHint().width(), w->width()) << w->objectName().toStdString();
        }
    }
    const auto walk = [&] {
        std::vector<std::string> order;
        QWidget* w = dialog->widget("txtiThreshF");
        for (int n = 0; n < 6; ++n) {
            order.push_back(w->objectName().toStdString());
            do
                w = w->nextInFocusChain();
            while (!(w->focusPolicy() & Qt::TabFocus));
        }
        return order;
    };
    const std::vector<std::string> expected{"txtiThreshF", "txtiThreshL",      "txtiThreshR",
                                            "optByte",     "chkWaitForButton", "sldMotorBias"};
    EXPECT_EQ(walk(), expected);
    // A click on the option that is on leaves it on; an arrow puts the other on, as Apply writes.
    auto* byte = qobject_cast<QRadioButton*>(dialog->widget("optByte"));
    byte->click();
    EXPECT_TRUE(byte->isChecked());
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    byte->setFocus();
    QTest::keyClick(byte, Qt::Key_Down);
    EXPECT_TRUE(qobject_cast<QRadioButton*>(dialog->widget("optInt"))->isChecked());
    EXPECT_FALSE(byte->isChecked());
    EXPECT_EQ(walk()[3], "optInt");
    auto* right = qobject_cast<QLineEdit*>(dialog->widget("txtiThreshR"));
    EXPECT_EQ(right->text().toInt(), setting("iThreshR"));
    right->selectAll();
    right->insert(QString("0").repeated(40000) + "7");  // as a paste puts it
    ASSERT_TRUE(dialog->apply());
    EXPECT_EQ(setting("bReturnInt"), 1);
    EXPECT_EQ(setting("iThreshR"), 7);
}

}  // namespace
}  // namespace window_testing
