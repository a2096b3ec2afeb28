// One console line split into its words: a quoted string and an array (with the blanks inside
// its brackets) are each one word, and a lone "=" is a word of its own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace console {

struct CommandLine {
    std::vector<std::string> words;
    // The index of the lone "=" among the words, if there is one.
    std::optional<std::size_t> equals;
};

// nullopt with `error` set for an unterminated string or array.
std::optional<CommandLine> split_command(std::string_view line, std::string* error = nullptr);

// True for a blank line or one whose first non-blank character is '#'.
bool is_skipped_line(std::string_view line);

}  // namespace console
