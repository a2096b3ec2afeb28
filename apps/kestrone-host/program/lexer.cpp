#include "lexer.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cctype>

namespace kflow {

namespace {

struct Symbol {
    std::string_view text;
    Tok kind;
};
// Longest first, so that "<<" wins over "<".
constexpr std::array<Symbol, 24> kSymbols{{
    {"<<", Tok::Shl},    {">>", Tok::Shr},      {"<=", Tok::LessEqual}, {">=", Tok::GreaterEqual},
    {"==", Tok::Equal},  {"!=", Tok::NotEqual}, {"&&", Tok::AndAnd},    {"||", Tok::OrOr},
    {"(", Tok::LParen},  {")", Tok::RParen},    {",", Tok::Comma},      {"=", Tok::Assign},
    {"+", Tok::Plus},    {"-", Tok::Minus},     {"*", Tok::Star},       {"/", Tok::Slash},
    {"%", Tok::Percent}, {"<", Tok::Less},      {">", Tok::Greater},    {"&", Tok::Amp},
    {"^", Tok::Caret},   {"|", Tok::Pipe},      {"!", Tok::Not},        {"~", Tok::Tilde},
}};

struct EscapeChar {
    char written;
    char value;
};
constexpr std::array<EscapeChar, 6> kEscapes{
    {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'0', '\0'}, {'\\', '\\'}, {'\'', '\''}}};

bool is_word_char(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// Reads the tokens of one line.
class LineLexer {
  public:
    LineLexer(std::string_view text, int line, Diagnostics& faults)
        : s_(text), line_(line), faults_(faults) {}

    std::vector<Token> run() {
        while (i_ < s_.size()) {
            const char c = s_[i_];
            if (c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v') {
                ++i_;
            } else if (c == '#') {
                break;
            } else if (std::isdigit(static_cast<unsigned char>(c))) {
                number();
            } else if (std::isalpha(static_cast<unsigned char>(c)) || c == '_') {
                name();
            } else if (c == '\'') {
                character();
            } else if (!symbol()) {
                stray();
            }
        }
        return std::move(tokens_);
    }

  private:
    // Columns count characters: the continuation bytes of UTF-8 do not move them. Places are
    // asked for along the line, never back, so the count goes on from the last one: a line of
    // many tokens costs no more than its length.
    Place place(std::size_t at) {
        assert(at >= counted_);
        for (; counted_ < at; ++counted_)
            if ((static_cast<unsigned char>(s_[counted_]) & 0xC0) != 0x80) ++column_;
        return {line_, column_};
    }
    void push(Tok kind, std::size_t start, std::int16_t value = 0) {
        tokens_.push_back({kind, place(start), std::string(s_.substr(start, i_ - start)), value});
    }

    void name() {
        const std::size_t start = i_;
        while (i_ < s_.size() && is_word_char(s_[i_]))
            ++i_;
        push(Tok::Name, start);
    }

    void number();
    void character();
    bool symbol();
    void stray();

    std::string_view s_;
    int line_;
    Diagnostics& faults_;
    std::size_t i_ = 0;
    std::size_t counted_ = 0;  // the place's count has reached this byte
    int column_ = 1;           // of that byte
    std::vector<Token> tokens_;
};

void LineLexer::number() {
    const std::size_t start = i_;
    while (i_ < s_.size() && is_word_char(s_[i_]))
        ++i_;
    const std::string_view word = s_.substr(start, i_ - start);
    unsigned base = 10;
    std::string_view digits = word;
    if (word.size() >= 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X')) {
        base = 16;
        digits.remove_prefix(2);
    } else if (word.size() >= 2 && word[0] == '0' && (word[1] == 'b' || word[1] == 'B')) {
        base = 2;
        digits.remove_prefix(2);
    }
    std::uint32_t value = 0;
    bool too_large = false;
    bool good = !digits.empty();
    for (char d : digits) {
        const int v = std::isdigit(static_cast<unsigned char>(d)) ? d - '0'
                      : std::isxdigit(static_cast<unsigned char>(d))
                          ? std::tolower(static_cast<unsigned char>(d)) - 'a' + 10
                          : 99;
        if (v >= static_cast<int>(base)) {
            good = false;
            break;
        }
        value = value * base + static_cast<unsigned>(v);
        if (value > kLargestLiteral) {
            too_large = true;
            value = 0;
        }
    }
    const std::string shown(word);
    if (!good) {
        faults_.add(place(start), "'" + shown + "' is not a number");
    } else if (too_large) {
        faults_.add(place(start),
                    "the number " + shown + " is too large: numbers go from 0 to 65535 (0xFFFF)");
    }
    // A bad number still stands as a number, so that the line's shape can be checked.
    push(Tok::Number, start, static_cast<std::int16_t>(static_cast<std::uint16_t>(value)));
}

void LineLexer::character() {
    const std::size_t start = i_++;
    char value = 0;
    bool good = true;
    if (i_ < s_.size() && s_[i_] == '\\') {
        ++i_;
        good = false;
        for (const EscapeChar& e : kEscapes)
            if (i_ < s_.size() && s_[i_] == e.written) {
                value = e.value;
                good = true;
            }
        if (i_ < s_.size()) ++i_;
        if (!good)
            faults_.add(place(start),
                        "unknown escape in a character: use \\n \\r \\t \\0 \\\\ or \\'");
    } else if (i_ < s_.size() && s_[i_] != '\'' && static_cast<unsigned char>(s_[i_]) >= 0x20 &&
               static_cast<unsigned char>(s_[i_]) < 0x7F) {
        value = s_[i_++];
    } else {
        good = false;
        faults_.add(place(start), i_ < s_.size() && s_[i_] == '\''
                                      ? std::string("'' holds no character")
                                      : std::string("a character in quotes must be a plain "
                                                    "letter, digit or sign, as in 'A'"));
    }
    if (i_ < s_.size() && s_[i_] == '\'') {
        ++i_;
    } else {
        // Up to the closing quote if one follows before a blank: 'AB' is one faulty literal.
        while (i_ < s_.size() && s_[i_] != '\'' && s_[i_] != ' ' && s_[i_] != '\t')
            ++i_;
        const bool closed = i_ < s_.size() && s_[i_] == '\'';
        if (closed) ++i_;
        if (good)
            faults_.add(place(start),
                        closed ? std::string(s_.substr(start, i_ - start)) +
                                     " holds more than one character: write one, as in 'A'"
                               : std::string("a character in quotes needs its closing ', as in "
                                             "'A'"));
    }
    push(Tok::Number, start, static_cast<std::int16_t>(static_cast<unsigned char>(value)));
}

bool LineLexer::symbol() {
    for (const Symbol& sym : kSymbols) {
        if (s_.substr(i_, sym.text.size()) == sym.text) {
            const std::size_t start = i_;
            i_ += sym.text.size();
            push(sym.kind, start);
            return true;
        }
    }
    return false;
}

void LineLexer::stray() {
    const std::size_t start = i_++;
    // A character of several bytes is reported once, as itself.
    while (i_ < s_.size() && (static_cast<unsigned char>(s_[i_]) & 0xC0) == 0x80)
        ++i_;
    const std::string_view ch = s_.substr(start, i_ - start);
    const unsigned char first = static_cast<unsigned char>(ch[0]);
    std::string shown;
    if (first < 0x20 || first == 0x7F) {
        static const char* const hex = "0123456789ABCDEF";
        shown = std::string("the control character 0x") + hex[first >> 4] + hex[first & 15];
    } else {
        shown = "'" + std::string(ch) + "'";
    }
    faults_.add(place(start), shown + " does not belong in a program");
}

}  // namespace

std::vector<SourceLine> lex(std::string_view source, Diagnostics& faults) {
    std::vector<SourceLine> lines;
    int number = 0;
    std::size_t pos = 0;
    while (pos <= source.size()) {
        const std::size_t end = std::min(source.find('\n', pos), source.size());
        ++number;
        auto tokens = LineLexer(source.substr(pos, end - pos), number, faults).run();
        if (!tokens.empty()) lines.push_back({number, std::move(tokens)});
        if (end == source.size()) break;
        pos = end + 1;
    }
    return lines;
}

std::string describe(const Token& t) {
    if (t.kind == Tok::Number) return "the number " + t.text;
    return "'" + t.text + "'";
}

}  // namespace kflow
