#include "window_fixture.h"

#include "support/variant_number.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

namespace window_testing {

using kestrone::Variant;

std::string example(const std::string& name) {
    return std::string(KESTRONE_EXAMPLES) + "/" + name;
}

std::int32_t number_of(const Variant& v) {
    return variant_number(v);
}

WindowTest::WindowTest() {
    window::WindowOptions options;
    options.module = KESTRONE_MODULE;
    options.settings = settings_dir_.path() + "/window.conf";
    window_ = std::make_unique<window::MainWindow>(options, [this] { return now_; });
    window_->services().set_box_handler([this](QWidget* box) {
        told_.push_back(static_cast<QMessageBox*>(box)->text().toStdString());
        box->close();
    });
    EXPECT_TRUE(window_->start());
}

void WindowTest::elapse(std::int64_t ms, std::int64_t step) {
    for (std::int64_t done = 0; done < ms;) {
        const std::int64_t by = std::min(step, ms - done);
        now_ += by;
        done += by;
        window_->clock().pulse();
    }
}

void WindowTest::type_into(window::PropertiesDialog& dialog, const std::string& name,
                           const char* text) {
    auto* box = qobject_cast<QLineEdit*>(dialog.widget(name));
    ASSERT_NE(box, nullptr) << name;
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(box, text);
}

Variant WindowTest::call(const std::string& name, std::vector<Variant> args, bool write) {
    const auto op = host::ComponentSession::find_operation(name, write);
    EXPECT_TRUE(op) << name;
    if (!op) return {};
    Variant result;
    EXPECT_TRUE(kestrone::succeeded(window_->session().call(*op, args, &result))) << name;
    return result;
}

}  // namespace window_testing

int main(int argc, char** argv) {
    // Offscreen unless a display is asked for (the tests run once under Xvfb too).
    const QByteArray platform = qgetenv("KESTRONE_TEST_PLATFORM");
    qputenv("QT_QPA_PLATFORM", platform.isEmpty() ? QByteArray("offscreen") : platform);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
