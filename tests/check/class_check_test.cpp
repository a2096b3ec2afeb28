// The class's results against a model: every program's result whatever the number of workers,
// told in the order given; the shards of a class add up to it, each program once.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

#include "check_report.h"
#include "class_check.h"

namespace {

using lesson::CheckResult;
using lesson::ProgramSource;

// A result that depends on the program's text alone; it takes a little while, more for some,
// so that the workers finish out of order.
CheckResult model(const ProgramSource& p) {
    const std::size_t h = std::hash<std::string>{}(p.text);
    std::this_thread::sleep_for(std::chrono::microseconds(h % 300));
    return {h % 3 != 0, static_cast<std::int64_t>(h % 100000), h % 3 ? "" : "no " + p.text};
}

TEST(ClassCheck, ResultsInTheOrderGivenWhateverTheWorkers) {
    std::mt19937 rng(2026);
    for (int round = 0; round < 20; ++round) {
        std::vector<ProgramSource> programs(rng() % 40);
        for (auto& p : programs)
            p = {"p" + std::to_string(rng()), std::to_string(rng())};
        const unsigned jobs = 1 + rng() % 9;
        std::vector<std::size_t> told;
        const auto results =
            lesson::check_class(programs, jobs, model, [&](std::size_t i, const CheckResult& r) {
                told.push_back(i);
                EXPECT_EQ(r.message, model(programs[i]).message);
            });
        ASSERT_EQ(results.size(), programs.size());
        for (std::size_t i = 0; i < programs.size(); ++i) {
            EXPECT_EQ(told[i], i);
            const CheckResult want = model(programs[i]);
            EXPECT_EQ(results[i].passed, want.passed);
            EXPECT_EQ(results[i].simulated_ms, want.simulated_ms);
        }
    }
}

TEST(ClassCheck, ShardsShareTheClassEachProgramOnce) {
    std::mt19937 rng(7);
    for (int round = 0; round < 50; ++round) {
        const std::size_t size = rng() % 30;
        const std::size_t m = 1 + rng() % 7;
        std::vector<int> seen(size, 0);
        for (std::size_t k = 1; k <= m; ++k) {
            std::string why;
            const auto shard =
                lesson::parse_shard(std::to_string(k) + "/" + std::to_string(m), &why);
            ASSERT_TRUE(shard) << why;
            for (const std::size_t place : lesson::shard_places(size, *shard)) {
                ASSERT_LT(place, size);
                EXPECT_EQ(place % m, k - 1);  // places K, K + M, ... counted from 1
                ++seen[place];
            }
        }
        for (const int n : seen)
            EXPECT_EQ(n, 1);
    }
    for (const char* bad : {"0/3", "4/3", "1", "1/0", "a/2", "1/2x", "/2", "1/", "", "-1/2"})
        EXPECT_FALSE(lesson::parse_shard(bad, nullptr)) << bad;
}

}  // namespace
