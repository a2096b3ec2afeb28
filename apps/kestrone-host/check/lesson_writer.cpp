#include "lesson_writer.h"

#include <charconv>
#include <cstdio>
#include <string>

#include "value_syntax.h"

namespace lesson {

std::string json_string(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\b':
                out += "\\b";
                break;
            case '\f':
                out += "\\f";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
                    out += escaped;
                } else {
                    out += c;
                }
        }
    }
    return out + "\"";
}

std::string write_lesson(const Lesson& l) {
    std::string out = "{\n  \"lesson\": " + std::to_string(kLessonVersion) + ",\n";
    const auto member = [&out](const char* key, const std::string& value) {
        out += std::string("  \"") + key + "\": " + value + ",\n";
    };
    member("title", json_string(l.title));
    member("instructions", json_string(l.instructions));
    if (l.arena) member("arena", json_string(*l.arena));
    if (l.program) member("program", json_string(*l.program));
    if (!l.settings.empty()) {
        std::string pairs;
        for (const auto& [key, value] : l.settings)
            pairs += std::string(pairs.empty() ? "" : ", ") + "[" + json_string(key) + ", " +
                     json_string(console::format_value(value)) + "]";
        member("settings", "[" + pairs + "]");
    }
    out += "  \"checks\": [";
    for (std::size_t i = 0; i < l.checks.size(); ++i)
        out += (i ? ",\n    " : "\n    ") + json_string(l.checks[i]);
    out += l.checks.empty() ? "]\n}\n" : "\n  ]\n}\n";
    return out;
}

namespace {

// A reading of a lesson's text just deep enough to find its members and where each value begins
// and ends.
class Members {
  public:
    explicit Members(std::string_view text) : text_(text) {}

    bool at(char c) {
        skip_space();
        if (pos_ >= text_.size() || text_[pos_] != c) return false;
        ++pos_;
        return true;
    }
    void skip_space() {
        while (pos_ < text_.size() && std::string_view(" \t\n\r").find(text_[pos_]) != npos)
            ++pos_;
    }
    // A string at the reading's place, its escapes undone as far as a key needs: an escape of a
    // character past ASCII stands for one that no key of the format holds.
    std::optional<std::string> string() {
        if (!at('"')) return std::nullopt;
        std::string out;
        while (pos_ < text_.size() && text_[pos_] != '"') {
            char c = text_[pos_++];
            if (c == '\\' && pos_ < text_.size()) c = unescaped();
            out += c;
        }
        if (pos_++ >= text_.size()) return std::nullopt;
        return out;
    }
    // Past one value of any kind; false when the text ends first.
    bool skip_value() {
        skip_space();
        int depth = 0;
        while (pos_ < text_.size()) {
            const char c = text_[pos_];
            if (c == '"') {
                if (!string()) return false;
            } else {
                if (depth == 0 && (c == ',' || c == '}' || c == ']')) return true;
                depth += (c == '{' || c == '[') - (c == '}' || c == ']');
                ++pos_;
            }
            if (depth == 0 && (c == '"' || c == '}' || c == ']')) return true;
        }
        return false;
    }
    std::size_t pos() const { return pos_; }

  private:
    static constexpr std::size_t npos = std::string_view::npos;

    char unescaped() {
        const char c = text_[pos_++];
        if (c != 'u') return c == '"' || c == '\\' || c == '/' ? c : '\x01';
        unsigned code = 0x80;
        const std::string_view hex = text_.substr(pos_, 4);
        if (hex.size() == 4) std::from_chars(hex.data(), hex.data() + 4, code, 16);
        pos_ += hex.size();
        return code < 0x80 ? static_cast<char>(code) : '\x01';
    }

    std::string_view text_;
    std::size_t pos_ = 0;
};

bool refuse(std::string* what, const char* why) {
    if (what) *what = why;
    return false;
}

}  // namespace

std::optional<std::string> with_program(std::string_view text, std::string_view program,
                                        std::string* what) {
    const std::string value = json_string(program);
    Members m(text);
    if (!m.at('{')) return refuse(what, "a lesson is a JSON object"), std::nullopt;
    const std::size_t first = m.pos();
    m.skip_space();
    const std::size_t first_key = m.pos();
    std::string out(text.substr(0, first));
    std::size_t kept = first;
    bool found = false;
    if (!m.at('}')) {
        do {
            const auto key = m.string();
            if (!key || !m.at(':')) return refuse(what, "a member has no key"), std::nullopt;
            m.skip_space();
            const std::size_t begin = m.pos();
            if (!m.skip_value()) return refuse(what, "the text ends in a value"), std::nullopt;
            if (*key != "program") continue;
            out.append(text.substr(kept, begin - kept)).append(value);
            kept = m.pos();
            found = true;
        } while (m.at(','));
        if (!m.at('}')) return refuse(what, "a member is not followed by , or }"), std::nullopt;
    }
    if (!found)
        out.append(text.substr(first, first_key - first)).append("\"program\": " + value + ",");
    return out.append(text.substr(kept));
}

}  // namespace lesson
