// The headless panel: every element with its place, look and properties, control arrays by index,
// the paint order, hit testing with pointer capture, check boxes, arrows, the timers on a clock of
// the panel's own, and the panel's size. It holds no logic of the robot: what an element raises
// goes to one sink.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kestrone/panel.h"
#include "panel/colours.h"

namespace panel {

using kestrone::ElementKind;
using kestrone::ElementStyle;
using kestrone::PictureRole;
using kestrone::PointerAction;

struct Element : kestrone::ElementInfo {
    ElementStyle style = ElementStyle::None;
    bool autosize = false;      // a label sized to its text
    bool takes_pointer = true;  // shapes and timers never receive the pointer
    std::int64_t next_due = 0;  // a timer's next tick on the panel's clock
    std::vector<int> children;  // a frame's elements, front to back
};

enum class Event : std::uint8_t {
    Click,
    Change,
    MouseDown,
    MouseMove,
    MouseUp,
    Timer,
    Resize,
    Paint
};

struct MouseArgs {
    std::int16_t button = 0, shift = 0;
    float x = 0, y = 0;  // in the element's own coordinates
};

// Receives what the elements raise. `element` is null for the panel's own events (Resize, Paint).
class PanelEvents {
  public:
    virtual ~PanelEvents() = default;
    virtual void panel_event(const Element* element, Event event, const MouseArgs* mouse) = 0;
};

// The element ids of the control arrays that the logic works on, by index.
struct ElementIds {
    std::array<int, 5> frameADC, imSlideBase, imSlideBar, lblADCVal, updownADC;
    std::array<int, 2> frameMotor, WheelBase, lblSpeedVal, imageStopped, imageUp, imageDown, Timer1;
    std::array<int, 22> WheelLine;
    std::array<int, 8> imageLedOn, imageLedOff;
    std::array<int, 13> imDirection;
    int chkSwitchLeft, chkSwitchRight, chkLineLeft, chkLineRight, Picture1;
};

class Panel {
  public:
    static constexpr float kDesignWidth = 6555, kDesignHeight = 5055;

    Panel();
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    void set_sink(PanelEvents* sink) { sink_ = sink; }

    // ---- elements
    int count() const { return static_cast<int>(elements_.size()); }
    const Element& at(int id) const { return elements_[static_cast<std::size_t>(id)]; }
    // The element NAME or NAME(index); -1 for none. `index` is -1 for a single element.
    int find(std::string_view name, std::int64_t index) const;
    bool is_control_array(std::string_view name) const;
    bool has_element(std::string_view name) const;
    const ElementIds& ids() const { return ids_; }
    // arr(index) of a control array, as the runtime reaches it: error 340 for a missing element.
    template <std::size_t N>
    static int member(const std::array<int, N>& arr, std::int64_t index) {
        if (index < 0 || index >= static_cast<std::int64_t>(N)) missing_element();
        return arr[static_cast<std::size_t>(index)];
    }

    // ---- writes as a program makes them; each counts as a change only if the value changes
    void set_left(int id, float v);
    void set_top(int id, float v);
    void set_width(int id, float v);
    void set_height(int id, float v);
    void set_visible(int id, bool v);
    void set_caption(int id, std::string v);
    // A check box's Value, 0 to 2: Click follows a change.
    void set_check_value(int id, std::int16_t v);
    // An UpDown's Value is brought into the range; Change follows a change, before this returns.
    void set_updown_value(int id, std::int32_t v);
    void set_updown_min(int id, std::int32_t v);
    void set_updown_max(int id, std::int32_t v);
    void set_updown_increment(int id, std::int32_t v);
    // A timer's Interval, 0 to 65535 ms: the period starts afresh now; 0 stops the timer.
    void set_interval(int id, std::int32_t ms);
    void set_timer_enabled(int id, bool v);
    void set_focus(int id) { focus_ = id; }
    int focus() const { return focus_; }
    // A check box, picture box or UpDown in the tab order, shown and enabled.
    bool takes_focus(int id) const;

