#include "parser.h"

#include <algorithm>
#include <array>

#include "expression_parser.h"

namespace kflow {

namespace {

constexpr std::array<std::string_view, 10> kKeywords{"int",     "byte", "delay", "repeat", "while",
                                                     "forever", "if",   "else",  "end",    "stop"};

// Blocks within blocks: deeper than this a program is refused, so that reading it, checking it
// and running it stay well within the stack.
constexpr int kMaxBlockNesting = 200;

// Why a block's lines came to an end.
enum class BlockEnd { End, Else, EndOfFile };

// An open block, for the messages about its `end` and about an `else` inside it.
struct OpenBlock {
    std::string_view word;
    Place at;
    const OpenBlock* outer;
};

class Parser {
  public:
    Parser(const std::vector<SourceLine>& lines, Diagnostics& faults)
        : lines_(lines), faults_(faults) {}

    SyntaxTree run() {
        tree_.statements = block(nullptr);
        return std::move(tree_);
    }

  private:
    std::vector<Stmt> block(const OpenBlock* open);
    BlockEnd block_into(std::vector<Stmt>& body, const OpenBlock* open);
    void statement(const SourceLine& line, std::vector<Stmt>& body, const OpenBlock* open);
    void declaration(const SourceLine& line, std::vector<Stmt>& body, const OpenBlock* open);
    void if_statement(const SourceLine& line, std::vector<Stmt>& body, const OpenBlock* open);
    void name_statement(const SourceLine& line, std::vector<Stmt>& body);
    bool else_line(const SourceLine& line, const OpenBlock* open);
    // The expression from token `from` to the end of the line; kNoExpr after a fault.
    ExprId rest_expression(const SourceLine& line, std::size_t from, const std::string& missing);
    bool nothing_after(const SourceLine& line, std::size_t from);

    const std::vector<SourceLine>& lines_;
    Diagnostics& faults_;
    // True, with a fault, when a block opened at `at` would be nested too deep.
    bool too_deep(Place at);
    void skip_block();
    bool told_too_deep_ = false;

