// The panel painted by a view that knows nothing of the robot: what the layout fixes shows where
// it belongs.
#include <gtest/gtest.h>

#include "simulation_fixture.h"
#include "support/panel_painter.h"

namespace {

using kestrone::PanelRect;
using kestrone::Rgba;
using kestrone::S_OK;
using kestrone::Variant;
using sim_testing::params;
using sim_testing::SimRobot;
using testing_support::PanelImage;
using testing_support::Picture;
using testing_support::pixel_box;

class PaintedRobot : public SimRobot {
  public:
    PaintedRobot() {
        unknown()->QueryInterface(kestrone::IID_IKestronePanel, view_.put());
        unknown()->QueryInterface(kestrone::IID_IKestronePanelInspection, inspect_.put());
    }
    PanelImage paint() {
        PanelImage image;
        EXPECT_EQ(testing_support::paint_panel(*view_.get(), &image), S_OK);
        return image;
    }
    Picture picture_of(const char* name, int index = -1) {
        Picture p;
        EXPECT_EQ(testing_support::get_picture(*view_.get(), el(name, index).picture, &p), S_OK);
        return p;
    }
    kestrone::ElementView look(const char* name, int index = -1) {
        kestrone::ElementView v;
        EXPECT_EQ(view_->GetElementView(panel().find(name, index), &v), S_OK);
        return v;
    }
    void show(const char* name, int index, bool visible) {
        const std::int32_t i = index;
        ASSERT_EQ(inspect_->PutProperty(name, index < 0 ? nullptr : &i, "Visible",
                                        Variant::boolean(visible)),
                  S_OK);
    }

