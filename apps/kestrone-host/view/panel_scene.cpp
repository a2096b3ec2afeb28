#include "panel_scene.h"

#include <vector>

#include "element_painter.h"
#include "focus_order.h"
#include "pixel_geometry.h"

namespace panelqt {

using kestrone::HRESULT;
using kestrone::S_OK;

void PanelScene::reset(kestrone::IKestronePanel& panel) {
    panel_ = &panel;
    pictures_.clear();
}

QSize PanelScene::size() const {
    float width = 0, height = 0, twips = 0;
    if (panel_->GetSize(&width, &height) != S_OK || panel_->GetTwipsPerPixel(&twips) != S_OK ||
        twips <= 0)
        return {};
    return {nearest_pixel(width / twips), nearest_pixel(height / twips)};
}

QRect PanelScene::element_rect(std::int32_t id) const {
    kestrone::ElementView view;
    if (panel_->GetElementView(id, &view) != S_OK) return {};
    return pixel_rect(view.box) & pixel_rect(view.clip);
}

HRESULT PanelScene::paint(QPainter& p, const QRect& area, std::int32_t focused) {
    const QRect panel_area = area & QRect(QPoint(0, 0), size());
    kestrone::Rgba back;
    std::vector<std::int32_t> order;
    HRESULT hr = panel_->GetBackColour(&back);
    if (hr == S_OK) hr = panel_->GetPaintOrder(&order);
    if (hr != S_OK) return hr;
    p.save();
    p.setClipRect(panel_area);
    fill(p, panel_area, back);
    for (const std::int32_t id : order)
        if ((hr = paint_one(p, id, panel_area)) != S_OK) break;
    if (hr == S_OK && focused >= 0) {
        p.setClipRect(panel_area);
        paint_focus_mark(p, element_rect(focused));
    }
    p.restore();
    return hr;
}

HRESULT PanelScene::paint_one(QPainter& p, std::int32_t id, const QRect& area) {
    kestrone::ElementInfo info;
    kestrone::ElementView view;
    HRESULT hr = panel_->GetElement(id, &info);
    if (hr == S_OK) hr = panel_->GetElementView(id, &view);
    if (hr != S_OK || !view.shown || view.style == kestrone::ElementStyle::None) return hr;
    const QRect box = pixel_rect(view.box);
    const QRect cut = box & pixel_rect(view.clip) & area;
    if (cut.isEmpty()) return S_OK;
    p.setClipRect(cut);
    paint_element(p, {info, view, box, pictures_.get(*panel_, info.picture)});
    return S_OK;
}

}  // namespace panelqt
