// The window under the offscreen platform, on a clock the test moves: the real module, the real
// session and the window's own parts, with no time passing unless the test says so.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "main_window.h"
#include "properties_dialog.h"
#include "support/session_reads.h"
#include "support/temp_dir.h"

namespace window_testing {

class WindowTest : public ::testing::Test {
  protected:
    WindowTest();
    // The real clock moves on by `ms`, the window's timer firing every `step` ms meanwhile.
    void elapse(std::int64_t ms, std::int64_t step = 5);
    // A call by name through the session, as a script would make it; fails the test on failure.
    kestrone::Variant call(const std::string& name, std::vector<kestrone::Variant> args = {},
                           bool write = false);
    // A field or an element property as a 32-bit number (True is -1).
    std::int32_t field(const std::string& name, std::int32_t index = -1) {
        return testing_support::session_field(window_->session(), name, index);
    }
    std::int32_t property(const std::string& element, std::int32_t index, const std::string& name) {
        return testing_support::session_property(window_->session(), element, index, name);
    }
    std::int32_t element(const std::string& name, std::int32_t index = -1) {
        return testing_support::session_element(window_->session(), name, index);
    }
    // Types `text` into the dialog's text box as a user would, replacing what it held.
    static void type_into(window::PropertiesDialog& dialog, const std::string& name,
                          const char* text);

    std::int64_t now_ = 1'000'000;
    std::unique_ptr<window::MainWindow> window_;
    std::vector<std::string> told_;  // the text of every box shown, closed at once
    testing_support::TempDir dir_;
};

// The path of a file of examples/.
std::string example(const std::string& name);
// A number out of a tagged value of any numeric kind or Boolean.
std::int32_t number_of(const kestrone::Variant& v);

}  // namespace window_testing
