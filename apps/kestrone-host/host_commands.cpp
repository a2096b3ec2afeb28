#include "host_commands.h"

#include <unistd.h>

#include <array>
#include <cstdint>
#include <iostream>

#include "chart_command.h"
#include "check_command.h"
#include "code_command.h"
#include "component_macros.h"
#include "component_module.h"
#include "component_registry.h"
#include "console.h"
#include "console_interrupt.h"
#include "host_help.h"
#include "info_report.h"
#include "line_editor.h"
#include "panel_snapshot.h"
#include "project_file.h"
#include "value_syntax.h"
#include "window_command.h"

namespace host {

namespace {

// A console over one stage. Its status is 1 when an `expect` failed.
int run_console(const Invocation& in) {
    console::Console console(std::cout, {&load_project_file, &save_project_file});
    panelqt::PanelSnapshots snapshots;
    console.set_snapshot([&snapshots](kestrone::IKestronePanel& panel, const std::string& path) {
        return snapshots.write(panel, path);
    });
    // A project that can't be read stops the console before anything runs: its store would
    // otherwise start empty, unlike what was asked for.
    const std::string store = in.options.value("store").toStdString();
    std::string error;
    if (!store.empty() && !console.session().open_project(store, &error)) {
        std::cout << "fail " << error << std::endl;
        return 1;
    }
    // Without its module the console can do nothing: say so once, not at every line.
    if (!console.session().load_module(in.module, &error)) {
        std::cout << "fail " << console::escape_text(error) << std::endl;
        return 2;
    }
    console.start();
    if (::isatty(STDIN_FILENO)) {
        // A person at a terminal: a prompt, editing and history, progress and Ctrl-C.
        console::install_interrupt_handler();
        console.watch_long_work(&std::cerr);
        LineEditor editor(LineEditor::default_history_file());
        std::string line;
        while (editor.read(line) && console.execute(line)) {
        }
    } else {
        // Piped: an interrupt stops a long advance or run with a `fail`; between commands it
        // ends the console.
        console::install_interrupt_handler(true);
        console.watch_long_work(nullptr);
        console.run(std::cin);
    }
    return console.expectations_met() ? 0 : 1;
}

int run_components(const Invocation&) {
    std::vector<std::string> problems;
    const auto records = list_components(&problems);
    std::cout << "components registered in " << component_folder() << ":\n";
    for (const auto& r : records) {
        const bool present = ::access(r.module.c_str(), R_OK) == 0;
        std::cout << "  " << r.name << " " << r.version << " " << r.class_id << " " << r.module
                  << (present ? "" : " (module missing)") << "\n";
    }
    if (records.empty()) std::cout << "  (none)\n";
    for (const auto& p : problems)
        std::cerr << "kestrone-host: " << p << "\n";
    return 0;
}

// The module's own DllRegisterServer or DllUnregisterServer, as regsvr32 would run it.
int run_registration(const std::string& module_path, bool unregister) {
    std::string error;
    auto module = ComponentModule::open(module_path, error);
    if (!module) {
        std::cerr << "kestrone-host: " << error << "\n";
        return 2;
    }
    const kestrone::HRESULT hr =
        unregister ? module->unregister_server() : module->register_server();
    if (kestrone::failed(hr)) {
        const std::string folder = component_folder();
        std::string why = folder_problem(folder);
        if (why.empty()) why = "the record in it could not be written or removed";
        std::cerr << "kestrone-host: " << (unregister ? "unregistering " : "registering ")
                  << module_path << " in " << folder << " failed: " << why << " (status 0x"
                  << std::hex << static_cast<std::uint32_t>(hr) << ")\n";
        return 1;
    }
    if (hr == kestrone::S_FALSE)
        std::cout << "nothing to unregister: no record of " << module_path << "\n";
    else
        std::cout << (unregister ? "unregistered " : "registered ") << module_path << "\n";
    return 0;
}

int run_register(const Invocation& in) {
    return run_registration(in.module, false);
}

int run_unregister(const Invocation& in) {
    return run_registration(in.module, true);
}

int run_info(const Invocation& in) {
    std::string error;
    auto module = ComponentModule::open(in.module, error);
    if (!module) {
        std::cerr << "kestrone-host: " << error << "\n";
        return 2;
    }
    return write_info(*module, std::cout);
}

int run_help(const Invocation& in) {
    return open_help(in.module, std::cout, std::cerr);
}

int run_code(const Invocation& in) {
    const QCommandLineParser& o = in.options;
    kflow::CodeOptions options;
    options.program = in.words.front().toStdString();
    options.output = o.value("output").toStdString();
    options.project = o.value("project").toStdString();
    options.hex = o.isSet("hex");
    options.module = in.module;
    if (o.isSet("trace") || o.isSet("ms")) {
        bool ms_ok = false;
        options.trace = o.value("trace").toStdString();
        options.trace_ms = o.value("ms").toLongLong(&ms_ok);
        if (!options.hex || options.trace.empty() || !ms_ok || options.trace_ms <= 0 ||
            options.trace_ms > 3600000) {
            std::cerr << "kestrone-host: --trace FILE.vcd goes with --hex and --ms N, N from 1 to "
                         "3600000\n";
            return kflow::kCannotBuild;
        }
    }
    return kflow::run_code_command(
        options,
        [](const std::string& path, StoreEntries& out, std::string& error) {
            auto entries = load_project(path, &error);
            if (entries) out = std::move(*entries);
            return entries.has_value();
        },
        std::cout, std::cerr);
}

// --zoom N, 1 to 3 (1 when not given); 0 when it is not a zoom.
int zoom_option(const QCommandLineParser& o) {
    if (!o.isSet("zoom")) return 1;
    bool ok = false;
    const int zoom = o.value("zoom").toInt(&ok);
    return ok && zoom >= 1 && zoom <= 3 ? zoom : 0;
}

int run_chart(const Invocation& in) {
    const int zoom = zoom_option(in.options);
    if (!zoom) {
        std::cerr << "kestrone-host: --zoom takes 1, 2 or 3\n";
        return 2;
    }
    const std::string module = in.module;
    return chartqt::run_chart_command(
        {in.words.front().toStdString(), in.options.value("output").toStdString(), zoom},
        [&module](std::ostream& err) { return kflow::read_module_macros(module, err); }, std::cerr);
}

int run_check(const Invocation& in) {
    const QCommandLineParser& o = in.options;
    lesson::CheckOptions options;
    options.lesson = in.words.front().toStdString();
    for (qsizetype i = 1; i < in.words.size(); ++i)
        options.programs.push_back(in.words[i].toStdString());
    options.module = in.module;
    if (o.isSet("jobs")) options.jobs = o.value("jobs").toStdString();
    if (o.isSet("shard")) options.shard = o.value("shard").toStdString();
    options.junit = o.value("junit").toStdString();
    options.csv = o.value("csv").toStdString();
    return lesson::run_check_command(options, std::cout, std::cerr);
}

int run_window(const Invocation& in) {
    const QCommandLineParser& o = in.options;
    window::WindowOptions options;
    options.module = in.module;
    options.play = o.value("play").toStdString();
    options.project = o.value("project").toStdString();
    options.snapshot = o.value("snapshot").toStdString();
    options.shot = o.value("shot").toStdString();
    options.world = o.value("world").toStdString();
    options.lesson = o.value("lesson").toStdString();
    options.run = o.value("run").toStdString();
    options.quit_after_play = o.isSet("quit-after-play");
    options.scope = o.isSet("scope");
    bool zoom_ok = true;
    options.zoom = o.isSet("zoom") ? o.value("zoom").toInt(&zoom_ok) : 0;
    if (!zoom_ok || (o.isSet("zoom") && (options.zoom < 1 || options.zoom > 3))) {
        std::cerr << "kestrone-host: --zoom takes 1, 2 or 3\n";
        return 2;
    }
    return window::run_window(options);
}

constexpr std::array kCommands{
    HostCommand{"window", "the panel in a window (the default where a display exists)",
                "kestrone-host window [--module PATH | --component NAME] [--project FILE]\n"
                "                     [--world FILE] [--lesson FILE] [--run FILE] [--zoom N] "
                "[--scope]\n"
                "                     [--play FILE [--snapshot PNG] [--shot PNG] "
                "[--quit-after-play]]\n\n"
                "A workbench for robot programs beside the panel: an editor that checks as you "
                "type, the\nprogram run and debugged on the panel, the arena, the variables, "
                "projects and the C.\n\n"
                "  --project FILE     a project file whose settings the robot takes\n"
                "  --world FILE       an arena beside the panel, for the robot to drive in\n"
                "  --lesson FILE      a lesson: its instructions, settings, arena and program\n"
                "  --run FILE         a robot program, opened and run at once\n"
                "  --zoom N           the panel's and the text's zoom, 1, 2 or 3 (default: as "
                "last left)\n"
                "  --scope            the scope shown from the start\n"
                "  --play FILE        a console script played in real time\n"
                "  --snapshot PNG     the panel (and world) as a picture once the script has "
                "played\n"
                "  --shot PNG         the whole window as a picture then\n"
                "  --quit-after-play  close once the script has played\n",
                true, 0, &run_window},
    HostCommand{"console", "drive the component line by line (commands on standard input)",
                "kestrone-host console [--module PATH | --component NAME] [--store FILE]\n\n"
                "Creates one robot and drives it line by line: every command on standard input "
                "is answered\nwith notice lines and one final line (ok, ok VALUE, error N TEXT or "
                "fail TEXT). On a\nterminal it shows a prompt, edits lines and keeps a history; "
                "'help' lists the commands,\n'help NAME' an operation's parameters; Ctrl-C stops a "
                "long advance or run. Piped input is\nanswered without prompt or progress. The "
                "exit status is 1 after a failed 'expect' or when\nthe project file can't be "
                "opened, 2 when the module can't be loaded.\n\n"
                "  --store FILE   a project file whose store the console starts with\n\n"
                "Example: kestrone-host console < examples/square.console\n",
                false, 0, &run_console},
    HostCommand{"info", "list the component's macros and pins as the host sees them",
                "kestrone-host info [--module PATH | --component NAME]\n\n"
                "Loads the module and reports what a host sees: its description, version and code "
                "file, its\nmacros and pins, and a simulated second. Exits with 1 when the object "
                "can't be made or its\ncode file is missing or unreadable, 2 when the module can't "
                "be loaded.\n",
                false, 0, &run_info},
    HostCommand{"code", "the whole C program of a robot program (.kflow) for the robot's chip",
                "kestrone-host code PROGRAM.kflow [-o FILE] [--project FILE] [--hex [--trace "
                "FILE.vcd --ms N]]\n                     [--module PATH]\n\n"
                "The whole C program of a robot program for the robot's chip.\n\n"
                "  -o FILE          the C file to write (default: standard output)\n"
                "  --project FILE   the project file whose settings the component takes\n"
                "  --hex            also compile the C with the PIC compiler; the .hex goes beside "
                "the C\n"
                "  --trace FILE.vcd run the hex in gpsim for N ms (--ms N), inputs idle and no "
                "wait for the\n                   start button, and write its pins as VCD with "
                "FILE.gtkw beside it\n",
                false, 1, &run_code},
    HostCommand{"chart", "the flowchart of a robot program (.kflow) as SVG or PNG",
                "kestrone-host chart PROGRAM.kflow -o FILE.svg|FILE.png [--zoom N] [--module "
                "PATH]\n\n"
                "The flowchart of a robot program, one icon for each line of code, as the window "
                "shows it.\nIn the SVG each icon holds its line as a <title> (line 7: "
                "DriveForwards(200)), which\nviewers show as a tooltip and screen readers read. "
                "The program is checked against the\ncomponent's macros first: its faults are "
                "listed as 'code' lists them.\n\n"
                "  -o FILE      the chart to write: FILE.svg, or FILE.png for a picture\n"
                "  --zoom N     the picture's zoom, 1, 2 or 3\n\n"
                "Exit status 0 when written, 1 for faults in the program, 2 when a file cannot be "
                "read or\nwritten (or the module cannot be loaded).\n",
                false, 1, &run_chart},
    HostCommand{"check", "run a lesson's checks against a class of programs",
                "kestrone-host check LESSON [PROGRAM.kflow ...] [--jobs N] [--shard K/M]\n"
                "                    [--junit FILE] [--csv FILE] [--module PATH]\n\n"
                "Runs the lesson's checks (a .klesson file) once for each program named, or for "
                "the lesson's\nown program when none is, each on a fresh robot with the lesson's "
                "settings and arena.\nPrints one line per program in the order given, then "
                "'N passed, M failed'. Exits with 0\nwhen every program passed, 1 when some "
                "failed, 2 when the lesson, a program or the module\ncan't be read.\n\n"
                "  --jobs N       check on N workers at once (default: one per core)\n"
                "  --shard K/M    only the programs at places K, K + M, K + 2M, ... (from 1)\n"
                "  --junit FILE   a JUnit XML report: one test case per program\n"
                "  --csv FILE     a table of program, result, simulated seconds and message\n",
                false, 1, &run_check, true},
    HostCommand{"components", "list the components registered with this host",
                "kestrone-host components\n\n"
                "Lists the components registered with this host, and whether each module is still "
                "there.\n",
                false, 0, &run_components},
    HostCommand{"register", "run the module's own registration",
                "kestrone-host register [--module PATH]\n\n"
                "Runs the module's own registration: it leaves a record in the host's component "
                "folder\n($XDG_DATA_HOME/kestrone/components). A failure names the folder and "
                "why.\n",
                false, 0, &run_register},
    HostCommand{"unregister", "run the module's own unregistration",
                "kestrone-host unregister [--module PATH]\n\n"
                "Runs the module's own unregistration: its record goes from the component "
                "folder.\n",
                false, 0, &run_unregister},
    HostCommand{"help", "open the robot's help pages, or say where they are",
                "kestrone-host help [--module PATH]\n\n"
                "Opens the robot's help pages in the browser (xdg-open), or says where they are "
                "when there\nis no display. The same pages are compiled into help/KT5_Rovanta.chm "
                "beside the module.\n",
                false, 0, &run_help},
};

}  // namespace

std::span<const HostCommand> host_commands() {
    return kCommands;
}

const HostCommand* find_host_command(std::string_view name) {
    for (const HostCommand& c : kCommands)
        if (c.name == name) return &c;
    return nullptr;
}

std::string host_command_names() {
    std::string names;
    for (std::size_t i = 0; i < kCommands.size(); ++i)
        names += std::string(i == 0                      ? ""
                             : i + 1 == kCommands.size() ? " or "
                                                         : ", ") +
                 std::string(kCommands[i].name);
    return names;
}

void add_host_options(QCommandLineParser& parser) {
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"module", "The component module to load (default: the one installed beside this program).",
         "PATH"},
        {"store", "console: a project file whose store the console starts with.", "FILE"},
        {"component", "Load the registered component of that name (see components).", "NAME"},
        {{"o", "output"},
         "code: the C file to write (default: standard output); chart: the SVG or PNG file.",
         "FILE"},
        {"project", "code and window: the project file whose settings the component takes.",
         "FILE"},
        {"hex", "code: also compile the C with the PIC compiler; the .hex goes beside the C."},
        {"trace", "code: run the hex in gpsim and write its pins as VCD (with --ms).", "FILE"},
        {"ms", "code: the milliseconds of the chip's clock that --trace runs.", "N"},
        {"play", "window: play a console script in real time.", "FILE"},
        {"zoom", "window: the panel's and the text's zoom; chart: the picture's; 1, 2 or 3.", "N"},
        {"world", "window: open an arena for the robot to drive in.", "FILE"},
        {"lesson", "window: open a lesson (.klesson).", "FILE"},
        {"run", "window: open a robot program and run it at once.", "FILE"},
        {"snapshot",
         "window: write the panel (with the world beside it) as a PNG once the script "
         "has played.",
         "PNG"},
        {"shot", "window: write the whole window as a PNG once the script has played.", "PNG"},
        {"quit-after-play", "window: close once the script has played."},
        {"scope", "window: show the scope from the start."},
        {"jobs", "check: the number of programs checked at once (default: one per core).", "N"},
        {"shard", "check: only the programs at places K, K + M, K + 2M, ...", "K/M"},
        {"junit", "check: write a JUnit XML report.", "FILE"},
        {"csv", "check: write a CSV table of the results.", "FILE"},
    });
}

}  // namespace host
