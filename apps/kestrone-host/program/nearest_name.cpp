#include "nearest_name.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <numeric>
#include <vector>

namespace kflow {

namespace {

char folded(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

}  // namespace

std::optional<int> name_distance(std::string_view a, std::string_view b, int limit) {
    const auto n = static_cast<int>(a.size()), m = static_cast<int>(b.size());
    if (std::abs(n - m) > limit) return std::nullopt;
    // Three rows of the table of distances between prefixes: a swap looks two rows back.
    std::vector<int> two_back(static_cast<std::size_t>(m) + 1), back(two_back.size()),
        row(two_back.size());
    std::iota(back.begin(), back.end(), 0);
    for (int i = 1; i <= n; ++i) {
        row[0] = i;
        int lowest = i;
        for (int j = 1; j <= m; ++j) {
            const auto at = static_cast<std::size_t>(j);
            const char x = folded(a[static_cast<std::size_t>(i - 1)]), y = folded(b[at - 1]);
            int d = std::min({back[at] + 1, row[at - 1] + 1, back[at - 1] + (x == y ? 0 : 1)});
            if (i > 1 && j > 1 && x == folded(b[at - 2]) &&
                folded(a[static_cast<std::size_t>(i - 2)]) == y)
                d = std::min(d, two_back[at - 2] + 1);
            row[at] = d;
            lowest = std::min(lowest, d);
        }
        // The lowest distance of a row never falls in the rows after it.
        if (lowest > limit) return std::nullopt;
        std::swap(two_back, back);
        std::swap(back, row);
    }
    const int d = back[static_cast<std::size_t>(m)];
    return d <= limit ? std::optional<int>(d) : std::nullopt;
}

bool SuggestionBudget::spend(std::int64_t steps) {
    if (steps > left_) {
        left_ = 0;
        return false;
    }
    left_ -= steps;
    return true;
}

bool NearestName::offer(const std::string& known) {
    const auto len = static_cast<std::int64_t>(name_.size());
    if (!budget_.spend(1 + len * static_cast<std::int64_t>(known.size()))) return false;
    // Only a nearer name replaces the one found.
    const int limit = best_ ? best_distance_ - 1 : static_cast<int>(len / 3);
    if (const auto d = name_distance(name_, known, limit)) {
        best_ = &known;
        best_distance_ = *d;
    }
    return true;
}

}  // namespace kflow