  private:
    kestrone::ComPtr<kestrone::IKestronePanel> view_;
    kestrone::ComPtr<kestrone::IKestronePanelInspection> inspect_;
};

// The pixels of `pic` that land on the image when its top left is at `left`, `top` and that
// differ from it there; `columns` short of its right edge when its neighbour may cover them.
int mismatches(const PanelImage& image, const Picture& pic, int left, int top, int columns = 0) {
    int bad = 0;
    for (int y = 0; y < pic.height; ++y)
        for (int x = 0; x < pic.width - columns; ++x) {
            const int ix = left + x, iy = top + y;
            if (ix >= 0 && iy >= 0 && ix < image.width && iy < image.height)
                bad += !(image.at(ix, iy) == pic.at(x, y));
        }
    return bad;
}

int differences(const PanelImage& a, const PanelImage& b, int left, int top, int right,
                int bottom) {
    int n = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            n += !(a.at(x, y) == b.at(x, y));
    return n;
}

TEST(PanelPainting, LedsStandFromSevenAtTheLeftToZeroAtTheRight) {
    PaintedRobot robot;
    const PanelImage dark = robot.paint();
    ASSERT_EQ(dark.width, 344);
    ASSERT_EQ(dark.height, 282);
    const Picture off = robot.picture_of("imageLedOff", 0), on = robot.picture_of("imageLedOn", 0);
    // In Frame1 at (82, 68): LED i at 4 + 22 x (7 - i), the dark one 12 down, the lit one 11.
    // Each is a pixel wider than the step, and its right neighbour stands in front.
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(mismatches(dark, off, 86 + 22 * (7 - i), 80, i > 0), 0) << "LED " << i;
    ASSERT_EQ(robot.call(11, params({0})), S_OK);  // LED 0 on
    ASSERT_EQ(robot.call(11, params({6})), S_OK);
    robot.r().simulation.UserControl_Paint();  // the lamps follow a repaint
    const PanelImage lit = robot.paint();
    EXPECT_EQ(mismatches(lit, on, 240, 79), 0);
    EXPECT_EQ(mismatches(lit, on, 108, 79, 1), 0);
    EXPECT_EQ(mismatches(lit, off, 86, 80, 1), 0);
    EXPECT_EQ(mismatches(lit, off, 218, 80, 1), 0);
}

TEST(PanelPainting, Frame1HidesTheLowerPartOfTheHeadingFrame) {
    PaintedRobot robot;
    const PanelImage with = robot.paint();
    robot.show("frameDirImages", -1, false);
    const PanelImage without = robot.paint();
    // The heading frame spans 144 to 208 across and -4 to 86 down; Frame1 starts at 68.
    EXPECT_EQ(differences(with, without, 144, 68, 208, 86), 0);
    EXPECT_GT(differences(with, without, 144, 0, 208, 68), 64 * 40);
    const Picture heading = robot.picture_of("imDirection", 0);
    EXPECT_EQ(mismatches(with, heading, 144, -4), 0);
}

TEST(PanelPainting, WheelLinesLieOverTheirDrum) {
    PaintedRobot robot;
    const PanelImage image = robot.paint();
    for (int k : {0, 5, 11, 21}) {
        const testing_support::PixelBox line = pixel_box(robot.look("WheelLine", k).box);
        const Picture stripe = robot.picture_of("WheelLine", k);
        for (int x = line.left; x < line.right; ++x)
            EXPECT_EQ(image.at(x, line.top), stripe.at(x - line.left, 0)) << k << " at " << x;
        robot.show("WheelLine", k, false);
        const PanelImage bare = robot.paint();
        robot.show("WheelLine", k, true);
        // Beneath it, the drum.
        const testing_support::PixelBox drum = pixel_box(robot.look("WheelBase", k / 11).box);
        const Picture base = robot.picture_of("WheelBase", k / 11);
        EXPECT_EQ(bare.at(line.left + 3, line.top),
                  base.at(line.left + 3 - drum.left, line.top - drum.top));
        EXPECT_GT(differences(image, bare, line.left, line.top, line.right, line.top + 1), 0);
    }
}

TEST(PanelPainting, TheValueCaptionStandsOnItsPlate) {
    PaintedRobot robot;
    for (int i = 0; i < 5; ++i) {
        const kestrone::ElementView caption = robot.look("lblADCVal", i);
        const kestrone::ElementView plate = robot.look("Shape1", i);
        const testing_support::PixelBox box = pixel_box(caption.box);
        const PanelImage image = robot.paint();
        // The first character's mark, and the gap before it where the plate shows through.
        EXPECT_EQ(image.at(box.left + 2, box.top + 6), caption.fore) << i;
        EXPECT_EQ(image.at(box.left, box.top + 6), plate.fore) << i;
        robot.show("lblADCVal", i, false);
        EXPECT_EQ(robot.paint().at(box.left + 2, box.top + 6), plate.fore) << i;
    }
}

TEST(PanelPainting, TheLogoIsCutAtThePanelsBottomEdge) {
    PaintedRobot robot;
    const PanelImage image = robot.paint();
    const kestrone::ElementView v = robot.look("Picture1");
    EXPECT_EQ(v.box.top + v.box.height, 290.0f);
    EXPECT_EQ(v.clip.top + v.clip.height, 282.0f);
    const Picture logo = robot.picture_of("Picture1");
    EXPECT_EQ(mismatches(image, logo, 91, 243), 0);
    // Its last row painted is the logo's row 38 of 47.
    for (int x = 0; x < logo.width; x += 5)
        EXPECT_EQ(image.at(91 + x, 281), logo.at(x, 38)) << x;
}

TEST(PanelPainting, OnlyTheShownMotorSignIsPainted) {
    PaintedRobot robot;
    const Picture stopped = robot.picture_of("imageStopped", 0);
    const Picture up = robot.picture_of("imageUp", 0);
    // Inside the sign's one-pixel border, at (47, 245) in the left motor and (305, 245) right.
    PanelImage image = robot.paint();
    EXPECT_EQ(mismatches(image, up, 48, 246), 0);
    EXPECT_EQ(mismatches(image, up, 306, 246), 0);
    EXPECT_EQ(image.at(47, 245), robot.look("imageUp", 0).fore);
    // A tick at speed 0 while running shows the stopped mark, in front of the rest.
    ASSERT_EQ(robot.object().StartSimulation(), S_OK);
    robot.r().simulation.Timer1_Timer(0);
    image = robot.paint();
    EXPECT_EQ(mismatches(image, stopped, 48, 246), 0);
    EXPECT_EQ(mismatches(image, up, 306, 246), 0);
}

}  // namespace
