// The component's macro table as the headless commands read it, from an object made and readied
// the one way (session/object_recipe.h).
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "kestrone/services.h"
#include "macro_table.h"

namespace kflow {

// Messages of the component go to an error stream: there is nobody to click OK.
class ErrorStreamServices : public kestrone::IHostServices {
  public:
    explicit ErrorStreamServices(std::ostream& err) : err_(err) {}
    virtual ~ErrorStreamServices() = default;
    void ShowMessage(const std::string& text) noexcept override;
    void PlayTone(std::int32_t, std::int32_t) noexcept override {}

  private:
    std::ostream& err_;
};

// The macro table of the module's component, told the host's version and the chip as `code`
// tells it; nullopt, having said why on `err`, when the module, its object or its table fails.
std::optional<MacroTable> read_module_macros(const std::string& module, std::ostream& err);

}  // namespace kflow
