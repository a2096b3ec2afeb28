#include "code_command.h"

#include <fstream>
#include <ostream>
#include <sstream>

#include "c_program.h"
#include "component_macros.h"
#include "chip_trace.h"
#include "component_module.h"
#include "kestrone/component_v5.h"
#include "kestrone/store.h"
#include "kestrone/typelib.h"
#include "macro_table.h"
#include "object_recipe.h"
#include "pic_compiler.h"
#include "program.h"
#include "user_file.h"

namespace kflow {

using kestrone::ComPtr;

namespace {

std::string base_name(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string beside(const std::string& program, const char* extension) {
    const std::size_t slash = program.rfind('/');
    const std::size_t dot = program.rfind('.');
    const bool has_extension =
        dot != std::string::npos && (slash == std::string::npos || dot > slash);
    return (has_extension ? program.substr(0, dot) : program) + extension;
}

// The object made and told what a host tells it before it asks for code: the project's
// settings, the host's version (which builds the macro table) and the target's facts.
ComPtr<kestrone::IKestroneComponentV5> ready_component(
    const CodeOptions& o, const ProjectReader& read_project, const host::ComponentModule& module,
    kestrone::IHostServices& services, ComPtr<kestrone::IUnknown>& object, std::ostream& err) {
    std::vector<kestrone::MemoryStore::Entry> entries;
    host::ObjectRecipe recipe;
    if (!o.project.empty()) {
        std::string error;
        if (!read_project || !read_project(o.project, entries, error)) {
            err << "kestrone-host: " << (error.empty() ? "cannot read " + o.project : error)
                << "\n";
            return {};
        }
        recipe.settings = &entries;
        recipe.settings_from = o.project;
        recipe.project_file = o.project;
    }
    const TargetChip chip;
    recipe.clock_hz = static_cast<std::int32_t>(chip.clock_hz);
    recipe.controller = chip.name;
    host::ReadyObject made = host::make_ready_object(module, services, recipe);
    if (!made.object) {
        err << "kestrone-host: " << made.why << " (" << status_words(made.status) << ")\n";
        return {};
    }
    object = made.object;
    // A traced chip starts at once, as the panel does: no wait for the start button.
    if (!o.trace.empty()) {
        const auto dispatch =
            object.query<kestrone::IKestroneDispatch>(kestrone::IID_IKestroneDispatch);
        kestrone::Variant no = kestrone::Variant::integer(0);
        const std::int32_t id = kestrone::member_number(kestrone::kRovantaMembers, "bWaitForButton",
                                                        kestrone::InvokeKind::Set);
        if (!dispatch ||
            kestrone::failed(dispatch->Invoke(kestrone::Interface::Rovanta, id, &no, 1, nullptr))) {
            err << "kestrone-host: the component would not leave out the wait for the start "
                   "button\n";
            return {};
        }
    }
    return object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
}

// The C to its place, and on to the chip's compiler when asked.
int deliver(const CodeOptions& o, const std::string& c, std::ostream& out, std::ostream& err) {
    const std::string target = !o.output.empty() ? o.output : o.hex ? beside(o.program, ".c") : "";
    if (target.empty()) {
        out << c;
        return out.good() ? kCodeWritten : kCannotBuild;
    }
    std::ofstream file(target, std::ios::binary | std::ios::trunc);
    if (!(file << c) || !file.flush()) {
        err << "kestrone-host: cannot write " << target << "\n";
        return kCannotBuild;
    }
    file.close();
    if (!o.hex) return kCodeWritten;
    const CompileResult compiled = compile_for_chip(target);
    if (compiled.missing) {
        err << "kestrone-host: wrote " << target << ", but no .hex: " << compiled.output << "\n";
        return kCompilerFailed;
    }
    if (!compiled.ok) {
        err << "kestrone-host: " << target << " did not compile for the chip:\n" << compiled.output;
        return kCompilerFailed;
    }
    // The compiler's warnings reach the user; its notes (such as the linker script it chose) don't.
    std::istringstream said(compiled.output);
    for (std::string line; std::getline(said, line);)
        if (!line.empty() && line.rfind("message:", 0) != 0) err << line << "\n";
    err << "kestrone-host: wrote " << target << " and " << compiled.hex << "\n";
    if (o.trace.empty()) return kCodeWritten;
    const TraceResult traced =
        trace_chip(beside(compiled.hex, ".cod"), o.trace_ms, TargetChip{}.clock_hz, o.trace);
    if (!traced.ok) {
        err << "kestrone-host: " << traced.why << "\n";
        return kTraceFailed;
    }
    err << "kestrone-host: wrote " << o.trace << " and " << beside(o.trace, ".gtkw") << "\n";
    return kCodeWritten;
}

}  // namespace

int run_code_command(const CodeOptions& o, const ProjectReader& read_project, std::ostream& out,
                     std::ostream& err) {
    std::string source, unread;
    if (!host::read_user_file(o.program, host::kLargestTextFile, "a robot program", &source,
                              &unread)) {
        err << "kestrone-host: cannot read the program " << o.program << ": " << unread << "\n";
        return kCannotBuild;
    }
    std::string error;
    const auto module = host::ComponentModule::open(o.module, error);
    if (!module) {
        err << "kestrone-host: " << error << "\n";
        return kCannotBuild;
    }
    ErrorStreamServices services(err);
    ComPtr<kestrone::IUnknown> object;
    const auto component = ready_component(o, read_project, *module, services, object, err);
    if (!component) return kCannotBuild;
    const auto macros = MacroTable::read(*component.get(), &error);
    if (!macros) {
        err << "kestrone-host: " << error << "\n";
        return kCannotBuild;
    }
    const CheckedProgram checked = check_program(source, o.program, *macros);
    for (const Diagnostic& d : in_order_of_place(checked.faults, checked.warnings))
        err << format_diagnostic(o.program, d) << "\n";
    if (!checked.program) return kProgramFaulty;

    const auto code = read_component_code(*component.get(), *checked.program, &error);
    if (!code) {
        err << "kestrone-host: " << error << "\n";
        return kCannotBuild;
    }
    for (const std::string& w : code->warnings)
        err << "kestrone-host: warning: " << w << "\n";
    return deliver(o, write_c_program(*checked.program, *code, base_name(o.program)), out, err);
}

}  // namespace kflow
