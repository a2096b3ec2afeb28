// The five sensor bars on the panel: a value and the place of its bar, both ways, the arrows
// beside each bar, and the pointer on a sensor's panel. Works on the object's SensorState and
// panel; it never reaches the simulation, which reads the values it leaves.
#pragma once

#include "core/core_state.h"
#include "panel/panel_model.h"
#include "sensors/sensor_state.h"

namespace rovanta {

class SensorBars {
  public:
    SensorBars(SensorState& state, panel::Panel& panel) : s_(state), panel_(panel) {}
    SensorBars(const SensorBars&) = delete;
    SensorBars& operator=(const SensorBars&) = delete;

    // The sensors' steps of the start-up: full scale 255, each bar laid out at the value 0.
    void StartUp();
    // bReturnInt's change: the full scale 1023 for a value other than 0, else 255. The bars
    // stay; every value is worked out afresh from its bar's place.
    void SelectFullScale(Integer bReturnInt);

    void LayoutSlider(Integer Index);
    void InitSlider(Integer Index);
    void SetSliderValue(Integer Index, Long Value);
    void ShowSliderValue(Integer Index);
    void updownADC_Change(Integer& Index);
    void SliderMouseEvent(Integer Index, float X, float Y);
    void frameADC_MouseDown(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void frameADC_MouseMove(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void imSlideBar_MouseDown(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void imSlideBar_MouseMove(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void imSlideBase_MouseDown(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);
    void imSlideBase_MouseMove(Integer& Index, Integer& Button, Integer& Shift, float& X, float& Y);

  private:
    float span_of(Integer Index) const;
    void value_from_position(Integer Index);
    void on_element(const std::array<int, 5>& elements, Integer Index, Integer Button, float X,
                    float Y);

    SensorState& s_;
    panel::Panel& panel_;
};

}  // namespace rovanta