    // ---- the panel's size, in twips; the scale of the panel itself is pixels
    float width_twips() const { return width_; }
    float height_twips() const { return height_; }
    // A change of either raises Resize, before this returns.
    void set_width_twips(float v);
    void set_height_twips(float v);
    float twips_per_pixel() const { return twips_per_pixel_; }
    // The panel's own BackColor, the runtime's colour: the buttons' face.
    std::uint32_t back_colour() const { return kButtonFace; }
    // The panel's ScaleX and ScaleY from its own scale (pixels) to twips, and back.
    float pixels_to_twips_x(float px) const;
    float pixels_to_twips_y(float px) const;
    float twips_to_pixels_x(float tw) const;
    float twips_to_pixels_y(float tw) const;

    // ---- the user's input
    void pointer(PointerAction action, std::int32_t buttons, std::int32_t shift, float x, float y);
    // A click on a check box: its Value toggles between 0 and 1, then Click.
    void click(int id);
    // A click on the upper (towards Max) or lower arrow of an UpDown.
    void arrow(int id, bool up);
    int captured() const { return capture_; }
    // A press ends without a release reaching anyone (the panel took no input meanwhile).
    void release_capture() { capture_ = -1; }
    // The panel has to be repainted: Paint.
    void paint() { raise(nullptr, Event::Paint); }
    // The frontmost element under a point in panel pixels, and the point in its coordinates.
    int hit_test(float x, float y, float* local_x, float* local_y) const;

    // ---- painting: every painted element back to front, and each element's place in it (-1: none)
    const std::vector<int>& paint_order() const { return paint_order_; }
    int paint_rank(int id) const { return paint_rank_[static_cast<std::size_t>(id)]; }

    // ---- timers (panel_timers.cpp)
    std::int64_t now() const { return now_; }
    int timer_count() const { return static_cast<int>(ids_.Timer1.size()); }
    // The earliest tick due of a running timer; false if none runs. Ties go to the lower index.
    bool next_tick(std::int64_t* due, int* timer) const;
    // One tick of Timer1(timer), raised now (error 340 for no such timer).
    void tick(int timer);
    // Brings the clock to `end`, never backwards. With the thread free, the ticks kept through a
    // hold come first, lower index first, then every tick due by `end` in time order. With the
    // thread held nothing is raised: each due time moves on past `end` in whole periods, and a
    // timer that was due keeps one tick. The number of ticks raised.
    std::int64_t advance_to(std::int64_t end, bool held);
    // With the thread free: the first tick kept through a hold, else the earliest due by `end`
    // (the clock brought to it), raised alone. False, and nothing moves, when there is none.
    bool raise_next(std::int64_t end, std::int64_t* at, int* timer);
    // A tick asked for while the thread is held waits, one a timer, for the thread to be free.
    void keep_tick(int timer);
    // The lowest timer with a tick kept; -1 for none.
    int kept_tick() const;

    // ---- the change counter
    std::uint64_t revision() const { return revision_; }
    void changed_since(std::uint64_t since, std::vector<std::int32_t>& ids) const;

  private:
    [[noreturn]] static void missing_element();
    Element& mut(int id) { return elements_[static_cast<std::size_t>(id)]; }
    void touch(Element& e) { e.revision = ++revision_; }
    void raise(const Element* e, Event ev, const MouseArgs* mouse = nullptr);
    void autosize(Element& e);
    void deliver_mouse(int id, PointerAction action, std::int32_t buttons, std::int32_t shift,
                       float x, float y);
    void restart_timer(Element& e);

    std::vector<Element> elements_;
    std::vector<int> top_level_;  // front to back
    std::vector<int> paint_order_;
    std::vector<int> paint_rank_;
    ElementIds ids_{};
    PanelEvents* sink_ = nullptr;
    float width_ = kDesignWidth, height_ = kDesignHeight;
    float twips_per_pixel_ = 15;
    int capture_ = -1;
    int focus_ = -1;
    std::int64_t now_ = 0;
    std::uint64_t revision_ = 0;
    std::uint32_t kept_ = 0;  // a bit for each timer with a tick kept
};

}  // namespace panel
