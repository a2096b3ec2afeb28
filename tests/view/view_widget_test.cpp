// The view as a widget: the focus walked with the keyboard and its mark, keys and the mouse handed
// on in the panel's terms, and repaints limited to what changed.
#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <tuple>

#include "panel_view.h"
#include "pixel_geometry.h"
#include "view_robot.h"

namespace {

using kestrone::HRESULT;
using kestrone::PointerAction;
using kestrone::S_OK;
using view_testing::ViewRobot;

void key(QWidget& w, int k, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, k, modifiers);
    QApplication::sendEvent(&w, &press);
}

void mouse(QWidget& w, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QMouseEvent event(type, at, w.mapToGlobal(at), button, held, modifiers);
    QApplication::sendEvent(&w, &event);
}

// Runs the event loop until `done` or a second has passed.
template <class F>
bool wait_for(F done) {
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 1000)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    return done();
}

// The real panel in a view that hands the input straight to it.
class ViewTest : public ::testing::Test {
  protected:
    ViewRobot robot;
    panelqt::DirectPanelInput input{robot.panel()};
    panelqt::PanelView view{robot.panel(), input};
};

TEST_F(ViewTest, TabWalksTheShownElementsThatTakeTheFocusInTabOrder) {
    const std::vector<std::int32_t> order = {robot.id("Picture1"),       robot.id("chkLineLeft"),
                                             robot.id("chkLineRight"),   robot.id("chkSwitchLeft"),
                                             robot.id("chkSwitchRight"), robot.id("updownADC", 0),
                                             robot.id("updownADC", 1),   robot.id("updownADC", 2),
                                             robot.id("updownADC", 3),   robot.id("updownADC", 4)};
    EXPECT_EQ(view.focused_element(), -1);
    for (std::size_t i = 0; i <= order.size(); ++i) {
        key(view, Qt::Key_Tab);
        EXPECT_EQ(view.focused_element(), order[i % order.size()]) << i;
    }
    // Back from the first round the end to the last, then on backwards.
    key(view, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(view.focused_element(), order.back());
    key(view, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(view.focused_element(), order[order.size() - 2]);
    // A hidden element, and those in a hidden frame, are passed by.
    robot.put("chkLineLeft", -1, "Visible", kestrone::Variant::boolean(false));
    robot.put("frameSwitches", -1, "Visible", kestrone::Variant::boolean(false));
    for (const std::int32_t next : {order[9], order[0], order[2], order[5]}) {
        key(view, Qt::Key_Tab);
        EXPECT_EQ(view.focused_element(), next);
    }
}

// The pixels where a grab of the view differs from the panel rendered without a focus mark.
std::vector<QPoint> mark(panelqt::PanelView& view, ViewRobot& robot) {
    const QImage shown = view.grab().toImage(), plain = robot.render();
    std::vector<QPoint> differ;
    for (int y = 0; y < plain.height(); ++y)
        for (int x = 0; x < plain.width(); ++x)
            if ((shown.pixel(x, y) & 0xFFFFFF) != (plain.pixel(x, y) & 0xFFFFFF))
                differ.emplace_back(x, y);
    return differ;
}

TEST_F(ViewTest, TheMarkIsADottedLineInsideTheFocusedElement) {
    EXPECT_TRUE(mark(view, robot).empty());
    for (const char* name : {"Picture1", "chkLineLeft"}) {
        key(view, Qt::Key_Tab);
        // Inside what shows of the element: the logo is cut at the panel's bottom.
        const kestrone::ElementView look = robot.look(name);
        const QRect shows = panelqt::pixel_rect(look.box) & panelqt::pixel_rect(look.clip);
        const QRect inside = shows - QMargins(2, 2, 2, 2);
        const std::vector<QPoint> dots = mark(view, robot);
        EXPECT_GT(dots.size(), 20u) << name;
        for (const QPoint& p : dots) {
            const bool on_edge = p.x() == inside.left() || p.x() == inside.right() ||
                                 p.y() == inside.top() || p.y() == inside.bottom();
            EXPECT_TRUE(inside.contains(p) && on_edge) << name << " " << p.x() << "," << p.y();
        }
    }
}

TEST_F(ViewTest, ArrowsPagesAndSpaceWorkTheFocusedElement) {
    const auto value = [&] { return robot.info("updownADC", 0).value; };
    // Space on the logo, which is no check box, does nothing.
    key(view, Qt::Key_Tab);
    std::uint64_t before = 0, after = 0;
    robot.panel().GetRevision(&before);
    key(view, Qt::Key_Space);
    key(view, Qt::Key_Up);
    robot.panel().GetRevision(&after);
    EXPECT_EQ(after, before);
    for (int i = 0; i < 3; ++i)
        key(view, Qt::Key_Tab);
    key(view, Qt::Key_Space);
    EXPECT_EQ(robot.info("chkSwitchLeft").check_value, 1);
    EXPECT_EQ(robot.info("chkSwitchRight").check_value, 0);
    // The switch's click hands the focus back to the logo.
    EXPECT_EQ(view.focused_element(), robot.id("Picture1"));
    for (int i = 0; i < 5; ++i)
        key(view, Qt::Key_Tab);  // on to updownADC(0)
    const int start = value();
    for (const auto& [k, change] : {std::pair{Qt::Key_PageUp, 10},
                                    {Qt::Key_PageUp, 20},
                                    {Qt::Key_Down, 19},
                                    {Qt::Key_PageDown, 9},
                                    {Qt::Key_Up, 10}}) {
        key(view, k);
        EXPECT_EQ(value(), start + change) << k;
    }
}

struct PointerCall {
    PointerAction action;
    std::int32_t buttons, shift;
    float x, y;
    bool operator==(const PointerCall&) const = default;
};

class RecordingInput : public panelqt::PanelInput {
  public:
    HRESULT pointer(PointerAction action, std::int32_t buttons, std::int32_t shift, float x,
                    float y) override {
        calls.push_back({action, buttons, shift, x, y});
        return S_OK;
    }
    HRESULT click(std::int32_t) override { return S_OK; }
    HRESULT arrow(std::int32_t, bool) override { return S_OK; }
    std::vector<PointerCall> calls;
};

TEST(ViewMouse, ThePointerGoesOnInPanelPixelsWithButtonsAndShift) {
    ViewRobot robot;
    RecordingInput input;
    panelqt::PanelView view(robot.panel(), input);
    view.set_zoom(3);
    EXPECT_EQ(view.size(), QSize(1032, 846));
    mouse(view, QEvent::MouseButtonPress, {90, 51}, Qt::LeftButton, Qt::LeftButton,
          Qt::ShiftModifier);
    mouse(view, QEvent::MouseMove, {93, 60}, Qt::NoButton, Qt::RightButton | Qt::MiddleButton,
          Qt::ControlModifier | Qt::AltModifier);
    mouse(view, QEvent::MouseButtonRelease, {99, 63}, Qt::RightButton, Qt::LeftButton);
    const std::vector<PointerCall> want = {{PointerAction::Down, 1, 1, 30, 17},
                                           {PointerAction::Move, 6, 6, 31, 20},
                                           {PointerAction::Up, 2, 0, 33, 21}};
    EXPECT_EQ(input.calls, want);
}

// A left press puts the focus on an element that takes it; a switch's click then hands it to the
// logo, and the switch is due for a repaint.
TEST_F(ViewTest, APressAndReleaseOnASwitchAtZoomTwoClicksIt) {
    view.set_zoom(2);
    int delivered = 0;
    QObject::connect(&view, &panelqt::PanelView::input_delivered, [&] { ++delivered; });
    const auto press = [&](const char* name, std::int32_t index, Qt::MouseButton button) {
        const QPointF centre = QPointF(robot.box(name, index).center()) * 2;
        mouse(view, QEvent::MouseButtonPress, centre, button, button);
        mouse(view, QEvent::MouseButtonRelease, centre, button, Qt::NoButton);
    };
    press("updownADC", 2, Qt::LeftButton);
    press("chkSwitchLeft", -1, Qt::RightButton);
    press("lblADCVal", 0, Qt::LeftButton);
    EXPECT_EQ(view.focused_element(), robot.id("updownADC", 2));
    delivered = 0;
    press("chkLineRight", -1, Qt::LeftButton);
    EXPECT_EQ(robot.info("chkLineRight").check_value, 1);
    EXPECT_EQ(delivered, 2);
    EXPECT_EQ(view.focused_element(), robot.id("Picture1"));
    const QRect box = robot.box("chkLineRight");
    EXPECT_TRUE(view.pending_region().contains(QRect(box.topLeft() * 2, box.size() * 2)));
}

// Only what changed is due for a repaint, a moved element's old place too; all of it goes out in
// one repaint.
TEST_F(ViewTest, OnlyWhatChangedIsRepaintedAtOnce) {
    view.set_zoom(2);
    view.show();
    robot.put("updownADC", 3, "Value", kestrone::Variant::long_(40));
    const QRect before = robot.box("imSlideBar", 3);
    view.refresh();
    ASSERT_TRUE(wait_for([&] { return view.repaint_count() > 0; }));
    ASSERT_TRUE(wait_for([&] { return view.pending_region().isEmpty(); }));
    view.refresh();
    EXPECT_TRUE(view.pending_region().isEmpty());
    const int settled = view.repaint_count();
    robot.put("updownADC", 3, "Value", kestrone::Variant::long_(220));
    robot.put("imageUp", 1, "Visible", kestrone::Variant::boolean(false));
    const QRect after = robot.box("imSlideBar", 3);
    ASSERT_FALSE(before.intersects(after));
    view.refresh();
    const QRegion due = view.pending_region();
    for (const QRect& r : {before, after, robot.box("imageUp", 1)})
        EXPECT_TRUE(due.contains(QRect(r.topLeft() * 2, r.size() * 2))) << r.x() << "," << r.y();
    EXPECT_FALSE(due.intersects(QRect(robot.box("Picture1").topLeft() * 2, QSize(40, 40))));
    ASSERT_TRUE(wait_for([&] { return view.pending_region().isEmpty(); }));
    QApplication::processEvents();
    EXPECT_EQ(view.repaint_count(), settled + 1);
}

TEST_F(ViewTest, ARepaintRaisesThePanelsPaintAndShowsWhatItDrew) {
    robot.macro(10, {0b0100'0001});  // LEDs 0 and 6: shown when the panel is painted next
    const QImage image = view.grab().toImage();
    EXPECT_TRUE(robot.look("imageLedOn", 6).shown);
    EXPECT_FALSE(robot.look("imageLedOn", 5).shown);
    EXPECT_GT(view_testing::count_colour(image, robot.box("imageLedOn", 6), 0xFF0000u), 10);
    EXPECT_EQ(view_testing::count_colour(image, robot.box("imageLedOn", 5), 0xFF0000u), 0);
}

TEST_F(ViewTest, AReplacedPanelStartsAfresh) {
    key(view, Qt::Key_Tab);
    ASSERT_EQ(robot.session.create_object(), S_OK);
    ASSERT_EQ(robot.session.make_ready(), S_OK);
    input.set_panel(robot.panel());
    view.reset(robot.panel());
    EXPECT_EQ(view.focused_element(), -1);
    EXPECT_TRUE(view.pending_region().isEmpty());
    view.refresh();
    EXPECT_TRUE(view.pending_region().isEmpty());
    const QImage image = view.grab().toImage();
    EXPECT_EQ(image.size(), QSize(344, 282));
    EXPECT_EQ(image.pixel(100, 260), robot.render().pixel(100, 260));
}

}  // namespace
