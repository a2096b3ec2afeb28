// One console line split into its words: a quoted string and an array (with the blanks inside
// its brackets) are each one word, and a lone "=" is a word of its own.
#pragma once

#include <cstdint>
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

// NAME, NAME(I), NAME.MEMBER or NAME(I).MEMBER, as fields and panel elements are written.
struct NamePath {
    std::string name;
    bool has_index = false;
    std::int32_t index = 0;
    std::string member;  // empty when there is none
};
// The index, if the path has one.
inline std::optional<std::int32_t> index_of(const NamePath& path) {
    return path.has_index ? std::optional<std::int32_t>(path.index) : std::nullopt;
}
// nullopt for anything else, a member that is itself a path included.
std::optional<NamePath> parse_name_path(std::string_view text);

// A word that names something, a key or a file: a bare word as it stands, or a quoted string
// (for names with blanks or other bytes). nullopt for an empty word or a broken string.
std::optional<std::string> word_text(const std::string& word);

// True for a blank line or one whose first non-blank character is '#'.
bool is_skipped_line(std::string_view line);

}  // namespace console
