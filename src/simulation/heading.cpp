// The heading picture, chosen from the two motor speeds alone.
#include <array>
#include <cstdlib>

#include "simulation/simulation.h"

namespace rovanta {

namespace {

// A motor at 20 or less in size stands; speeds within 20 of each other are equal, and 100 or
// more apart are much apart.
constexpr int kStill = 20, kEqual = 20, kFar = 100;

struct HeadingRule {
    bool (*holds)(int L, int R, int d);
    Integer image;
};

bool still(int s) {
    return std::abs(s) <= kStill;
}
bool both_forward(int L, int R) {
    return L > kStill && R > kStill;
}

// Tried from the top; the first that holds decides. d is |L - R|.
constexpr std::array<HeadingRule, 17> kHeadingRules{{
    {[](int L, int R, int) { return still(L) && still(R); }, 0},
    {[](int L, int R, int) { return still(L) && R > 0; }, 5},
    {[](int L, int, int) { return still(L); }, 8},
    {[](int L, int R, int) { return still(R) && L > 0; }, 8},
    {[](int, int R, int) { return still(R); }, 5},
    {[](int L, int R, int) { return L < 0 && R > 0; }, 5},
    {[](int L, int R, int) { return L > 0 && R < 0; }, 8},
    {[](int L, int R, int d) { return both_forward(L, R) && d <= kEqual; }, 1},
    {[](int L, int R, int d) { return both_forward(L, R) && L > R && d < kFar; }, 6},
    {[](int L, int R, int d) { return both_forward(L, R) && L > R && d >= kFar; }, 7},
    {[](int L, int R, int d) { return both_forward(L, R) && L < R && d < kFar; }, 3},
    {[](int L, int R, int d) { return both_forward(L, R) && L < R && d >= kFar; }, 4},
    // Only both speeds below -20 come this far.
    {[](int, int, int d) { return d <= kEqual; }, 2},
    {[](int L, int R, int d) { return L < R && d < kFar; }, 11},
    {[](int L, int R, int d) { return L < R && d >= kFar; }, 12},
    {[](int L, int R, int d) { return L > R && d < kFar; }, 9},
    {[](int L, int R, int d) { return L > R && d >= kFar; }, 10},
}};

}  // namespace

void Simulation::UpdateDirection() {
    const int L = motors_.iMotorSpeed[0], R = motors_.iMotorSpeed[1];
    const int d = std::abs(L - R);
    Integer image = 0;
    for (const HeadingRule& rule : kHeadingRules)
        if (rule.holds(L, R, d)) {
            image = rule.image;
            break;
        }
    // All hidden in rising order, then the chosen one shown, on every run.
    for (int id : panel_.ids().imDirection)
        panel_.set_visible(id, false);
    panel_.set_visible(panel_.ids().imDirection[static_cast<std::size_t>(image)], true);
}

}  // namespace rovanta
