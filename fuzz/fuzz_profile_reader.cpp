// The profile reader on any bytes: the first bytes choose the section and key, the rest is the
// file. Every lookup must give what a plain line-by-line reading of the text gives.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/profile_reader.h"

namespace {

std::string_view trim(std::string_view s, std::string_view blanks) {
    const std::size_t first = s.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(blanks) - first + 1);
}

bool same(std::string_view a, std::string_view b) {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lower(a[i]) != lower(b[i])) return false;
    return true;
}

// The reader as its rules read: each line on its own, blanks cut, headers, comments, entries.
std::string model(std::string_view text, std::string_view section, std::string_view key,
                  std::string_view fallback, std::size_t buffer) {
    const std::string_view blanks(" \t\v");
    section = trim(section, " ");
    key = trim(key, " ");
    std::string_view result = fallback.substr(0, fallback.find_last_not_of(' ') + 1);
    bool inside = false;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        const std::string_view line = trim(text.substr(0, end), blanks);
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        if (line.empty() || line[0] == ';') continue;
        if (line[0] == '[') {
            if (inside) break;
            inside = same(trim(line.substr(1, line.find(']') - 1), blanks), section);
            continue;
        }
        const std::size_t eq = line.find('=');
        if (!inside || eq == std::string_view::npos || !same(trim(line.substr(0, eq), blanks), key))
            continue;
        result = trim(line.substr(eq + 1), blanks);
        if (result.size() >= 2 && (result[0] == '"' || result[0] == '\'') &&
            result.back() == result[0])
            result = result.substr(1, result.size() - 2);
        break;
    }
    return std::string(buffer == 0 ? "" : result.substr(0, buffer - 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    const std::size_t a = all.find('\0');
    const std::size_t b = a == std::string_view::npos ? a : all.find('\0', a + 1);
    std::string_view section = "Pins", key = " 1", text = all;
    if (b != std::string_view::npos)
        section = all.substr(0, a), key = all.substr(a + 1, b - a - 1), text = all.substr(b + 1);
    for (const std::size_t buffer : {std::size_t{255}, std::size_t{1}})
        if (platform::profile_lookup(text, section, key, "default ", buffer) !=
            model(text, section, key, "default ", buffer))
            __builtin_trap();
    return 0;
}
