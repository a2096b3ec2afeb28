// The arena from above, drawn to scale: its lines, walls, lights and zones, the robot with its
// heading and sensor points, and the trail of its path. While `movable`, the robot can be picked
// up and put down with the mouse and turned with the wheel. On screen it is drawn at the zoom's
// scale, or, fitting, as large as the widget holds it; its picture is always at the zoom's.
#pragma once

#include <QImage>
#include <QPixmap>
#include <QPointF>
#include <QWidget>
#include <cstdint>
#include <string>

#include "frame_pacer.h"
#include "world_driver.h"

class QPainter;

namespace world {

class WorldView : public QWidget {
    Q_OBJECT
  public:
    // Pixels to a millimetre at zoom 1, and the blank rim round the floor in pixels.
    static constexpr double kPixelsPerMm = 0.2;
    static constexpr int kMargin = 8;
    static constexpr int kLargestZoom = 8;

    explicit WorldView(WorldDriver& driver, QWidget* parent = nullptr);

    // A whole-number zoom, 1 to kLargestZoom: the drawing grows with it.
    void set_zoom(int zoom);
    int zoom() const { return zoom_; }
    // Drawn as large as the widget holds it, centred, instead of at the zoom's scale.
    void set_fit(bool fit);
    void set_movable(bool movable) { movable_ = movable; }
    bool movable() const { return movable_; }

    // Repaints when the world has changed since the last painting.
    void refresh();
    // The whole drawing as an image, at the present zoom; a null image when it would be larger
    // than kLargestImageSide on a side (a floor of kilometres), with `why` saying so.
    QImage render_image(std::string* why = nullptr) const;
    static constexpr int kLargestImageSide = 8192;

    // Floor millimetres to widget pixels and back.
    QPointF to_pixels(Vec floor) const;
    Vec to_floor(QPointF pixels) const;

    // The drawing at the zoom's scale.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  signals:
    // The robot moved under the user's hand: at every move of a drag, and when put down or turned.
    void robotMoved();
    // The user let go of the robot, or turned it: where it now stands is the user's choice.
    void robotPutDown();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    // Pixels a millimetre, and the pixel of the floor's upper left corner.
    struct Frame {
        double scale;
        QPointF origin;
        QPointF px(Vec floor, double height) const;
    };
    Frame zoom_frame() const;
    Frame screen_frame() const;
    void paint(QPainter& p, const Frame& f) const;
    // The rim, the floor and the trail at the widget's size: the floor drawn again only when
    // the arena or the size changes, the trail's new stretch added. Null when the widget is too
    // large to keep a picture of.
    const QPixmap& ground();
    bool ground_current() const;
    // The world's trail is not the one drawn onto the ground: begun anew, or none.
    bool trail_restarted() const;
    QRect body_rect(const Frame& f) const;
    void repaint_changes();
    void paint_floor(QPainter& p, const Frame& f) const;
    void paint_robot(QPainter& p, const Frame& f) const;  // the trail and the body
    void paint_body(QPainter& p, const Frame& f) const;
    // The robot put down at `pose`, if the walls allow it.
    bool put_down(const Pose& pose);

    WorldDriver& driver_;
    int zoom_ = 1;
    bool movable_ = false;
    bool fit_ = false;
    bool carrying_ = false;
    Vec grip_;    // from the robot's centre to the point it was picked up by
    Vec lifted_;  // where its centre stood when it was picked up
    std::uint64_t painted_revision_ = ~std::uint64_t{0};
    panelqt::FramePacer pacer_;
    QPixmap ground_;
    std::uint64_t ground_arena_ = 0;  // the arena's revision in ground_
    QSize ground_size_;
    int ground_zoom_ = 0;
    bool ground_fit_ = false;
    std::size_t ground_trail_ = 0;  // the trail's points drawn on it
    Vec ground_trail_front_;        // the first of them: another is a trail begun anew
    QRect painted_body_;
};

}  // namespace world
