// At most one repaint a display frame, on a steady beat of the display's rate. A view that
// changes all the time then repaints once a frame: a wait of a whole frame from its first change
// in each frame would add that change's lateness to every frame and fall short of the display.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

class QWidget;

namespace panelqt {

class FramePacer : public QObject {
    Q_OBJECT
  public:
    // `due` runs at the beat after a request; `view` tells the display's rate.
    FramePacer(QWidget& view, std::function<void()> due);

    // Something changed: `due` runs at the next beat, at once after a quiet frame.
    void request();
    void cancel() { timer_.stop(); }
    bool waiting() const { return timer_.isActive(); }

  private:
    void beat();
    qint64 frame_ns() const;

    QWidget& view_;
    std::function<void()> due_;
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 next_ns_ = 0;  // the next beat, on clock_
};

}  // namespace panelqt
