// The reports read back: the CSV by a small reader of its own, the JUnit XML by its counts and
// its failure messages; seconds written to two decimals within half a hundredth.
#include <gtest/gtest.h>

#include <random>
#include <regex>

#include "check_report.h"

namespace {

using lesson::ClassResult;

std::vector<ClassResult> random_class(std::mt19937& rng) {
    const std::string alphabet = "ab ,\"'<>&\n;:1";
    const auto text = [&] {
        std::string s;
        for (std::size_t n = rng() % 12; n > 0; --n)
            s += alphabet[rng() % alphabet.size()];
        return s;
    };
    std::vector<ClassResult> out(rng() % 8);
    for (auto& r : out) {
        r.program = "s" + text() + ".kflow";
        r.result.passed = rng() % 2;
        r.result.simulated_ms = rng() % 1000000;
        if (!r.result.passed) r.result.message = text();
    }
    return out;
}

// RFC 4180: rows of fields, quoted fields with doubled quotes.
std::vector<std::vector<std::string>> read_csv(const std::string& text) {
    std::vector<std::vector<std::string>> rows(1, std::vector<std::string>(1));
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted && c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
            rows.back().back() += '"';
            ++i;
        } else if (c == '"') {
            quoted = !quoted;
        } else if (!quoted && c == ',') {
            rows.back().emplace_back();
        } else if (!quoted && c == '\n') {
            rows.emplace_back(1);
        } else {
            rows.back().back() += c;
        }
    }
    rows.pop_back();  // after the last line's end
    return rows;
}

std::string unescaped(std::string s) {
    const std::pair<const char*, const char*> entities[] = {{"&lt;", "<"},    {"&gt;", ">"},
                                                            {"&quot;", "\""}, {"&apos;", "'"},
                                                            {"&#10;", "\n"},  {"&amp;", "&"}};
    for (const auto& [from, to] : entities)
        for (std::size_t at; (at = s.find(from)) != std::string::npos;)
            s.replace(at, std::string(from).size(), to);
    return s;
}

TEST(CheckReport, CsvAndJUnitReadBack) {
    std::mt19937 rng(11);
    for (int round = 0; round < 200; ++round) {
        const auto results = random_class(rng);
        const auto rows = read_csv(lesson::csv_report(results));
        ASSERT_EQ(rows.size(), results.size() + 1);
        std::size_t failed = 0;
        const std::string xml = lesson::junit_report("suite", results);
        std::size_t at = 0;
        for (std::size_t i = 0; i < results.size(); ++i) {
            const ClassResult& r = results[i];
            const std::vector<std::string> want = {
                r.program, r.result.passed ? "pass" : "fail",
                lesson::seconds_text(r.result.simulated_ms)
                    .substr(0, lesson::seconds_text(r.result.simulated_ms).size() - 2),
                r.result.message};
            EXPECT_EQ(rows[i + 1], want);
            if (r.result.passed) continue;
            ++failed;
            at = xml.find("<failure message=\"", at);
            ASSERT_NE(at, std::string::npos);
            at += 18;
            EXPECT_EQ(unescaped(xml.substr(at, xml.find('"', at) - at)), r.result.message);
        }
        EXPECT_EQ(xml.find("<failure", at + 1), std::string::npos);
        const std::string counts = "tests=\"" + std::to_string(results.size()) + "\" failures=\"" +
                                   std::to_string(failed) + "\"";
        EXPECT_NE(xml.find("<testsuite name=\"suite\" " + counts), std::string::npos) << xml;
        std::int64_t total = 0;  // the suite's time is the whole class's simulated time
        for (const ClassResult& r : results)
            total += r.result.simulated_ms;
        const std::string seconds = lesson::seconds_text(total);
        EXPECT_NE(xml.find("time=\"" + seconds.substr(0, seconds.size() - 2) + "\">"),
                  std::string::npos);
        EXPECT_EQ(lesson::summary_line(results), std::to_string(results.size() - failed) +
                                                     " passed, " + std::to_string(failed) +
                                                     " failed");
    }
}

TEST(CheckReport, SecondsToTwoDecimals) {
    std::mt19937 rng(3);
    const std::regex shape(R"(\d+\.\d\d s)");
    for (int i = 0; i < 2000; ++i) {
        const std::int64_t ms = i < 1000 ? i : rng() % 100000000;
        const std::string text = lesson::seconds_text(ms);
        ASSERT_TRUE(std::regex_match(text, shape)) << text;
        const std::size_t dot = text.find('.');
        const std::int64_t centi =
            std::stoll(text.substr(0, dot)) * 100 + std::stoll(text.substr(dot + 1, 2));
        EXPECT_LE(std::abs(centi * 10 - ms), 5) << ms;
    }
}

}  // namespace
