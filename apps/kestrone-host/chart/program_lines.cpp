#include "program_lines.h"

#include "diagnostic.h"
#include "lexer.h"

namespace chart {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

}  // namespace

ProgramLines::ProgramLines(std::string_view text) {
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) {
            lines_.emplace_back(text.substr(pos));
            final_newline_ = false;
            break;
        }
        lines_.emplace_back(text.substr(pos, end - pos));
        pos = end + 1;
    }
    std::size_t ended_cr = 0;
    for (const std::string& l : lines_)
        if (!l.empty() && l.back() == '\r') ++ended_cr;
    crlf_ = ended_cr * 2 > lines_.size();
}

std::string join_lines(const std::vector<std::string>& lines, bool final_newline) {
    std::string text;
    for (const std::string& l : lines) {
        text += l;
        text += '\n';
    }
    if (!final_newline && !text.empty()) text.pop_back();
    return text;
}

LineParts parts_of(std::string_view line) {
    kflow::Diagnostics ignored;
    const auto lexed = kflow::lex(line, ignored);
    if (lexed.empty()) {
        std::size_t i = 0;
        while (i < line.size() && is_blank(line[i]))
            ++i;
        return {i, i};
    }
    // A program that passed its checks has no character outside ASCII before its comment, so
    // a column is a byte's place.
    const kflow::Token& first = lexed.front().tokens.front();
    const kflow::Token& last = lexed.front().tokens.back();
    return {static_cast<std::size_t>(first.at.column - 1),
            static_cast<std::size_t>(last.at.column - 1) + last.text.size()};
}

std::string comment_of(std::string_view line) {
    std::size_t hash = parts_of(line).end;
    while (hash < line.size() && line[hash] != '#')
        ++hash;
    if (hash >= line.size()) return {};
    std::size_t from = hash + 1, to = line.size();
    while (from < to && is_blank(line[from]))
        ++from;
    while (to > from && is_blank(line[to - 1]))
        --to;
    return std::string(line.substr(from, to - from));
}

}  // namespace chart
