#include "value_syntax.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

#include "float_text.h"
#include "value_limits.h"

namespace console {

using kestrone::SafeArray;
using kestrone::Variant;
using kestrone::VarType;

namespace {

struct TypeName {
    std::string_view name;
    VarType type;
};
constexpr TypeName kTypeNames[] = {
    {"Integer", VarType::Integer}, {"Long", VarType::Long},       {"Single", VarType::Single},
    {"Double", VarType::Double},   {"Boolean", VarType::Boolean}, {"String", VarType::String},
    {"Byte", VarType::Byte},       {"Variant", VarType::Variant},
};

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

class Parser {
  public:
    explicit Parser(std::string_view text) : s_(text) {}

    std::optional<Variant> parse_whole() {
        skip_blanks();
        auto v = value();
        skip_blanks();
        if (v && pos_ != s_.size())
            return fail("unexpected text after the value: " + excerpt(s_.substr(pos_)));
        return v;
    }
    const std::string& error() const { return error_; }

  private:
    std::optional<Variant> fail(std::string message) {
        if (error_.empty()) error_ = std::move(message);
        return std::nullopt;
    }
    void skip_blanks() {
        while (pos_ < s_.size() && is_blank(s_[pos_]))
            ++pos_;
    }
    bool eat(char c) {
        skip_blanks();
        if (pos_ < s_.size() && s_[pos_] == c) {
            ++pos_;
            return true;
        }
        return false;
    }
    bool eat_word(std::string_view w) {
        if (s_.substr(pos_, w.size()) != w) return false;
        const std::size_t end = pos_ + w.size();
        if (end < s_.size() &&
            (std::isalnum(static_cast<unsigned char>(s_[end])) || s_[end] == '_'))
            return false;
        pos_ = end;
        return true;
    }

    std::optional<Variant> value() {
        skip_blanks();
        if (pos_ >= s_.size()) return fail("a value is missing");
        const char c = s_[pos_];
        if (c == '"') return string_value();
        if (c == '[') return short_array();
        if (c == '-' || c == '+' || c == '.' || std::isdigit(static_cast<unsigned char>(c)))
            return number();
        if (eat_word("Empty")) return Variant();
        if (eat_word("True")) return Variant::boolean(true);
        if (eat_word("False")) return Variant::boolean(false);
        for (const TypeName& t : kTypeNames)
            if (s_.substr(pos_, t.name.size()) == t.name && pos_ + t.name.size() < s_.size() &&
                s_[pos_ + t.name.size()] == '[') {
                pos_ += t.name.size();
                return typed_array(t.type);
            }
        if (std::isalpha(static_cast<unsigned char>(c))) return float_word(pos_);
        return fail("not a value: " + excerpt(s_.substr(pos_)));
    }

    std::optional<Variant> string_value() {
        ++pos_;  // the opening quote
        std::string out;
        while (pos_ < s_.size()) {
            const char c = s_[pos_++];
            if (c == '"') return Variant::string(std::move(out));
            if (c != '\\') {
                out.push_back(c);
                continue;
            }
            if (pos_ >= s_.size()) break;
            const char e = s_[pos_++];
            switch (e) {
                case '\\':
                    out.push_back('\\');
                    break;
                case '"':
                    out.push_back('"');
                    break;
                case 'r':
                    out.push_back('\r');
                    break;
                case 'n':
                    out.push_back('\n');
                    break;
                case 't':
                    out.push_back('\t');
                    break;
                case 'x': {
                    unsigned byte = 0;
                    if (pos_ + 2 > s_.size() ||
                        std::from_chars(s_.data() + pos_, s_.data() + pos_ + 2, byte, 16).ptr !=
                            s_.data() + pos_ + 2)
                        return fail("\\x needs two hexadecimal digits");
                    out.push_back(static_cast<char>(byte));
                    pos_ += 2;
                    break;
                }
                default:
                    return fail(std::string("unknown escape \\") + e);
            }
        }
        return fail("the string has no closing quote");
    }

