// The panel's elements as the panel's data give them, in twips, each container's elements front to
// back. Rows are data; the LED rows and the wheel lines follow the rules that placed them.
#include "panel/layout.h"

#include <array>

#include "panel/colours.h"
#include "panel/panel_geometry.h"

namespace panel {

namespace {

using K = ElementKind;
using P = PictureRole;

// The runtime's colours: 0x00BBGGRR.
constexpr std::uint32_t kPureGreen = 0x0000FF00, kOlive = 0x00008080;

// How an element looks beyond its place.
enum class Style : std::uint8_t {
    Timer,         // not drawn
    Image,         // an image at its picture's size
    PictureBox,    // the logo's box
    Bordered,      // an image with a flat single-line border
    Group,         // a frame with its caption in the border
    ValueCaption,  // green on the plate, transparent, centred, sized to its text
    PowerLabel,    // centred, no border
    SpeedValue,    // centred, flat single-line border, window colours
    LedLabel,      // sized to its text
    Graphical,     // a check box drawn as a button with its picture, window colours
    Plate,         // the rounded plate behind a value caption
    Arrows,
};

struct Row {
    std::string_view name;
    std::int16_t index;  // -1: not a control array
    K kind;
    float left, top, width, height;
    std::string_view caption;
    P picture;
    Style style;
    bool visible;
};

constexpr Row kTopLevel[] = {
    {"Frame1", -1, K::Frame, 1230, 1020, 2790, 855, "LEDs", P::None, Style::Group, true},
    {"frameMotor", 1, K::Frame, 3990, 2835, 1170, 1395, "Right motor", P::None, Style::Group, true},
    {"frameMotor", 0, K::Frame, 120, 2835, 1170, 1395, "Left motor", P::None, Style::Group, true},
    {"frameADC", 4, K::Frame, 3210, 1890, 1950, 900, "Right", P::None, Style::Group, true},
    {"frameADC", 3, K::Frame, 2190, 1890, 900, 1755, "Forward", P::None, Style::Group, true},
    {"frameADC", 1, K::Frame, 4320, 0, 840, 1875, "MIC", P::None, Style::Group, true},
    {"frameADC", 2, K::Frame, 120, 1890, 1950, 900, "Left", P::None, Style::Group, true},
    {"frameADC", 0, K::Frame, 120, 0, 840, 1875, "LDR", P::None, Style::Group, true},
    {"frameSwitches", -1, K::Frame, 975, 0, 1170, 930, "Switches", P::None, Style::Group, true},
    {"frameLineFollowers", -1, K::Frame, 3135, 0, 1170, 930, "Line followers", P::None,
     Style::Group, true},
    {"Picture1", -1, K::PictureBox, 1365, 3645, 2505, 705, "", P::Logo, Style::PictureBox, true},
    // Its border, without a caption, lies wholly behind its pictures and Frame1.
    {"frameDirImages", -1, K::Frame, 2160, -60, 960, 1350, "", P::None, Style::Group, true},
    // Not drawn; ticking from the start.
    {"Timer1", 0, K::Timer, 0, 0, 0, 0, "", P::None, Style::Timer, true},
    {"Timer1", 1, K::Timer, 0, 0, 0, 0, "", P::None, Style::Timer, true},
};

// A sensor panel's elements, front to back: arrows, bar, caption, plate, track.
struct SensorCells {
    std::array<float, 4> updown, bar, caption, plate, track;
    P bar_picture, track_picture;
};
constexpr SensorCells kSensorPanels[5] = {
    {{30, 1365, 255, 465},
     {195, 570, 420, 150},
     {420, 1575, 270, 195},
     {315, 1530, 480, 300},
     {375, 225, 180, 1200},
     P::BarVertical,
     P::TrackVertical},
    {{30, 1365, 255, 465},
     {255, 525, 420, 150},
     {420, 1575, 270, 195},
     {315, 1530, 480, 300},
     {375, 225, 180, 1200},
     P::BarVertical,
     P::TrackVertical},
    {{1410, 615, 495, 240},
     {645, 225, 150, 420},
     {1530, 300, 270, 195},
     {1425, 255, 480, 300},
     {90, 435, 1200, 180},
     P::BarHorizontal,
     P::TrackLeft},
    {{30, 1215, 255, 465},
     {255, 525, 420, 150},
     {450, 1470, 270, 195},
     {360, 1410, 480, 300},
     {375, 225, 180, 1080},
     P::BarVertical,
     P::TrackVertical},
    {{1410, 615, 495, 240},
     {570, 315, 150, 420},
     {1530, 300, 270, 195},
     {1425, 255, 480, 300},
     {90, 435, 1200, 180},
     P::BarHorizontal,
     P::TrackRight},
};

// A motor panel's elements apart from its wheel lines, front to back; the index is the frame's.
constexpr Row kMotorPanel[] = {
    {"imageStopped", 0, K::Image, 585, 840, 390, 390, "", P::MotorStopped, Style::Bordered, true},
    {"lblSpeed", 0, K::Label, 570, 255, 435, 195, "power", P::None, Style::PowerLabel, true},
    {"lblSpeedVal", 0, K::Label, 495, 510, 570, 255, "255", P::None, Style::SpeedValue, true},
    {"imageUp", 0, K::Image, 585, 840, 390, 390, "", P::MotorForward, Style::Bordered, false},
    {"imageDown", 0, K::Image, 585, 840, 390, 390, "", P::MotorBackward, Style::Bordered, false},
};
constexpr Row kWheelBase{"WheelBase", 0,  K::Image,     45,           195, 435,
                         1140,        "", P::WheelDrum, Style::Image, true};

// The wheel lines' places in the panel's data; start-up replaces them.
constexpr std::array<std::array<float, 2>, 22> kWheelLinePlaces{{
    {75, 240}, {75, 285},  {60, 360}, {60, 810}, {60, 555},  {60, 975}, {75, 630}, {75, 675},
    {60, 750}, {60, 1200}, {60, 945}, {60, 930}, {75, 1185}, {60, 735}, {75, 660}, {75, 615},
    {60, 960}, {60, 540},  {60, 795}, {60, 345}, {75, 270},  {75, 225},
}};

constexpr Row kCheckBoxes[] = {
    {"chkSwitchRight", -1, K::CheckBox, 615, 195, 480, 675, "right", P::PushSwitch,
     Style::Graphical, true},
    {"chkSwitchLeft", -1, K::CheckBox, 75, 195, 480, 675, "left", P::PushSwitch, Style::Graphical,
     true},
    {"chkLineRight", -1, K::CheckBox, 615, 195, 480, 675, "right", P::LineSensor, Style::Graphical,
     true},
    {"chkLineLeft", -1, K::CheckBox, 75, 195, 480, 675, "left", P::LineSensor, Style::Graphical,
     true},
};

// The heading pictures, front to back in the panel's data.
constexpr std::array<std::int16_t, 13> kHeadingOrder{8, 7, 6, 5, 4, 3, 2, 1, 0, 12, 11, 10, 9};

struct TabStop {
    std::string_view name;
    std::int16_t index;
};
constexpr TabStop kTabOrder[] = {
    {"Picture1", -1},       {"frameLineFollowers", -1},
    {"chkLineLeft", -1},    {"chkLineRight", -1},
    {"frameSwitches", -1},  {"frameADC", 0},
    {"lblADCVal", 0},       {"frameADC", 2},
    {"lblADCVal", 2},       {"frameADC", 1},
    {"lblADCVal", 1},       {"frameADC", 3},
    {"lblADCVal", 3},       {"frameADC", 4},
    {"lblADCVal", 4},       {"frameMotor", 0},
    {"lblSpeed", 0},        {"lblSpeedVal", 0},
    {"frameMotor", 1},      {"lblSpeedVal", 1},
    {"lblSpeed", 1},        {"chkSwitchLeft", -1},
    {"chkSwitchRight", -1}, {"Frame1", -1},
    {"lblLED", 8},          {"lblLED", 9},
    {"lblLED", 10},         {"lblLED", 11},
    {"lblLED", 12},         {"lblLED", 13},
    {"lblLED", 14},         {"lblLED", 15},
    {"updownADC", 0},       {"updownADC", 1},
    {"updownADC", 2},       {"updownADC", 3},
    {"updownADC", 4},       {"frameDirImages", -1},
};

// The view's style of each of the layout's, by Style.
constexpr ElementStyle kViewStyles[] = {
    ElementStyle::None,       ElementStyle::Picture,
    ElementStyle::PictureBox, ElementStyle::BorderedPicture,
    ElementStyle::GroupFrame, ElementStyle::Label,
    ElementStyle::Label,      ElementStyle::Label,
    ElementStyle::Label,      ElementStyle::GraphicalCheckBox,
    ElementStyle::Plate,      ElementStyle::Arrows,
};
static_assert(std::size(kViewStyles) == static_cast<std::size_t>(Style::Arrows) + 1);

void apply_style(Element& e, Style style) {
    e.style = kViewStyles[static_cast<std::size_t>(style)];
    e.fore_colour = kButtonText;
    e.back_colour = kButtonFace;
    switch (style) {
        case Style::Bordered:
            e.border_style = 1;
            break;
        case Style::ValueCaption:
            e.fore_colour = kPureGreen;
            e.back_transparent = true;
            e.alignment = 2;
            e.autosize = true;
            break;
        case Style::PowerLabel:
            e.alignment = 2;
            break;
        case Style::SpeedValue:
            e.alignment = 2;
            e.border_style = 1;
            e.fore_colour = kWindowText;
            e.back_colour = kWindowBackground;
            break;
        case Style::LedLabel:
            e.autosize = true;
            break;
        case Style::Graphical:
            e.fore_colour = kWindowText;
            e.back_colour = kWindowBackground;
            break;
        case Style::Plate:
            e.fore_colour = kOlive;  // its one colour, the border's
            e.back_transparent = true;
            e.takes_pointer = false;
            break;
        case Style::Arrows:
            e.min = 0;
            e.max = 1023;
            e.increment = 1;
            break;
        case Style::Timer:
        case Style::Image:
        case Style::PictureBox:
        case Style::Group:
            break;
    }
}

class Builder {
  public:
    Builder(std::vector<Element>& elements, std::vector<int>& top_level, float twips_per_pixel)
        : elements_(elements), top_level_(top_level), tpp_(twips_per_pixel) {}

