// The C text of the code file's marked blocks, and the settings tokens in it.
#include <algorithm>
#include <array>
#include <new>

#include "core/rovanta_core.h"
#include "platform/basic_error.h"
#include "platform/vb_numeric.h"

namespace rovanta {

std::string RovantaCore::GetCodeFromFile(const std::string& lpCodeName) {
    try {
        const std::string path = CodeFilePath();
        if (!platform::file_exists(path)) ReportMissingCodeFile();
        const std::string start_marker = "/*" + lpCodeName + "_Start*/";
        const std::string end_marker = "/*" + lpCodeName + "_End*/";
        bool in_block = false, start_seen = false, end_seen = false;
        std::string result;

        file1_.open(path);
        // The whole file is always read: a second pair of markers continues the text.
        while (!file1_.at_end()) {
            const std::string_view line = file1_.read_line_view();
            if (in_block) {
                if (line == end_marker) {
                    end_seen = true;
                    in_block = false;
                } else {
                    result += line;
                    result += '\n';
                }
            } else if (line == start_marker) {
                start_seen = true;
                in_block = true;
            }
        }
        file1_.close();

        if (!start_seen || !end_seen)
            result =
                "//Error Reading Code For " + definition.sDescription + "::" + lpCodeName + "\r\n";
        return result;
    } catch (const vb::BasicError& e) {
        file1_.close();
        MsgBox(e.description());
    } catch (const std::bad_alloc&) {
        file1_.close();
        MsgBox(std::string(vb::error_description(vb::kOutOfMemory)));
    }
    return {};
}

std::string RovantaCore::MacroCode(Long lMacroID) {
    if (lMacroID > macro_table.Macros.ubound() || lMacroID < macro_table.Macros.lbound()) return {};
    // The second of the three parts is the name.
    const std::string& full = macro_table.Macros(lMacroID).MacroName;
    std::string name = full;
    const std::size_t bar = full.find('|');
    if (bar != std::string::npos) {
        const std::string front = full.substr(0, bar);
        const std::string rest = full.substr(bar + 1);
        const std::size_t second = rest.find('|');
        name = second != std::string::npos ? rest.substr(0, second) : front;
    }
    return GetCodeFromFile("Macro_" + name);
}

Variant RovantaCore::ExclusiveInterrupts() const {
    std::vector<Variant> items;
    std::int32_t lower = 0;
    if (definition.lExclusiveInterrupts.allocated()) {
        lower = definition.lExclusiveInterrupts.lbound();
        for (Long v : definition.lExclusiveInterrupts.items())
            items.push_back(Variant::long_(v));
    }
    return Variant::array(kestrone::VarType::Long, lower, std::move(items));
}

// Each token in turn, "%a" to "%p": the first place of the token, searched from the start, is
// replaced until none is left, so a string setting's value is searched for the tokens after its
// own. Character places count in 16 bits: a token behind place 32767 is an overflow.
// A value that holds its own token would never run out of tokens; for such a value each place
// that stands in the text before the replacement is replaced once and what it inserted is not
// searched again.
void RovantaCore::ReplaceSettingTokens(std::string& text) const {
    auto place_of = [&text](std::string_view token, std::size_t from) {
        const std::size_t at = text.find(token, from);
        if (at != std::string::npos && at + 1 > 32767) vb::raise_error(vb::kOverflow);
        return at;
    };
    // All sixteen texts are formed first, so a setting without a text fails the whole call
    // before any token is looked for.
    std::array<std::string, kSettingTokens.size()> values;
    for (std::size_t k = 0; k < kSettingTokens.size(); ++k)
        values[k] = kSettingTokens[k].text(settings);
    for (std::size_t k = 0; k < kSettingTokens.size(); ++k) {
        const SettingToken& t = kSettingTokens[k];
        const std::string& value = values[k];
        const bool holds_itself = value.find(t.token) != std::string::npos;
        std::size_t from = 0;
        for (std::size_t at = place_of(t.token, 0); at != std::string::npos;
             at = place_of(t.token, from)) {
            text.replace(at, t.token.size(), value);
            // No occurrence can start before at - 1 that the search from the start would not
            // have found already, so searching from there finds the same first place.
            from = holds_itself ? at + value.size() : at - std::min(at, t.token.size() - 1);
        }
    }
}

void RovantaCore::KtxFilename(const std::string& RHS) {
    link.sKtxFile = RHS;
    link.sCodeFile = App.EXEName + ".c";
    definition.sInitialisationCode = GetCodeFromFile("InitialisationCode");
    definition.sInterruptCode = GetCodeFromFile("InterruptCode");
}

}  // namespace rovanta
