// The panel as a view sees it: the elements with their properties and a change counter, the
// pointer, clicks and arrow presses, the panel's size, and the timers. A view paints from this and
// forwards the user's input; the component keeps all of the panel's state.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kestrone/com.h"

namespace kestrone {

inline constexpr Guid IID_IKestronePanel{
    0x8C3F2D20, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x20}};

enum class ElementKind : std::uint8_t {
    Frame,
    Image,
    Label,
    CheckBox,
    PictureBox,
    Shape,
    Timer,
    UpDown
};

// What each picture shows; the view draws it at the element's size. 0 is none.
enum class PictureRole : std::uint8_t {
    None,
    LedLit,
    LedDark,
    MotorStopped,
    MotorForward,
    MotorBackward,
    WheelDrum,
    WheelLine,
    BarVertical,
    BarHorizontal,
    TrackVertical,
    TrackLeft,   // the track of panel 2: green at the left
    TrackRight,  // the track of panel 4: green at the right
    PushSwitch,
    LineSensor,
    Logo,
    Heading0,  // Heading0 + k is the heading picture k, 0 to 12
};

// One element. Left, Top, Width and Height are in its container's units: pixels for an element
// of the panel itself, twips for a frame's child. Colours are the runtime's: 0x00BBGGRR, or
// 0x800000nn for system colour nn.
struct ElementInfo {
    std::string name;
    std::int32_t index = -1;  // index in its control array; -1 for a single element
    ElementKind kind = ElementKind::Image;
    std::int32_t container = -1;  // element id of the frame that holds it; -1 the panel
    std::int32_t z_order = 0;     // 0 is frontmost within the container
    float left = 0, top = 0, width = 0, height = 0;
    std::string caption;
    std::uint32_t fore_colour = 0, back_colour = 0;
    bool back_transparent = false;
    std::int16_t border_style = 0;  // 0 none, 1 flat single line
    std::int16_t alignment = 0;     // 0 left, 1 right, 2 centre
    bool visible = true;
    bool enabled = true;
    bool stretch = false;
    std::int32_t tab_index = -1;   // -1 for an element outside the focus order
    std::uint32_t picture = 0;     // a PictureRole
    std::int16_t check_value = 0;  // a check box's Value
    std::int32_t value = 0, min = 0, max = 0, increment = 0;  // an UpDown's
    std::int32_t interval = 0;                                // a timer's, in milliseconds
    std::uint64_t revision = 0;  // the panel's change counter at this element's last change
};

enum class PointerAction : std::uint8_t { Down, Move, Up };

class IKestronePanel : public IUnknown {
  public:
    virtual HRESULT GetElementCount(std::int32_t* count) noexcept = 0;
    virtual HRESULT GetElement(std::int32_t id, ElementInfo* info) noexcept = 0;
    // The change counter: it grows with every change of any element or of the panel's size.
    virtual HRESULT GetRevision(std::uint64_t* revision) noexcept = 0;
    // The ids of the elements changed after `since`, and the counter now.
    virtual HRESULT GetChangedElements(std::uint64_t since, std::vector<std::int32_t>* ids,
                                       std::uint64_t* now) noexcept = 0;

    // The panel's size in twips, and the twips to a pixel.
    virtual HRESULT GetSize(float* width_twips, float* height_twips) noexcept = 0;
    virtual HRESULT GetTwipsPerPixel(float* twips) noexcept = 0;
    // The container asks for a size; the panel answers with a Resize of its own.
    virtual HRESULT SetSize(float width_twips, float height_twips) noexcept = 0;
    // The panel must be repainted (the panel's Paint event).
    virtual HRESULT Paint() noexcept = 0;

    // The pointer at x, y in panel pixels; `buttons` as the toolkit gives them (1 left, 2 right,
    // 4 middle; for a move the sum of the buttons held).
    virtual HRESULT Pointer(PointerAction action, std::int32_t buttons, std::int32_t shift, float x,
                            float y) noexcept = 0;
    // A user's click on a check box, and on the upper (towards Max) or lower arrow of an UpDown.
    virtual HRESULT Click(std::int32_t id) noexcept = 0;
    virtual HRESULT Arrow(std::int32_t id, bool up) noexcept = 0;

    // Timers. The panel keeps a clock of its own in milliseconds. NextTick gives the earliest
    // tick due, at `due_ms` on that clock, of timer `timer` (-1: none is running).
    virtual HRESULT GetClock(std::int64_t* now_ms) noexcept = 0;
    virtual HRESULT NextTick(std::int64_t* due_ms, std::int32_t* timer) noexcept = 0;
    // One tick of Timer1(timer), now. S_FALSE when the component is holding the thread (a message
    // box or a tone): the tick is kept and given once when the thread is free.
    virtual HRESULT Tick(std::int32_t timer) noexcept = 0;
    // Moves the clock on by `ms`, giving every tick due on the way in time order (ties: lower
    // index first); `ticks` counts them.
    virtual HRESULT Advance(std::int64_t ms, std::int32_t* ticks) noexcept = 0;

  protected:
    ~IKestronePanel() = default;
};

}  // namespace kestrone