    int add(const Row& r, int container, std::int16_t index) {
        Element e;
        e.name = std::string(r.name);
        e.index = index;
        e.kind = r.kind;
        e.container = container;
        // The panel's own scale is pixels; a frame's children keep twips.
        const float scale = twips_per_unit(container, tpp_);
        e.left = r.left / scale;
        e.top = r.top / scale;
        e.width = r.width / scale;
        e.height = r.height / scale;
        e.caption = std::string(r.caption);
        e.picture = static_cast<std::uint32_t>(r.picture);
        e.visible = r.visible;
        apply_style(e, r.style);
        if (r.kind == K::Timer) {
            e.interval = 100;
            e.next_due = 100;
            e.takes_pointer = false;
        }
        const int id = static_cast<int>(elements_.size());
        if (container < 0) {
            e.z_order = static_cast<std::int32_t>(top_level_.size());
            top_level_.push_back(id);
        } else {
            auto& siblings = elements_[static_cast<std::size_t>(container)].children;
            e.z_order = static_cast<std::int32_t>(siblings.size());
            siblings.push_back(id);
        }
        elements_.push_back(std::move(e));
        return id;
    }

    int find(std::string_view name, std::int16_t index) const {
        for (std::size_t i = 0; i < elements_.size(); ++i)
            if (elements_[i].name == name && elements_[i].index == index)
                return static_cast<int>(i);
        return -1;
    }

