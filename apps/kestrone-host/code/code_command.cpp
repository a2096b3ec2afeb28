#include "code_command.h"

#include <fstream>
#include <ostream>
#include <sstream>

#include "c_program.h"
#include "kestrone/component_v5.h"
#include "kestrone/store.h"
#include "macro_table.h"
#include "module_host.h"
#include "pic_compiler.h"
#include "program.h"
#include "user_file.h"

namespace kflow {

using kestrone::ComPtr;

namespace {

// The host's version as it tells the component: 5.1.
constexpr std::int32_t kHostVersion = 0x501;

// Messages of the component go to the error stream: there is nobody to click OK.
class NoteServices : public kestrone::IHostServices {
  public:
    explicit NoteServices(std::ostream& err) : err_(err) {}
    virtual ~NoteServices() = default;
    void ShowMessage(const std::string& text) noexcept override {
        err_ << "kestrone-host: the component says: " << text << "\n";
    }
    void PlayTone(std::int32_t, std::int32_t) noexcept override {}

  private:
    std::ostream& err_;
};

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

// The settings of a project file, read into the object as a host loads a project.
bool apply_project(const CodeOptions& o, const ProjectReader& read_project,
                   const ComPtr<kestrone::IUnknown>& object, std::ostream& err) {
    std::vector<kestrone::MemoryStore::Entry> entries;
    std::string error;
    if (!read_project || !read_project(o.project, entries, error)) {
        err << "kestrone-host: " << (error.empty() ? "cannot read " + o.project : error) << "\n";
        return false;
    }
    kestrone::MemoryStore store;
    store.assign(std::move(entries));
    auto persist = object.query<kestrone::IKestronePersist>(kestrone::IID_IKestronePersist);
    const kestrone::HRESULT hr =
        persist ? persist->ReadProperties(&store) : kestrone::E_NOINTERFACE;
    if (kestrone::failed(hr)) {
        err << "kestrone-host: the component could not take the settings of " << o.project << " ("
            << status_words(hr) << ")\n";
        return false;
    }
    return true;
}

// The object made and told what a host tells it before it asks for code: the project's
// settings, the host's version (which builds the macro table) and the target's facts.
ComPtr<kestrone::IKestroneComponentV5> ready_component(
    const CodeOptions& o, const ProjectReader& read_project, const host::ModuleHost& module,
    kestrone::IHostServices& services, ComPtr<kestrone::IUnknown>& object, std::ostream& err) {
    const kestrone::HRESULT made = module.create(&services, object);
    auto component =
        object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    if (!component) {
        err << "kestrone-host: the component object could not be made"
            << (kestrone::failed(made) ? " (" + status_words(made) + ")"
                                       : std::string(": it offers no host interface"))
            << "\n";
        return {};
    }
    if (!o.project.empty()) {
        if (!apply_project(o, read_project, object, err)) return {};
        component->put_KtxFilename(o.project);
    }
    component->put_KestroneVersion(kHostVersion);
    const TargetChip chip;
    component->put_ClockSpeed(static_cast<std::int32_t>(chip.clock_hz));
    component->put_TargetController(chip.name);
    return component;
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
    const auto module = host::ModuleHost::load(o.module, error);
    if (!module) {
        err << "kestrone-host: " << error << "\n";
        return kCannotBuild;
    }
    NoteServices services(err);
    ComPtr<kestrone::IUnknown> object;
    const auto component = ready_component(o, read_project, *module, services, object, err);
    if (!component) return kCannotBuild;
    const auto macros = MacroTable::read(*component.get(), &error);
    if (!macros) {
        err << "kestrone-host: " << error << "\n";
        return kCannotBuild;
    }
    const CheckedProgram checked = check_program(source, o.program, *macros);
    for (const Diagnostic& d : checked.faults)
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