    std::optional<Variant> number() {
        const std::size_t start = pos_;
        if (s_[pos_] == '-' || s_[pos_] == '+') ++pos_;
        if (pos_ < s_.size() && std::isalpha(static_cast<unsigned char>(s_[pos_])))
            return float_word(start);
        bool digits = false, fraction = false;
        while (pos_ < s_.size() && std::isdigit(static_cast<unsigned char>(s_[pos_])))
            ++pos_, digits = true;
        if (pos_ < s_.size() && s_[pos_] == '.') {
            fraction = true;
            ++pos_;
            while (pos_ < s_.size() && std::isdigit(static_cast<unsigned char>(s_[pos_])))
                ++pos_, digits = true;
        }
        if (!digits) return fail("not a number: " + excerpt(s_.substr(start)));
        if (pos_ < s_.size() && (s_[pos_] == 'e' || s_[pos_] == 'E')) {
            fraction = true;
            ++pos_;
            if (pos_ < s_.size() && (s_[pos_] == '-' || s_[pos_] == '+')) ++pos_;
            const std::size_t exp = pos_;
            while (pos_ < s_.size() && std::isdigit(static_cast<unsigned char>(s_[pos_])))
                ++pos_;
            if (exp == pos_) return fail("the exponent has no digits");
        }
        std::string text(s_.substr(start, pos_ - start));
        if (!text.empty() && text[0] == '+') text.erase(0, 1);
        const char suffix = pos_ < s_.size() ? s_[pos_] : '\0';
        const bool has_suffix = suffix == '%' || suffix == '&' || suffix == '!' || suffix == '#';
        if (has_suffix) ++pos_;
        const VarType as = float_kind(suffix);
        if (as == VarType::Single) {
            const float f = std::strtof(text.c_str(), nullptr);
            if (std::isinf(f)) return fail("out of the range of a 32-bit float: " + excerpt(text));
            return Variant::single(f);
        }
        if (as == VarType::Double || (fraction && !has_suffix)) {
            const double d = std::strtod(text.c_str(), nullptr);
            if (std::isinf(d)) return fail("out of the range of a 64-bit float: " + excerpt(text));
            return Variant::double_(d);
        }
        if (fraction)
            return fail("a whole number is needed before " + std::string(1, suffix) + ": " +
                        excerpt(text));
        long long n = 0;
        const auto res = std::from_chars(text.data(), text.data() + text.size(), n);
        const bool fits64 = res.ec == std::errc() && res.ptr == text.data() + text.size();
        if (suffix == '%') {
            if (!fits64 || n < -32768 || n > 32767)
                return fail("out of the range of a 16-bit integer: " + excerpt(text));
            return Variant::integer(static_cast<std::int16_t>(n));
        }
        if (suffix == '&') {
            if (!fits64 || n < std::numeric_limits<std::int32_t>::min() ||
                n > std::numeric_limits<std::int32_t>::max())
                return fail("out of the range of a 32-bit integer: " + excerpt(text));
            return Variant::long_(static_cast<std::int32_t>(n));
        }
        if (fits64 && n >= -32768 && n <= 32767)
            return Variant::integer(static_cast<std::int16_t>(n));
        if (fits64 && n >= std::numeric_limits<std::int32_t>::min() &&
            n <= std::numeric_limits<std::int32_t>::max())
            return Variant::long_(static_cast<std::int32_t>(n));
        const double d = std::strtod(text.c_str(), nullptr);
        if (std::isinf(d)) return fail("out of the range of a 64-bit float: " + excerpt(text));
        return Variant::double_(d);
    }

    // The kind of float a number is read as: its suffix's, else a float array's own, so that an
    // element keeps every bit (a -0 stays negative, a Single is rounded once).
    VarType float_kind(char suffix) const {
        if (suffix == '!' || suffix == '#')
            return suffix == '!' ? VarType::Single : VarType::Double;
        return suffix == '%' || suffix == '&' ? VarType::Empty : bare_float_;
    }

    // inf, nan and their kin, from `start` (at a sign, if any).
    std::optional<Variant> float_word(std::size_t start) {
        while (pos_ < s_.size() && std::isalpha(static_cast<unsigned char>(s_[pos_])))
            ++pos_;
        if (pos_ < s_.size() && s_[pos_] == '(') {  // a NaN's bits
            const std::size_t close = s_.find(')', pos_);
            if (close != std::string_view::npos) pos_ = close + 1;
        }
        const std::string_view word = s_.substr(start, pos_ - start);
        const char suffix = pos_ < s_.size() ? s_[pos_] : '\0';
        VarType as = float_kind(suffix);
        if (as == VarType::Empty && suffix != '%' && suffix != '&') as = VarType::Double;
        if (suffix == '!' || suffix == '#') ++pos_;
        if (as == VarType::Single) {
            if (const auto f = single_word(word)) return Variant::single(*f);
        } else if (as != VarType::Empty) {
            if (const auto d = double_word(word)) return Variant::double_(*d);
        }
        return fail("not a value: " + excerpt(s_.substr(start)));
    }

    // Elements of a list up to `close`, each parsed by `element`.
    template <class F>
    bool list(char close, F element) {
        if (eat(close)) return true;
        do {
            if (!element()) return false;
        } while (eat(','));
        if (!eat(close)) {
            fail(std::string("expected '") + close + "'");
            return false;
        }
        return true;
    }

    // Counts the arrays open around the parser; false once they are nested too deep.
    class Nesting {
      public:
        explicit Nesting(int& depth) : depth_(depth) { ++depth_; }
        ~Nesting() { --depth_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;
        bool too_deep() const { return depth_ > kMaxArrayNesting; }

      private:
        int& depth_;
    };
    std::optional<Variant> too_deep() {
        return fail("arrays nested more than " + std::to_string(kMaxArrayNesting) + " deep");
    }

