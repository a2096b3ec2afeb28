// What the chart tests share: a program checked against the robot's table and its chart.
#pragma once

#include <gtest/gtest.h>

#include <memory>
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

}  // namespace chart_testing
