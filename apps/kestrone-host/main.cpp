// kestrone-host: the host stand-in. It loads a component module through its entry points and
// drives it, headless through the console or by a report of what it offers.
#include <QCommandLineParser>
#include <QCoreApplication>

#include <unistd.h>

#include <cstdint>
#include <iostream>
#include <optional>

#include "code_command.h"
#include "component_registry.h"
#include "console_session.h"
#include "info_report.h"
#include "module_host.h"
#include "panel_snapshot.h"
#include "project_file.h"

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
    console.session().load_module(module_path);
    console.start();
    console.run(std::cin);
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
        std::cerr << "kestrone-host: " << (unregister ? "unregistering " : "registering ")
                  << module_path << " failed with status 0x" << std::hex
                  << static_cast<std::uint32_t>(hr) << "\n";
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

}  // namespace

int main(int argc, char** argv) {
    std::optional<QCoreApplication> app(std::in_place, argc, argv);
    QCoreApplication::setApplicationName("kestrone-host");
    QCoreApplication::setApplicationVersion("5.0.3");

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "The host stand-in for Kestrone components.\n\n"
        "Commands:\n"
        "  console      drive the component line by line (commands on standard input)\n"
        "  info         list the component's macros and pins as the host sees them\n"
        "  code PROGRAM the whole C program of a robot program (.kflow) for the robot's chip\n"
        "  components   list the components registered with this host\n"
        "  register     run the module's own registration\n"
        "  unregister   run the module's own unregistration");
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
        "project", "code: the project file whose settings the component takes.", "FILE");
    const QCommandLineOption hex_option(
        "hex", "code: also compile the C with the PIC compiler; the .hex goes beside the C.");
    parser.addOption(output_option);
    parser.addOption(project_option);
    parser.addOption(hex_option);
    parser.addPositionalArgument("command",
                                 "console, info, code, components, register or unregister");
    parser.process(*app);

    const QStringList args = parser.positionalArguments();
    const bool is_code = !args.isEmpty() && args.front() == "code";
    if (args.size() != (is_code ? 2 : 1)) {
        std::cerr << (is_code ? "kestrone-host: code takes one program: code PROGRAM.kflow\n"
                              : "kestrone-host: name one command: console or info (see --help)\n");
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
    if (command == "console") {
        // A snapshot makes a graphical application of its own, on the offscreen platform: only
        // one application may exist at a time.
        app.reset();
        return run_console(module_path, parser.value(store_option).toStdString());
    }
    if (command == "components") return run_components();
    if (command == "register" || command == "unregister")
        return run_registration(module_path, command == "unregister");
    if (command == "info") return run_info(module_path);
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
