// kestrone-host: the host stand-in. It loads a component module through its entry points and
// drives it: in a window, headless through the console, or by a report of what it offers.
#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string_view>

#include "code_command.h"
#include "component_registry.h"
#include "console_interrupt.h"
#include "console_session.h"
#include "host_help.h"
#include "info_report.h"
#include "line_editor.h"
#include "module_host.h"
#include "panel_snapshot.h"
#include "project_file.h"
#include "value_syntax.h"
#include "window_command.h"

namespace {

// A console over one host session. Its status is 1 when an `expect` failed.
int run_console(const std::string& module_path, const std::string& store_file) {
    console::ConsoleSession console(std::cout, {&host::load_project, &host::save_project});
    panelqt::PanelSnapshots snapshots;
    console.set_snapshot([&snapshots](kestrone::IKestronePanel& panel, const std::string& path) {
        return snapshots.write(panel, path);
    });
    // A project that can't be read stops the console before anything runs: its store would
    // otherwise start empty, unlike what was asked for.
    if (!store_file.empty()) {
        std::string error;
        if (!console.session().open_project(store_file, &error)) {
            std::cout << "fail " << error << std::endl;
            return 1;
        }
    }
    // Without its module the console can do nothing: say so once, not at every line.
    std::string error;
    if (!console.session().load_module(module_path, &error)) {
        std::cout << "fail " << console::escape_text(error) << std::endl;
        return 2;
    }
    console.start();
    if (::isatty(STDIN_FILENO)) {
        // A person at a terminal: a prompt, editing and history, progress and Ctrl-C.
        console::install_interrupt_handler();
        console.watch_long_work(std::cerr);
        host::LineEditor editor(host::LineEditor::default_history_file());
        std::string line;
        while (editor.read(line) && console.execute(line)) {
        }
    } else {
        console.run(std::cin);
    }
    return console.expectations_met() ? 0 : 1;
}

int run_components() {
    std::vector<std::string> problems;
    const auto records = host::list_components(&problems);
    std::cout << "components registered in " << host::component_folder() << ":\n";
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

// Runs the module's own DllRegisterServer or DllUnregisterServer, as regsvr32 would.
int run_registration(const std::string& module_path, bool unregister) {
    std::string error;
    auto module = host::ModuleHost::load(module_path, error);
    if (!module) {
        std::cerr << "kestrone-host: " << error << "\n";
        return 2;
    }
    const kestrone::HRESULT hr =
        unregister ? module->unregister_server() : module->register_server();
    if (kestrone::failed(hr)) {
        const std::string folder = host::component_folder();
        std::string why = host::folder_problem(folder);
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

int run_info(const std::string& module_path) {
    std::string error;
    auto module = host::ModuleHost::load(module_path, error);
    if (!module) {
        std::cerr << "kestrone-host: " << error << "\n";
        return 2;
    }
    return host::write_info(*module, std::cout);
}

bool have_display() {
    const auto set = [](const char* name) {
        const char* v = std::getenv(name);
        return v && *v;
    };
    return set("DISPLAY") || set("WAYLAND_DISPLAY");
}

// The options that take a value, so that the command word can be told from a value.
bool takes_value(std::string_view option) {
    static constexpr std::string_view kWithValue[] = {
        "--module", "--store", "--component", "-o",      "--output", "--project",
        "--play",   "--zoom",  "--snapshot",  "--world", "--run"};
    for (const auto o : kWithValue)
        if (option == o) return true;
    return false;
}

// The command word as given, empty for none; read before the application is made, since the
// window needs a GUI application and the other commands must run without a display.
std::string command_word(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view a = argv[i];
        if (a.empty() || a[0] != '-') return std::string(a);
        if (takes_value(a)) ++i;
    }
    return {};
}

int run_window_command(const QCommandLineParser& parser, const std::string& module_path) {
    window::WindowOptions options;
    options.module = module_path;
    options.play = parser.value("play").toStdString();
    options.project = parser.value("project").toStdString();
    options.snapshot = parser.value("snapshot").toStdString();
    options.world = parser.value("world").toStdString();
    options.run = parser.value("run").toStdString();
    options.quit_after_play = parser.isSet("quit-after-play");
    bool zoom_ok = true;
    options.zoom = parser.isSet("zoom") ? parser.value("zoom").toInt(&zoom_ok) : 1;
    if (!zoom_ok || options.zoom < 1 || options.zoom > 3) {
        std::cerr << "kestrone-host: --zoom takes 1, 2 or 3\n";
        return 2;
    }
    return window::run_window(options);
}

}  // namespace

int main(int argc, char** argv) {
    std::string word = command_word(argc, argv);
    if (word.empty() && have_display()) word = "window";
    std::unique_ptr<QCoreApplication> application;
    if (word == "window")
        application = std::make_unique<QApplication>(argc, argv);
    else
        application = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication& app = *application;
    QCoreApplication::setApplicationName("kestrone-host");
    QCoreApplication::setApplicationVersion("5.0.3");

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "The host stand-in for Kestrone components.\n\n"
        "Commands:\n"
        "  window       the panel in a window (the default where a display exists)\n"
        "  console      drive the component line by line (commands on standard input)\n"
        "  info         list the component's macros and pins as the host sees them\n"
        "  code PROGRAM the whole C program of a robot program (.kflow) for the robot's chip\n"
        "  components   list the components registered with this host\n"
        "  register     run the module's own registration\n"
        "  unregister   run the module's own unregistration\n"
        "  help         open the robot's help pages, or say where they are\n\n"
        "kestrone-host COMMAND --help describes a command.");
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption module_option(
        "module", "The component module to load (default: the one installed beside this program).",
        "PATH");
    const QCommandLineOption store_option(
        "store", "A project file whose store the console starts with.", "FILE");
    const QCommandLineOption component_option(
        "component", "Load the registered component of that name (see components).", "NAME");
    parser.addOption(module_option);
    parser.addOption(store_option);
    parser.addOption(component_option);
    const QCommandLineOption output_option(QStringList{"o", "output"},
                                           "code: the C file to write (default: standard output).",
                                           "FILE");
    const QCommandLineOption project_option(
        "project", "code and window: the project file whose settings the component takes.", "FILE");
    const QCommandLineOption hex_option(
        "hex", "code: also compile the C with the PIC compiler; the .hex goes beside the C.");
    parser.addOption(output_option);
    parser.addOption(project_option);
    parser.addOption(hex_option);
    parser.addOption({"play", "window: play a console script in real time.", "FILE"});
    parser.addOption({"zoom", "window: the panel's zoom, 1, 2 or 3.", "N"});
    parser.addOption({"world", "window: open an arena for the robot to drive in.", "FILE"});
    parser.addOption({"run", "window: open a robot program and run it at once.", "FILE"});
    parser.addOption({"snapshot",
                      "window: write the panel (with the world beside it) as a PNG once the "
                      "script has played.",
                      "PNG"});
    parser.addOption({"quit-after-play", "window: close once the script has played."});
    parser.addPositionalArgument(
        "command", "window, console, info, code, components, register, unregister or help");
    if (!parser.parse(app.arguments())) {
        std::cerr << "kestrone-host: " << parser.errorText().toStdString() << " (see --help)\n";
        return 2;
    }
    if (parser.isSet(QStringLiteral("version"))) parser.showVersion();
    if (parser.isSet(QStringLiteral("help"))) {
        // kestrone-host COMMAND --help: that command alone.
        const QStringList named = parser.positionalArguments();
        const std::string text =
            named.isEmpty() ? std::string() : host::command_help(named.front().toStdString());
        if (text.empty()) parser.showHelp(0);
        std::cout << text;
        return 0;
    }

    QStringList args = parser.positionalArguments();
    if (args.isEmpty() && word == "window") args.push_back("window");
    const bool is_code = !args.isEmpty() && args.front() == "code";
    if (args.size() != (is_code ? 2 : 1)) {
        std::cerr << (is_code ? "kestrone-host: code takes one program: code PROGRAM.kflow\n"
                              : "kestrone-host: name one command: window, console or info (see "
                                "--help)\n");
        return 2;
    }
    if (parser.isSet(module_option) && parser.value(module_option).isEmpty()) {
        std::cerr << "kestrone-host: --module names no file: give the path of a module\n";
        return 2;
    }
    std::string module_path = parser.isSet(module_option)
                                  ? parser.value(module_option).toStdString()
                                  : host::ModuleHost::default_module_path();
    if (parser.isSet(component_option)) {
        std::string error;
        const auto record =
            host::find_component(parser.value(component_option).toStdString(), &error);
        if (!record) {
            std::cerr << "kestrone-host: " << error << "\n";
            return 2;
        }
        module_path = record->module;
    }
    const QString command = args.front();
    if (command == "window") return run_window_command(parser, module_path);
    if (command == "console") {
        // A snapshot makes a graphical application of its own, on the offscreen platform: only
        // one application may exist at a time.
        application.reset();
        return run_console(module_path, parser.value(store_option).toStdString());
    }
    if (command == "components") return run_components();
    if (command == "register" || command == "unregister")
        return run_registration(module_path, command == "unregister");
    if (command == "info") return run_info(module_path);
    if (command == "help") return host::open_help(module_path, std::cout, std::cerr);
    if (is_code)
        return kflow::run_code_command(
            {args[1].toStdString(), parser.value(output_option).toStdString(),
             parser.value(project_option).toStdString(), parser.isSet(hex_option), module_path},
            [](const std::string& path, host::StoreEntries& out, std::string& error) {
                auto entries = host::load_project(path, &error);
                if (entries) out = std::move(*entries);
                return entries.has_value();
            },
            std::cout, std::cerr);
    std::cerr << "kestrone-host: unknown command '" << command.toStdString() << "' (see --help)\n";
    return 2;
}
