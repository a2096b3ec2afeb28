#include "class_check.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace lesson {

namespace {

std::optional<std::size_t> whole(std::string_view text) {
    std::size_t n = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), n);
    if (ec != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
    return n;
}

}  // namespace

std::optional<Shard> parse_shard(const std::string& text, std::string* why) {
    const std::size_t slash = text.find('/');
    const auto k =
        slash == std::string::npos ? std::nullopt : whole(std::string_view(text).substr(0, slash));
    const auto m =
        slash == std::string::npos ? std::nullopt : whole(std::string_view(text).substr(slash + 1));
    if (!k || !m || *k < 1 || *k > *m) {
        if (why) *why = "--shard takes K/M with K from 1 to M, not '" + text + "'";
        return std::nullopt;
    }
    return Shard{*k, *m};
}

std::vector<std::size_t> shard_places(std::size_t size, const Shard& shard) {
    std::vector<std::size_t> places;
    for (std::size_t i = shard.index - 1; i < size; i += shard.count)
        places.push_back(i);
    return places;
}

std::vector<CheckResult> check_class(
    const std::vector<ProgramSource>& programs, unsigned jobs, const CheckOne& check,
    const std::function<void(std::size_t, const CheckResult&)>& each) {
    const std::size_t n = programs.size();
    std::vector<std::optional<CheckResult>> results(n);
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::condition_variable done;
    const auto work = [&] {
        for (std::size_t i = next++; i < n; i = next++) {
            CheckResult r = check(programs[i]);
            const std::lock_guard lock(mutex);
            results[i] = std::move(r);
            done.notify_all();
        }
    };
    const std::size_t workers = std::clamp<std::size_t>(jobs, 1, std::max<std::size_t>(n, 1));
    std::vector<std::jthread> threads;
    for (std::size_t w = 0; w < workers; ++w)
        threads.emplace_back(work);
    // Told in order while the workers go on.
    std::vector<CheckResult> out;
    for (std::size_t i = 0; i < n; ++i) {
        std::unique_lock lock(mutex);
        done.wait(lock, [&] { return results[i].has_value(); });
        out.push_back(*results[i]);
        lock.unlock();
        if (each) each(i, out.back());
    }
    return out;
}

}  // namespace lesson
