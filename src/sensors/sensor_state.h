// The five analogue sensors' state: their values, the places of their bars and the bars' travel,
// and the full scale. The object owns it; the sensor bars (sensor_bars.h) keep it.
#pragma once

#include <array>
#include <cstdint>

#include "kestrone/variant.h"

namespace rovanta {

struct SensorState {
    std::array<std::int32_t, 5> lADCVal{};
    std::array<std::int32_t, 5> lSliderPos{};
    std::array<kestrone::Variant, 5> vSliderMax{};
    std::array<kestrone::Variant, 5> vSliderMin{};
    std::int16_t iADCMax = 0;
};

}  // namespace rovanta
