#include "command_line.h"

#include <charconv>

#include "value_syntax.h"

namespace console {

namespace {
bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// Moves past a quoted string that starts at s[i]; false if it never closes.
bool skip_string(std::string_view s, std::size_t& i) {
    for (++i; i < s.size(); ++i) {
        if (s[i] == '\\') {
            ++i;
        } else if (s[i] == '"') {
            ++i;
            return true;
        }
    }
    return false;
}
}  // namespace

std::optional<NamePath> parse_name_path(std::string_view text) {
    NamePath p;
    std::string_view rest;
    const std::size_t open = text.find('(');
    if (open != std::string_view::npos) {
        const std::size_t close = text.find(')', open);
        if (close == std::string_view::npos) return std::nullopt;
        p.name = text.substr(0, open);
        std::string_view number = text.substr(open + 1, close - open - 1);
        if (!number.empty() && number.front() == '+') number.remove_prefix(1);
        const auto res = std::from_chars(number.data(), number.data() + number.size(), p.index);
        if (number.empty() || res.ec != std::errc() || res.ptr != number.data() + number.size())
            return std::nullopt;
        p.has_index = true;
        rest = text.substr(close + 1);
    } else {
        const std::size_t dot = text.find('.');
        p.name = text.substr(0, dot);
        if (dot != std::string_view::npos) rest = text.substr(dot);
    }
    if (p.name.empty() || p.name.find_first_of(").") != std::string::npos) return std::nullopt;
    if (!rest.empty()) {
        if (rest.size() < 2 || rest.front() != '.') return std::nullopt;
        p.member = rest.substr(1);
        if (p.member.find_first_of(".()") != std::string::npos) return std::nullopt;
    }
    return p;
}

std::optional<std::string> word_text(const std::string& word) {
    if (word.empty()) return std::nullopt;
    if (word.front() != '"') return word;
    const auto v = parse_value(word);
    if (!v || v->is_array() || v->type() != kestrone::VarType::String) return std::nullopt;
    return v->as_string();
}

bool is_skipped_line(std::string_view line) {
    for (char c : line) {
        if (is_blank(c)) continue;
        return c == '#';
    }
    return true;
}

std::optional<CommandLine> split_command(std::string_view line, std::string* error) {
    CommandLine out;
    std::size_t i = 0;
    auto fail = [&](const char* why) -> std::optional<CommandLine> {
        if (error) *error = why;
        return std::nullopt;
    };
    while (true) {
        while (i < line.size() && is_blank(line[i]))
            ++i;
        if (i >= line.size()) break;
        const std::size_t start = i;
        // A word runs to the next blank outside quotes and brackets.
        int depth = 0;
        while (i < line.size() && (depth > 0 || !is_blank(line[i]))) {
            const char c = line[i];
            if (c == '"') {
                if (!skip_string(line, i)) return fail("a string has no closing quote");
                continue;
            }
            if (c == '[' || c == '(') ++depth;
            if ((c == ']' || c == ')') && --depth < 0)
                return fail("a closing bracket has no opening one");
            ++i;
        }
        if (depth > 0) return fail("an array has no closing bracket");
        const std::string_view word = line.substr(start, i - start);
        if (word == "=" && !out.equals) out.equals = out.words.size();
        out.words.emplace_back(word);
    }
    return out;
}

}  // namespace console
