// A press or a move with the left button anywhere on a sensor's panel sets the bar. The bar's and
// the track's handlers bring the point into the frame's twips first; each reads its element's
// place afresh, since the bar moves under a drag.
#include "core/rovanta.h"
#include "platform/vb_numeric.h"

namespace rovanta {

using panel::Panel;

namespace {
void on_element(Rovanta& r, const std::array<int, 5>& elements, Integer Index, Integer Button,
                float X, float Y) {
    if (Button != 1) return;
    const panel::Element& e = r.panel.at(Panel::member(elements, Index));
    r.SliderMouseEvent(Index, vb::fadd(X, e.left), vb::fadd(Y, e.top));
}
}  // namespace

void Rovanta::frameADC_MouseDown(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    if (Button == 1) SliderMouseEvent(Index, X, Y);
}
void Rovanta::frameADC_MouseMove(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    if (Button == 1) SliderMouseEvent(Index, X, Y);
}
void Rovanta::imSlideBar_MouseDown(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    on_element(*this, panel.ids().imSlideBar, Index, Button, X, Y);
}
void Rovanta::imSlideBar_MouseMove(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    on_element(*this, panel.ids().imSlideBar, Index, Button, X, Y);
}
void Rovanta::imSlideBase_MouseDown(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    on_element(*this, panel.ids().imSlideBase, Index, Button, X, Y);
}
void Rovanta::imSlideBase_MouseMove(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    on_element(*this, panel.ids().imSlideBase, Index, Button, X, Y);
}

}  // namespace rovanta
