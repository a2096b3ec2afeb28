// The project file's text, written without Qt so that the console can judge an entry by it: what
// a save would write, and whether a load could open it again.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "float_text.h"
#include "project_file.h"
#include "value_limits.h"

namespace host {

using kestrone::Variant;
using kestrone::VarType;

namespace {

constexpr std::string_view kHead = "{\n    \"format\": \"kestrone-project\",\n    \"version\": ";
constexpr std::string_view kStore = ",\n    \"store\": [";
constexpr std::string_view kEnd = "\n    ]";
constexpr std::string_view kHost = ",\n    \"host\": {";
constexpr std::string_view kClose = "\n}\n";

struct KindName {
    VarType type;
    std::string_view name;
};
constexpr KindName kKinds[] = {
    {VarType::Empty, "Empty"},   {VarType::Integer, "Integer"}, {VarType::Long, "Long"},
    {VarType::Single, "Single"}, {VarType::Double, "Double"},   {VarType::Boolean, "Boolean"},
    {VarType::String, "String"}, {VarType::Byte, "Byte"},       {VarType::Variant, "Variant"},
};

// Only the well-formed: any other byte would not come back from a reader as itself.
bool is_utf8(std::string_view s) {
    for (std::size_t i = 0; i < s.size();) {
        const auto b = [&](std::size_t k) { return static_cast<unsigned char>(s[k]); };
        const unsigned char c = b(i);
        const std::size_t n = c < 0x80                 ? 1
                              : c >= 0xC2 && c <= 0xDF ? 2
                              : c >= 0xE0 && c <= 0xEF ? 3
                              : c >= 0xF0 && c <= 0xF4 ? 4
                                                       : 0;
        if (n == 0 || i + n > s.size()) return false;
        for (std::size_t k = 1; k < n; ++k)
            if ((b(i + k) & 0xC0) != 0x80) return false;
        // Overlong forms, surrogates and code points past U+10FFFF.
        if ((c == 0xE0 && b(i + 1) < 0xA0) || (c == 0xED && b(i + 1) > 0x9F) ||
            (c == 0xF0 && b(i + 1) < 0x90) || (c == 0xF4 && b(i + 1) > 0x8F))
            return false;
        i += n;
    }
    return true;
}

// Writes into a string, or only counts what it would write: the size a save would have is known
// without making the file.
template <class Out>
class Writer {
  public:
    explicit Writer(Out& out) : out_(out) {}

    void entry(const std::string& key, const Variant& v) {
        out_ += "\n        {";
        text("key", key);
        out_ += ", \"value\": ";
        value(v);
        out_ += "}";
    }

    void value(const Variant& v) {
        if (v.is_array()) return array(v.as_array());
        out_ += "{\"kind\": \"";
        out_ += kind_name(v.type());
        out_ += "\"";
        if (v.type() == VarType::String) {
            out_ += ", ";
            text("value", v.as_string());
        } else if (v.type() != VarType::Empty) {
            out_ += ", \"value\": ";
            bare(v);
        }
        out_ += "}";
    }

    template <class N>
    void number(N n) {
        char buf[64];
        out_ += std::string_view(
            buf, static_cast<std::size_t>(std::to_chars(buf, buf + sizeof buf, n).ptr - buf));
    }

    // "FIELD": text, or "FIELDBase64": its bytes when they are not UTF-8.
    void text(std::string_view field, const std::string& s) {
        out_ += "\"";
        out_ += field;
        if (is_utf8(s)) {
            out_ += "\": ";
            return quoted(s);
        }
        out_ += "Base64\": \"";
        base64(s);
        out_ += "\"";
    }

  private:
    // A typed array keeps its kind once and its elements bare; a Variant array, or strings that
    // are not all UTF-8, keep each element's own object.
    void array(const kestrone::SafeArray& a) {
        const bool bare_items =
            a.element != VarType::Variant &&
            std::all_of(a.items.begin(), a.items.end(), [&](const Variant& item) {
                return !item.is_array() && item.type() == a.element &&
                       (a.element != VarType::String || is_utf8(item.as_string()));
            });
        out_ += "{\"kind\": \"Array\", \"element\": \"";
        out_ += kind_name(a.element);
        out_ += "\", \"lower\": ";
        number(a.lower);
        out_ += bare_items ? ", \"values\": [" : ", \"items\": [";
        for (std::size_t i = 0; i < a.items.size(); ++i) {
            if (i) out_ += ", ";
            if (bare_items)
                bare(a.items[i]);
            else
                value(a.items[i]);
        }
        out_ += "]}";
    }

