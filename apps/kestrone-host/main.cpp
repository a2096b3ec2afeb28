// kestrone-host: the host stand-in. It loads a component module through its entry points and
// drives it: in a window, headless through the console, or by a report of what it offers. Each
// command is an entry of the table in host_commands.cpp.
#include <QApplication>
#include <QCoreApplication>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "component_module.h"
#include "component_registry.h"
#include "host_commands.h"
#ifdef KESTRONE_LINKED_COMPONENT
#include "linked_component.h"
#endif

namespace {

bool have_display() {
    const auto set = [](const char* name) {
        const char* v = std::getenv(name);
        return v && *v;
    };
    return set("DISPLAY") || set("WAYLAND_DISPLAY");
}

QString general_help(const QCommandLineParser& parser) {
    QString text = parser.helpText();
    text += "\nCommands:\n";
    for (const host::HostCommand& c : host::host_commands())
        text += QString("  %1%2\n")
                    .arg(QString::fromUtf8(c.name.data(), static_cast<int>(c.name.size())), -13)
                    .arg(QString::fromUtf8(c.summary.data(), static_cast<int>(c.summary.size())));
    return text + "\nkestrone-host COMMAND --help describes a command.\n";
}

// --module, or the registered component named by --component, or the module beside the host.
bool module_path(const QCommandLineParser& parser, std::string* path) {
    if (parser.isSet("module") && parser.value("module").isEmpty()) {
        std::cerr << "kestrone-host: --module names no file: give the path of a module\n";
        return false;
    }
    *path = parser.isSet("module") ? parser.value("module").toStdString()
                                   : host::ComponentModule::default_module_path();
    if (!parser.isSet("component")) return true;
    std::string error;
    const auto record = host::find_component(parser.value("component").toStdString(), &error);
    if (!record) std::cerr << "kestrone-host: " << error << "\n";
    if (record) *path = record->module;
    return record.has_value();
}

}  // namespace

int main(int argc, char** argv) {
#ifdef KESTRONE_LINKED_COMPONENT
    host::link_component_in();
#endif
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    QCommandLineParser parser;
    parser.setApplicationDescription("The host stand-in for Kestrone components.");
    host::add_host_options(parser);
    parser.addPositionalArgument("command", QString::fromStdString(host::host_command_names()));
    // Read before any application is made: help and a headless command need no display.
    if (!parser.parse(arguments)) {
        std::cerr << "kestrone-host: " << parser.errorText().toStdString() << " (see --help)\n";
        return 2;
    }
    QStringList words = parser.positionalArguments();
    if (words.isEmpty() && have_display()) words << "window";
    const host::HostCommand* command =
        words.isEmpty() ? nullptr : host::find_host_command(words.front().toStdString());
    if (parser.isSet("version")) {
        std::cout << "kestrone-host " KESTRONE_VERSION "\n";
        return 0;
    }
    if (parser.isSet("help")) {
        std::cout << (command ? std::string(command->page) : general_help(parser).toStdString());
        return 0;
    }
    if (!command) {
        std::cerr << "kestrone-host: "
                  << (words.isEmpty() ? "name a command"
                                      : "unknown command '" + words.front().toStdString() + "'")
                  << ": " << host::host_command_names() << " (see --help)\n";
        return 2;
    }
    words.removeFirst();
    if (command->more_words ? words.size() < command->positional
                            : words.size() != command->positional) {
        std::cerr << "kestrone-host: " << command->name
                  << (command->positional ? " takes one file" : " takes nothing more")
                  << (words.isEmpty() ? "" : ", not '" + words.join(' ').toStdString() + "'")
                  << "; " << command->page.substr(0, command->page.find('\n')) << "\n";
        return 2;
    }
    std::string module;
    if (!module_path(parser, &module)) return 2;
    // The console's snapshots and a chart's picture make an application of their own, offscreen.
    const bool paints_offscreen = command->name == "console" || command->name == "chart";
    std::unique_ptr<QCoreApplication> app;
    if (command->graphical)
        app = std::make_unique<QApplication>(argc, argv);
    else if (!paints_offscreen)
        app = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName("kestrone-host");
    QCoreApplication::setApplicationVersion(KESTRONE_VERSION);
    return command->run({parser, words, module});
}
