// Speed as ratios against a floor measured in the same run, so that the figures hold on any
// machine. Every lookup and every block read reads the code file anew, so the floor of creation
// and of the code queries is that reading itself: as many plain reads of the file as they make.
// A macro call through the module is set against the same call on an object linked in, and the
// robot-program interpreter's call against a direct SimMacroCall. Ticks are set against the
// clock they stand for.
//
// After the benchmarks it prints the table of ratios; with --ratios_markdown=FILE it writes the
// table as markdown too (scripts/bench.sh puts it into bench/README.md).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "bench_module.h"
#include "host/rovanta_component.h"
#include "interpreter.h"
#include "kestrone/panel.h"
#include "macro_table.h"
#include "platform/text_file.h"
#include "program.h"

namespace {

using kestrone::Variant;

const std::string& code_file() {
    static const std::string path = [] {
        std::string p = KESTRONE_MODULE;
        return p.substr(0, p.rfind('/')) + "/KT5_Rovanta.c";
    }();
    return path;
}

// The floor: open, size, read, close, into a string, as plainly as the system allows.
void plain_read(std::string& out) {
    const int fd = ::open(code_file().c_str(), O_RDONLY | O_CLOEXEC);
    struct stat st {};
    if (fd < 0 || ::fstat(fd, &st) != 0) std::abort();
    out.resize(static_cast<std::size_t>(st.st_size));
    if (::read(fd, out.data(), out.size()) != static_cast<ssize_t>(out.size())) std::abort();
    ::close(fd);
}

// How many times `work` reads the code file, counted on an object of this binary (the module's
// own copy counts for itself, but it does the same).
template <class F>
std::uint64_t reads_of(F work) {
    const std::uint64_t before = platform::whole_file_reads();
    work();
    return platform::whole_file_reads() - before;
}

platform::Services headless;

std::uint64_t reads_per_creation() {
    static const std::uint64_t n = reads_of(
        [] { rovanta::Rovanta core(platform::ModuleFacts::for_path(KESTRONE_MODULE), headless); });
    return n;
}

std::int32_t macro_count() {
    auto c = bench::ready_object().query<kestrone::IKestroneComponentV5>(
        kestrone::IID_IKestroneComponentV5);
    Variant names;
    c->get_MacroNames(&names);
    return names.is_array() ? static_cast<std::int32_t>(names.as_array().items.size()) : 0;
}

std::uint64_t reads_per_macro_code_pass() {
    static const std::uint64_t n = [] {
        rovanta::Rovanta core(platform::ModuleFacts::for_path(KESTRONE_MODULE), headless);
        core.KestroneVersion(kestrone::kHostVersion);
        const std::int32_t count = macro_count();
        return reads_of([&] {
            for (std::int32_t id = 0; id < count; ++id)
                benchmark::DoNotOptimize(core.MacroCode(id));
        });
    }();
    return n;
}

void plain_reads(benchmark::State& state, std::uint64_t n) {
    std::string text;
    for (auto _ : state)
        for (std::uint64_t k = 0; k < n; ++k) {
            plain_read(text);
            benchmark::DoNotOptimize(text.data());
        }
    state.counters["reads"] = static_cast<double>(n);
}

// ---- creation

void Create_Module(benchmark::State& state) {
    for (auto _ : state) {
        kestrone::ComPtr<kestrone::IUnknown> object;
        bench::module().create(nullptr, object);
        benchmark::DoNotOptimize(object.get());
    }
}
BENCHMARK(Create_Module)->Unit(benchmark::kMicrosecond);

void Create_PlainReads(benchmark::State& state) {
    plain_reads(state, reads_per_creation());
}
BENCHMARK(Create_PlainReads)->Unit(benchmark::kMicrosecond);

// ---- every macro's text

void MacroCode_Module(benchmark::State& state) {
    auto c = bench::ready_object().query<kestrone::IKestroneComponentV5>(
        kestrone::IID_IKestroneComponentV5);
    const std::int32_t count = macro_count();
    std::string text;
    for (auto _ : state)
        for (std::int32_t id = 0; id < count; ++id) {
            c->get_MacroCode(id, &text);
            benchmark::DoNotOptimize(text.data());
        }
}
BENCHMARK(MacroCode_Module)->Unit(benchmark::kMicrosecond);

void MacroCode_PlainReads(benchmark::State& state) {
    plain_reads(state, reads_per_macro_code_pass());
}
BENCHMARK(MacroCode_PlainReads)->Unit(benchmark::kMicrosecond);

// ---- a macro call: through the module, and on an object linked in

Variant set_motors() {
    return Variant::array(
        kestrone::VarType::Variant, 0,
        {Variant::integer(0), Variant::integer(200), Variant::integer(255), Variant::integer(56)});
}

void SimMacroCall_Module(benchmark::State& state) {
    auto c = bench::ready_object().query<kestrone::IKestroneComponentV5>(
        kestrone::IID_IKestroneComponentV5);
    const Variant params = set_motors();
    std::int32_t ret = 0, cycles = 0;
    Variant affected;
    for (auto _ : state) {
        if (kestrone::failed(c->SimMacroCall(9, params, &ret, &affected, &cycles))) std::abort();
        benchmark::DoNotOptimize(ret);
    }
}
BENCHMARK(SimMacroCall_Module);

void SimMacroCall_Bare(benchmark::State& state) {
    rovanta::Rovanta core(platform::ModuleFacts::for_path(KESTRONE_MODULE), headless);
    core.KestroneVersion(kestrone::kHostVersion);
    const Variant params = set_motors();
    std::int32_t ret = 0, cycles = 0;
    Variant affected;
    for (auto _ : state) {
        core.simulation.SimMacroCall(9, params, ret, affected, cycles);
        benchmark::DoNotOptimize(ret);
    }
}
BENCHMARK(SimMacroCall_Bare);

// ---- the interpreter's macro call against a direct one, for the cheapest kind of macro

constexpr std::int64_t kBatch = 1000;

struct Ready {
    kestrone::ComPtr<kestrone::IUnknown> object = bench::ready_object();
    kestrone::ComPtr<kestrone::IKestroneComponentV5> c =
        object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
};

void ReadLdr_Interpreted(benchmark::State& state) {
    Ready r;
    std::string error;
    const auto table = kflow::MacroTable::read(*r.c.get(), &error);
    if (!table) std::abort();
    auto checked =
        kflow::check_program("int light = 0\nforever\n    light = ReadLdr()\nend\n", "b", *table);
    if (!checked.program) std::abort();
    kflow::Interpreter run(*checked.program, *r.c.get());
    run.start();
    run.resume(1);  // past the declaration
    // One step a call: the loop's way back is taken in the call's step.
    for (auto _ : state)
        if (run.resume(kBatch).why != kflow::Pause::Why::Slice) std::abort();
    run.stop();
}
BENCHMARK(ReadLdr_Interpreted)->Unit(benchmark::kMicrosecond);

void ReadLdr_Direct(benchmark::State& state) {
    Ready r;
    r.c->StartSimulation();
    const Variant none = Variant::array(kestrone::VarType::Variant, 0, {});
    std::int32_t ret = 0, cycles = 0;
    for (auto _ : state) {
        for (std::int64_t n = 0; n < kBatch; ++n) {
            Variant affected;
            if (kestrone::failed(r.c->SimMacroCall(17, none, &ret, &affected, &cycles)))
                std::abort();
            benchmark::DoNotOptimize(ret);
        }
    }
    r.c->StopSimulation();
}
BENCHMARK(ReadLdr_Direct)->Unit(benchmark::kMicrosecond);

// ---- ticks: ten seconds of the panel's clock with both wheels at their fastest, headless

constexpr std::int64_t kSimulatedMs = 10000;

void Ticks_Headless(benchmark::State& state) {
    Ready r;
    auto panel = r.object.query<kestrone::IKestronePanel>(kestrone::IID_IKestronePanel);
    const Variant full = Variant::array(
        kestrone::VarType::Variant, 0,
        {Variant::integer(0), Variant::integer(255), Variant::integer(255), Variant::integer(1)});
    std::int32_t ret = 0, cycles = 0;
    Variant affected;
    r.c->SimMacroCall(9, full, &ret, &affected, &cycles);
    r.c->StartSimulation();
    std::int64_t now = 0, ticks = 0, total = 0;
    for (auto _ : state) {
        panel->GetClock(&now);
        panel->AdvanceTo(now + kSimulatedMs, &ticks);
        total += ticks;
    }
    state.counters["ticks_per_s"] =
        benchmark::Counter(static_cast<double>(total), benchmark::Counter::kIsRate);
}
BENCHMARK(Ticks_Headless)->Unit(benchmark::kMillisecond);

// ---- the table of ratios

struct Ratio {
    const char* what;
    const char* measure;
    const char* floor;  // nullptr: against the simulated time
    const char* aim;
    double limit;  // the aim as a number: a ratio above it is marked
};

const Ratio kRatios[] = {
    {"creating an object / as many plain reads of the code file", "Create_Module",
     "Create_PlainReads", "<= 2x", 2.0},
    {"MacroCode of every macro / as many plain reads", "MacroCode_Module", "MacroCode_PlainReads",
     "<= 1.5x", 1.5},
    {"SimMacroCall through the module / the bare call", "SimMacroCall_Module", "SimMacroCall_Bare",
     "<= 1.2x", 1.2},
    {"the interpreter's ReadLdr() / a direct SimMacroCall", "ReadLdr_Interpreted", "ReadLdr_Direct",
     "<= 1.5x", 1.5},
    {"simulated time / wall time, both wheels at full speed", "Ticks_Headless", nullptr,
     "as fast as it goes", 0},
};

class Collector : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration) {
                times_[run.benchmark_name()] = run.GetAdjustedCPUTime();
                units_[run.benchmark_name()] = run.time_unit;
                const auto ticks = run.counters.find("ticks_per_s");
                if (ticks != run.counters.end()) ticks_per_s_ = ticks->second.value;
            }
        ConsoleReporter::ReportRuns(runs);
    }

    // CPU seconds of the named benchmark's iteration: on a shared machine the wall clock also
    // counts the others' work.
    double seconds(const std::string& name) const {
        const auto t = times_.find(name);
        if (t == times_.end()) return 0;
        return t->second / benchmark::GetTimeUnitMultiplier(units_.at(name));
    }

    std::string table() const {
        std::string out = "| Ratio | Measured | Aim |\n|---|---|---|\n";
        char line[256];
        for (const Ratio& r : kRatios) {
            const double m = seconds(r.measure);
            if (m == 0) continue;
            double ratio = 0;
            std::string shown;
            if (r.floor) {
                const double f = seconds(r.floor);
                ratio = f > 0 ? m / f : 0;
                std::snprintf(line, sizeof line, "%.2fx", ratio);
                shown = line;
                if (r.limit > 0 && ratio > r.limit) shown += " (over)";
            } else {
                ratio = (kSimulatedMs / 1000.0) / m;
                std::snprintf(line, sizeof line, "%.0fx (%.0f ticks/s)", ratio, ticks_per_s_);
                shown = line;
            }
            out += std::string("| ") + r.what + " | " + shown + " | " + r.aim + " |\n";
        }
        std::snprintf(line, sizeof line,
                      "\nPlain reads per creation: %llu; per pass over every macro's text: %llu.\n",
                      static_cast<unsigned long long>(reads_per_creation()),
                      static_cast<unsigned long long>(reads_per_macro_code_pass()));
        return out + line;
    }

  private:
    std::map<std::string, double> times_;
    std::map<std::string, benchmark::TimeUnit> units_;
    double ticks_per_s_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    std::string markdown;
    std::vector<char*> rest;
    for (int k = 0; k < argc; ++k) {
        const char* flag = "--ratios_markdown=";
        if (std::strncmp(argv[k], flag, std::strlen(flag)) == 0)
            markdown = argv[k] + std::strlen(flag);
        else
            rest.push_back(argv[k]);
    }
    int count = static_cast<int>(rest.size());
    benchmark::Initialize(&count, rest.data());
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    const std::string table = collector.table();
    std::printf("\n%s", table.c_str());
    if (!markdown.empty()) std::ofstream(markdown) << table;
    benchmark::Shutdown();
    return 0;
}
