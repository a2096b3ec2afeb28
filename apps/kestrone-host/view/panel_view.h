// The panel in a Qt widget: paints every element from the panel interface, forwards the user's
// pointer, clicks and arrow presses, walks the focus with the keyboard. It keeps no robot logic:
// the component holds all of the panel's state and the view only reflects it.
#pragma once

#include <QImage>
#include <QRect>
#include <QRegion>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "frame_pacer.h"
#include "kestrone/panel.h"

namespace panelqt {

class PanelScene;

// Where the view's user input goes: the window routes it through its host session (which records
// it and refuses it while a call is in progress); tests send it straight to the panel.
class PanelInput {
  public:
    virtual ~PanelInput() = default;
    virtual kestrone::HRESULT pointer(kestrone::PointerAction action, std::int32_t buttons,
                                      std::int32_t shift, float x, float y) = 0;  // panel pixels
    virtual kestrone::HRESULT click(std::int32_t id) = 0;
    virtual kestrone::HRESULT arrow(std::int32_t id, bool up) = 0;
};

// PanelInput straight onto an IKestronePanel (tests, snapshot).
class DirectPanelInput final : public PanelInput {
  public:
    explicit DirectPanelInput(kestrone::IKestronePanel& panel) : panel_(&panel) {}
    void set_panel(kestrone::IKestronePanel& panel) { panel_ = &panel; }
    kestrone::HRESULT pointer(kestrone::PointerAction action, std::int32_t buttons,
                              std::int32_t shift, float x, float y) override;
    kestrone::HRESULT click(std::int32_t id) override;
    kestrone::HRESULT arrow(std::int32_t id, bool up) override;

  private:
    kestrone::IKestronePanel* panel_;
};

// The panel at a zoom of 1, 2 or 3. Each repaint by the platform raises the panel's Paint event
// first, as a container does; the painting itself reads the panel and changes nothing.
class PanelView : public QWidget {
    Q_OBJECT
  public:
    PanelView(kestrone::IKestronePanel& panel, PanelInput& input, QWidget* parent = nullptr);
    ~PanelView() override;

    void set_zoom(int zoom);  // 1, 2 or 3; the widget's fixed size follows
    int zoom() const { return zoom_; }
    // Asks the panel what changed since the last paint (its revision) and schedules a repaint of
    // those elements only, coalesced to at most one per display frame. Call after ticks/calls.
    void refresh();
    // The panel was replaced (new object): forget everything cached.
    void reset(kestrone::IKestronePanel& panel);
    int repaint_count() const { return repaint_count_; }

    // The element that holds the keyboard focus, -1 for none.
    std::int32_t focused_element() const { return focused_; }
    // Moves the focus to the next (or previous) element that can take it; false when none can.
    bool move_focus(bool forward);
    // The region, in widget pixels, that the next paint will cover (empty when none is due).
    QRegion pending_region() const { return pending_; }

  signals:
    // The user worked the panel (pointer, click, arrow): the panel may have changed.
    void input_delivered();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    // Adds a place to the next repaint.
    void schedule(const QRect& place);
    void flush();
    void after_input();
    void forward_pointer(kestrone::PointerAction action, QMouseEvent* event);
    void press_focused(int times, bool up);
    // The mark onto `id`, repainting where it was and where it goes.
    void put_mark(std::int32_t id);
    // The component's focus, when it moved it itself, onto an element that can take it.
    void follow_focus();
    QRect scaled(const QRect& panel_pixels) const;
    // Element `id`'s place in widget pixels.
    QRect widget_rect(std::int32_t id) const;
    // Every element's place as painted, so that a move or a hide repaints the old place too.
    void remember_places();

    kestrone::IKestronePanel* panel_;
    PanelInput& input_;
    std::unique_ptr<PanelScene> scene_;
    int zoom_ = 1;
    std::uint64_t painted_revision_ = 0;
    std::int32_t focused_ = -1;
    QRegion pending_;
    std::vector<QRect> boxes_;                            // added to pending_ since the last paint
    std::unordered_map<std::int32_t, QRect> last_rects_;  // in panel pixels
    FramePacer pacer_;
    int repaint_count_ = 0;
};

// The panel as it stands at `zoom`, rendered offscreen by the same painting code (needs a
// QGuiApplication; the offscreen platform will do). It raises no Paint event: the picture is of
// the panel as it is. A null image when the panel cannot be read.
QImage render_panel(kestrone::IKestronePanel& panel, int zoom = 1, int device_pixel_ratio = 1);

}  // namespace panelqt
