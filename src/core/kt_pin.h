// KTPin: one pin of the robot as the host sees it.
#pragma once

#include <cstdint>
#include <string>

namespace rovanta {

struct KTPin {
    std::string PinName;
    std::int32_t Direction = 0;
    std::int32_t DesiredPort = 0;
    bool PortMandatory = false;
    std::int32_t SamePortAsID = 0;
    std::int32_t DesiredBit = 0;
    bool BitMandatory = false;
    bool SimValue = false;
    double AnalogueSim = 0;  // held for an analogue level; nothing sets or reads it
    std::int32_t Port = 0;
    std::int32_t Bit = 0;
};

}  // namespace rovanta
