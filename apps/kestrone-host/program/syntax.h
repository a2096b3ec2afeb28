// The tree of a robot program: statements with their bodies, and expressions kept in one array
// and referred to by index. The parser builds it with names; the checker resolves every name to a
// variable slot or a macro id.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "diagnostic.h"

namespace kflow {

enum class ExprKind : std::uint8_t { Literal, Variable, Call, Unary, Binary };

enum class Op : std::uint8_t {
    // unary
    Negate,
    Not,
    Complement,
    // binary, by falling precedence
    Multiply,
    Divide,
    Remainder,
    Add,
    Subtract,
    ShiftLeft,
    ShiftRight,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    BitAnd,
    BitXor,
    BitOr,
    And,
    Or,
};

// How an operator is written, in the program and in C alike.
const char* op_text(Op op);

using ExprId = int;
inline constexpr ExprId kNoExpr = -1;

struct Expr {
    ExprKind kind = ExprKind::Literal;
    Op op = Op::Add;
    Place at;                // of the literal, the name, or the operator
    std::int16_t value = 0;  // a literal's 16-bit value
    bool character = false;  // a literal written as 'A'
    std::string name;        // a variable or a macro
    int ref = -1;            // after checking: the variable's slot or the macro's id
    ExprId lhs = kNoExpr;    // the operand of a unary operator, the left one of a binary
    ExprId rhs = kNoExpr;
    std::vector<ExprId> args;  // a call's arguments
};

enum class StmtKind : std::uint8_t {
    Declare,
    Assign,
    Call,
    Delay,
    Repeat,
    While,
    Forever,
    If,
    Stop
};

struct Stmt;

// One arm of an if: its condition (kNoExpr for the else) and its body.
struct Branch {
    Place at;
    ExprId condition = kNoExpr;
    std::vector<Stmt> body;
};

struct Stmt {
    StmtKind kind = StmtKind::Stop;
    Place at;          // of the statement's first word
    std::string name;  // the variable declared or set
    Place name_at;
    bool is_byte = false;   // a declaration of a byte
    int ref = -1;           // after checking: the variable's slot
    ExprId expr = kNoExpr;  // the value, count, condition or call
    std::vector<Stmt> body;
    std::vector<Branch> branches;  // an if's arms in order; the else, if any, last
};

struct SyntaxTree {
    std::vector<Expr> exprs;
    std::vector<Stmt> statements;
};

}  // namespace kflow
