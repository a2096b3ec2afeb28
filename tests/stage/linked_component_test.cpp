// The component linked into the host instead of loaded: the same program on a stage whose
// module is the linked one, and on one whose module is the file, ends in the same state.
#include <gtest/gtest.h>

#include "linked_component.h"
#include "window_double.h"

namespace {

using stage_testing::example_path;

struct Outcome {
    kflow::RunOutcome::End end;
    std::int64_t elapsed;
    std::vector<std::int32_t> seen;
    bool operator==(const Outcome&) const = default;
};

Outcome run_square() {
    stage_testing::WindowDouble w;
    std::string error;
    EXPECT_TRUE(w.stage.load_program(example_path("square.kflow"), &error)) << error;
    const kflow::RunOutcome run = w.stage.run_program();
    Outcome out{run.end, run.elapsed_ms, {}};
    for (const char* name : {"side", "leds"})
        out.seen.push_back(w.stage.program().variable(name).value_or(-99));
    for (std::int32_t i : {0, 1})
        out.seen.push_back(w.field("iWheelPhase", i));
    out.seen.push_back(w.property("imageLedOn", 3, "Visible"));
    return out;
}

TEST(LinkedComponent, RunsAProgramAsTheLoadedModuleDoes) {
    const Outcome loaded = run_square();
    host::link_component_in();
    const Outcome linked = run_square();
    host::install_module_loader({});
    EXPECT_EQ(linked.end, kflow::RunOutcome::End::Finished);
    EXPECT_EQ(linked, loaded);
    // The module file was never opened: a path that names no file makes an object all the same.
    host::link_component_in();
    std::string error;
    EXPECT_NE(host::ComponentModule::open("/nowhere/KT5_Rovanta.so", error), nullptr) << error;
    host::install_module_loader({});
    EXPECT_EQ(host::ComponentModule::open("/nowhere/KT5_Rovanta.so", error), nullptr);
}

}  // namespace
