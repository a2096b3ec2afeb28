#include "check_report.h"

#include <algorithm>

namespace lesson {

namespace {

std::string one_line(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

// Text and attribute values alike; characters XML 1.0 cannot hold become spaces.
std::string xml_escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&apos;";
                break;
            case '\n':
                out += "&#10;";
                break;
            default:
                out += static_cast<unsigned char>(c) < 0x20 && c != '\t' ? ' ' : c;
        }
    }
    return out;
}

std::string csv_field(const std::string& text) {
    if (text.find_first_of(",\"\n\r") == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text)
        out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

std::size_t failures(const std::vector<ClassResult>& results) {
    return static_cast<std::size_t>(std::count_if(
        results.begin(), results.end(), [](const ClassResult& r) { return !r.result.passed; }));
}

std::int64_t total_ms(const std::vector<ClassResult>& results) {
    std::int64_t ms = 0;
    for (const ClassResult& r : results)
        ms += r.result.simulated_ms;
    return ms;
}

}  // namespace

std::string seconds_text(std::int64_t ms) {
    const std::int64_t centi = (ms + 5) / 10;
    const std::int64_t part = centi % 100;
    return std::to_string(centi / 100) + (part < 10 ? ".0" : ".") + std::to_string(part) + " s";
}

std::string result_line(const ClassResult& r, std::size_t name_width) {
    std::string name = one_line(r.program);
    if (name.size() < name_width) name.resize(name_width, ' ');
    return (r.result.passed ? "pass  " : "FAIL  ") + name +
           (r.result.passed ? seconds_text(r.result.simulated_ms) + " simulated"
                            : one_line(r.result.message));
}

std::string summary_line(const std::vector<ClassResult>& results) {
    const std::size_t failed = failures(results);
    return std::to_string(results.size() - failed) + " passed, " + std::to_string(failed) +
           " failed";
}

std::string junit_report(const std::string& suite, const std::vector<ClassResult>& results) {
    const std::string counts = " tests=\"" + std::to_string(results.size()) + "\" failures=\"" +
                               std::to_string(failures(results)) + "\" errors=\"0\"";
    const auto seconds = [](std::int64_t ms) {
        const std::string s = seconds_text(ms);
        return s.substr(0, s.size() - 2);
    };
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + counts +
                      ">\n  <testsuite name=\"" + xml_escaped(suite) + "\"" + counts +
                      " skipped=\"0\" time=\"" + seconds(total_ms(results)) + "\">\n";
    for (const ClassResult& r : results) {
        out += "    <testcase name=\"" + xml_escaped(r.program) + "\" classname=\"" +
               xml_escaped(suite) + "\" time=\"" + seconds(r.result.simulated_ms) + "\"";
        if (r.result.passed) {
            out += "/>\n";
            continue;
        }
        const std::string message = xml_escaped(r.result.message);
        out += ">\n      <failure message=\"" + message + "\">" + message +
               "</failure>\n    </testcase>\n";
    }
    return out + "  </testsuite>\n</testsuites>\n";
}

std::string csv_report(const std::vector<ClassResult>& results) {
    std::string out = "program,result,simulated_s,message\n";
    for (const ClassResult& r : results) {
        const std::string s = seconds_text(r.result.simulated_ms);
        out += csv_field(r.program) + (r.result.passed ? ",pass," : ",fail,") +
               s.substr(0, s.size() - 2) + "," + csv_field(r.result.message) + "\n";
    }
    return out;
}

}  // namespace lesson
