#include "platform/profile_reader.h"

#include <algorithm>

#include "platform/text_file.h"

namespace platform {

namespace {
bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\v';
}

std::string_view trim_blanks(std::string_view s) {
    while (!s.empty() && is_blank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && is_blank(s.back()))
        s.remove_suffix(1);
    return s;
}

std::string_view trim_spaces(std::string_view s) {
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ')
        s.remove_suffix(1);
    return s;
}

bool same_ignoring_case(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        auto lower = [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; };
        if (lower(static_cast<unsigned char>(a[i])) != lower(static_cast<unsigned char>(b[i])))
            return false;
    }
    return true;
}

// Calls f(line) for each line; any run of CR and LF ends a line. f returns false to stop.
template <class F>
void for_each_profile_line(std::string_view text, F f) {
    LineEnds ends(text);
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t end = ends.find(i);
        const std::string_view line = text.substr(i, end == std::string_view::npos ? end : end - i);
        if (!f(line)) return;
        if (end == std::string_view::npos) return;
        for (i = end; i < text.size() && (text[i] == '\r' || text[i] == '\n'); ++i) {
        }
    }
}

std::string cut_to_buffer(std::string_view value, std::size_t buffer_size) {
    if (buffer_size == 0) return {};
    return std::string(value.substr(0, std::min(value.size(), buffer_size - 1)));
}

// Where the first section named `section` begins: the place just past its header line, or npos.
// A header is a line whose first non-blank byte is '['; only those bytes are looked at, so that
// the C text between the sections costs no more than a search for '['.
std::size_t find_section(std::string_view text, std::string_view section) {
    for (std::size_t at = text.find('['); at != std::string_view::npos;
         at = text.find('[', at + 1)) {
        std::size_t start = at;
        while (start > 0 && is_blank(text[start - 1]))
            --start;
        if (start > 0 && text[start - 1] != '\r' && text[start - 1] != '\n') continue;
        std::size_t end = text.find_first_of("\r\n", at);
        if (end == std::string_view::npos) end = text.size();
        std::string_view name = text.substr(at + 1, end - at - 1);
        name = name.substr(0, name.find(']'));
        if (same_ignoring_case(trim_blanks(name), section)) return end;
    }
    return std::string_view::npos;
}
}  // namespace

std::string profile_lookup(std::string_view text, std::string_view section, std::string_view key,
                           std::string_view fallback, std::size_t buffer_size) {
    section = trim_spaces(section);
    key = trim_spaces(key);
    std::string_view found;
    bool have_value = false;
    const std::size_t body = find_section(text, section);
    if (body != std::string_view::npos)
        for_each_profile_line(text.substr(body), [&](std::string_view raw) {
            const std::string_view line = trim_blanks(raw);
            if (line.empty() || line.front() == ';') return true;
            if (line.front() == '[') return false;  // only the first section of that name
            const std::size_t eq = line.find('=');
            if (eq == std::string_view::npos) return true;
            if (!same_ignoring_case(trim_blanks(line.substr(0, eq)), key)) return true;
            std::string_view value = trim_blanks(line.substr(eq + 1));
            if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                value.back() == value.front())
                value = value.substr(1, value.size() - 2);
            found = value;
            have_value = true;
            return false;  // the first entry wins
        });
    if (have_value) return cut_to_buffer(found, buffer_size);
    std::string_view d = fallback;
    while (!d.empty() && d.back() == ' ')
        d.remove_suffix(1);
    return cut_to_buffer(d, buffer_size);
}

std::string get_private_profile_string(std::string_view section, std::string_view key,
                                       std::string_view fallback, std::size_t buffer_size,
                                       const std::string& path) {
    // The file is read anew at every lookup. No buffer is kept across lookups: this code runs in a
    // module that the host may unload, and a thread-local left behind in an unloaded module is
    // memory that the thread's exit (and the leak checker) still walks.
    std::string text;
    if (!read_whole_file(path, text)) text.clear();
    return profile_lookup(text, section, key, fallback, buffer_size);
}

}  // namespace platform
