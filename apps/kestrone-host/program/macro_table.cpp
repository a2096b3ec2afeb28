#include "macro_table.h"

#include <array>
#include <climits>

namespace kflow {

using kestrone::HRESULT;
using kestrone::Variant;

namespace {

struct TypeWord {
    std::string_view word;
    CType type;
};
// Words that name an 8-bit type; every other word is carried in 16 bits.
constexpr std::array<TypeWord, 6> kByteTypes{{
    {"char", CType::UnsignedChar},
    {"unsigned char", CType::UnsignedChar},
    {"uint8_t", CType::UnsignedChar},
    {"bool", CType::UnsignedChar},
    {"signed char", CType::SignedChar},
    {"int8_t", CType::SignedChar},
}};

}  // namespace

std::string status_words(HRESULT hr) {
    const int n = kestrone::basic_error_number(hr);
    if (n) return "error " + std::to_string(n);
    static const char* const hex = "0123456789ABCDEF";
    std::string out = "status 0x";
    for (int shift = 28; shift >= 0; shift -= 4)
        out += hex[(static_cast<std::uint32_t>(hr) >> shift) & 15u];
    return out;
}

namespace {

std::optional<std::vector<MacroParam>> read_params(const Variant& v) {
    std::vector<MacroParam> params;
    if (!v.is_array()) return std::nullopt;
    for (const Variant& p : v.as_array().items) {
        if (p.is_array() || p.type() != kestrone::VarType::String) return std::nullopt;
        const ThreePart parts = split_three_part(p.as_string());
        params.push_back({parts.name, parts.type});
    }
    return params;
}

}  // namespace

CType ctype_of(std::string_view word) {
    for (const TypeWord& t : kByteTypes)
        if (t.word == word) return t.type;
    return CType::Int;
}

ThreePart split_three_part(std::string_view text) {
    const std::size_t first = text.find('|');
    if (first == std::string_view::npos) return {std::string(text), ""};
    const std::string_view rest = text.substr(first + 1);
    const std::size_t second = rest.find('|');
    if (second == std::string_view::npos)
        return {std::string(text.substr(0, first)), std::string(rest)};
    return {std::string(rest.substr(0, second)), std::string(rest.substr(second + 1))};
}

std::optional<MacroTable> MacroTable::read(kestrone::IKestroneComponentV5& component,
                                           std::string* error) {
    auto fail = [&](std::string why) -> std::optional<MacroTable> {
        if (error) *error = std::move(why);
        return std::nullopt;
    };
    Variant names;
    HRESULT hr = component.get_MacroNames(&names);
    if (kestrone::failed(hr))
        return fail("the component did not list its macros (" + status_words(hr) + ")");
    if (!names.is_array() || names.as_array().items.empty())
        return fail("the component lists no macros");
    const kestrone::SafeArray& list = names.as_array();
    // Ids are 32-bit: past the last one a macro could not be called.
    if (list.upper() > INT32_MAX)
        return fail("the component numbers its macros past 2147483647, the last id there is");
    std::vector<MacroInfo> macros;
    for (std::size_t k = 0; k < list.items.size(); ++k) {
        const std::int32_t id = list.lower + static_cast<std::int32_t>(k);
        const Variant& text = list.items[k];
        if (text.is_array() || text.type() != kestrone::VarType::String)
            return fail("the component's macro " + std::to_string(id) + " has no name");
        MacroInfo m;
        m.id = id;
        const ThreePart parts = split_three_part(text.as_string());
        m.name = parts.name;
        m.returns = parts.type.empty() ? "void" : parts.type;
        std::int32_t is_function = 0, is_private = 0;
        Variant params;
        if (kestrone::failed(hr = component.get_MacroIsFunction(id, &is_function)) ||
            kestrone::failed(hr = component.get_MacroIsPrivate(id, &is_private)) ||
            kestrone::failed(hr = component.get_MacroParameters(id, &params)))
            return fail("the component did not describe its macro " + m.name + " (" +
                        status_words(hr) + ")");
        m.is_function = is_function != 0;
        m.is_private = is_private != 0;
        auto list_of_params = read_params(params);
        if (!list_of_params)
            return fail("the component's macro " + m.name +
                        " has a parameter list of no known "
                        "form");
        m.params = std::move(*list_of_params);
        macros.push_back(std::move(m));
    }
    return MacroTable(std::move(macros));
}

const MacroInfo* MacroTable::find(std::string_view name) const {
    for (const MacroInfo& m : macros_)
        if (m.name == name) return &m;
    return nullptr;
}

}  // namespace kflow
