#include "command_line.h"

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
