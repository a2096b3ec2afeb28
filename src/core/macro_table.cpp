// The macro table, built from the definition sections when the host tells its version.
#include "core/rovanta_core.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using kestrone::VarType;

void RovantaCore::KestroneVersion(Long RHS) {
    // The major number must fit before either field changes.
    const Integer major = vb::cint(std::int64_t{RHS & ~Long{0xFF}} / 256);
    link.iVersionMajor = major;
    link.iVersionMinor = static_cast<Integer>(RHS & 0xFF);
    LoadMacros();
}

void RovantaCore::LoadMacros() {
    macro_table.lMacroCount = vb::text_to_long(GetIniKeyValue("MacroNames", "Count", "0"));
    if (macro_table.lMacroCount < 1) {
        link.bInitialised = true;
        return;
    }
    macro_table.Macros.redim(0, macro_table.lMacroCount - 1);
    // The running number is a 16-bit counter: a count beyond it overflows before the first macro.
    const Integer last = vb::cint(std::int64_t{macro_table.lMacroCount});
    for (int i = 1; i <= last; ++i) {
        const std::string key = vb::str(i);
        const std::string name = GetIniKeyValue("MacroNames", key, "");
        const std::string returns = GetIniKeyValue("MacroReturns", key, "void");
        const bool is_private = vb::text_to_boolean(GetIniKeyValue("MacroIsPrivate", key, "0"));
        const bool is_function = returns != "void";
        if (name.empty()) {
            MsgBox("Error: Macro " + vb::cstr(std::int64_t{i}) + " is missing from the code file!");
            file1_.close();
        }
        KTMacro& macro = macro_table.Macros(i - 1);
        macro = KTMacro{};
        macro.MacroName = name + "|" + name + "|" + returns;
        macro.IsFunction = is_function;
        macro.IsPrivate = is_private;

        const std::string params_section = "MacroParameters_" + name;
        const std::string types_section = "MacroParamTypes_" + name;
        const Integer count = vb::text_to_integer(GetIniKeyValue(params_section, "Count", "0"));
        if (count == 0) {
            macro.MacroParams = Variant::array(VarType::Variant, 0, {});
            continue;
        }
        VbArray<std::string> params;
        params.redim(0, count - 1);
        for (int j = 1; j <= count; ++j) {
            const std::string param_key = vb::str(j);
            const std::string param = GetIniKeyValue(params_section, param_key, "");
            const std::string type = GetIniKeyValue(types_section, param_key, "char");
            if (param.empty()) {
                MsgBox("Error: Parameter " + vb::cstr(std::int64_t{i}) + "." +
                       vb::cstr(std::int64_t{j}) + " is missing from the code file!");
                file1_.close();
            }
            params(j - 1) = param + "|" + param + "|" + type;
        }
        std::vector<Variant> items;
        items.reserve(params.items().size());
        for (const std::string& p : params.items())
            items.push_back(Variant::string(p));
        macro.MacroParams = Variant::array(VarType::String, 0, std::move(items));
    }
    link.bInitialised = true;
}

Variant RovantaCore::MacroNames() const {
    if (macro_table.lMacroCount < 1) return Variant::string("");
    std::vector<Variant> names;
    for (Long i = macro_table.Macros.lbound(); i <= macro_table.Macros.ubound(); ++i)
        names.push_back(Variant::string(macro_table.Macros(i).MacroName));
    return Variant::array(VarType::String, macro_table.Macros.lbound(), std::move(names));
}

// Before the table exists the bounds can't be asked for: error 9, as the bounds test itself fails.
Long RovantaCore::MacroIsFunction(Long lMacroID) const {
    if (lMacroID > macro_table.Macros.ubound() || lMacroID < macro_table.Macros.lbound()) return 0;
    return host_boolean(macro_table.Macros(lMacroID).IsFunction);
}

Long RovantaCore::MacroIsPrivate(Long lMacroID) const {
    if (lMacroID > macro_table.Macros.ubound() || lMacroID < macro_table.Macros.lbound()) return 0;
    return host_boolean(macro_table.Macros(lMacroID).IsPrivate);
}

Variant RovantaCore::MacroParameters(Long lMacroID) const {
    if (lMacroID > macro_table.Macros.ubound() || lMacroID < macro_table.Macros.lbound())
        return Variant();
    return macro_table.Macros(lMacroID).MacroParams;
}

}  // namespace rovanta
