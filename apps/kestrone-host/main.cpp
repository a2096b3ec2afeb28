// kestrone-host: the host stand-in. It loads a component module through its entry points and
// drives it, headless through the console or by a report of what it offers.
#include <QCommandLineParser>
#include <QCoreApplication>

#include <iostream>

#include "console_session.h"
#include "info_report.h"
#include "module_host.h"

namespace {

int run_console(const std::string& module_path) {
    std::string error;
    auto module = host::ModuleHost::load(module_path, error);
    console::ConsoleSession session(module.get(), error, std::cout);
    session.start();
    session.run(std::cin);
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
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("kestrone-host");
    QCoreApplication::setApplicationVersion("5.0.3");

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "The host stand-in for Kestrone components.\n\n"
        "Commands:\n"
        "  console   drive the component line by line (commands on standard input)\n"
        "  info      list the component's macros and pins as the host sees them");
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption module_option(
        "module", "The component module to load (default: the one installed beside this program).",
        "PATH");
    const QCommandLineOption store_option(
        "store", "A project file whose store the console starts with.", "FILE");
    parser.addOption(module_option);
    parser.addOption(store_option);
    parser.addPositionalArgument("command", "console or info");
    parser.process(app);

    const QStringList args = parser.positionalArguments();
    if (args.size() != 1) {
        std::cerr << "kestrone-host: name one command: console or info (see --help)\n";
        return 2;
    }
    const std::string module_path = parser.isSet(module_option)
                                        ? parser.value(module_option).toStdString()
                                        : host::ModuleHost::default_module_path();
    const QString command = args.front();
    if (command == "console") return run_console(module_path);
    if (command == "info") return run_info(module_path);
    std::cerr << "kestrone-host: unknown command '" << command.toStdString() << "' (see --help)\n";
    return 2;
}
