// The words of a robot program, line by line. A program is one statement per line, so the lexer
// hands the parser lines of tokens; comments and blank lines are gone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "diagnostic.h"

namespace kflow {

enum class Tok : std::uint8_t {
    Name,
    Number,
    LParen,
    RParen,
    Comma,
    Assign,
    Plus,
    Minus,
    Star,
    Slash,
    Percent,
    Shl,
    Shr,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    Amp,
    Caret,
    Pipe,
    AndAnd,
    OrOr,
    Not,
    Tilde,
};

struct Token {
    Tok kind = Tok::Name;
    Place at;
    std::string text;        // as written
    std::int16_t value = 0;  // a number's 16-bit value
};

struct SourceLine {
    int number = 0;
    std::vector<Token> tokens;  // never empty
};

// Literals run from 0 to 65535 in every form; a value above 32767 stands for the same 16 bits
// as the chip keeps them (40000 is -25536, 0xFFFF is -1).
inline constexpr std::uint32_t kLargestLiteral = 65535;

// Every character that belongs to no token, and every malformed literal, is reported; the rest
// of its line is still read, so that later faults are found as well.
std::vector<SourceLine> lex(std::string_view source, Diagnostics& faults);

// How a token is named in messages: "'repeat'", "the number 12", "the end of the line".
std::string describe(const Token& t);

}  // namespace kflow
