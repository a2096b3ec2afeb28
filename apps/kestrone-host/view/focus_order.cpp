#include "focus_order.h"

#include <algorithm>
#include <array>

namespace panelqt {

using kestrone::ElementKind;

namespace {

// By ElementKind, in its order: the kinds a user can put the focus on.
constexpr std::array<bool, 8> kTakesFocus = {
    false,  // Frame
    false,  // Image
    false,  // Label
    true,   // CheckBox
    true,   // PictureBox
    false,  // Shape
    false,  // Timer
    true,   // UpDown
};
static_assert(static_cast<std::size_t>(ElementKind::UpDown) + 1 == kTakesFocus.size());

bool takes_focus(const kestrone::ElementInfo& info, const kestrone::ElementView& view) {
    const auto kind = static_cast<std::size_t>(info.kind);
    return kind < kTakesFocus.size() && kTakesFocus[kind] && info.tab_index >= 0 && view.shown &&
           info.enabled;
}

}  // namespace

std::vector<std::int32_t> focus_order(kestrone::IKestronePanel& panel) {
    std::int32_t count = 0;
    if (panel.GetElementCount(&count) != kestrone::S_OK) return {};
    std::vector<std::pair<std::int32_t, std::int32_t>> by_tab;  // tab index, id
    for (std::int32_t id = 0; id < count; ++id) {
        kestrone::ElementInfo info;
        kestrone::ElementView view;
        if (panel.GetElement(id, &info) != kestrone::S_OK ||
            panel.GetElementView(id, &view) != kestrone::S_OK)
            continue;
        if (takes_focus(info, view)) by_tab.emplace_back(info.tab_index, id);
    }
    std::sort(by_tab.begin(), by_tab.end());
    std::vector<std::int32_t> order;
    order.reserve(by_tab.size());
    for (const auto& [tab, id] : by_tab)
        order.push_back(id);
    return order;
}

std::int32_t next_focus(const std::vector<std::int32_t>& order, std::int32_t current,
                        bool forward) {
    if (order.empty()) return -1;
    const auto it = std::find(order.begin(), order.end(), current);
    const auto n = static_cast<std::ptrdiff_t>(order.size());
    if (it == order.end()) return forward ? order.front() : order.back();
    const std::ptrdiff_t at = it - order.begin();
    return order[static_cast<std::size_t>((at + (forward ? 1 : n - 1)) % n)];
}

void paint_focus_mark(QPainter& p, const QRect& box) {
    // Two pixels in, so that it clears a button's raised edge; every other pixel black.
    const QRect r = box.adjusted(2, 2, -2, -2);
    if (r.width() < 1 || r.height() < 1) return;
    const QColor ink(0, 0, 0);
    for (int x = r.left(); x <= r.right(); x += 2) {
        p.fillRect(x, r.top(), 1, 1, ink);
        p.fillRect(x, r.bottom(), 1, 1, ink);
    }
    for (int y = r.top(); y <= r.bottom(); y += 2) {
        p.fillRect(r.left(), y, 1, 1, ink);
        p.fillRect(r.right(), y, 1, 1, ink);
    }
}

}  // namespace panelqt