  private:
    std::vector<Element>& elements_;
    std::vector<int>& top_level_;
    float tpp_;
};

Row cell(std::string_view name, K kind, const std::array<float, 4>& c, std::string_view caption,
         P picture, Style style) {
    return {name, 0, kind, c[0], c[1], c[2], c[3], caption, picture, style, true};
}

// The five sensor panels: the arrows, bar, caption, plate and track of each.
void add_sensor_panels(Builder& b, std::vector<Element>& elements) {
    for (std::int16_t i = 0; i < 5; ++i) {
        const int frame = b.find("frameADC", i);
        const SensorCells& s = kSensorPanels[i];
        const int updown =
            b.add(cell("updownADC", K::UpDown, s.updown, "", P::None, Style::Arrows), frame, i);
        if (i == 2) {
            // Its range runs the other way, so that the arrow towards Max lowers the value.
            elements[static_cast<std::size_t>(updown)].min = 1023;
            elements[static_cast<std::size_t>(updown)].max = 0;
        }
        b.add(cell("imSlideBar", K::Image, s.bar, "", s.bar_picture, Style::Image), frame, i);
        b.add(cell("lblADCVal", K::Label, s.caption, "000", P::None, Style::ValueCaption), frame,
              i);
        b.add(cell("Shape1", K::Shape, s.plate, "", P::None, Style::Plate), frame, i);
        const int track = b.add(
            cell("imSlideBase", K::Image, s.track, "", s.track_picture, Style::Image), frame, i);
        // The one track shorter than its picture stretches it.
        if (i == 3) elements[static_cast<std::size_t>(track)].stretch = true;
    }
}

void add_motor_panels(Builder& b) {
    // In the left motor the lines come first; in the right one they lie between the direction
    // signs and the drum. Either way every line lies over the drum.
    auto add_lines = [&](std::int16_t motor, int frame) {
        for (std::int16_t k = 0; k < 11; ++k) {
            const std::int16_t line = static_cast<std::int16_t>(11 * motor + k);
            const auto& place = kWheelLinePlaces[static_cast<std::size_t>(line)];
            b.add({"WheelLine", line, K::Image, place[0], place[1], 405, 15, "", P::WheelLine,
                   Style::Image, true},
                  frame, line);
        }
    };
    for (std::int16_t m = 0; m < 2; ++m) {
        const int frame = b.find("frameMotor", m);
        if (m == 0) add_lines(m, frame);
        for (const Row& r : kMotorPanel)
            b.add(r, frame, m);
        if (m == 1) add_lines(m, frame);
        b.add(kWheelBase, frame, m);
    }
}

void add_leds(Builder& b) {
    // LED i stands at 60 + 330 x (7 - i): LED 7 leftmost. The lit picture is a pixel taller and
    // stands 15 higher, so that the two coincide.
    const int leds = b.find("Frame1", -1);
    for (std::int16_t i = 0; i < 8; ++i)
        b.add({"imageLedOn", i, K::Image, 60.0f + 330.0f * static_cast<float>(7 - i), 165, 345, 405,
               "", P::LedLit, Style::Image, false},
              leds, i);
    for (std::int16_t i = 0; i < 8; ++i)
        b.add({"imageLedOff", i, K::Image, 60.0f + 330.0f * static_cast<float>(7 - i), 180, 345,
               390, "", P::LedDark, Style::Image, true},
              leds, i);
    static constexpr std::array<std::string_view, 8> kDigits{"7", "6", "5", "4",
                                                             "3", "2", "1", "0"};
    for (std::int16_t k = 8; k < 16; ++k)
        b.add({"lblLED", k, K::Label, 180.0f + 330.0f * static_cast<float>(k - 8),
               k == 15 ? 555.0f : 570.0f, 90, 195, kDigits[static_cast<std::size_t>(k - 8)],
               P::None, Style::LedLabel, true},
              leds, k);
}

}  // namespace

void build_layout(std::vector<Element>& elements, std::vector<int>& top_level,
                  float twips_per_pixel) {
    Builder b(elements, top_level, twips_per_pixel);
    for (const Row& r : kTopLevel)
        b.add(r, -1, r.index);
    add_sensor_panels(b, elements);
    add_motor_panels(b);
    add_leds(b);

    const int switches = b.find("frameSwitches", -1);
    const int followers = b.find("frameLineFollowers", -1);
    b.add(kCheckBoxes[0], switches, -1);
    b.add(kCheckBoxes[1], switches, -1);
    b.add(kCheckBoxes[2], followers, -1);
    b.add(kCheckBoxes[3], followers, -1);

    const int headings = b.find("frameDirImages", -1);
    for (std::int16_t k : kHeadingOrder)
        b.add({"imDirection", k, K::Image, 0, 0, 960, 1080, "",
               static_cast<P>(static_cast<int>(P::Heading0) + k), Style::Image, true},
              headings, k);

    std::int32_t tab = 0;
    for (const TabStop& t : kTabOrder)
        elements[static_cast<std::size_t>(b.find(t.name, t.index))].tab_index = tab++;
}

}  // namespace panel
