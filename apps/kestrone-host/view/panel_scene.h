// The panel as a scene to paint: its size, its elements back to front, each cut at its box and
// clip, and the pictures they show. Both the widget and the offscreen renderer paint through it.
#pragma once

#include <QPainter>
#include <QRect>
#include <QSize>
#include <cstdint>

#include "kestrone/panel.h"
#include "picture_cache.h"

namespace panelqt {

class PanelScene {
  public:
    explicit PanelScene(kestrone::IKestronePanel& panel) : panel_(&panel) {}

    // The panel was replaced: drop the pictures of the old one.
    void reset(kestrone::IKestronePanel& panel);
    kestrone::IKestronePanel& panel() const { return *panel_; }

    // The panel's size in whole pixels; empty when the panel cannot say.
    QSize size() const;
    // What element `id` may cover, in panel pixels: its box within its clip, whether shown or not
    // (a hidden element leaves a place to repaint); empty when the panel cannot say.
    QRect element_rect(std::int32_t id) const;

    // Paints `area` (panel pixels) onto `p`, whose transform maps panel pixels to the device;
    // the focus mark on `focused` unless it is -1. The first failure the panel gives, or S_OK.
    kestrone::HRESULT paint(QPainter& p, const QRect& area, std::int32_t focused);

  private:
    kestrone::HRESULT paint_one(QPainter& p, std::int32_t id, const QRect& area);

    kestrone::IKestronePanel* panel_;
    PictureCache pictures_;
};

}  // namespace panelqt
