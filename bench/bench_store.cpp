// Saving and loading the settings: the component's walks over the host's store through the
// module, and the same store through a project file on disk.
#include <benchmark/benchmark.h>

#include <unistd.h>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "bench_module.h"
#include "kestrone/memory_store.h"
#include "project_file.h"

namespace {

using kestrone::ComPtr;

ComPtr<kestrone::IKestronePersist> make_component() {
    ComPtr<kestrone::IUnknown> object;
    bench::module().create(nullptr, object);
    return object.query<kestrone::IKestronePersist>(kestrone::IID_IKestronePersist);
}

// The pins' places and the fifteen settings into an empty store.
void SaveSettingsToStore(benchmark::State& state) {
    auto component = make_component();
    for (auto _ : state) {
        kestrone::MemoryStore store;
        component->WriteProperties(&store);
        benchmark::DoNotOptimize(store.entries().data());
    }
}
BENCHMARK(SaveSettingsToStore);

void LoadSettingsFromStore(benchmark::State& state) {
    auto component = make_component();
    kestrone::MemoryStore store;
    component->WriteProperties(&store);
    for (auto _ : state)
        benchmark::DoNotOptimize(component->ReadProperties(&store));
}
BENCHMARK(LoadSettingsFromStore);

std::string project_path() {
    static const std::string path = [] {
        char dir[] = "/tmp/rovanta-bench-XXXXXX";
        if (!::mkdtemp(dir)) std::abort();
        return std::string(dir) + "/robot.kproj";
    }();
    return path;
}

// A save to disk: the component's walk, the JSON, a temporary file, fsync and the rename.
void SaveSettingsToProjectFile(benchmark::State& state) {
    auto component = make_component();
    std::string error;
    for (auto _ : state) {
        kestrone::MemoryStore store;
        component->WriteProperties(&store);
        if (!host::save_project(project_path(), store.entries(), &error))
            state.SkipWithError(error.c_str());
    }
}
BENCHMARK(SaveSettingsToProjectFile)->Unit(benchmark::kMicrosecond);

void LoadSettingsFromProjectFile(benchmark::State& state) {
    auto component = make_component();
    kestrone::MemoryStore saved;
    component->WriteProperties(&saved);
    std::string error;
    host::save_project(project_path(), saved.entries(), &error);
    for (auto _ : state) {
        auto entries = host::load_project(project_path(), &error);
        if (!entries) state.SkipWithError(error.c_str());
        kestrone::MemoryStore store;
        store.assign(std::move(*entries));
        benchmark::DoNotOptimize(component->ReadProperties(&store));
    }
}
BENCHMARK(LoadSettingsFromProjectFile)->Unit(benchmark::kMicrosecond);

// Only the text of the file, without the disk.
void EncodeAndDecodeProject(benchmark::State& state) {
    auto component = make_component();
    kestrone::MemoryStore saved;
    component->WriteProperties(&saved);
    std::string error;
    for (auto _ : state) {
        const std::string text = host::encode_project(saved.entries());
        benchmark::DoNotOptimize(host::decode_project(text, &error));
    }
}
BENCHMARK(EncodeAndDecodeProject)->Unit(benchmark::kMicrosecond);

// Many keys written one by one, saved, loaded and taken into a store again: linear in the count
// (the complexity line says so), where a search per key made it grow with its square.
void ManyKeysThroughAProjectFile(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    std::string error;
    for (auto _ : state) {
        kestrone::MemoryStore store;
        for (int i = 0; i < count; ++i)
            store.set("key" + std::to_string(i), kestrone::Variant::long_(i));
        if (!host::save_project(project_path(), store.entries(), &error))
            state.SkipWithError(error.c_str());
        auto entries = host::load_project(project_path(), &error);
        if (!entries) state.SkipWithError(error.c_str());
        store.assign(std::move(*entries));
        benchmark::DoNotOptimize(store.entries().data());
    }
    state.SetComplexityN(count);
}
BENCHMARK(ManyKeysThroughAProjectFile)
    ->RangeMultiplier(4)
    ->Range(1 << 10, 1 << 17)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
