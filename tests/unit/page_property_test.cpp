// The property page against a real control, reached by name as the frame's page reaches it.
#include <gtest/gtest.h>

#include "host/property_page_object.h"
#include "host_fixture.h"

namespace {

using host_testing::Robot;
using kestrone::ComPtr;
using kestrone::HRESULT;
using kestrone::Variant;

class Page {
  public:
    Page() {
        kestrone::IKestronePropertyPage* raw = nullptr;
        EXPECT_EQ(rovanta::PropertyPageObject::create(platform::ModuleFacts{}, &raw),
                  kestrone::S_OK);
        page_ = ComPtr<kestrone::IKestronePropertyPage>::attach(raw);
    }
    HRESULT select(std::vector<kestrone::IUnknown*> controls) {
        return page_->SetSelectedControls(controls.data(),
                                          static_cast<std::int32_t>(controls.size()));
    }
    Variant get(const std::string& widget, const std::string& property) {
        Variant v;
        EXPECT_EQ(page_->GetProperty(widget, property, &v), kestrone::S_OK)
            << widget << "." << property;
        return v;
    }
    std::string text(const std::string& widget, const std::string& property = "Text") {
        return get(widget, property).as_string();
    }
    HRESULT put(const std::string& widget, const std::string& property, Variant v) {
        return page_->UserPut(widget, property, v);
    }
    bool changed() {
        bool c = false;
        page_->GetChanged(&c);
        return c;
    }
    kestrone::IKestronePropertyPage* operator->() { return page_.get(); }

  private:
    ComPtr<kestrone::IKestronePropertyPage> page_;
};

std::int16_t setting(Robot& robot, const char* name) {
    return robot.core().GetSetting(*rovanta::find_setting(name)).as_integer();
}
void let(Robot& robot, const char* name, Variant v) {
    robot.core().LetSetting(*rovanta::find_setting(name), v);
}

TEST(PropertyPage, AnyNonZeroReturnTypeShowsIntAndAppliesAsOne) {
    for (std::int16_t v : {-1, 7, 1}) {
        Robot robot(host_testing::kNoPins);
        let(robot, "bReturnInt", Variant::integer(v));
        Page page;
        ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
        EXPECT_EQ(page.get("optInt", "Value"), Variant::boolean(true)) << v;
        ASSERT_EQ(page->Apply(), kestrone::S_OK);
        EXPECT_EQ(setting(robot, "bReturnInt"), 1);
        EXPECT_EQ(robot.core().sensors.iADCMax, 1023);
    }
}

// Threshold texts go through the runtime's text-to-Integer conversion; the first that fails
// ends the Apply there.
TEST(PropertyPage, ThresholdTextsConvertOrStopTheApply) {
    struct Case {
        const char* r_text;
        const char* f_text;
        HRESULT status;
        std::int16_t r, f;  // iThreshR and iThreshF afterwards
    };
    const HRESULT ok = kestrone::S_OK, mismatch = kestrone::basic_error_status(13),
                  overflow = kestrone::basic_error_status(6);
    const Case cases[] = {
        {"300", " 2.5 ", ok, 300, 2},
        {"-32768", "3.5", ok, -32768, 4},
        {"1e2", "+7", ok, 100, 7},
        {"5", "abc", mismatch, 5, 200},
        {"5", "", mismatch, 5, 200},
        {"5", "32768", overflow, 5, 200},
        {"32767.5", "1", overflow, 200, 200},
        {"", "1", mismatch, 200, 200},
        // The text boxes have no limit of length, nor has the conversion of digits.
        {"2.000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "0000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "0000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "0000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "0000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "000000000000000000000000000000000000000000000000000000000000000000000000000000000000",
         "1", ok, 2, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.r_text) + " / " + c.f_text);
        Robot robot(host_testing::kNoPins);
        let(robot, "iThreshMic", Variant::integer(50));
        Page page;
        ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
        ASSERT_EQ(page.put("txtiThreshR", "Text", Variant::string(c.r_text)), kestrone::S_OK);
        ASSERT_EQ(page.put("txtiThreshF", "Text", Variant::string(c.f_text)), kestrone::S_OK);
        ASSERT_EQ(page.put("txtiThreshL", "Text", Variant::string("11")), kestrone::S_OK);
        EXPECT_EQ(page->Apply(), c.status);
        EXPECT_EQ(setting(robot, "iThreshR"), c.r);
        EXPECT_EQ(setting(robot, "iThreshF"), c.f);
        EXPECT_EQ(setting(robot, "iThreshL"), c.status == ok ? 11 : 200);
        EXPECT_EQ(setting(robot, "iThreshMic"), c.status == ok ? 128 : 50);
    }
}

