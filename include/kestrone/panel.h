// The panel as a view sees it: the elements with their properties and a change counter, where and
// how each is painted, the pictures as pixels, the pointer, clicks and arrow presses, the panel's
// size, and the timers. A view paints from this alone and forwards the user's input; the component
// keeps all of the panel's state.
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

// How a view paints an element. The element's colours come resolved (ElementView); its caption,
// alignment, border, check state and picture come with ElementInfo. Text is in the dialogue font
// that labels sized to their text assume (kTextCellWidth by kTextCellHeight pixels a character).
enum class ElementStyle : std::uint8_t {
    None,  // not painted: a timer
    // The picture at the box's top left at its natural size, cut at the box; stretched to the box
    // when `stretch`. Nothing else: the rest of the box is see-through.
    Picture,
    // A flat one-pixel line in the fore colour round the box; the picture inside it.
    BorderedPicture,
    // Filled with the back colour; the picture at the top left, cut at the box.
    PictureBox,
    // Filled with the back colour; an etched line round the box, shadow outside and light one
    // pixel in, its top edge half a text line down; the caption in the fore colour across the top
    // edge, kTextCellWidth from the left, on the back colour.
    GroupFrame,
    // Filled with the back colour unless `back_transparent`; the caption in the fore colour from
    // the top, as `alignment` says; a flat one-pixel line in the fore colour round the box when
    // `border_style` is 1.
    Label,
    // A button filled with the back colour, raised (light at the top and left, shadow at the
    // bottom and right), sunken while `check_value` is not 0. Its picture, centred, stands above
    // its caption; the two together are centred in the box, one pixel right and down while sunken.
    GraphicalCheckBox,
    // A rounded rectangle that fills the box in the fore colour; its corners' radius is a quarter
    // of the box's shorter side; its rim, two pixels wide, is the same colour.
    Plate,
    // Two raised buttons filled with the back colour, one above the other, each half the box; each
    // holds a small triangle in the fore colour, the upper one pointing up (towards Max).
    Arrows,
};

// A character of the dialogue font, in panel pixels.
inline constexpr std::int32_t kTextCellWidth = 6, kTextCellHeight = 13;

struct Rgba {
    std::uint8_t red = 0, green = 0, blue = 0, alpha = 0;  // alpha 0 is see-through, 255 opaque
    bool operator==(const Rgba&) const = default;
};

// A rectangle in panel pixels. Edges may fall between pixels (a bar or a wheel line moves in
// twips): a view that paints whole pixels rounds each edge to the nearest.
struct PanelRect {
    float left = 0, top = 0, width = 0, height = 0;
    bool operator==(const PanelRect&) const = default;
};

// Where and how an element is painted.
struct ElementView {
    ElementStyle style = ElementStyle::None;
    PanelRect box;   // the element's rectangle
    PanelRect clip;  // what its containers and the panel's own edges leave of the panel
    std::int32_t paint_order = -1;  // its place in GetPaintOrder; -1 for an element not painted
    bool shown = false;             // visible, and so is every container that holds it
    Rgba fore, back;                // resolved; a back with alpha 0 is not painted
    Rgba light, shadow;             // the two shades of a raised, sunken or etched edge
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
    // The panel's own background, under all of its elements.
    virtual HRESULT GetBackColour(Rgba* colour) noexcept = 0;
    // The container asks for a size; the panel answers with a Resize of its own.
    virtual HRESULT SetSize(float width_twips, float height_twips) noexcept = 0;
    // The panel must be repainted (the panel's Paint event).
    virtual HRESULT Paint() noexcept = 0;

    // The pointer at x, y in panel pixels; `buttons` as the toolkit gives them (1 left, 2 right,
    // 4 middle; for a move the sum of the buttons held). While the component holds the thread the
    // panel takes no input, as under a modal box: Pointer, Click and Arrow give S_FALSE and
    // deliver nothing (a release still ends a press).
    virtual HRESULT Pointer(PointerAction action, std::int32_t buttons, std::int32_t shift, float x,
                            float y) noexcept = 0;
    // A user's click on a check box, and on the upper (towards Max) or lower arrow of an UpDown.
    virtual HRESULT Click(std::int32_t id) noexcept = 0;
    virtual HRESULT Arrow(std::int32_t id, bool up) noexcept = 0;
    // The element that holds the keyboard focus; -1 for none. A press of the left button on an
    // element that can take the focus gives it the focus, and the component may move it itself;
    // a view that walks the focus with the keyboard says where it put it. SetFocus refuses an
    // element that cannot take the focus (E_INVALIDARG).
    virtual HRESULT GetFocus(std::int32_t* id) noexcept = 0;
    virtual HRESULT SetFocus(std::int32_t id) noexcept = 0;

    // Where and how element `id` is painted. A frame's children move with it: a change of a
    // frame's place changes its children's boxes too.
    virtual HRESULT GetElementView(std::int32_t id, ElementView* view) noexcept = 0;
    // Every painted element, back to front over the whole panel: a frame before its children,
    // each container's elements in their stacking.
    virtual HRESULT GetPaintOrder(std::vector<std::int32_t>* back_to_front) noexcept = 0;
    // Picture `picture` (ElementInfo::picture) as `width` by `height` pixels, rows top first,
    // red, green, blue and alpha a byte each. E_INVALIDARG for none or a number that names none.
    virtual HRESULT GetPicture(std::uint32_t picture, std::int32_t* width, std::int32_t* height,
                               std::vector<std::uint8_t>* rgba) noexcept = 0;

    // Timers. The panel keeps a clock of its own in milliseconds. NextTick gives the earliest
    // tick due, at `due_ms` on that clock, of timer `timer` (-1: none is running). A tick kept
    // through a hold is due at once, at the clock's present, once the thread is free.
    virtual HRESULT GetClock(std::int64_t* now_ms) noexcept = 0;
    virtual HRESULT NextTick(std::int64_t* due_ms, std::int32_t* timer) noexcept = 0;
    // One tick of Timer1(timer), now; the ticks kept through a hold come first. S_FALSE when the
    // component holds the thread: the tick is kept, one a timer, and raised when the thread is
    // free.
    virtual HRESULT Tick(std::int32_t timer) noexcept = 0;
    // Brings the panel's clock to `now_ms` (never backwards). Every tick due after the present and
    // no later than now_ms is raised in time order (ties: lower index first), unless the component
    // holds the thread (a message box or a tone, and any call that re-enters from inside one):
    // then every due time still moves on, and each timer keeps at most one tick, raised when the
    // thread is free (no pile-up after a stall). `ticks` counts the ticks raised by this call.
    // S_FALSE when the thread was held and nothing was raised.
    virtual HRESULT AdvanceTo(std::int64_t now_ms, std::int64_t* ticks) noexcept = 0;
    // The next tick alone, for a host that keeps step with each: a kept tick first, at the
    // present; else the earliest tick due no later than until_ms, the clock brought to its time.
    // S_OK with its time and timer; S_FALSE, and nothing moves, when none is due by then or the
    // component holds the thread.
    virtual HRESULT RaiseNextTick(std::int64_t until_ms, std::int64_t* at_ms,
                                  std::int32_t* timer) noexcept = 0;

  protected:
    ~IKestronePanel() = default;
};

}  // namespace kestrone