    std::optional<Variant> short_array() {
        ++pos_;  // '['
        const Nesting nesting(depth_);
        if (nesting.too_deep()) return too_deep();
        std::vector<Variant> items;
        if (!list(']', [&] {
                auto v = value();
                if (v) items.push_back(std::move(*v));
                return v.has_value();
            }))
            return std::nullopt;
        return Variant::array(VarType::Variant, 0, std::move(items));
    }

    std::optional<std::int32_t> bound() {
        skip_blanks();
        const std::size_t start = pos_;
        if (pos_ < s_.size() && (s_[pos_] == '-' || s_[pos_] == '+')) ++pos_;
        while (pos_ < s_.size() && std::isdigit(static_cast<unsigned char>(s_[pos_])))
            ++pos_;
        std::int32_t n = 0;
        std::string_view t = s_.substr(start, pos_ - start);
        if (!t.empty() && t[0] == '+') t.remove_prefix(1);
        const auto res = std::from_chars(t.data(), t.data() + t.size(), n);
        if (t.empty() || res.ec != std::errc() || res.ptr != t.data() + t.size()) {
            fail("an array bound must be a 32-bit whole number");
            return std::nullopt;
        }
        return n;
    }

    // An element of a typed array, written bare in that type's syntax.
    std::optional<Variant> element_of(VarType type) {
        bare_float_ = type == VarType::Single || type == VarType::Double ? type : VarType::Empty;
        auto v = value();
        bare_float_ = VarType::Empty;
        if (!v) return std::nullopt;
        if (type == VarType::Variant) return v;
        if (v->is_array()) return fail("an array can't be an element of a typed array");
        const VarType got = v->type();
        if (got == type) return v;  // as read, every bit kept
        const bool whole = got == VarType::Integer || got == VarType::Long;
        const bool numeric = whole || got == VarType::Double || got == VarType::Single;
        auto whole_value = [&]() -> long long {
            return got == VarType::Integer ? v->as_integer() : v->as_long();
        };
        switch (type) {
            case VarType::Long:
                if (whole) return Variant::long_(static_cast<std::int32_t>(whole_value()));
                break;
            case VarType::Byte:
                if (whole && whole_value() >= 0 && whole_value() <= 255)
                    return Variant::byte(static_cast<std::uint8_t>(whole_value()));
                break;
            case VarType::Single:
                if (numeric) {
                    const double d = got == VarType::Double ? v->as_double()
                                                            : static_cast<double>(whole_value());
                    if (std::isfinite(d) && std::fabs(d) > std::numeric_limits<float>::max()) break;
                    return Variant::single(static_cast<float>(d));
                }
                break;
            case VarType::Double:
                if (numeric)
                    return Variant::double_(got == VarType::Double ? v->as_double()
                                            : got == VarType::Single
                                                ? v->as_single()
                                                : static_cast<double>(whole_value()));
                break;
            default:
                break;
        }
        return fail("an element doesn't fit an array of " + std::string(type_name(type)));
    }

    std::optional<Variant> typed_array(VarType type) {
        eat('[');
        const Nesting nesting(depth_);
        if (nesting.too_deep()) return too_deep();
        auto lower = bound();
        if (!lower) return std::nullopt;
        skip_blanks();
        if (!eat_word("to")) return fail("expected 'to' between the bounds");
        auto upper = bound();
        if (!upper) return std::nullopt;
        if (!eat(']')) return fail("expected ']' after the bounds");
        if (!eat('(')) return fail("expected '(' before the elements");
        std::vector<Variant> items;
        if (!list(')', [&] {
                auto v = element_of(type);
                if (v) items.push_back(std::move(*v));
                return v.has_value();
            }))
            return std::nullopt;
        if (static_cast<long long>(*upper) - *lower + 1 != static_cast<long long>(items.size()))
            return fail("the bounds don't match the number of elements");
        return Variant::array(type, *lower, std::move(items));
    }

    std::string_view s_;
    std::size_t pos_ = 0;
    int depth_ = 0;
    VarType bare_float_ = VarType::Empty;  // in a float array: the kind of a bare number
    std::string error_;
};

}  // namespace

std::optional<Variant> parse_value(std::string_view text, std::string* error) {
    Parser p(text);
    auto v = p.parse_whole();
    if (!v && error) *error = p.error();
    return v;
}

std::string excerpt(std::string_view text) {
    constexpr std::size_t kShown = 40;
    if (text.size() <= kShown) return std::string(text);
    std::size_t cut = kShown;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
        --cut;  // not inside a character of several bytes
    return std::string(text.substr(0, cut)) + "...";
}

std::string unreadable(std::string_view text, const std::string& why) {
    return "cannot read the value " + excerpt(text) + ": " + why;
}

std::string_view type_name(VarType type) {
    for (const TypeName& t : kTypeNames)
        if (t.type == type) return t.name;
    return "Empty";
}

}  // namespace console
