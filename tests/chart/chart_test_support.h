// What the chart tests share: a program checked against the robot's table and its chart.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>

#include "chart.h"
#include "program.h"
#include "program_corpus.h"

namespace chart_testing {

// The chart of `source`, which must pass the checker.
inline std::unique_ptr<chart::Chart> chart_of(const std::string& source) {
    const kflow::CheckedProgram checked = kflow::check_program(source, "t.kflow", robot_table());
    if (!checked.program) {
        ADD_FAILURE() << "the program has faults, the first: " << checked.faults.front().text
                      << " on line " << checked.faults.front().at.line << "\n"
                      << source;
        return nullptr;
    }
    return std::make_unique<chart::Chart>(source, *checked.program);
}

inline constexpr unsigned kCorpusSize = 300;

// A line's code as the tests' model reads it: before any '#', without blanks round it.
inline std::string code_of(const std::string& line) {
    std::string code = line.substr(0, line.find('#'));
    code.erase(0, code.find_first_not_of(" \t\r"));
    code.erase(code.find_last_not_of(" \t\r") + 1);
    return code;
}

// An icon of the SVG as its title names it, and whether it is lit.
struct Titled {
    int line;
    std::string code;
    bool lit;
    bool operator==(const Titled&) const = default;
};

inline std::vector<Titled> titled_icons(const std::string& svg) {
    static const std::regex titled("<g fill=\"([^\"]*)\"[^>]*><title>line (\\d+): ([^<]*)</title>");
    std::vector<Titled> out;
    for (std::sregex_iterator it(svg.begin(), svg.end(), titled), end; it != end; ++it)
        out.push_back({std::stoi((*it)[2]), (*it)[3], (*it)[1] == "#ffd84d"});
    return out;
}

// The titles a generated program's chart must hold, in its order, with `lit_line` lit.
inline std::vector<Titled> titles_of(const CorpusProgram& p, int lit_line) {
    std::vector<Titled> out;
    for (std::size_t k = 0; k < p.code_lines.size(); ++k) {
        std::string code = p.code[k];
        for (std::size_t at = 0; (at = code.find_first_of("&<", at)) != std::string::npos; ++at)
            code.replace(at, 1, code[at] == '&' ? "&amp;" : "&lt;");
        out.push_back({p.code_lines[k], code, p.code_lines[k] == lit_line});
    }
    return out;
}

}  // namespace chart_testing
