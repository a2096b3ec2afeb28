#include "frame_pacer.h"

#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace panelqt {

namespace {
constexpr double kDefaultHz = 60, kSlowestHz = 24, kFastestHz = 240;
}  // namespace

FramePacer::FramePacer(QWidget& view, std::function<void()> due)
    : QObject(&view), view_(view), due_(std::move(due)) {
    timer_.setSingleShot(true);
    // A coarse timer may come a twentieth late, which would drop a frame in every few.
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &FramePacer::beat);
    clock_.start();
}

qint64 FramePacer::frame_ns() const {
    const QScreen* screen = view_.screen();
    const double hz =
        screen ? std::clamp(screen->refreshRate(), kSlowestHz, kFastestHz) : kDefaultHz;
    return static_cast<qint64>(1e9 / hz);
}

void FramePacer::request() {
    if (timer_.isActive()) return;
    const qint64 now = clock_.nsecsElapsed();
    // After a quiet spell the beat starts again from now.
    if (next_ns_ < now - frame_ns()) next_ns_ = now;
    timer_.start(static_cast<int>(std::max<qint64>(next_ns_ - now, 0) / 1'000'000));
}

void FramePacer::beat() {
    next_ns_ += frame_ns();
    due_();
}

}  // namespace panelqt