    // A scalar as a JSON value of its own: a number, true or false, a string; a float that JSON
    // cannot carry (a negative zero, infinities, NaN) as its text.
    void bare(const Variant& v) {
        switch (v.type()) {
            case VarType::Integer:
                return number(v.as_integer());
            case VarType::Long:
                return number(v.as_long());
            case VarType::Byte:
                return number(v.as_byte());
            case VarType::Boolean:
                out_ += v.as_boolean() ? "true" : "false";
                return;
            case VarType::String:
                return quoted(v.as_string());
            case VarType::Single:
                // Every Single is a double exactly: its digits as a double read back to it.
                if (std::isfinite(v.as_single()) && !is_negative_zero(v.as_single()))
                    return number(static_cast<double>(v.as_single()));
                return quoted(console::float_text(v.as_single()));
            case VarType::Double:
                if (std::isfinite(v.as_double()) && !is_negative_zero(v.as_double()))
                    return number(v.as_double());
                return quoted(console::float_text(v.as_double()));
            default:
                out_ += "null";
        }
    }
    template <class F>
    static bool is_negative_zero(F x) {
        return x == 0 && std::signbit(x);
    }

    void quoted(std::string_view s) {
        static constexpr char kHex[] = "0123456789abcdef";
        out_ += "\"";
        for (const char ch : s) {
            const auto c = static_cast<unsigned char>(ch);
            if (c == '"' || c == '\\') {
                out_ += "\\";
                out_ += std::string_view(&ch, 1);
            } else if (c < 0x20) {
                const char esc[] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 15]};
                out_ += std::string_view(esc, sizeof esc);
            } else {
                out_ += std::string_view(&ch, 1);
            }
        }
        out_ += "\"";
    }

    void base64(std::string_view s) {
        static constexpr char kDigits[] =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (std::size_t i = 0; i < s.size(); i += 3) {
            const auto byte = [&](std::size_t k) {
                return k < s.size() ? static_cast<unsigned>(static_cast<unsigned char>(s[k])) : 0u;
            };
            const unsigned n = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
            const char four[] = {kDigits[n >> 18 & 63], kDigits[n >> 12 & 63],
                                 i + 1 < s.size() ? kDigits[n >> 6 & 63] : '=',
                                 i + 2 < s.size() ? kDigits[n & 63] : '='};
            out_ += std::string_view(four, 4);
        }
    }

    static std::string_view kind_name(VarType t) {
        for (const KindName& k : kKinds)
            if (k.type == t) return k.name;
        return "Empty";
    }

    Out& out_;
};

// Counts what a Writer would write.
struct Count {
    long long bytes = 0;
    Count& operator+=(std::string_view s) {
        bytes += static_cast<long long>(s.size());
        return *this;
    }
};

int array_nesting(const Variant& v) {
    if (!v.is_array()) return 0;
    int deepest = 0;
    for (const Variant& item : v.as_array().items) {
        deepest = std::max(deepest, array_nesting(item));
        if (deepest > console::kMaxArrayNesting) break;  // deep enough to refuse
    }
    return deepest + 1;
}

// The host's part, only when it has something: a file without it reads the same.
template <class Out>
void write_links(Out& out, const ProjectLinks& links) {
    if (links.program.empty() && links.arena.empty()) return;
    out += kHost;
    bool first = true;
    for (const auto& [field, path] :
         {std::pair{"program", &links.program}, {"arena", &links.arena}}) {
        if (path->empty()) continue;
        if (!first) out += ", ";
        first = false;
        Writer<Out>(out).text(field, *path);
    }
    out += "}";
}

template <class Out>
void write_project(Out& out, const StoreEntries& entries, const StoreEntry* extra,
                   const ProjectLinks& links = {}) {
    out += kHead;
    Writer<Out>(out).number(kProjectFileVersion);
    out += kStore;
    bool first = true;
    const auto one = [&](const std::string& key, const Variant& value) {
        if (!first) out += ",";
        first = false;
        Writer<Out>(out).entry(key, value);
    };
    for (const StoreEntry& e : entries)
        if (!extra || e.key != extra->key) one(e.key, e.value);
    if (extra) one(extra->key, extra->value);
    out += kEnd;
    write_links(out, links);
    out += kClose;
}

}  // namespace

std::string encode_project(const StoreEntries& entries, const ProjectLinks& links) {
    std::string out;
    write_project(out, entries, nullptr, links);
    return out;
}

std::string why_not_saveable(const StoreEntries& entries, const StoreEntry* extra,
                             long long max_bytes) {
    const auto too_deep = [](const StoreEntry& e) {
        return array_nesting(e.value) > console::kMaxArrayNesting
                   ? "the value of \"" + e.key + "\" has arrays nested more than " +
                         std::to_string(console::kMaxArrayNesting) +
                         " deep, which a project file cannot hold"
                   : std::string();
    };
    if (extra) {
        if (std::string why = too_deep(*extra); !why.empty()) return why;
    } else {
        for (const StoreEntry& e : entries)
            if (std::string why = too_deep(e); !why.empty()) return why;
    }
    Count count;
    write_project(count, entries, extra);
    if (count.bytes > max_bytes)
        return "the project file would be " + std::to_string(count.bytes) +
               " bytes, more than the " + std::to_string(max_bytes) + " it may hold";
    return {};
}

}  // namespace host
