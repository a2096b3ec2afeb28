// A program edited on its chart in the window: an icon dropped from the palette onto a way, its
// form filled in, an icon deleted, a decision dragged with its body to another way. Each lands
// in the editor as the chart's library writes it, as one step of the editor's own undo; and a
// breakpoint toggled on an icon is the editor's.
#include <QApplication>
#include <QDrag>
#include <QLineEdit>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "chart_canvas.h"
#include "icon_form.h"
#include "window_fixture.h"

namespace window_testing {
namespace {

class ChartEditTest : public WindowTest {
  protected:
    chartqt::ChartDock& dock() { return *window_->chart_dock(); }
    chartqt::ChartCanvas& canvas() { return *dock().canvas(); }
    const chart::Chart& shown() { return *canvas().chart(); }
    std::string text() { return window_->editor()->text().toStdString(); }
    // The first line whose code starts with `start`.
    int line_of(const std::string& start) {
        for (int n = 1; n <= shown().lines().count(); ++n)
            if (chart::code_of(shown().lines().at(n)).starts_with(start)) return n;
        ADD_FAILURE() << start;
        return 0;
    }
    QPoint centre_of(int line) { return canvas().pixels_of_line(line).center(); }
    // The middle of the way's last run, in pixels.
    QPoint on_way(const chart::Way& way) {
        for (const chart::Path& p : canvas().layout().ways)
            if (p.place == way) {
                const chart::Point a = p.points[p.points.size() - 2], b = p.points.back();
                return QPoint(a.x + b.x, a.y + b.y) * canvas().zoom() / 2;
            }
        ADD_FAILURE() << "no way";
        return {};
    }
    // Dragged over the canvas to `at`, where a way lights, and dropped.
    void drop(std::unique_ptr<QMimeData> data, QPoint at) {
        QDragEnterEvent enter(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &enter);
        QDragMoveEvent move(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &move);
        const bool on_a_way = canvas().way_at(at).has_value();
        EXPECT_EQ(move.isAccepted(), on_a_way);
        const QRgb seen = canvas().grab(QRect(at, QSize(1, 1))).toImage().pixel(0, 0) & 0xFFFFFFu;
        EXPECT_EQ(seen == 0x1C6DD0u, on_a_way) << std::hex << seen;
        QDropEvent drop(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &drop);
    }
    void mouse(QEvent::Type type, QPoint at) {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent e(type, at, canvas().mapToGlobal(at), button, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &e);
    }
};

TEST_F(ChartEditTest, EditsOnTheChartGoIntoTheEditorEachOneStepOfItsUndo) {
    ASSERT_TRUE(window_->open_program(example("square.kflow")));
    window_->set_zoom(2);
    window_->show();
    QApplication::setActiveWindow(window_.get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    // Typed but not yet checked: the chart is behind, and an edit on it would lose the typing.
    window_->editor()->append("LedOn(3)\n");
    std::vector<std::string> texts{text()};
    const auto took = [&](const chart::EditResult& want) {
        ASSERT_EQ(want.refused, "");
        EXPECT_EQ(text(), want.text);
        texts.push_back(text());
    };

    // Every icon of the palette dropped before the first `delay` in the loop, the first macro
    // with a parameter last.
    const chartqt::ChartPalette& palette = *dock().palette();
    const auto from_palette = [&](int row) {
        return std::unique_ptr<QMimeData>(
            palette.model()->mimeData({palette.model()->index(row, 0)}));
    };
    std::vector<int> rows;
    int row = -1;
    for (int r = 0; r < palette.count(); ++r) {
        const chart::PaletteIcon& i = palette.icons()[r];
        if (row < 0 && i.form.kind == chart::IconKind::Call && !i.field_names.empty())
            row = r;
        else
            rows.push_back(r);
    }
    rows.push_back(row);
    const chart::Way in_loop{line_of("repeat"), 0, 2};
    EXPECT_EQ(canvas().way_at(on_way(in_loop)), in_loop);
    drop(from_palette(row), on_way(in_loop));
    EXPECT_EQ(text(), texts.back());
    drop(from_palette(row), QPoint(0, 0));  // on no way
    EXPECT_EQ(text(), texts.back());
    drop(std::unique_ptr<QMimeData>(
             chartqt::drag_data({chartqt::ChartDrag::From::Palette, palette.count()})),
         on_way(in_loop));  // a row the palette has not
    EXPECT_EQ(text(), texts.back());
    chart::EditResult inserted;
    for (const int r : rows) {
        inserted = chart::insert_icon(shown(), in_loop, palette.icons()[r].form);
        drop(from_palette(r), on_way(in_loop));
        took(inserted);
    }

    // A line with nothing to edit opens no form.
    dock().open_form(0);
    EXPECT_EQ(dock().form(), nullptr);
    // Its form: a field named after the parameter, a fault under it while it is wrong. Another
    // text closes it; the palette follows that text's variables.
    mouse(QEvent::MouseButtonDblClick, centre_of(inserted.line));
    QPointer<chartqt::IconForm> other = dock().form();
    const kflow::MacroTable& macros = *window_->checker().macros();
    ASSERT_TRUE(dock().set_program("int zed = 0\n" + text(), "square.kflow", macros));
    EXPECT_TRUE(other.isNull() || !other->isVisible());
    const auto assign =
        std::find_if(palette.icons().begin(), palette.icons().end(),
                     [](const auto& i) { return i.form.kind == chart::IconKind::Assign; });
    EXPECT_EQ(assign->form.fields.front(), "zed");
    dock().set_program(text(), "square.kflow", macros);
    mouse(QEvent::MouseButtonDblClick, centre_of(inserted.line));
    chartqt::IconForm* form = dock().form();
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->field(0)->objectName().toStdString(), palette.icons()[row].field_names[0]);
    form->field(0)->setText("7 +");
    EXPECT_FALSE(form->fault(0).isEmpty());
    EXPECT_FALSE(form->can_accept());
    form->field(0)->setText("(7 + 0x5A)");
    std::vector<std::string> fields;
    for (int k = 0; k < form->field_count(); ++k)
        fields.push_back(form->field(k)->text().toStdString());
    const chart::EditResult edited = chart::edit_icon(shown(), inserted.line, fields);
    EXPECT_TRUE(form->fault(0).isEmpty());
    form->accept();
    took(edited);

    // Delete on the icon clicked.
    const int spin = line_of("SpinLeft");
    const chart::EditResult removed = chart::remove_icon(shown(), spin);
    mouse(QEvent::MouseButtonPress, centre_of(spin));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    took(removed);

    // The decision with its body, dragged to the top once the pointer has gone far enough.
    const int decision = line_of("if ReadSwitch");
    const chart::Way top{0, 0, 0};
    const chart::EditResult moved = chart::move_icon(shown(), decision, top);
    mouse(QEvent::MouseButtonPress, centre_of(decision));
    mouse(QEvent::MouseMove, centre_of(decision) + QPoint(1, 1));
    EXPECT_EQ(canvas().findChild<QDrag*>(), nullptr);
    mouse(QEvent::MouseMove, centre_of(decision) + QPoint(0, 40));
    const QDrag* dragged = canvas().findChild<QDrag*>();
    ASSERT_NE(dragged, nullptr);
    mouse(QEvent::MouseMove, centre_of(decision) + QPoint(0, 60));  // one drag a press
    EXPECT_EQ(canvas().findChildren<QDrag*>().size(), 1);
    drop(std::unique_ptr<QMimeData>(chartqt::drag_data(*chartqt::drag_of(dragged->mimeData()))),
         on_way(top));
    took(moved);

    // Undone and redone on the chart, which follows at once, and in the editor alike.
    for (std::size_t k = texts.size() - 1; k > 0; --k) {
        QTest::keyClick(&canvas(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(text(), texts[k - 1]) << "undo to " << k - 1;
        EXPECT_EQ(shown().text(), texts[k - 1]) << "undo to " << k - 1;
    }
    for (std::size_t k = 1; k < texts.size(); ++k) {
        QTest::keyClick(&canvas(), Qt::Key_Y, Qt::ControlModifier);
        EXPECT_EQ(text(), texts[k]) << "redo to " << k;
        EXPECT_EQ(shown().text(), texts[k]) << "redo to " << k;
    }
    window_->editor()->undo();
    EXPECT_EQ(text(), texts[texts.size() - 2]);
}

// A click on an icon's left edge, or the editor's margin, toggles one set of breakpoints, marked
// on the icons in the breakpoints' colour.
TEST_F(ChartEditTest, BreakpointsToggledOnIconsAreTheEditorsAndMarkedThere) {
    ASSERT_TRUE(window_->open_program(example("line_follower.kflow")));
    QSignalSpy clicked(&dock(), &chartqt::ChartDock::line_clicked);
    mouse(QEvent::MouseButtonPress, QPoint(0, 0));  // on no icon
    EXPECT_EQ(clicked.count(), 0);
    std::set<int> model;
    for (const int line : {9, 13, 9, 23}) {
        if (!model.erase(line)) model.insert(line);
        const QRect icon = canvas().pixels_of_line(line);
        mouse(QEvent::MouseButtonPress, QPoint(icon.left() + 2, icon.center().y()));
        EXPECT_EQ(window_->editor()->breakpoints(), model) << line;
        const QRgb mark = canvas().grab().toImage().pixel(icon.left() + 5, icon.center().y());
        EXPECT_EQ((mark & 0xFFFFFFu) == 0xD03030u, model.count(line) == 1) << line;
    }
    window_->editor()->toggle_breakpoint(13);
    EXPECT_EQ(canvas().breakpoints(), (std::set<int>{23}));
}

}  // namespace
}  // namespace window_testing
