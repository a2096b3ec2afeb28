#include "window_services.h"

#include <QEventLoop>
#include <QMessageBox>
#include <QTimer>

namespace window {

namespace {

// Runs the event loop without user input until the deadline: timers and repaints go on.
void wait_until(AlsaTone::Deadline deadline) {
    using namespace std::chrono;
    for (;;) {
        const auto left = duration_cast<milliseconds>(deadline - steady_clock::now()).count();
        if (left <= 0) return;
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(left), Qt::PreciseTimer, &loop, &QEventLoop::quit);
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
}

}  // namespace

QString message_lines(const std::string& text) {
    QString out = QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
    out.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    out.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return out;
}

WindowServices::WindowServices(std::function<QString()> caption)
    : caption_(std::move(caption)), tone_(&wait_until) {}

void WindowServices::ShowMessage(const std::string& text) noexcept {
    ++depth_;
    ++messages_;
    QMessageBox box(QMessageBox::NoIcon, caption_ ? caption_() : QString(), message_lines(text),
                    QMessageBox::Ok, parent_);
    box.setWindowModality(Qt::ApplicationModal);
    if (box_handler_) {
        auto handler = box_handler_;
        QTimer::singleShot(0, &box, [handler, &box] { handler(&box); });
    }
    box.exec();
    --depth_;
}

void WindowServices::PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept {
    ++depth_;
    ++tones_;
    tone_.play(hertz, milliseconds);
    --depth_;
}

}  // namespace window
