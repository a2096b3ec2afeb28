// A program edited on its chart in the window: an icon dropped from the palette onto a way, its
// form filled in, an icon deleted, a decision dragged with its body to another way. Each lands
// in the editor as the chart's library writes it, as one step of the editor's own undo; and a
// breakpoint toggled on an icon is the editor's.
#include <QApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QMouseEvent>
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
    // The middle of the longest run of the way, in pixels.
    QPoint on_way(const chart::Way& way) {
        QLine best;
        for (const chart::Path& p : canvas().layout().ways)
            for (std::size_t k = 1; p.place == way && k < p.points.size(); ++k) {
                const QLine run(p.points[k - 1].x, p.points[k - 1].y, p.points[k].x, p.points[k].y);
                if (std::abs(run.dx()) + std::abs(run.dy()) >
                    std::abs(best.dx()) + std::abs(best.dy()))
                    best = run;
            }
        return best.center() * canvas().zoom();
    }
    void drop(std::unique_ptr<QMimeData> data, QPoint at) {
        QDragEnterEvent enter(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &enter);
        QDragMoveEvent move(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &move);
        EXPECT_TRUE(move.isAccepted());
        QDropEvent drop(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &drop);
    }
    void mouse(QEvent::Type type, QPoint at) {
        QMouseEvent e(type, at, canvas().mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &e);
    }
};

TEST_F(ChartEditTest, EditsOnTheChartGoIntoTheEditorEachOneStepOfItsUndo) {
    ASSERT_TRUE(window_->open_program(example("square.kflow")));
    window_->set_zoom(2);
    std::vector<std::string> texts{text()};
    const auto took = [&](const chart::EditResult& want) {
        ASSERT_TRUE(want.ok()) << want.refused;
        EXPECT_EQ(text(), want.text);
        texts.push_back(text());
    };

    // The palette's first macro with a parameter, dropped before the first `delay` in the loop.
    const chartqt::ChartPalette& palette = *dock().palette();
    int row = 0;
    while (palette.icons()[row].form.kind != chart::IconKind::Call ||
           palette.icons()[row].field_names.empty())
        ++row;
    const chart::Way in_loop{line_of("repeat"), 0, 2};
    EXPECT_EQ(canvas().way_at(on_way(in_loop)), in_loop);
    const chart::EditResult inserted =
        chart::insert_icon(shown(), in_loop, palette.icons()[row].form);
    drop(std::unique_ptr<QMimeData>(palette.model()->mimeData({palette.model()->index(row, 0)})),
         on_way(in_loop));
    took(inserted);

    // Its form: a field named after the parameter, a fault under it while it is wrong.
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
    QTest::keyClick(&canvas(), Qt::Key_Delete);
    took(removed);

    // The decision with its body, dragged to the top.
    const int decision = line_of("if");
    const chart::Way top{0, 0, 0};
    const chart::EditResult moved = chart::move_icon(shown(), decision, top);
    drop(std::unique_ptr<QMimeData>(chartqt::drag_data({chartqt::ChartDrag::From::Line, decision})),
         on_way(top));
    took(moved);

    for (std::size_t k = texts.size() - 1; k > 0; --k) {
        window_->editor()->undo();
        EXPECT_EQ(text(), texts[k - 1]) << "undo to " << k - 1;
    }
    for (std::size_t k = 1; k < texts.size(); ++k) {
        window_->editor()->redo();
        EXPECT_EQ(text(), texts[k]) << "redo to " << k;
    }
}

// A click on an icon's left edge, or the editor's margin, toggles one set of breakpoints, marked
// on the icons in the breakpoints' colour.
TEST_F(ChartEditTest, BreakpointsToggledOnIconsAreTheEditorsAndMarkedThere) {
    ASSERT_TRUE(window_->open_program(example("line_follower.kflow")));
    std::set<int> model;
    const auto marked = [&](int line) {
        const QRect icon = canvas().pixels_of_line(line);
        const QImage image = canvas().grab().toImage();
        return (image.pixel(icon.left() + 5, icon.center().y()) & 0xFFFFFFu) == 0xD03030u;
    };
    for (const int line : {9, 13, 9, 23}) {
        if (!model.erase(line)) model.insert(line);
        const QRect icon = canvas().pixels_of_line(line);
        mouse(QEvent::MouseButtonPress, QPoint(icon.left() + 2, icon.center().y()));
        EXPECT_EQ(window_->editor()->breakpoints(), model) << line;
        EXPECT_EQ(marked(line), model.count(line) == 1) << line;
    }
    window_->editor()->toggle_breakpoint(13);
    EXPECT_EQ(canvas().breakpoints(), (std::set<int>{23}));
}

}  // namespace
}  // namespace window_testing
