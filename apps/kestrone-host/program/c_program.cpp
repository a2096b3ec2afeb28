#include "c_program.h"

#include "c_flow.h"

namespace kflow {

namespace {

// What the component answers for a block it cannot find in its code file.
constexpr std::string_view kUnreadBlock = "//Error Reading Code For ";

// A text from the component or the user inside a C comment must not end the comment early.
std::string comment_safe(std::string text) {
    for (std::size_t at; (at = text.find("*/")) != std::string::npos;)
        text.replace(at, 2, "* /");
    return text;
}

std::string with_line_end(std::string text) {
    if (!text.empty() && text.back() != '\n') text += '\n';
    return text;
}

std::string signature(const MacroInfo& m) {
    std::string params;
    for (const MacroParam& p : m.params)
        params += (params.empty() ? "" : ", ") + p.type + " " + p.name;
    return m.returns + " " + m.name + "(" + (params.empty() ? "void" : params) + ")";
}

}  // namespace

std::optional<ComponentCode> read_component_code(kestrone::IKestroneComponentV5& component,
                                                 const Program& program, std::string* error) {
    ComponentCode code;
    auto text = [&](auto query, const char* what, std::string& out) {
        const kestrone::HRESULT got = query(&out);
        if (kestrone::failed(got)) {
            if (error)
                *error = std::string("the component did not give its ") + what + " (" +
                         status_words(got) + ")";
            return false;
        }
        if (kestrone::failed(component.MacroCodeOverride(&out))) {
            if (error) *error = std::string("the component could not fill in its settings");
            return false;
        }
        if (std::string_view(out).starts_with(kUnreadBlock))
            code.warnings.push_back(std::string("the component could not read its ") + what);
        return true;
    };
    if (kestrone::failed(component.get_Description(&code.description))) code.description.clear();
    if (!text([&](std::string* s) { return component.get_DefinesCode(s); }, "definitions",
              code.defines) ||
        !text([&](std::string* s) { return component.get_InitialisationCode(s); }, "initialisation",
              code.initialisation) ||
        !text([&](std::string* s) { return component.get_InterruptCode(s); }, "interrupt code",
              code.interrupts))
        return std::nullopt;
    for (std::int32_t id : program.used_macros) {
        const std::string what = "code of the macro " + program.macros.at(id).name;
        std::string body;
        if (!text([&](std::string* s) { return component.get_MacroCode(id, s); }, what.c_str(),
                  body))
            return std::nullopt;
        code.macro_bodies[id] = std::move(body);
    }
    return code;
}

std::string write_c_program(const Program& program, const ComponentCode& code,
                            const std::string& label, const TargetChip& chip) {
    const CFlow flow = write_flow(program, chip.clock_hz);
    std::string c;
    c += "/*\n * " + comment_safe(label) + ": the robot program as one C program for " +
         comment_safe(code.description.empty() ? "the component" : code.description) +
         ".\n * Built by kestrone-host code for the " + chip.name + " at " +
         std::to_string(chip.clock_hz / 1000000UL) + " MHz;\n" +
         " * compile with: sdcc -mpic14 -p16f877a --use-non-free\n */\n\n";
    c += "/* The component's definitions. */\n" + with_line_end(code.defines) + "\n";
    c += "/* The program's variables. */\n" + flow.declarations + "\n";
    if (!flow.helpers.empty()) c += flow.helpers;
    c += "/* The component's macros that the program calls. */\n";
    for (const auto& [id, body] : code.macro_bodies)
        c += signature(program.macros.at(id)) + "\n{\n" + with_line_end(body) + "}\n\n";
    c += "void isr(void) __interrupt 0\n{\n" + with_line_end(code.interrupts) + "}\n\n";
    // The compiler's optimizer says where it finds a condition constant or code after it
    // unreachable (an arm left empty) and where constants it brings together pass 16 bits
    // (c * (x * d) as (c * d) * x): notes on its own work, not on the C, which does what the
    // program says either way, wrapping as the program's arithmetic does.
    c += "#ifdef __SDCC\n#pragma disable_warning 110\n#pragma disable_warning 126\n"
         "#pragma disable_warning 165\n#endif\n" +
         flow.parts;
    c += "void main(void)\n{\n" + with_line_end(code.initialisation);
    c += "    /* " + comment_safe(label) + " */\n" + flow.body;
    // After a flow that never ends (forever, stop) the resting loop could not be reached, and
    // the compiler would warn of it.
    if (!flow.ends)
        c += "    /* The end of the program: the chip stays here. */\n    for (;;) {\n    }\n";
    c += "}\n";
    return c;
}

}  // namespace kflow