    std::size_t next_ = 0;
    int depth_ = 0;  // blocks open
    SyntaxTree tree_;
};

struct LoopWord {
    std::string_view word;
    StmtKind kind;
    const char* missing;  // nullptr: takes no value
};
constexpr std::array<LoopWord, 4> kBlockWords{{
    {"repeat", StmtKind::Repeat, "'repeat' needs a count: how many times?"},
    {"while", StmtKind::While, "'while' needs a condition"},
    {"forever", StmtKind::Forever, nullptr},
    {"delay", StmtKind::Delay, "'delay' needs a time in milliseconds"},
}};

Stmt make_stmt(StmtKind kind, Place at) {
    Stmt s;
    s.kind = kind;
    s.at = at;
    return s;
}

bool is_word(const Token& t, std::string_view word) {
    return t.kind == Tok::Name && t.text == word;
}

bool Parser::too_deep(Place at) {
    if (depth_ <= kMaxBlockNesting) return false;  // the outermost level is no block
    if (!told_too_deep_)
        faults_.add(at,
                    "blocks are nested more than " + std::to_string(kMaxBlockNesting) + " deep");
    told_too_deep_ = true;
    skip_block();
    return true;
}

// The lines of a block refused as too deep, to its `end`: once said, the depth is not said again
// for each block inside, nor each `end` called one too many.
void Parser::skip_block() {
    for (int open = 1; open > 0 && next_ < lines_.size(); ++next_) {
        const Token& first = lines_[next_].tokens.front();
        if (is_word(first, "end"))
            --open;
        else if (is_word(first, "if") ||
                 std::any_of(kBlockWords.begin(), kBlockWords.end(), [&](const LoopWord& w) {
                     return w.kind != StmtKind::Delay && is_word(first, w.word);
                 }))
            ++open;
    }
}

std::vector<Stmt> Parser::block(const OpenBlock* open) {
    std::vector<Stmt> body;
    ++depth_;
    const BlockEnd why = block_into(body, open);
    --depth_;
    if (why == BlockEnd::EndOfFile && open)
        faults_.add(open->at, "'" + std::string(open->word) + "' has no 'end'");
    return body;
}

BlockEnd Parser::block_into(std::vector<Stmt>& body, const OpenBlock* open) {
    while (next_ < lines_.size()) {
        const SourceLine& line = lines_[next_];
        const Token& first = line.tokens.front();
        if (is_word(first, "end")) {
            ++next_;
            nothing_after(line, 1);
            if (open) return BlockEnd::End;
            faults_.add(first.at, "'end' has no block to close");
            continue;
        }
        if (is_word(first, "else")) {
            if (open && open->word == "if") return BlockEnd::Else;
            ++next_;
            else_line(line, open);
            continue;
        }
        ++next_;
        statement(line, body, open);
    }
    return BlockEnd::EndOfFile;
}

// An `else` where no `if` is open: say which block stands in the way, if any.
bool Parser::else_line(const SourceLine& line, const OpenBlock* open) {
    const OpenBlock* in_if = open;
    while (in_if && in_if->word != "if")
        in_if = in_if->outer;
    if (!in_if)
        faults_.add(line.tokens.front().at, "'else' without 'if'");
    else
        faults_.add(line.tokens.front().at,
                    "'else' cannot stand inside the '" + std::string(open->word) + "' of line " +
                        std::to_string(open->at.line) + ": close it with 'end' first");
    return false;
}

ExprId Parser::rest_expression(const SourceLine& line, std::size_t from,
                               const std::string& missing) {
    if (from >= line.tokens.size()) {
        const Token& last = line.tokens.back();
        faults_.add({last.at.line, last.at.column + static_cast<int>(last.text.size())}, missing);
        return kNoExpr;
    }
    ExpressionParser p(line.tokens, from, tree_.exprs);
    const ExprId e = p.parse();
    if (p.fault()) {
        faults_.add(p.fault()->at, p.fault()->text);
        return kNoExpr;
    }
    if (!nothing_after(line, p.position())) return kNoExpr;
    return e;
}

bool Parser::nothing_after(const SourceLine& line, std::size_t from) {
    if (from >= line.tokens.size()) return true;
    const Token& t = line.tokens[from];
    if (t.kind == Tok::Assign)
        faults_.add(t.at, "'=' sets a variable; to compare two values, write '=='");
    else
        faults_.add(t.at, describe(t) + " is one word too many on this line");
    return false;
}

void Parser::statement(const SourceLine& line, std::vector<Stmt>& body, const OpenBlock* open) {
    const Token& first = line.tokens.front();
    if (is_word(first, "int") || is_word(first, "byte")) return declaration(line, body, open);
    if (is_word(first, "if")) return if_statement(line, body, open);
    if (is_word(first, "stop")) {
        if (nothing_after(line, 1)) body.push_back(make_stmt(StmtKind::Stop, first.at));
        return;
    }
    for (const LoopWord& w : kBlockWords) {
        if (!is_word(first, w.word)) continue;
        Stmt s = make_stmt(w.kind, first.at);
        if (w.missing)
            s.expr = rest_expression(line, 1, w.missing);
        else
            nothing_after(line, 1);
        if (w.kind != StmtKind::Delay) {
            if (too_deep(first.at)) return;
            const OpenBlock inner{w.word, first.at, open};
            s.body = block(&inner);
        }
        body.push_back(std::move(s));
        return;
    }
    if (first.kind == Tok::Name) return name_statement(line, body);
    faults_.add(first.at, describe(first) +
                              " cannot start a line: a line is a macro call, a variable set with "
                              "'=', or a word such as 'repeat', 'if' or 'delay'");
}

void Parser::declaration(const SourceLine& line, std::vector<Stmt>& body, const OpenBlock* open) {
    const Token& first = line.tokens.front();
    Stmt s = make_stmt(StmtKind::Declare, first.at);
    s.is_byte = first.text == "byte";
    if (line.tokens.size() < 2 || line.tokens[1].kind != Tok::Name) {
        faults_.add(line.tokens.size() < 2 ? first.at : line.tokens[1].at,
                    "'" + first.text + "' needs the name of the new variable");
        return;
    }
    const Token& name = line.tokens[1];
    if (is_keyword(name.text)) {
        faults_.add(name.at, "'" + name.text +
                                 "' is a word of the language and cannot name a "
                                 "variable");
        return;
    }
    // Kept all the same, so that its uses do not each count as a fault of their own.
    if (open)
        faults_.add(first.at,
                    "variables are declared at the outermost level, before the blocks, "
                    "not inside the '" +
                        std::string(open->word) + "' of line " + std::to_string(open->at.line));
    s.name = name.text;
    s.name_at = name.at;
    if (line.tokens.size() > 2) {
        if (line.tokens[2].kind != Tok::Assign) {
            nothing_after(line, 2);
            return;
        }
        s.expr = rest_expression(line, 3, "a value is missing after '='");
        if (s.expr == kNoExpr) return;
    }
    body.push_back(std::move(s));
}

void Parser::if_statement(const SourceLine& line, std::vector<Stmt>& body, const OpenBlock* open) {
    if (too_deep(line.tokens.front().at)) return;
    Stmt s = make_stmt(StmtKind::If, line.tokens.front().at);
    const OpenBlock inner{"if", s.at, open};
    Branch arm{s.at, rest_expression(line, 1, "'if' needs a condition"), {}};
    int else_line = 0;  // of the arm without a condition, once there is one
    while (true) {
        ++depth_;
        const BlockEnd why = block_into(arm.body, &inner);
        --depth_;
        s.branches.push_back(std::move(arm));
        if (why == BlockEnd::EndOfFile) faults_.add(s.at, "'if' has no 'end'");
        if (why != BlockEnd::Else) break;
        const SourceLine& else_at = lines_[next_++];
        const Token& word = else_at.tokens.front();
        const bool chained = else_at.tokens.size() > 1 && is_word(else_at.tokens[1], "if");
        if (else_line)
            faults_.add(word.at, "this 'if' already had its last 'else' on line " +
                                     std::to_string(else_line));
        arm = Branch{word.at, kNoExpr, {}};
        if (chained)
            arm.condition = rest_expression(else_at, 2, "'else if' needs a condition");
        else
            nothing_after(else_at, 1);
        if (!chained && !else_line) else_line = word.at.line;
    }
    body.push_back(std::move(s));
}

void Parser::name_statement(const SourceLine& line, std::vector<Stmt>& body) {
    const Token& name = line.tokens.front();
    const Token* second = line.tokens.size() > 1 ? &line.tokens[1] : nullptr;
    if (second && second->kind == Tok::Assign) {
        Stmt s = make_stmt(StmtKind::Assign, name.at);
        s.name = name.text;
        s.name_at = name.at;
        s.expr = rest_expression(line, 2, "a value is missing after '='");
        if (s.expr != kNoExpr) body.push_back(std::move(s));
        return;
    }
    if (second && second->kind == Tok::LParen) {
        Stmt s = make_stmt(StmtKind::Call, name.at);
        s.expr = rest_expression(line, 0, "");
        if (s.expr == kNoExpr) return;
        if (tree_.exprs[static_cast<std::size_t>(s.expr)].kind != ExprKind::Call) {
            faults_.add(name.at,
                        "a line with a value alone does nothing: call a macro, or set a "
                        "variable with '='");
            return;
        }
        body.push_back(std::move(s));
        return;
    }
    if (is_keyword(name.text) || !second) {
        faults_.add(name.at, "'" + name.text + "' alone does nothing: call a macro as " +
                                 name.text + "(), or set a variable as " + name.text + " = ...");
        return;
    }
    faults_.add(second->at, describe(*second) + " cannot follow '" + name.text +
                                "': call a macro with '(' or set a variable with '='");
}

}  // namespace

bool is_keyword(std::string_view word) {
    for (std::string_view k : kKeywords)
        if (k == word) return true;
    return false;
}

SyntaxTree parse(const std::vector<SourceLine>& lines, Diagnostics& faults) {
    return Parser(lines, faults).run();
}

}  // namespace kflow
