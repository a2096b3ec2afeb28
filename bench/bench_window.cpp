// The window in real time: both wheels at 2 ms for 10 s with the window open, alone, with the arena
// open and with the arena and the scope open (run it under a display, e.g. xvfb-run -a
// build/release/bin/bench_window). Reports the ticks delivered as a
// share of the ticks asked, the process's CPU as a share of one core, and the repaints a second
// against the display's rate.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include "main_window.h"
#include "scope_dock.h"

namespace {

double cpu_seconds() {
    rusage use{};
    getrusage(RUSAGE_SELF, &use);
    return static_cast<double>(use.ru_utime.tv_sec + use.ru_stime.tv_sec) +
           static_cast<double>(use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e6;
}

void call(host::ComponentSession& s, const char* name, std::vector<kestrone::Variant> args) {
    kestrone::Variant result;
    s.call(*host::ComponentSession::find_operation(name, false), args, &result);
}

void BM_WindowBothWheelsAt2ms(benchmark::State& state) {
    using kestrone::Variant;
    for (auto _ : state) {
        window::WindowOptions options;
        options.module = KESTRONE_MODULE;
        // A layout of its own, fresh each time: a layout saved with the scope open would open it
        // in the other configurations too.
        const QTemporaryDir settings;
        options.settings = settings.filePath("window.conf").toStdString();
        window::MainWindow window(options);
        window.show();
        window.start();
        if (state.range(0) & 1) window.open_arena(KESTRONE_EXAMPLES "/line_track.world");
        if (state.range(0) & 2) window.scope()->show();
        window.start_simulation();
        // Both wheels at full speed through SetMotors: Interval 2 ms each.
        call(window.session(), "SimMacroCall",
             {Variant::long_(9),
              Variant::array(kestrone::VarType::Variant, 0,
                             {Variant::integer(0), Variant::integer(255), Variant::integer(0),
                              Variant::integer(255)}),
              Variant::long_(0), Variant(), Variant::long_(0)});
        const std::int64_t ticks0 = window.clock().ticks(0) + window.clock().ticks(1);
        const int repaints0 = window.view()->repaint_count();
        const double cpu0 = cpu_seconds();
        QElapsedTimer wall;
        wall.start();
        QTimer::singleShot(10'000, qApp, &QCoreApplication::quit);
        QApplication::exec();
        const double seconds = static_cast<double>(wall.nsecsElapsed()) / 1e9;
        const double asked = 2 * seconds * 1000.0 / 2.0;
        const double delivered =
            static_cast<double>(window.clock().ticks(0) + window.clock().ticks(1) - ticks0);
        state.counters["ticks_asked"] = asked;
        state.counters["ticks_delivered_pct"] = 100.0 * delivered / asked;
        state.counters["cpu_pct_of_core"] = 100.0 * (cpu_seconds() - cpu0) / seconds;
        state.counters["repaints_per_s"] = (window.view()->repaint_count() - repaints0) / seconds;
        state.counters["display_hz"] = QGuiApplication::primaryScreen()->refreshRate();
    }
}
BENCHMARK(BM_WindowBothWheelsAt2ms)
    ->ArgName("arena1_scope2")
    ->Arg(0)
    ->Arg(1)
    ->Arg(3)
    ->Iterations(1)
    ->Unit(benchmark::kSecond)
    ->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
