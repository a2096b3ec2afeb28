// `check` on the shipped lessons and on lessons made to be refused, against the real module.
#include <gtest/gtest.h>

#include <sstream>

#include "check_command.h"
#include "support/temp_dir.h"

namespace {

using testing_support::TempDir;

struct Outcome {
    int status;
    std::string out, err;
};

lesson::CheckOptions options(std::string lesson, std::vector<std::string> programs) {
    lesson::CheckOptions o;
    o.lesson = std::move(lesson);
    o.programs = std::move(programs);
    return o;
}

Outcome check(lesson::CheckOptions o) {
    o.module = KESTRONE_MODULE;
    std::ostringstream out, err;
    const int status = lesson::run_check_command(o, out, err);
    return {status, out.str(), err.str()};
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

const std::string kExamples = KESTRONE_EXAMPLES;

// Each shipped lesson with the example that passes it and the plausible mistake that does not.
TEST(CheckCommand, ShippedLessonsPassTheirExampleAndFailTheMistake) {
    const struct {
        const char* lesson;
        const char* program;
    } lessons[] = {
        {"line_track", "line_follower"}, {"light_maze", "light_seeker"}, {"open_floor", "bumpers"}};
    for (const auto& l : lessons) {
        const std::string good = kExamples + "/" + l.program + ".kflow";
        const std::string wrong = kExamples + "/lessons/wrong/" + l.program + ".kflow";
        lesson::CheckOptions o =
            options(kExamples + "/lessons/" + l.lesson + ".klesson", {wrong, good, wrong});
        o.jobs = "1";
        const Outcome one = check(o);
        o.jobs = "4";
        const Outcome four = check(o);
        EXPECT_EQ(one.status, 1) << one.err;
        EXPECT_EQ(one.out, four.out);
        const auto lines = lines_of(one.out);
        ASSERT_EQ(lines.size(), 4u) << one.out;
        EXPECT_TRUE(lines[0].starts_with("FAIL  " + wrong + "   expect ")) << lines[0];
        EXPECT_TRUE(lines[1].starts_with("pass  " + good + " ")) << lines[1];
        EXPECT_TRUE(lines[1].ends_with(" s simulated")) << lines[1];
        EXPECT_EQ(lines[3], "1 passed, 2 failed");
        // The two shards of a CI matrix: the first and third, then the second alone.
        o.shard = "2/2";
        const Outcome second = check(o);
        EXPECT_EQ(second.status, 0);
        EXPECT_EQ(lines_of(second.out)[0].substr(0, 6), "pass  ");
    }
}

// A lesson refused whole, with its file and what is wrong; nothing is checked.
TEST(CheckCommand, BadLessonsAreRefusedWithTheirFile) {
    TempDir dir;
    const std::string program = dir.write("p.kflow", "DriveStop()\n");
    const struct {
        const char* text;
        const char* what;
    } bad[] = {
        {R"({"lesson": 1, "checks": [], "extra": 1})", "unknown key 'extra'"},
        {R"({"checks": []})", "'lesson' is missing"},
        {R"({"lesson": 2})", "'lesson' is 2"},
        {R"({"lesson": "1"})", "'lesson' is not a number"},
        {R"({"lesson": 1, "checks": "run program"})", "'checks' is not a list of strings"},
        {R"({"lesson": 1, "checks": ["ok", 3]})", "'checks' is not a list of strings"},
        {R"({"lesson": 1, "title": 5})", "'title' is not a string"},
        {R"({"lesson": 1, "settings": [["iThreshL"]]})", "'settings' is not a list"},
        {R"({"lesson": 1, "settings": [["iThreshL", "12x"]]})", "the setting iThreshL"},
        {R"({"lesson": 1, "arena": "size 100 100\nwall 1 2 3\n"})", "the arena, line 2"},
        {R"({"lesson": 1, "program": "int a = 0\nDriveStopp()\n"})", "the program, line 2"},
        {R"([1, 2])", "a lesson is a JSON object"},
        {R"({"lesson": 1,)", "not JSON"},
    };
    for (const auto& b : bad) {
        const std::string file = dir.write("bad.klesson", b.text);
        const Outcome o = check(options(file, {program}));
        EXPECT_EQ(o.status, 2) << b.text;
        EXPECT_EQ(o.out, "");
        EXPECT_TRUE(o.err.starts_with("kestrone-host: " + file + ": ")) << o.err;
        EXPECT_NE(o.err.find(b.what), std::string::npos) << o.err;
    }
    const std::string good = dir.write("good.klesson", R"({"lesson": 1, "checks": []})");
    EXPECT_EQ(check(options(good, {dir.path() + "/missing.kflow"})).status, 2);
    EXPECT_EQ(check(options(good, {})).status, 2);  // no program to check
    EXPECT_EQ(check(options(good, {program})).status, 0);
}

// Settings, files beside the lesson, and each way a program fails while the others go on.
TEST(CheckCommand, ProgramsFailWithTheirMessageAndTheOthersGoOn) {
    TempDir dir;
    dir.write("floor.world", "size 1000 1000\nrobot 500 500 0\nzone here 400 400 200 200\n");
    const std::string file = dir.write("l.klesson", R"({"lesson": 1,
        "settings": [["iThreshL", "77%"]],
        "checks": ["world load \"floor.world\"", "expect field iThreshL == 77%",
                   "run program 3000", "expect world in here == True"]})");
    const struct {
        const char* text;
        const char* message;  // empty: passes
    } programs[] = {
        {"DriveStop()\ndelay 100\n", ""},
        {"DriveForwards(255)\ndelay 2000\n",
         "expect world in here == True: expected True, got False"},
        {"int a = 0\nforever\n    a = a + 1\nend\n", "P:3:"},
        {"DriveStopp()\n", "P:1:1: "},
    };
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::size(programs); ++i)
        names.push_back(dir.write("p" + std::to_string(i) + ".kflow", programs[i].text));
    lesson::CheckOptions o = options(file, names);
    o.junit = dir.path() + "/class.xml";
    o.csv = dir.path() + "/class.csv";
    const Outcome out = check(o);
    EXPECT_EQ(out.status, 1) << out.err;
    const auto lines = lines_of(out.out);
    ASSERT_EQ(lines.size(), std::size(programs) + 1) << out.out;
    for (std::size_t i = 0; i < std::size(programs); ++i) {
        std::string message = programs[i].message;
        if (message.starts_with("P")) message.replace(0, 1, names[i]);
        EXPECT_EQ(lines[i].starts_with("pass"), message.empty()) << lines[i];
        EXPECT_NE(lines[i].find(message), std::string::npos) << lines[i];
    }
    EXPECT_EQ(lines.back(), "1 passed, 3 failed");
    EXPECT_NE(testing_support::read_file(o.junit).find("failures=\"3\""), std::string::npos);
    EXPECT_EQ(lines_of(testing_support::read_file(o.csv)).size(), std::size(programs) + 1);
}

}  // namespace

