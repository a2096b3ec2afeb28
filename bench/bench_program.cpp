// Robot programs: what the interpreter adds to a macro call over a direct SimMacroCall through
// the module, the time to build the C of the largest demonstration, and the time to check a
// program against its size.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "bench_module.h"
#include "c_program.h"
#include "interpreter.h"
#include "macro_table.h"
#include "program.h"

namespace {

using kestrone::Variant;

struct Ready {
    kestrone::ComPtr<kestrone::IUnknown> object = bench::ready_object();
    kestrone::ComPtr<kestrone::IKestroneComponentV5> c =
        object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    kflow::MacroTable table = [this] {
        std::string error;
        auto t = kflow::MacroTable::read(*c.get(), &error);
        if (!t) std::abort();
        return *t;
    }();
};

kflow::Program checked(const std::string& source, const kflow::MacroTable& table) {
    auto result = kflow::check_program(source, "bench.kflow", table);
    if (!result.program) std::abort();
    return std::move(*result.program);
}

// Calls are timed in batches, as a driver runs a program in slices; the counter gives the time
// of one call.
constexpr std::int64_t kBatch = 1000;

void per_call(benchmark::State& state) {
    state.counters["per_call"] = benchmark::Counter(
        static_cast<double>(kBatch),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// A macro call in a loop: one step a call, the loop's way back taken in the call's step.
void interpreted(benchmark::State& state, const char* source) {
    Ready r;
    const kflow::Program p = checked(source, r.table);
    kflow::Interpreter run(p, *r.c.get());
    run.start();
    run.resume(1);  // past the declaration, if any, into the loop
    for (auto _ : state)
        if (run.resume(kBatch).why != kflow::Pause::Why::Slice) std::abort();
    run.stop();
    per_call(state);
}

void direct(benchmark::State& state, std::int32_t id, const Variant& params) {
    Ready r;
    r.c->StartSimulation();
    std::int32_t ret = 0, cycles = 0;
    for (auto _ : state) {
        for (std::int64_t n = 0; n < kBatch; ++n) {
            Variant affected;
            if (kestrone::failed(r.c->SimMacroCall(id, params, &ret, &affected, &cycles)))
                std::abort();
            benchmark::DoNotOptimize(ret);
        }
    }
    r.c->StopSimulation();
    per_call(state);
}

void SetMotorsInterpreted(benchmark::State& state) {
    interpreted(state, "forever\n    SetMotors(0, 200, 255, 56)\nend\n");
}
BENCHMARK(SetMotorsInterpreted);

void SetMotorsDirect(benchmark::State& state) {
    direct(state, 9,
           Variant::array(kestrone::VarType::Variant, 0,
                          {Variant::integer(0), Variant::integer(200), Variant::integer(255),
                           Variant::integer(56)}));
}
BENCHMARK(SetMotorsDirect);

// The cheapest kind of macro: a reading, with its result stored in a variable.
void ReadLdrInterpreted(benchmark::State& state) {
    interpreted(state, "int light = 0\nforever\n    light = ReadLdr()\nend\n");
}
BENCHMARK(ReadLdrInterpreted);

void ReadLdrDirect(benchmark::State& state) {
    direct(state, 17, Variant::array(kestrone::VarType::Variant, 0, {}));
}
BENCHMARK(ReadLdrDirect);

// The demonstration with the most text.
std::string largest_example(std::string* name) {
    std::string best;
    for (const auto& entry : std::filesystem::directory_iterator(KESTRONE_EXAMPLES)) {
        if (entry.path().extension() != ".kflow") continue;
        std::ifstream in(entry.path());
        std::ostringstream s;
        s << in.rdbuf();
        if (s.str().size() > best.size()) {
            best = s.str();
            *name = entry.path().filename().string();
        }
    }
    return best;
}

// Check, the component's code through the module (every macro's block read from the code file
// anew, as the component does), and the C.
void BuildCOfLargestExample(benchmark::State& state) {
    Ready r;
    std::string name;
    const std::string source = largest_example(&name);
    state.SetLabel(name);
    for (auto _ : state) {
        const kflow::Program p = checked(source, r.table);
        std::string error;
        const auto code = kflow::read_component_code(*r.c.get(), p, &error);
        if (!code) std::abort();
        benchmark::DoNotOptimize(kflow::write_c_program(p, *code, name));
    }
}
BENCHMARK(BuildCOfLargestExample)->Unit(benchmark::kMicrosecond);

// The C alone, from code already read.
void WriteCOfLargestExample(benchmark::State& state) {
    Ready r;
    std::string name;
    const kflow::Program p = checked(largest_example(&name), r.table);
    std::string error;
    const auto code = kflow::read_component_code(*r.c.get(), p, &error);
    state.SetLabel(name);
    for (auto _ : state)
        benchmark::DoNotOptimize(kflow::write_c_program(p, *code, name));
}
BENCHMARK(WriteCOfLargestExample)->Unit(benchmark::kMicrosecond);

// Checking against the program's size (the fitted complexity is printed): N variables each
// declared and set, and a line of N nested calls, refused at the level one too deep.
void CheckDeclarations(benchmark::State& state) {
    Ready r;
    std::string source;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        source += "int v" + std::to_string(i) + " = 1\n";
    for (std::int64_t i = 0; i < state.range(0); ++i)
        source += "v" + std::to_string(i) + " = v" + std::to_string(i / 2) + " + 1\n";
    for (auto _ : state)
        benchmark::DoNotOptimize(checked(source, r.table));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(CheckDeclarations)
    ->RangeMultiplier(4)
    ->Range(1 << 12, 1 << 18)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);

void RefuseNestedCalls(benchmark::State& state) {
    Ready r;
    std::string source = "LedOn(";
    for (std::int64_t i = 0; i < state.range(0); ++i)
        source += "ReadSwitch(";
    for (auto _ : state)
        if (kflow::check_program(source, "bench.kflow", r.table).faults.empty()) std::abort();
    state.SetComplexityN(state.range(0));
}
BENCHMARK(RefuseNestedCalls)
    ->RangeMultiplier(4)
    ->Range(1 << 12, 1 << 18)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);

}  // namespace
