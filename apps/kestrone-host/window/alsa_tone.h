// A tone on the sound card through ALSA. The caller decides how to wait: the tone is generated
// on a thread of its own while the caller's thread waits for the deadline, so that a window's
// event loop keeps running (held) meanwhile.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <thread>

namespace window {

// The frequencies that sound; anything else is refused at once.
inline constexpr std::int32_t kLowestTone = 37, kHighestTone = 32767;

class AlsaTone {
  public:
    using Deadline = std::chrono::steady_clock::time_point;
    // Waits until the deadline: a nested event loop in the window, a sleep in tests.
    using Wait = std::function<void(Deadline)>;

    explicit AlsaTone(Wait wait);
    ~AlsaTone();
    AlsaTone(const AlsaTone&) = delete;
    AlsaTone& operator=(const AlsaTone&) = delete;

    // Sounds `hertz` for `ms` milliseconds and returns when the tone has ended, on the steady
    // clock, whether or not a sound device took it. False, at once, for a tone that cannot sound
    // (a frequency out of range, no duration).
    bool play(std::int32_t hertz, std::int32_t ms);
    // True once a device has refused a tone: later tones are silent but still take their time.
    bool silent() const { return silent_.load(); }

  private:
    void sound(std::int32_t hertz, std::int32_t ms);
    Wait wait_;
    std::thread worker_;
    std::atomic<bool> cut_{false};
    std::atomic<bool> silent_{false};
};

}  // namespace window
