#include "window_double.h"

#include <gtest/gtest.h>

namespace stage_testing {

std::int64_t WindowDouble::elapse(std::int64_t gap) {
    real_now_ += gap;
    std::int64_t ticks = -1;
    EXPECT_TRUE(kestrone::succeeded(stage.bring_to(real_now_, &ticks)));
    return ticks;
}

std::string example_path(const std::string& name) {
    return std::string(KESTRONE_EXAMPLES) + "/" + name;
}

}  // namespace stage_testing
