#include "alsa_tone.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace window {

namespace {

constexpr unsigned kRate = 48000;
constexpr int kPeriodFrames = 480;  // 10 ms a write, so that a cut is heard soon
constexpr int kFadeFrames = 96;     // 2 ms in and out: no click at the edges
constexpr double kAmplitude = 0.25 * 32767;

// ALSA writes its complaints to stderr; a machine without a sound card is normal here.
void quiet(const char*, int, const char*, int, const char*, ...) {}

// The samples of frames [from, from + count) of a tone `total` frames long.
void fill(std::vector<std::int16_t>& out, double step, long from, long count, long total) {
    out.resize(static_cast<std::size_t>(count));
    for (long i = 0; i < count; ++i) {
        const long n = from + i;
        const double edge = std::min({1.0, static_cast<double>(n) / kFadeFrames,
                                      static_cast<double>(total - n) / kFadeFrames});
        out[static_cast<std::size_t>(i)] =
            static_cast<std::int16_t>(std::lround(kAmplitude * edge * std::sin(step * n)));
    }
}

}  // namespace

AlsaTone::AlsaTone(Wait wait) : wait_(std::move(wait)) {
    snd_lib_error_set_handler(&quiet);
}

AlsaTone::~AlsaTone() {
    cut_ = true;
    if (worker_.joinable()) worker_.join();
}

bool AlsaTone::play(std::int32_t hertz, std::int32_t ms) {
    if (hertz < kLowestTone || hertz > kHighestTone || ms <= 0) return false;
    const Deadline end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    cut_ = false;
    if (!silent_) worker_ = std::thread([this, hertz, ms] { sound(hertz, ms); });
    wait_(end);
    // The deadline holds even when the device lags behind it: what is left is cut.
    cut_ = true;
    if (worker_.joinable()) worker_.join();
    return true;
}

void AlsaTone::sound(std::int32_t hertz, std::int32_t ms) {
    snd_pcm_t* pcm = nullptr;
    if (snd_pcm_open(&pcm, "default", SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK) < 0 ||
        snd_pcm_nonblock(pcm, 0) < 0 ||
        snd_pcm_set_params(pcm, SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED, 1, kRate, 1,
                           50'000) < 0) {
        if (pcm) snd_pcm_close(pcm);
        silent_ = true;
        return;
    }
    const long total = static_cast<long>(kRate) * ms / 1000;
    const double step = 2 * std::numbers::pi * hertz / kRate;
    std::vector<std::int16_t> buffer;
    for (long at = 0; at < total && !cut_;) {
        const long count = std::min<long>(kPeriodFrames, total - at);
        fill(buffer, step, at, count, total);
        snd_pcm_sframes_t written = snd_pcm_writei(pcm, buffer.data(), count);
        if (written < 0) written = snd_pcm_recover(pcm, static_cast<int>(written), 1);
        if (written < 0) break;
        at += written;
    }
    // What the card still holds plays out until the deadline cuts it.
    snd_pcm_sframes_t queued = 0;
    while (!cut_ && snd_pcm_delay(pcm, &queued) == 0 && queued > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    snd_pcm_drop(pcm);
    snd_pcm_close(pcm);
}

}  // namespace window