TEST(PropertyPage, TheSliderShowsItsSignedValueAndStaysInRange) {
    Robot robot(host_testing::kNoPins);
    Page page;
    ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
    ASSERT_EQ(page->PutChanged(false), kestrone::S_OK);
    ASSERT_EQ(page.put("sldMotorBias", "Value", Variant::long_(-100)), kestrone::S_OK);
    EXPECT_EQ(page.text("lblBiasVal", "Caption"), "-100");
    EXPECT_EQ(page.text("lblBiasLeft", "Caption"), "Bias left");
    EXPECT_TRUE(page.changed());
    ASSERT_EQ(page.put("sldMotorBias", "Value", Variant::integer(250)), kestrone::S_OK);
    EXPECT_EQ(page.get("sldMotorBias", "Value"), Variant::long_(100));
    ASSERT_EQ(page.put("sldMotorBias", "Value", Variant::string("-40")), kestrone::S_OK);
    ASSERT_EQ(page->Apply(), kestrone::S_OK);
    EXPECT_EQ(setting(robot, "iMotorBias"), -40);
    // A bias past the slider's ends is shown at the nearer end, and so applied.
    let(robot, "iMotorBias", Variant::integer(500));
    ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
    EXPECT_EQ(page.text("lblBiasVal", "Caption"), "100");
}

TEST(PropertyPage, ClicksSetTheReturnTypeAndTheButtonWait) {
    Robot robot(host_testing::kNoPins);
    Page page;
    ASSERT_EQ(page.select({robot.unknown()}), kestrone::S_OK);
    ASSERT_EQ(page->UserClick("optInt"), kestrone::S_OK);
    EXPECT_EQ(page.get("optByte", "Value"), Variant::boolean(false));
    ASSERT_EQ(page->UserClick("chkWaitForButton"), kestrone::S_OK);
    EXPECT_EQ(page.get("chkWaitForButton", "Value"), Variant::integer(0));
    ASSERT_EQ(page->Apply(), kestrone::S_OK);
    EXPECT_EQ(setting(robot, "bReturnInt"), 1);
    EXPECT_EQ(setting(robot, "bWaitForButton"), 0);
    // A grey check box is not ticked: it applies as 0.
    ASSERT_EQ(page.put("chkWaitForButton", "Value", Variant::integer(2)), kestrone::S_OK);
    ASSERT_EQ(page.put("optByte", "Value", Variant::boolean(true)), kestrone::S_OK);
    ASSERT_EQ(page->Apply(), kestrone::S_OK);
    EXPECT_EQ(setting(robot, "bWaitForButton"), 0);
    EXPECT_EQ(setting(robot, "bReturnInt"), 0);
    EXPECT_EQ(robot.core().sensors.iADCMax, 255);
}

TEST(PropertyPage, OnlyTheFirstSelectedControlIsReadAndWritten) {
    Robot first(host_testing::kNoPins), second(host_testing::kNoPins);
    let(second, "iThreshR", Variant::integer(42));
    let(second, "iThreshMic", Variant::integer(5));
    Page page;
    ASSERT_EQ(page.select({first.unknown(), second.unknown()}), kestrone::S_OK);
    EXPECT_EQ(page.text("txtiThreshR"), "200");
    ASSERT_EQ(page->Apply(), kestrone::S_OK);
    EXPECT_EQ(setting(second, "iThreshR"), 42);
    EXPECT_EQ(setting(second, "iThreshMic"), 5);
    EXPECT_EQ(setting(first, "bUseI2C"), 0);
}

// Before any selection the page shows its design; an empty selection has no element 0.
TEST(PropertyPage, RefusesWhatAUserCannotDo) {
    Page page;
    EXPECT_EQ(page.text("txtiThreshR"), "Text1");
    EXPECT_FALSE(page.changed());
    EXPECT_EQ(page.select({}), kestrone::basic_error_status(9));
    Variant v;
    EXPECT_EQ(page->GetProperty("txtNothing", "Text", &v), kestrone::DISP_E_UNKNOWNNAME);
    EXPECT_EQ(page->GetProperty("optInt", "Text", &v), kestrone::DISP_E_UNKNOWNNAME);
    EXPECT_EQ(page.put("lblVersion", "Caption", Variant::string("v9")),
              kestrone::basic_error_status(438));
    EXPECT_EQ(page.put("chkWaitForButton", "Value", Variant::integer(3)),
              kestrone::basic_error_status(380));
    EXPECT_EQ(page.put("sldMotorBias", "Value", Variant::string("left")),
              kestrone::basic_error_status(13));
    EXPECT_EQ(page->UserClick("txtiThreshR"), kestrone::basic_error_status(438));
    EXPECT_EQ(page.text("lblVersion", "Caption"), "v5.0.3");
}

}  // namespace
