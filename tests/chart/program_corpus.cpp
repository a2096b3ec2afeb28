#include "program_corpus.h"

#include <array>
#include <random>

#include "fake_component.h"

namespace chart_testing {

namespace {

constexpr std::array kExpressions{"a + 1", "b",    "(a * 3) % 7", "ReadLdr()", "ReadSwitch(0) == 1",
                                  "'A'",   "0x1F", "a < b && !c", "-a",        "~b | 0b101"};
constexpr std::array kComments{
    "note",
    "turn here",
    "é: à la ligne",
    "sharp # inside",
    "…",
    "a word longer than a note's line: ĉĝĥĵŝŭĉĝĥĵŝŭĉĝĥĵŝŭĉĝĥĵŝŭĉĝĥĵŝŭĉĝĥĵŝŭ"};

class Writer {
  public:
    explicit Writer(unsigned seed) : rng_(seed) {
        constexpr std::array kUnits{"    ", "  ", "\t", "   "};
        unit_ = kUnits[pick(4)];
        eol_ = chance(15) ? "\r" : "";
    }

    CorpusProgram run() {
        line(0, "int a = 1", true);
        line(0, "byte b = 2", true);
        line(0, "int c", true);
        for (int n = 1 + pick(6); n > 0; --n)
            statement(0);
        if (chance(30)) trivia(0);
        std::string text;
        for (const std::string& l : lines_)
            text += l + "\n";
        if (chance(20) && !text.empty()) text.pop_back();
        out_.source = text;
        return out_;
    }

  private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
    bool chance(int percent) { return pick(100) < percent; }
    std::string comment() { return kComments[static_cast<std::size_t>(pick(kComments.size()))]; }
    std::string expr() { return kExpressions[static_cast<std::size_t>(pick(kExpressions.size()))]; }

    std::string indent(int depth) {
        std::string s;
        for (int d = 0; d < depth; ++d)
            s += unit_;
        if (chance(8)) s += " ";  // off by one: indentation is for the reader only
        return s;
    }

    // A blank or comment line.
    void trivia(int depth) {
        lines_.push_back(chance(40)   ? (chance(50) ? "" : indent(depth)) + eol_
                         : chance(80) ? indent(depth) + "# " + comment() + eol_
                                      : "#" + eol_);
    }

    void line(int depth, const std::string& code, bool is_code) {
        while (chance(20))
            trivia(depth);
        std::string text = indent(depth) + code;
        if (chance(20)) text += std::string(1 + pick(6), ' ') + "# " + comment();
        lines_.push_back(text + eol_);
        if (!is_code) return;
        out_.code_lines.push_back(static_cast<int>(lines_.size()));
        out_.code.push_back(code);
    }

    void body(int depth) {
        for (int n = pick(4); n > 0; --n)
            statement(depth);
        line(depth - 1, "end", false);
    }

    void statement(int depth);

    std::mt19937 rng_;
    std::string unit_, eol_;
    std::vector<std::string> lines_;
    CorpusProgram out_;
};

void Writer::statement(int depth) {
    switch (pick(depth < 3 ? 9 : 4)) {
        case 0:
            return line(depth, std::string(1, "abc"[pick(3)]) + " = " + expr(), true);
        case 1: {
            const auto& macros = robot_table().macros();
            const kflow::MacroInfo& m = macros[1 + static_cast<std::size_t>(pick(20))];
            std::string call = m.name + "(";
            for (std::size_t k = 0; k < m.params.size(); ++k)
                call += (k ? ", " : "") + expr();
            return line(depth, call + ")", true);
        }
        case 2:
            return line(depth, "delay " + std::to_string(pick(3) * 25), true);
        case 3:
            return line(depth, chance(30) ? "stop" : "DriveStop()", true);
        case 4:
            line(depth, "repeat " + std::to_string(1 + pick(4)), true);
            return body(depth + 1);
        case 5:
            line(depth, "while " + expr(), true);
            return body(depth + 1);
        case 6:
            line(depth, "forever", true);
            return body(depth + 1);
        default:
            break;
    }
    line(depth, "if " + expr(), true);
    for (int n = pick(3); n >= 0; --n) {
        for (int k = pick(3); k > 0; --k)
            statement(depth + 1);
        if (n > 0) line(depth, "else if " + expr(), true);
    }
    if (chance(50)) {
        line(depth, "else", false);
        for (int k = pick(3); k > 0; --k)
            statement(depth + 1);
    }
    line(depth, "end", false);
}

}  // namespace

CorpusProgram generate_program(unsigned seed) {
    return Writer(seed).run();
}

const kflow::MacroTable& robot_table() {
    static const kflow::MacroTable table = [] {
        program_testing::FakeComponent robot(program_testing::FakeComponent::robot_macros());
        std::string error;
        return *kflow::MacroTable::read(robot, &error);
    }();
    return table;
}

}  // namespace chart_testing
