// The C text of the code file's marked blocks, and the settings tokens in it.
#include <algorithm>
#include <array>
#include <new>

#include "core/code_block.h"
#include "core/rovanta_core.h"
#include "platform/basic_error.h"
#include "platform/vb_numeric.h"

namespace rovanta {

std::string RovantaCore::GetCodeFromFile(const std::string& lpCodeName) {
    try {
        const std::string path = CodeFilePath();
        const std::string start_marker = "/*" + lpCodeName + "_Start*/";
        const std::string end_marker = "/*" + lpCodeName + "_End*/";
        // A missing file is told before its opening fails; asked only when the opening fails,
        // so that a good read costs no look of its own.
        try {
            file1_.open(path);
        } catch (const vb::BasicError&) {
            if (platform::file_exists(path)) throw;
            ReportMissingCodeFile();
            file1_.open(path);
        }
        // The whole file is always read: a second pair of markers continues the text.
        CutBlock block = cut_block(file1_.read_all(), start_marker, end_marker);
        file1_.close();

        std::string result = std::move(block.text);
        if (!block.start_seen || !block.end_seen)
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
