// `kestrone-host check LESSON [PROGRAM ...]`: a lesson's checks run against a class of programs,
// one line per program in the order given, then "N passed, M failed".
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace lesson {

struct CheckOptions {
    std::string lesson;
    std::vector<std::string> programs;  // none: the lesson's own program
    std::string module;
    std::optional<std::string> jobs;   // as written; none: one worker per core
    std::optional<std::string> shard;  // "K/M"
    std::string junit;                 // a file for the JUnit report; empty: none
    std::string csv;                   // a file for the CSV table; empty: none
};

// 0 every program passed, 1 some failed, 2 the lesson, a program, the module or an option could
// not be read (said on `err`, and nothing is checked).
int run_check_command(const CheckOptions& options, std::ostream& out, std::ostream& err);

}  // namespace lesson
