// The world's step in a maze of 200 walls: the geometry alone (motion and every sensor), and the
// whole step as a session takes it: the clock moved 10 ms, the motors read and the inputs set
// through the real module. Real time is 100 steps a second; the counter `x_real_time` says how
// many times faster than that a step runs.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "session_port.h"
#include "stage.h"
#include "world_driver.h"

namespace {

// A 4000 mm floor with 200 short walls on a grid, slanted every other one, and a clear square in
// the middle where the robot circles.
std::string maze_text() {
    std::ostringstream s;
    s << "size 4000 4000\nrobot 2000 1750 0\n";
    int walls = 0;
    for (int row = 0; row < 16 && walls < 200; ++row)
        for (int col = 0; col < 16 && walls < 200; ++col) {
            const int x = 130 + col * 240, y = 130 + row * 240;
            if (std::abs(x - 2000) < 500 && std::abs(y - 2000) < 500) continue;
            const int dy = (row + col) % 2 ? 120 : 0;
            s << "wall " << x << ' ' << y << ' ' << x + 150 << ' ' << y + dy << '\n';
            ++walls;
        }
    if (walls != 200) std::abort();
    return s.str();
}

void x_real_time(benchmark::State& state) {
    // Steps a second over the 100 a second of real time.
    state.counters["x_real_time"] =
        benchmark::Counter(1.0 / 100, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_WorldStepGeometry(benchmark::State& state) {
    world::World w;
    std::string error;
    if (!w.load_text(maze_text(), "maze.world", &error)) {
        fprintf(stderr, "%s\n", error.c_str());
        std::abort();
    }
    for (auto _ : state) {
        w.step(150, 100);  // a circle of 250 mm about the middle
        benchmark::DoNotOptimize(w.readings());
    }
    x_real_time(state);
}
BENCHMARK(BM_WorldStepGeometry);

struct Silent : kestrone::IHostServices {
    virtual ~Silent() = default;
    void ShowMessage(const std::string&) noexcept override {}
    void PlayTone(std::int32_t, std::int32_t) noexcept override {}
};

void BM_WorldStepThroughTheStage(benchmark::State& state) {
    Silent services;
    stage::Stage stage(services);
    host::ComponentSession& session = stage.session();
    if (!session.load_module(KESTRONE_MODULE) || session.create_object() != kestrone::S_OK)
        std::abort();
    std::string error;
    if (!stage.world().load_text(maze_text(), "maze.world", &error)) {
        fprintf(stderr, "%s\n", error.c_str());
        std::abort();
    }
    const std::string program = std::string(KESTRONE_BENCH_DIR) + "/circle.kflow";
    {
        std::ofstream out(program);
        out << "SetMotors(0, 150, 0, 100)\ndelay 65535\n";
    }
    if (!stage.load_program(program, &error)) std::abort();
    stage.start_program();
    stage.advance(0);  // to its delay, simulating
    for (auto _ : state)
        stage.advance(world::kStepMs);
    x_real_time(state);
}
BENCHMARK(BM_WorldStepThroughTheStage)->Iterations(6000);

}  // namespace
