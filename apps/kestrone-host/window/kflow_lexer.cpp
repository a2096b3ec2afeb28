#include "kflow_lexer.h"

#include <Qsci/qsciscintilla.h>

#include <QFontDatabase>
#include <array>

namespace window {

namespace {

constexpr std::array<std::string_view, 10> kKeywords{"int", "byte", "repeat", "while", "forever",
                                                     "if",  "else", "end",    "stop",  "delay"};

struct Look {
    Colour colour;
    const char* name;
    QRgb rgb;
    bool bold;
};
constexpr std::array<Look, 7> kLooks{{
    {Colour::Plain, "Text", 0x202020, false},
    {Colour::Comment, "Comment", 0x6a7a6a, false},
    {Colour::Keyword, "Keyword", 0x1f3fa8, true},
    {Colour::Number, "Number", 0xa0522d, false},
    {Colour::Character, "Character", 0x2e7d32, false},
    {Colour::Macro, "Macro", 0x7b1fa2, false},
    {Colour::Operator, "Operator", 0x505050, false},
}};

bool is_name_start(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool is_name_part(char c) {
    return is_name_start(c) || (c >= '0' && c <= '9');
}

// The span that starts at `at`, and its length.
ColourSpan span_at(std::string_view text, std::size_t at, const NameSet& macros) {
    const char c = text[at];
    const auto run = [&](std::size_t from, auto&& more) {
        std::size_t end = from;
        while (end < text.size() && more(text[end]))
            ++end;
        return end - at;
    };
    if (c == '#') return {run(at, [](char ch) { return ch != '\n'; }), Colour::Comment};
    if (c >= '0' && c <= '9') return {run(at, is_name_part), Colour::Number};
    if (c == '\'') {
        const std::size_t close = text.find_first_of("'\n", at + 1);
        const bool closed = close != std::string_view::npos && text[close] == '\'';
        return {closed ? close + 1 - at : 1, closed ? Colour::Character : Colour::Operator};
    }
    if (is_name_start(c)) {
        const std::size_t length = run(at, is_name_part);
        const std::string_view name = text.substr(at, length);
        for (const std::string_view k : kKeywords)
            if (name == k) return {length, Colour::Keyword};
        return {length, macros.count(name) ? Colour::Macro : Colour::Plain};
    }
    const auto printable = [](char ch) { return ch > ' ' && ch < 127; };
    if (printable(c)) return {1, Colour::Operator};
    return {run(at, [&](char ch) { return !printable(ch); }), Colour::Plain};
}

}  // namespace

std::vector<ColourSpan> colour_spans(std::string_view text, const NameSet& macros) {
    std::vector<ColourSpan> spans;
    for (std::size_t at = 0; at < text.size();) {
        const ColourSpan s = span_at(text, at, macros);
        if (!spans.empty() && spans.back().colour == s.colour && s.colour == Colour::Plain)
            spans.back().length += s.length;
        else
            spans.push_back(s);
        at += s.length;
    }
    return spans;
}

KflowLexer::KflowLexer(QObject* parent) : QsciLexerCustom(parent) {}

void KflowLexer::set_macro_names(NameSet names) {
    if (names == macros_) return;
    macros_ = std::move(names);
    if (editor()) editor()->recolor();
}

QString KflowLexer::description(int style) const {
    if (style < 0 || style >= static_cast<int>(kLooks.size())) return {};
    return QString::fromLatin1(kLooks[static_cast<std::size_t>(style)].name);
}

QColor KflowLexer::defaultColor(int style) const {
    if (style < 0 || style >= static_cast<int>(kLooks.size()))
        return QsciLexer::defaultColor(style);
    return QColor(kLooks[static_cast<std::size_t>(style)].rgb);
}

QFont KflowLexer::defaultFont(int style) const {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (style >= 0 && style < static_cast<int>(kLooks.size()))
        font.setBold(kLooks[static_cast<std::size_t>(style)].bold);
    return font;
}

// From the start of the line where the change begins: a line is coloured whole.
void KflowLexer::styleText(int start, int end) {
    QsciScintilla* e = editor();
    if (!e || end <= start) return;
    const int from = static_cast<int>(
        e->SendScintilla(QsciScintilla::SCI_POSITIONFROMLINE,
                         e->SendScintilla(QsciScintilla::SCI_LINEFROMPOSITION, start)));
    const QByteArray bytes = e->bytes(from, end);
    const std::string_view text(bytes.constData(), static_cast<std::size_t>(end - from));
    startStyling(from);
    for (const ColourSpan& s : colour_spans(text, macros_))
        setStyling(static_cast<int>(s.length), static_cast<int>(s.colour));
}

}  // namespace window
