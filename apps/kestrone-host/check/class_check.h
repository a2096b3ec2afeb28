// A class of programs checked against one lesson on several workers. Each program is checked on
// its own robot, so its result depends on nothing but the lesson and its text: not on the
// number of workers, the order, or the share of the class a machine was given.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lesson_check.h"

namespace lesson {

// `--shard K/M`: the programs at places K, K + M, K + 2M, ... counting from 1.
struct Shard {
    std::size_t index = 1;
    std::size_t count = 1;
};
// "K/M" with 1 <= K <= M, else nullopt with `why`.
std::optional<Shard> parse_shard(const std::string& text, std::string* why);
// The places (from 0) of a list of `size` that the shard takes, in order.
std::vector<std::size_t> shard_places(std::size_t size, const Shard& shard);

// Checks every program with `check` on `jobs` workers and tells each result to `each` in the
// order of `programs`, as soon as it and all before it are known. The results, in that order.
using CheckOne = std::function<CheckResult(const ProgramSource&)>;
std::vector<CheckResult> check_class(
    const std::vector<ProgramSource>& programs, unsigned jobs, const CheckOne& check,
    const std::function<void(std::size_t, const CheckResult&)>& each);

}  // namespace lesson
