// The component's core through its module: creation, a macro query, every macro's C text, and
// the settings filled into a 4 KB text.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "bench_module.h"
#include "kestrone/component_v5.h"

namespace {

using kestrone::ComPtr;

using bench::module;

ComPtr<kestrone::IKestroneComponentV5> make_component() {
    return bench::ready_object().query<kestrone::IKestroneComponentV5>(
        kestrone::IID_IKestroneComponentV5);
}

void CreateObjectThroughModule(benchmark::State& state) {
    for (auto _ : state) {
        ComPtr<kestrone::IUnknown> object;
        module().create(nullptr, object);
        benchmark::DoNotOptimize(object.get());
    }
}
BENCHMARK(CreateObjectThroughModule)->Unit(benchmark::kMicrosecond);

void MacroQuery(benchmark::State& state) {
    auto c = make_component();
    std::int32_t id = 0, result = 0;
    for (auto _ : state) {
        c->get_MacroIsFunction(id, &result);
        id = (id + 1) % 21;
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(MacroQuery);

void MacroCodeOfEveryMacro(benchmark::State& state) {
    auto c = make_component();
    std::string text;
    for (auto _ : state)
        for (std::int32_t id = 0; id < 21; ++id) {
            c->get_MacroCode(id, &text);
            benchmark::DoNotOptimize(text.data());
        }
}
BENCHMARK(MacroCodeOfEveryMacro)->Unit(benchmark::kMicrosecond);

void MacroCodeOverride4K(benchmark::State& state) {
    auto c = make_component();
    std::string chunk = "if (ReadSideSensor(side) < %c) { trim = %o - %p; } /* %g %h */\n";
    std::string text;
    while (text.size() < 4096)
        text += chunk;
    text.resize(4096);
    std::string work;
    for (auto _ : state) {
        work = text;
        c->MacroCodeOverride(&work);
        benchmark::DoNotOptimize(work.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * 4096);
}
BENCHMARK(MacroCodeOverride4K)->Unit(benchmark::kMicrosecond);

}  // namespace
