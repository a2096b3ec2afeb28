// The known name nearest to one that is not known, for the message about a misspelt name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kflow {

// The fewest single-letter insertions, deletions, changes or swaps of two neighbours that make
// `a` into `b`, case ignored, where no letter is edited twice; nullopt when that is more than
// `limit`.
std::optional<int> name_distance(std::string_view a, std::string_view b, int limit);

// Work for suggestions in one check of a program: far more than any program a person writes
// needs, and a bound on one with very many misspelt names among very many known ones.
class SuggestionBudget {
  public:
    explicit SuggestionBudget(std::int64_t steps) : left_(steps) {}
    // False, and nothing more is allowed, when `steps` are more than what is left.
    bool spend(std::int64_t steps);

  private:
    std::int64_t left_;
};

// Of the names offered, the nearest to `name` within a third of its length; of two as near, the
// one offered first.
class NearestName {
  public:
    NearestName(std::string_view name, SuggestionBudget& budget) : name_(name), budget_(budget) {}
    // False once the budget is spent: offer no more.
    bool offer(const std::string& known);
    const std::string* found() const { return best_; }
    // The names differ only in case.
    bool same_ignoring_case() const { return best_ && best_distance_ == 0; }

  private:
    std::string_view name_;
    SuggestionBudget& budget_;
    const std::string* best_ = nullptr;
    int best_distance_ = 0;
};

}  // namespace kflow
