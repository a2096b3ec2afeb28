#include "panel/pictures/picture_sources.h"

#include <array>

namespace picture_compiler {

namespace {

// Sizes are the elements' natural sizes: the logic places the images by them (the lit LED is a
// row taller than the dark one, so that the two coincide one row apart).
constexpr std::array kSources{
    PictureSource{"LedLit", 0, "led_lit.xpm", 23, 27},
    PictureSource{"LedDark", 0, "led_dark.xpm", 23, 26},
    PictureSource{"MotorStopped", 0, "motor_stopped.xpm", 24, 24},
    PictureSource{"MotorForward", 0, "motor_forward.xpm", 24, 24},
    PictureSource{"MotorBackward", 0, "motor_backward.xpm", 24, 24},
    PictureSource{"WheelDrum", 0, "wheel_drum.xpm", 29, 76},
    PictureSource{"WheelLine", 0, "wheel_line.xpm", 27, 1},
    PictureSource{"BarVertical", 0, "bar_vertical.xpm", 28, 10},
    PictureSource{"BarHorizontal", 0, "bar_horizontal.xpm", 10, 28},
    PictureSource{"TrackVertical", 0, "track_vertical.xpm", 12, 80},
    PictureSource{"TrackLeft", 0, "track_left.xpm", 80, 12},
    PictureSource{"TrackRight", 0, "track_right.xpm", 80, 12},
    PictureSource{"PushSwitch", 0, "push_switch.xpm", 24, 24},
    PictureSource{"LineSensor", 0, "line_sensor.xpm", 30, 24},
    PictureSource{"Logo", 0, "logo.xpm", 166, 47},
    PictureSource{"Heading0", 0, "heading_00.xpm", 64, 72},
    PictureSource{"Heading0", 1, "heading_01.xpm", 64, 72},
    PictureSource{"Heading0", 2, "heading_02.xpm", 64, 72},
    PictureSource{"Heading0", 3, "heading_03.xpm", 64, 72},
    PictureSource{"Heading0", 4, "heading_04.xpm", 64, 72},
    PictureSource{"Heading0", 5, "heading_05.xpm", 64, 72},
    PictureSource{"Heading0", 6, "heading_06.xpm", 64, 72},
    PictureSource{"Heading0", 7, "heading_07.xpm", 64, 72},
    PictureSource{"Heading0", 8, "heading_08.xpm", 64, 72},
    PictureSource{"Heading0", 9, "heading_09.xpm", 64, 72},
    PictureSource{"Heading0", 10, "heading_10.xpm", 64, 72},
    PictureSource{"Heading0", 11, "heading_11.xpm", 64, 72},
    PictureSource{"Heading0", 12, "heading_12.xpm", 64, 72},
};

}  // namespace

std::span<const PictureSource> picture_sources() {
    return kSources;
}

}  // namespace picture_compiler
