// A press or a move with the left button anywhere on a sensor's panel sets the bar. The bar's and
// the track's handlers bring the point into the frame's twips first; each reads its element's
// place afresh, since the bar moves under a drag.
#include "platform/vb_numeric.h"
#include "sensors/sensor_bars.h"

namespace rovanta {

using panel::Panel;

void SensorBars::on_element(const std::array<int, 5>& elements, Integer Index, Integer Button,
                            float X, float Y) {
    if (Button != 1) return;
    const panel::Element& e = panel_.at(Panel::member(elements, Index));
    SliderMouseEvent(Index, vb::fadd(X, e.left), vb::fadd(Y, e.top));
}

void SensorBars::frameADC_MouseDown(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    if (Button == 1) SliderMouseEvent(Index, X, Y);
}
void SensorBars::frameADC_MouseMove(Integer& Index, Integer& Button, Integer&, float& X, float& Y) {
    if (Button == 1) SliderMouseEvent(Index, X, Y);
}
void SensorBars::imSlideBar_MouseDown(Integer& Index, Integer& Button, Integer&, float& X,
                                      float& Y) {
    on_element(panel_.ids().imSlideBar, Index, Button, X, Y);
}
void SensorBars::imSlideBar_MouseMove(Integer& Index, Integer& Button, Integer&, float& X,
                                      float& Y) {
    on_element(panel_.ids().imSlideBar, Index, Button, X, Y);
}
void SensorBars::imSlideBase_MouseDown(Integer& Index, Integer& Button, Integer&, float& X,
                                       float& Y) {
    on_element(panel_.ids().imSlideBase, Index, Button, X, Y);
}
void SensorBars::imSlideBase_MouseMove(Integer& Index, Integer& Button, Integer&, float& X,
                                       float& Y) {
    on_element(panel_.ids().imSlideBase, Index, Button, X, Y);
}

}  // namespace rovanta
