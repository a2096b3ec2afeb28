#include "core/code_block.h"

#include <string.h>

namespace rovanta {

namespace {

bool is_line_end(char c) {
    return c == '\r' || c == '\n';
}

// The first place at or after `from` where `marker` stands in the text. The markers begin with
// the "/*" of every comment: a search that looks for their first character stops at each one.
std::size_t find_text(std::string_view file, std::string_view marker, std::size_t from) {
    if (from > file.size()) return std::string_view::npos;
    const void* at = ::memmem(file.data() + from, file.size() - from, marker.data(), marker.size());
    return at ? static_cast<std::size_t>(static_cast<const char*>(at) - file.data())
              : std::string_view::npos;
}

// The first place at or after `from` (a line's start) where a whole line equals `marker`.
std::size_t find_line(std::string_view file, std::string_view marker, std::size_t from) {
    for (std::size_t at = find_text(file, marker, from); at != std::string_view::npos;
         at = find_text(file, marker, at + 1)) {
        const std::size_t after = at + marker.size();
        const bool starts_line = at == from || is_line_end(file[at - 1]);
        const bool ends_line = after == file.size() || is_line_end(file[after]);
        if (starts_line && ends_line) return at;
    }
    return std::string_view::npos;
}

// The start of the line after the line end at `at` (CR LF, CR or LF), or the end of the file.
std::size_t next_line(std::string_view file, std::size_t at) {
    if (at >= file.size()) return file.size();
    if (file[at] == '\r' && at + 1 < file.size() && file[at + 1] == '\n') return at + 2;
    return at + 1;
}

// Whole lines, each ended by a line feed alone.
void append_lines(std::string& out, std::string_view lines) {
    out.reserve(out.size() + lines.size() + 1);
    for (std::size_t k = 0; k < lines.size(); ++k) {
        const char c = lines[k];
        if (c == '\r') {
            out.push_back('\n');
            if (k + 1 < lines.size() && lines[k + 1] == '\n') ++k;
        } else {
            out.push_back(c);
        }
    }
    if (!lines.empty() && !is_line_end(lines.back())) out.push_back('\n');
}

}  // namespace

CutBlock cut_block(std::string_view file, std::string_view start_marker,
                   std::string_view end_marker) {
    CutBlock block;
    std::size_t at = 0;  // always at a line's start
    while (at < file.size()) {
        const std::size_t start = find_line(file, start_marker, at);
        if (start == std::string_view::npos) break;
        block.start_seen = true;
        const std::size_t body = next_line(file, start + start_marker.size());
        const std::size_t end = find_line(file, end_marker, body);
        append_lines(block.text,
                     file.substr(body, (end == std::string_view::npos ? file.size() : end) - body));
        if (end == std::string_view::npos) break;
        block.end_seen = true;
        at = next_line(file, end + end_marker.size());
    }
    return block;
}

}  // namespace rovanta
