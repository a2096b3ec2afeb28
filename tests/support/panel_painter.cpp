#include "support/panel_painter.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

namespace testing_support {

using kestrone::ElementInfo;
using kestrone::ElementStyle;
using kestrone::ElementView;
using kestrone::HRESULT;
using kestrone::Rgba;
using kestrone::S_OK;

PixelBox pixel_box(const kestrone::PanelRect& r) {
    return {static_cast<int>(std::lround(r.left)), static_cast<int>(std::lround(r.top)),
            static_cast<int>(std::lround(r.left + r.width)),
            static_cast<int>(std::lround(r.top + r.height))};
}

Rgba Picture::at(int x, int y) const {
    const auto i = static_cast<std::size_t>((y * width + x) * 4);
    return {rgba[i], rgba[i + 1], rgba[i + 2], rgba[i + 3]};
}

HRESULT get_picture(kestrone::IKestronePanel& panel, std::uint32_t id, Picture* out) {
    return panel.GetPicture(id, &out->width, &out->height, &out->rgba);
}

namespace {

constexpr int kCellW = kestrone::kTextCellWidth, kCellH = kestrone::kTextCellHeight;

PixelBox intersect(const PixelBox& a, const PixelBox& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

class Painter {
  public:
    Painter(kestrone::IKestronePanel& panel, PanelImage& image) : panel_(panel), image_(image) {}

    HRESULT paint(int id) {
        ElementInfo info;
        ElementView view;
        HRESULT hr = panel_.GetElement(id, &info);
        if (hr == S_OK) hr = panel_.GetElementView(id, &view);
        if (hr != S_OK || !view.shown || view.style == ElementStyle::None) return hr;
        const PixelBox box = pixel_box(view.box);
        cut_ = intersect(intersect(box, pixel_box(view.clip)), {0, 0, image_.width, image_.height});
        const Picture* pic = nullptr;
        if (info.picture != 0) {
            hr = picture(info.picture, &pic);
            if (hr != S_OK) return hr;
        }
        switch (view.style) {
            case ElementStyle::None:
                break;
            case ElementStyle::Picture:
                if (info.stretch)
                    stretched(*pic, box);
                else
                    draw(*pic, box.left, box.top);
                break;
            case ElementStyle::BorderedPicture:
                outline(box, view.fore, view.fore);
                cut_ = intersect(cut_, {box.left + 1, box.top + 1, box.right - 1, box.bottom - 1});
                draw(*pic, box.left + 1, box.top + 1);
                break;
            case ElementStyle::PictureBox:
                fill(box, view.back);
                if (pic) draw(*pic, box.left, box.top);
                break;
            case ElementStyle::GroupFrame:
                group_frame(box, view, info.caption);
                break;
            case ElementStyle::Label:
                label(box, view, info);
                break;
            case ElementStyle::GraphicalCheckBox:
                check_box(box, view, info, pic);
                break;
            case ElementStyle::Plate:
                plate(box, view.fore);
                break;
            case ElementStyle::Arrows:
                arrows(box, view);
                break;
        }
        return S_OK;
    }

  private:
    HRESULT picture(std::uint32_t id, const Picture** out) {
        auto it = pictures_.find(id);
        if (it == pictures_.end()) {
            Picture p;
            const HRESULT hr = get_picture(panel_, id, &p);
            if (hr != S_OK) return hr;
            it = pictures_.emplace(id, std::move(p)).first;
        }
        *out = &it->second;
        return S_OK;
    }

    void put(int x, int y, Rgba c) {
        if (c.alpha == 0 || x < cut_.left || x >= cut_.right || y < cut_.top || y >= cut_.bottom)
            return;
        Rgba& d = image_.pixels[static_cast<std::size_t>(y * image_.width + x)];
        auto mix = [&](std::uint8_t s, std::uint8_t t) {
            return static_cast<std::uint8_t>((s * c.alpha + t * (255 - c.alpha)) / 255);
        };
        d = {mix(c.red, d.red), mix(c.green, d.green), mix(c.blue, d.blue), 255};
    }

    void fill(const PixelBox& r, Rgba c) {
        for (int y = r.top; y < r.bottom; ++y)
            for (int x = r.left; x < r.right; ++x)
                put(x, y, c);
    }

    // A one-pixel line round `r`: `top_left` along the top and left, `bottom_right` the rest.
    void outline(const PixelBox& r, Rgba top_left, Rgba bottom_right) {
        fill({r.left, r.top, r.right, r.top + 1}, top_left);
        fill({r.left, r.top, r.left + 1, r.bottom}, top_left);
        fill({r.left, r.bottom - 1, r.right, r.bottom}, bottom_right);
        fill({r.right - 1, r.top, r.right, r.bottom}, bottom_right);
    }

    void draw(const Picture& p, int left, int top) {
        for (int y = 0; y < p.height; ++y)
            for (int x = 0; x < p.width; ++x)
                put(left + x, top + y, p.at(x, y));
    }

    void stretched(const Picture& p, const PixelBox& r) {
        const int w = r.right - r.left, h = r.bottom - r.top;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                put(r.left + x, r.top + y, p.at(x * p.width / w, y * p.height / h));
    }

    // Each character a block inside its cell; a space leaves its cell empty.
    void text(const std::string& s, int left, int top, Rgba c) {
        for (std::size_t i = 0; i < s.size(); ++i) {
            if (s[i] == ' ') continue;
            const int x = left + static_cast<int>(i) * kCellW;
            fill({x + 1, top + 2, x + kCellW - 1, top + kCellH - 2}, c);
        }
    }

    int text_width(const std::string& s) { return static_cast<int>(s.size()) * kCellW; }

    void group_frame(const PixelBox& b, const ElementView& v, const std::string& caption) {
        fill(b, v.back);
        const int top = b.top + kCellH / 2;
        outline({b.left, top, b.right - 1, b.bottom - 1}, v.shadow, v.shadow);
        outline({b.left + 1, top + 1, b.right, b.bottom}, v.light, v.light);
        if (caption.empty()) return;
        fill(
            {b.left + kCellW - 1, b.top, b.left + kCellW + text_width(caption) + 1, b.top + kCellH},
            v.back);
        text(caption, b.left + kCellW, b.top, v.fore);
    }

    void label(const PixelBox& b, const ElementView& v, const ElementInfo& info) {
        fill(b, v.back);
        const int inset = info.border_style == 1 ? 1 : 0;
        if (inset) outline(b, v.fore, v.fore);
        const int free = b.right - b.left - 2 * inset - text_width(info.caption);
        const int left = b.left + inset +
                         (info.alignment == 1   ? free
                          : info.alignment == 2 ? free / 2
                                                : 0);
        text(info.caption, left, b.top + inset, v.fore);
    }

    void check_box(const PixelBox& b, const ElementView& v, const ElementInfo& info,
                   const Picture* pic) {
        fill(b, v.back);
        const bool down = info.check_value != 0;
        outline(b, down ? v.shadow : v.light, down ? v.light : v.shadow);
        const int shift = down ? 1 : 0;
        const int pw = pic ? pic->width : 0, ph = pic ? pic->height : 0;
        const int top = b.top + (b.bottom - b.top - ph - kCellH) / 2 + shift;
        const PixelBox outer = cut_;
        cut_ = intersect(cut_, {b.left + 1, b.top + 1, b.right - 1, b.bottom - 1});
        if (pic) draw(*pic, b.left + (b.right - b.left - pw) / 2 + shift, top);
        text(info.caption, b.left + (b.right - b.left - text_width(info.caption)) / 2 + shift,
             top + ph, v.fore);
        cut_ = outer;
    }

    void plate(const PixelBox& b, Rgba c) {
        const int w = b.right - b.left, h = b.bottom - b.top, r = std::min(w, h) / 4;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                // Outside a corner's quarter circle the box stays unpainted.
                const int dx = x < r ? r - x : (x >= w - r ? x - (w - r - 1) : 0);
                const int dy = y < r ? r - y : (y >= h - r ? y - (h - r - 1) : 0);
                if (dx * dx + dy * dy <= r * r) put(b.left + x, b.top + y, c);
            }
    }

    void arrows(const PixelBox& b, const ElementView& v) {
        const int mid = b.top + (b.bottom - b.top) / 2;
        for (const bool upper : {true, false}) {
            const PixelBox half = upper ? PixelBox{b.left, b.top, b.right, mid}
                                        : PixelBox{b.left, mid, b.right, b.bottom};
            fill(half, v.back);
            outline(half, v.light, v.shadow);
            const int cx = (half.left + half.right) / 2, cy = (half.top + half.bottom) / 2;
            for (int i = 0; i < 3; ++i) {
                const int y = upper ? cy - 1 + i : cy + 1 - i;
                fill({cx - i, y, cx + i + 1, y + 1}, v.fore);
            }
        }
    }

    kestrone::IKestronePanel& panel_;
    PanelImage& image_;
    PixelBox cut_;
    std::map<std::uint32_t, Picture> pictures_;
};

}  // namespace

HRESULT paint_panel(kestrone::IKestronePanel& panel, PanelImage* image) {
    float width = 0, height = 0, twips = 0;
    Rgba back;
    std::vector<std::int32_t> order;
    HRESULT hr = panel.GetSize(&width, &height);
    if (hr == S_OK) hr = panel.GetTwipsPerPixel(&twips);
    if (hr == S_OK) hr = panel.GetBackColour(&back);
    if (hr == S_OK) hr = panel.GetPaintOrder(&order);
    if (hr != S_OK) return hr;
    image->width = static_cast<int>(std::lround(width / twips));
    image->height = static_cast<int>(std::lround(height / twips));
    image->pixels.assign(static_cast<std::size_t>(image->width * image->height), back);
    Painter painter(panel, *image);
    for (std::int32_t id : order)
        if ((hr = painter.paint(id)) != S_OK) return hr;
    return S_OK;
}

}  // namespace testing_support
