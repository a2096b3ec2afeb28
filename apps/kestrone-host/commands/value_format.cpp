// The written form of values in answers: the shortest text that reads back to the same value.
#include "float_text.h"
#include "value_syntax.h"

namespace console {

using kestrone::SafeArray;
using kestrone::Variant;
using kestrone::VarType;

namespace {

std::string bare(const Variant& v) {
    switch (v.type()) {
        case VarType::Empty:
            return "Empty";
        case VarType::Integer:
            return std::to_string(v.as_integer());
        case VarType::Long:
            return std::to_string(v.as_long());
        case VarType::Single:
            return float_text(v.as_single());
        case VarType::Double:
            return float_text(v.as_double());
        case VarType::Boolean:
            return v.as_boolean() ? "True" : "False";
        case VarType::String:
            return quote(v.as_string());
        case VarType::Byte:
            return std::to_string(v.as_byte());
        default:
            return "?";
    }
}

}  // namespace

namespace {
// Appends one byte as an answer writes it: a named escape, \xHH below 32 and from 127 up, or
// itself. Backslash and quote are escaped only inside a quoted string.
void append_escaped(std::string& out, unsigned char c, bool in_string) {
    static const char hex[] = "0123456789ABCDEF";
    switch (c) {
        case '\\':
            out += in_string ? "\\\\" : "\\";
            return;
        case '"':
            out += in_string ? "\\\"" : "\"";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            if (c < 32 || c >= 127) {
                out += "\\x";
                out.push_back(hex[c >> 4]);
                out.push_back(hex[c & 15]);
            } else {
                out.push_back(static_cast<char>(c));
            }
    }
}

// A key that can stand as a bare word in a command line and reads back as itself.
bool is_bare_word(std::string_view text) {
    if (text.empty() || text == "=" || text.front() == '#') return false;
    for (unsigned char c : text)
        if (c <= 32 || c >= 127 ||
            std::string_view("\"\\[]()").find(static_cast<char>(c)) != std::string_view::npos)
            return false;
    return true;
}
}  // namespace

std::string quote(std::string_view text) {
    std::string out = "\"";
    for (unsigned char c : text)
        append_escaped(out, c, true);
    return out + "\"";
}

std::string escape_text(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (unsigned char c : text)
        append_escaped(out, c, false);
    return out;
}

std::string key_text(std::string_view key) {
    return is_bare_word(key) ? std::string(key) : quote(key);
}

std::string format_value(const Variant& v) {
    if (v.is_array()) {
        const SafeArray& a = v.as_array();
        std::string out = std::string(type_name(a.element)) + "[" + std::to_string(a.lower) +
                          " to " + std::to_string(a.upper()) + "](";
        for (std::size_t i = 0; i < a.items.size(); ++i) {
            if (i) out += ", ";
            out += a.element == VarType::Variant ? format_value(a.items[i]) : bare(a.items[i]);
        }
        return out + ")";
    }
    switch (v.type()) {
        case VarType::Integer:
            return bare(v) + "%";
        case VarType::Long:
            return bare(v) + "&";
        case VarType::Single:
            return bare(v) + "!";
        case VarType::Double:
            return bare(v) + "#";
        case VarType::Byte:
            return bare(v);  // only inside arrays
        default:
            return bare(v);
    }
}

}  // namespace console
