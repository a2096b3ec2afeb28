// The results of a class as `check` writes them: one line per program for the terminal, a JUnit
// XML report for a CI server and a CSV table for a spreadsheet. Only simulated times go in, so a
// report does not depend on the machine or the number of workers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lesson_check.h"

namespace lesson {

struct ClassResult {
    std::string program;  // its name as given
    CheckResult result;
};

// "18.42 s": simulated milliseconds in seconds with two decimals.
std::string seconds_text(std::int64_t ms);
// "pass  NAME   18.42 s simulated" or "FAIL  NAME   MESSAGE", NAME padded to `name_width`.
std::string result_line(const ClassResult& r, std::size_t name_width);
// "N passed, M failed".
std::string summary_line(const std::vector<ClassResult>& results);

// One test suite named `suite` with a test case per program; a failure carries its message.
std::string junit_report(const std::string& suite, const std::vector<ClassResult>& results);
// program,result,simulated_s,message with a header row.
std::string csv_report(const std::vector<ClassResult>& results);

}  // namespace lesson
