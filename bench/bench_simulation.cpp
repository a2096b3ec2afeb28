// The simulation's hot paths: a macro call through the module against the same work on the core
// object, a wheel tick, a drag step on a sensor bar, and ten seconds of both wheels at full speed.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "bench_module.h"
#include "host/rovanta_component.h"
#include "kestrone/component_v5.h"
#include "kestrone/panel.h"

namespace {

using kestrone::ComPtr;
using kestrone::Variant;

using bench::module;

Variant set_motors_params() {
    return Variant::array(
        kestrone::VarType::Variant, 0,
        {Variant::integer(0), Variant::integer(200), Variant::integer(255), Variant::integer(56)});
}

void SimMacroCall9ThroughModule(benchmark::State& state) {
    auto object = bench::ready_object();
    auto c = object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    const Variant params = set_motors_params();
    std::int32_t ret = 0, cycles = 0;
    Variant affected;
    for (auto _ : state) {
        if (kestrone::failed(c->SimMacroCall(9, params, &ret, &affected, &cycles))) std::abort();
        benchmark::DoNotOptimize(ret);
    }
}
BENCHMARK(SimMacroCall9ThroughModule);

// The same macro's handler on a core object of this binary, with no boundary and no dispatch.
void SimSetMotorsOnCore(benchmark::State& state) {
    platform::Services services;
    rovanta::Rovanta core(platform::ModuleFacts::for_path(KESTRONE_MODULE), services);
    core.KestroneVersion(kestrone::kHostVersion);
    const Variant params = set_motors_params();
    Variant affected;
    std::int32_t slot = 0;
    for (auto _ : state) {
        core.simulation.SimSetMotors(params, affected, slot);
        benchmark::DoNotOptimize(core.motors.iMotorSpeed);
    }
}
BENCHMARK(SimSetMotorsOnCore);

void WheelTick(benchmark::State& state) {
    platform::Services services;
    rovanta::Rovanta core(platform::ModuleFacts::for_path(KESTRONE_MODULE), services);
    core.motors.iMotorSpeed = {100, -100};
    core.run.bSimulating = true;
    for (auto _ : state) {
        core.simulation.Timer1_Timer(0);
        benchmark::DoNotOptimize(core.motors.iWheelPhase);
    }
}
BENCHMARK(WheelTick);

// One move of a drag on the LDR bar, through the panel's interface: hit test, capture, the
// handler and the bar, caption and arrows it moves.
void SliderDragStep(benchmark::State& state) {
    auto object = bench::ready_object();
    auto panel = object.query<kestrone::IKestronePanel>(kestrone::IID_IKestronePanel);
    panel->Pointer(kestrone::PointerAction::Down, 1, 0, 20, 60);
    float y = 20;
    for (auto _ : state) {
        y = y >= 90 ? 20 : y + 1;
        panel->Pointer(kestrone::PointerAction::Move, 1, 0, 20, y);
    }
    panel->Pointer(kestrone::PointerAction::Up, 1, 0, 20, y);
}
BENCHMARK(SliderDragStep);

// Ten seconds on the panel's clock with both wheels at the fastest interval, 2 ms: 10000 ticks.
void Advance10000AtFullSpeed(benchmark::State& state) {
    auto object = bench::ready_object();
    auto c = object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    auto panel = object.query<kestrone::IKestronePanel>(kestrone::IID_IKestronePanel);
    const Variant full = Variant::array(
        kestrone::VarType::Variant, 0,
        {Variant::integer(0), Variant::integer(255), Variant::integer(255), Variant::integer(1)});
    std::int32_t ret = 0, cycles = 0;
    Variant affected;
    c->SimMacroCall(9, full, &ret, &affected, &cycles);
    c->StartSimulation();
    std::int64_t now = 0, ticks = 0;
    for (auto _ : state) {
        panel->GetClock(&now);
        panel->AdvanceTo(now + 10000, &ticks);
        if (ticks != 10000) std::abort();
    }
    state.counters["ticks"] = static_cast<double>(ticks);
}
BENCHMARK(Advance10000AtFullSpeed)->Unit(benchmark::kMillisecond);

}  // namespace
