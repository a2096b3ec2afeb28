// The world's hold on the component through the host session: fields by name, the panel's check
// boxes and sensor arrows by their elements, each worked as the user's input is.
#pragma once

#include "component_session.h"
#include "panel_port.h"

namespace world {

class SessionPort : public PanelPort {
  public:
    explicit SessionPort(host::ComponentSession& session) : session_(session) {}
    std::optional<bool> simulating() override;
    std::optional<std::int32_t> motor_speed(int motor) override;
    std::optional<std::int32_t> full_scale() override;
    std::optional<std::int32_t> sensor_value(int sensor) override;
    std::optional<std::int32_t> check_value(CheckInput input) override;
    bool click(CheckInput input) override;
    bool arrow(int sensor, bool raise) override;

  private:
    std::optional<std::int32_t> whole_field(const char* name, std::optional<std::int32_t> index);
    std::optional<std::int32_t> element_number(const char* element,
                                               std::optional<std::int32_t> index,
                                               const char* property);
    host::ComponentSession& session_;
};

}  // namespace world
