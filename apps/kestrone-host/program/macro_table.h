// The component's macros as a host sees them: read once through the host interface, after the
// host has told its version (which is what builds the component's table).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kestrone/component_v5.h"

namespace kflow {

// How a C type word of the macro table carries a value. Plain char is unsigned on the robot's
// compiler, so a char argument or result is 0 to 255.
enum class CType : std::uint8_t { Int, UnsignedChar, SignedChar };
CType ctype_of(std::string_view word);
// A 16-bit value as the C type keeps it.
inline std::int16_t narrow_to(CType type, std::int16_t value) {
    switch (type) {
        case CType::UnsignedChar:
            return static_cast<std::int16_t>(static_cast<std::uint8_t>(value));
        case CType::SignedChar:
            return static_cast<std::int16_t>(static_cast<std::int8_t>(value));
        case CType::Int:
            break;
    }
    return value;
}

struct MacroParam {
    std::string name;
    std::string type;  // the C type word
};

struct MacroInfo {
    std::int32_t id = 0;  // the host's id, the index in the table
    std::string name;
    std::string returns;  // the C type word, "void" for none
    bool is_function = false;
    bool is_private = false;
    std::vector<MacroParam> params;
};

class MacroTable {
  public:
    MacroTable() = default;
    explicit MacroTable(std::vector<MacroInfo> macros) : macros_(std::move(macros)) {}

    // Reads MacroNames, then MacroParameters, MacroIsFunction and MacroIsPrivate of each id.
    // nullopt with `error` set when the component answers with a failure or lists no macro.
    static std::optional<MacroTable> read(kestrone::IKestroneComponentV5& component,
                                          std::string* error);

    const std::vector<MacroInfo>& macros() const { return macros_; }
    const MacroInfo& at(std::int32_t id) const { return macros_[static_cast<std::size_t>(id)]; }
    // By exact name; the first of two alike wins, as the host lists them.
    const MacroInfo* find(std::string_view name) const;

  private:
    std::vector<MacroInfo> macros_;
};

// "name|name|type": the middle part (the name the code blocks go by) and the last.
struct ThreePart {
    std::string name;
    std::string type;
};
ThreePart split_three_part(std::string_view text);

// A failure status in words: "error 6" for a Basic error, else "status 0x80004005".
std::string status_words(kestrone::HRESULT hr);

}  // namespace kflow
