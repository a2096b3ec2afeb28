// The lesson's writer against its reader: the shipped lessons come back byte for byte, generated
// lessons read back the same, and a program put into a lesson's text changes only the program.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "lesson.h"
#include "lesson_writer.h"
#include "support/temp_dir.h"

namespace {

using kestrone::Variant;

lesson::Lesson parsed(const std::string& text) {
    std::string what;
    const auto l = lesson::parse_lesson(text, nullptr, &what);
    EXPECT_TRUE(l) << what << "\n" << text;
    return l.value_or(lesson::Lesson{});
}

TEST(LessonWriter, ShippedLessonsComeBackByteForByte) {
    int seen = 0;
    for (const auto& e : std::filesystem::directory_iterator(KESTRONE_EXAMPLES "/lessons")) {
        if (e.path().extension() != ".klesson") continue;
        ++seen;
        const std::string text = testing_support::read_file(e.path().string());
        const lesson::Lesson l = parsed(text);
        EXPECT_EQ(lesson::write_lesson(l), text) << e.path();
        EXPECT_EQ(lesson::with_program(text, *l.program, nullptr), text) << e.path();
    }
    EXPECT_EQ(seen, 3);
}

// Text that a JSON writer must escape, beside UTF-8 that it must leave alone.
std::string odd_text(std::mt19937& rng, int most) {
    static const char* const pieces[] = {
        "a",    "Z",    " ", "\"",       "\\",           "\n", "\t", "\r",
        "\x01", "\x1f", "/", "\xc3\xa9", "\xe2\x82\xac", "[",  "}",  ","};
    std::string out;
    for (int n = std::uniform_int_distribution<>(0, most)(rng); n > 0; --n)
        out += pieces[std::uniform_int_distribution<std::size_t>(0, std::size(pieces) - 1)(rng)];
    return out;
}

Variant some_value(std::mt19937& rng) {
    const int v = std::uniform_int_distribution<>(-40000, 40000)(rng);
    const Variant values[] = {Variant::integer(static_cast<std::int16_t>(v)),
                              Variant::long_(v * 53),
                              Variant::single(static_cast<float>(v) / 7.0f),
                              Variant::double_(v / 3.0),
                              Variant::boolean(v > 0),
                              Variant::string(odd_text(rng, 6))};
    return values[rng() % std::size(values)];
}

lesson::Lesson some_lesson(std::mt19937& rng) {
    lesson::Lesson l;
    l.title = odd_text(rng, 8);
    l.instructions = odd_text(rng, 30);
    if (rng() % 2)
        l.arena = "size 1300 900\nrobot 300 300 0\n# " + std::to_string(rng() % 1000) + " \"x\"\n";
    if (rng() % 3) l.program = odd_text(rng, 30);
    for (int n = rng() % 4; n > 0; --n)
        l.settings.push_back({"k" + std::to_string(rng() % 100), some_value(rng)});
    for (int n = rng() % 4; n > 0; --n)
        l.checks.push_back(odd_text(rng, 12));
    return l;
}

// Written and read back, the same lesson; a program put in reads back as that program with the
// rest unchanged, and the program it already holds changes no byte.
TEST(LessonWriter, GeneratedLessonsReadBackTheSame) {
    std::mt19937 rng(2137);
    for (int i = 0; i < 400; ++i) {
        const lesson::Lesson l = some_lesson(rng);
        const std::string text = lesson::write_lesson(l);
        ASSERT_EQ(parsed(text), l) << text;
        lesson::Lesson changed = l;
        changed.program = odd_text(rng, 20);
        EXPECT_EQ(parsed(lesson::with_program(text, *changed.program, nullptr).value_or("")),
                  changed);
        if (l.program) {
            EXPECT_EQ(lesson::with_program(text, *l.program, nullptr), text);
        }
    }
}

// Lessons written by hand: other spacing, an escaped key, brackets and quotes inside strings;
// the bytes after the program stay as they were.
TEST(LessonWriter, AProgramGoesIntoAHandWrittenLesson) {
    for (const auto& [text, kept_end] : std::initializer_list<std::pair<std::string, std::string>>{
             {R"({"lesson":1,"checks":["a]\"}"],"program":"x"})", "}"},
             {"{ \"progr\\u0061m\" : \"old\\/\" ,\n\t\"lesson\": 1.0 }\n",
              " ,\n\t\"lesson\": 1.0 }\n"},
             {R"({"title": "{\"program\": 1}", "lesson": 1})",
              R"("title": "{\"program\": 1}", "lesson": 1})"}}) {
        const std::string with = lesson::with_program(text, "go \"on\"\n", nullptr).value_or("");
        EXPECT_TRUE(with.ends_with(kept_end)) << with;
        EXPECT_EQ(parsed(with).program, "go \"on\"\n") << with;
    }
    for (const char* bad :
         {"[1]", R"({"lesson": 1 "program": "x"})", R"({"program": "x)", "{1: 2}"})
        EXPECT_FALSE(lesson::with_program(bad, "p", nullptr)) << bad;
}

}  // namespace
