// The user's mouse and keyboard on the panel view: handed to the PanelInput in panel pixels, with
// buttons and shift in the panel's terms; the panel decides what they do.
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "focus_order.h"
#include "panel_view.h"

namespace panelqt {

using kestrone::PointerAction;

namespace {

// Qt's modifiers and the panel's shift bits: 1 Shift, 2 Ctrl, 4 Alt.
constexpr std::array<std::pair<Qt::KeyboardModifier, std::int32_t>, 3> kShiftBits = {{
    {Qt::ShiftModifier, 1},
    {Qt::ControlModifier, 2},
    {Qt::AltModifier, 4},
}};

// Qt's mouse buttons and the panel's: 1 left, 2 right, 4 middle.
constexpr std::array<std::pair<Qt::MouseButton, std::int32_t>, 3> kButtonBits = {{
    {Qt::LeftButton, 1},
    {Qt::RightButton, 2},
    {Qt::MiddleButton, 4},
}};

std::int32_t shift_bits(Qt::KeyboardModifiers modifiers) {
    std::int32_t bits = 0;
    for (const auto& [modifier, bit] : kShiftBits)
        if (modifiers & modifier) bits |= bit;
    return bits;
}

std::int32_t button_bits(Qt::MouseButtons buttons) {
    std::int32_t bits = 0;
    for (const auto& [button, bit] : kButtonBits)
        if (buttons & button) bits |= bit;
    return bits;
}

// Page Up and Page Down step the arrows this many times.
constexpr int kPageSteps = 10;

}  // namespace

void PanelView::forward_pointer(PointerAction action, QMouseEvent* event) {
    // A press or release names the one button; a move, every button held.
    const Qt::MouseButtons buttons =
        action == PointerAction::Move ? event->buttons() : Qt::MouseButtons(event->button());
    const QPointF at = event->position() / zoom_;
    input_.pointer(action, button_bits(buttons), shift_bits(event->modifiers()),
                   static_cast<float>(at.x()), static_cast<float>(at.y()));
    after_input();
}

void PanelView::mousePressEvent(QMouseEvent* event) {
    forward_pointer(PointerAction::Down, event);
}

void PanelView::mouseMoveEvent(QMouseEvent* event) {
    forward_pointer(PointerAction::Move, event);
}

void PanelView::mouseReleaseEvent(QMouseEvent* event) {
    forward_pointer(PointerAction::Up, event);
}

void PanelView::after_input() {
    refresh();
    emit input_delivered();
}

void PanelView::put_mark(std::int32_t id) {
    if (focused_ >= 0) schedule(widget_rect(focused_));
    focused_ = id;
    schedule(widget_rect(focused_));
}

bool PanelView::move_focus(bool forward) {
    const std::int32_t next = next_focus(focus_order(*panel_), focused_, forward);
    if (next < 0) return false;
    put_mark(next);
    panel_->SetFocus(next);
    return true;
}

void PanelView::follow_focus() {
    std::int32_t id = -1;
    if (panel_->GetFocus(&id) != kestrone::S_OK || id < 0 || id == focused_) return;
    const std::vector<std::int32_t> order = focus_order(*panel_);
    if (std::find(order.begin(), order.end(), id) != order.end()) put_mark(id);
}

bool PanelView::focusNextPrevChild(bool next) {
    return move_focus(next);
}

void PanelView::press_focused(int times, bool up) {
    kestrone::ElementInfo info;
    if (focused_ < 0 || panel_->GetElement(focused_, &info) != kestrone::S_OK ||
        info.kind != kestrone::ElementKind::UpDown)
        return;
    for (int i = 0; i < times; ++i)
        input_.arrow(focused_, up);
    after_input();
}

void PanelView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
            press_focused(1, event->key() == Qt::Key_Up);
            return;
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            press_focused(kPageSteps, event->key() == Qt::Key_PageUp);
            return;
        case Qt::Key_Space: {
            kestrone::ElementInfo info;
            if (focused_ >= 0 && panel_->GetElement(focused_, &info) == kestrone::S_OK &&
                info.kind == kestrone::ElementKind::CheckBox) {
                input_.click(focused_);
                after_input();
            }
            return;
        }
        default:
            QWidget::keyPressEvent(event);
    }
}

}  // namespace panelqt
