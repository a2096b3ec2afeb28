// The runtime's arrays: a dynamic one, unallocated until sized, with bounds that every index is
// tested against (error 9), and the same test on a fixed one.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/basic_error.h"

namespace rovanta {

template <class T>
class VbArray {
  public:
    bool allocated() const { return allocated_; }
    std::int32_t lbound() const {
        if (!allocated_) vb::raise_error(vb::kSubscriptOutOfRange);
        return lower_;
    }
    std::int32_t ubound() const {
        if (!allocated_) vb::raise_error(vb::kSubscriptOutOfRange);
        return lower_ + static_cast<std::int32_t>(items_.size()) - 1;
    }
    bool in_bounds(std::int64_t i) const {
        return allocated_ && i >= lower_ && i < lower_ + static_cast<std::int64_t>(items_.size());
    }

    // ReDim: earlier elements go. An upper bound below lower - 1 is error 9; a size past what
    // the runtime could hold is error 7.
    void redim(std::int32_t lower, std::int32_t upper) {
        const std::int64_t count = std::int64_t{upper} - lower + 1;
        if (count < 0) vb::raise_error(vb::kSubscriptOutOfRange);
        if (count > kMaxElements) vb::raise_error(vb::kOutOfMemory);
        items_.assign(static_cast<std::size_t>(count), T{});
        lower_ = lower;
        allocated_ = true;
    }

    T& operator()(std::int64_t i) {
        if (!in_bounds(i)) vb::raise_error(vb::kSubscriptOutOfRange);
        return items_[static_cast<std::size_t>(i - lower_)];
    }
    const T& operator()(std::int64_t i) const {
        if (!in_bounds(i)) vb::raise_error(vb::kSubscriptOutOfRange);
        return items_[static_cast<std::size_t>(i - lower_)];
    }
    const std::vector<T>& items() const { return items_; }

  private:
    static constexpr std::int64_t kMaxElements = 1 << 22;
    bool allocated_ = false;
    std::int32_t lower_ = 0;
    std::vector<T> items_;
};

// a(i) of a fixed array of the object: error 9 outside it.
template <class T, std::size_t N>
T& elem(std::array<T, N>& a, std::int64_t i) {
    if (i < 0 || i >= static_cast<std::int64_t>(N)) vb::raise_error(vb::kSubscriptOutOfRange);
    return a[static_cast<std::size_t>(i)];
}

}  // namespace rovanta
