#include "chart_command.h"

#include <QGuiApplication>
#include <memory>
#include <ostream>

#include "chart_picture.h"
#include "program.h"
#include "user_file.h"

namespace chartqt {

namespace {

// The arguments of the application made here: kept for its lifetime, as Qt requires.
int app_argc = 3;
char app_name[] = "kestrone-host", platform_flag[] = "-platform", platform[] = "offscreen";
char* app_argv[] = {app_name, platform_flag, platform, nullptr};

}  // namespace

int run_chart_command(const ChartOptions& o, const MacroReader& read_macros, std::ostream& err) {
    const auto format = format_of(o.output);
    if (!format) {
        err << "kestrone-host: chart writes FILE.svg or FILE.png"
            << (o.output.empty() ? ": name it with -o" : ", not " + o.output) << "\n";
        return kChartCannotWrite;
    }
    std::string source, unread;
    if (!host::read_user_file(o.program, host::kLargestTextFile, "a robot program", &source,
                              &unread)) {
        err << "kestrone-host: cannot read the program " << o.program << ": " << unread << "\n";
        return kChartCannotWrite;
    }
    const auto macros = read_macros(err);
    if (!macros) return kChartCannotWrite;
    const kflow::CheckedProgram checked = kflow::check_program(source, o.program, *macros);
    for (const kflow::Diagnostic& d : checked.faults)
        err << kflow::format_diagnostic(o.program, d) << "\n";
    if (!checked.program) return kChartProgramFaulty;
    const chart::Chart chart(source, *checked.program);
    std::unique_ptr<QGuiApplication> app;
    if (*format == ChartFormat::Png && !QCoreApplication::instance())
        app = std::make_unique<QGuiApplication>(app_argc, app_argv);
    const std::string why = write_chart(chart, chart::lay_out(chart), o.output, o.zoom);
    if (!why.empty()) {
        err << "kestrone-host: " << why << "\n";
        return kChartCannotWrite;
    }
    return kChartWritten;
}

}  // namespace chartqt
