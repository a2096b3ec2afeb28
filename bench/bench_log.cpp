// What a log of the signals costs a run: the same runs with and without one. The line follower
// on its track is every kind of event at once (wheel ticks, world steps, program slices); a
// minute at full speed is mostly ticks, both wheels every 2 ms, the most a log samples. The
// counter `x_sim` is simulated time over wall time; logging may halve it at most.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "signal_log.h"
#include "stage.h"

namespace {

struct Silent : kestrone::IHostServices {
    virtual ~Silent() = default;
    void ShowMessage(const std::string&) noexcept override {}
    void PlayTone(std::int32_t, std::int32_t) noexcept override {}
};

struct Bench {
    Silent services;
    stage::Stage stage{services};
    signal_log::SignalLog log{stage};

    Bench(const std::string& world, const std::string& program) {
        std::string error;
        if (!stage.session().load_module(KESTRONE_MODULE) ||
            stage.session().create_object() != kestrone::S_OK ||
            (!world.empty() && !stage.world().load_file(world, &error)) ||
            !stage.load_program(program, &error)) {
            std::fprintf(stderr, "%s\n", error.c_str());
            std::abort();
        }
    }
    std::int64_t run(bool logged) {
        if (stage.world().loaded()) stage.world_driver().reset();
        if (logged) log.start();
        const std::int64_t ms = stage.run_program().elapsed_ms;
        if (logged) log.stop();
        return ms;
    }
};

void measure(benchmark::State& state, const std::string& world, const std::string& program) {
    Bench b(world, program);
    std::int64_t ms = 0;
    for (auto _ : state)
        ms += b.run(state.range(0) != 0);
    state.counters["x_sim"] =
        benchmark::Counter(static_cast<double>(ms) / 1000, benchmark::Counter::kIsRate);
    if (state.range(0)) state.counters["last_ms"] = static_cast<double>(b.log.last_ms());
}

void BM_LineFollowerOnItsTrack(benchmark::State& state) {
    const std::string examples = KESTRONE_EXAMPLES;
    measure(state, examples + "/line_track.world", examples + "/line_follower.kflow");
}
BENCHMARK(BM_LineFollowerOnItsTrack)
    ->ArgName("logged")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

void BM_MinuteAtFullSpeed(benchmark::State& state) {
    const std::string program = std::string(KESTRONE_BENCH_DIR) + "/full_speed.kflow";
    std::ofstream(program) << "SetMotors(0, 255, 255, 1)\ndelay 60000\n";
    measure(state, "", program);
}
BENCHMARK(BM_MinuteAtFullSpeed)->ArgName("logged")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