namespace {

// Without programs named the class is the lesson's own program, shared by shards as any class.
TEST(CheckCommand, WithoutProgramsTheLessonsOwnIsChecked) {
    TempDir dir;
    const std::string file = dir.write(
        "own.klesson", R"({"lesson": 1, "program": "DriveStop()\n", "checks": ["run program"]})");
    const Outcome own = check(options(file, {}));
    EXPECT_EQ(own.status, 0) << own.err;
    EXPECT_EQ(lines_of(own.out).front().substr(0, 6 + file.size()), "pass  " + file);
    lesson::CheckOptions other = options(file, {});
    other.shard = "2/2";
    EXPECT_EQ(check(other).out, "0 passed, 0 failed\n");
}

}  // namespace

namespace {

// Options that can't be read stop `check` before anything runs.
TEST(CheckCommand, UnreadableOptionsAreRefused) {
    TempDir dir;
    const std::string file = dir.write("l.klesson", R"({"lesson": 1, "checks": []})");
    const std::string program = dir.write("p.kflow", "DriveStop()\n");
    for (const char* jobs : {"0", "-1", "1025", "2x", "x", ""}) {
        lesson::CheckOptions o = options(file, {program});
        o.jobs = jobs;
        const Outcome refused = check(o);
        EXPECT_EQ(refused.status, 2) << jobs;
        EXPECT_EQ(refused.out, "") << jobs;
        EXPECT_NE(refused.err.find("--jobs"), std::string::npos) << refused.err;
    }
    lesson::CheckOptions o = options(file, {program});
    o.shard = "3/2";
    EXPECT_EQ(check(o).status, 2);
    o.shard = "1/1";
    o.jobs = "1024";
    EXPECT_EQ(check(o).status, 0);
}

}  // namespace
