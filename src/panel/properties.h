// The elements' properties by name, as a program reads and writes them: the values it gets, the
// conversions of a write and the events that a write raises.
#pragma once

#include <string_view>

#include "kestrone/variant.h"
#include "panel/panel_model.h"

namespace panel {

enum class PropertyLookup { Found, Unknown };

// Element `id`'s property; Unknown for a property its kind does not have.
PropertyLookup get_property(const Panel& p, int id, std::string_view property,
                            kestrone::Variant& out);
// Writes it as a program would: error 13 for a value that does not convert, 380 for one the
// property refuses, 383 for a property that can't be written.
PropertyLookup put_property(Panel& p, int id, std::string_view property,
                            const kestrone::Variant& value);

// The panel's own: Width and Height in twips (a write raises Resize), ScaleWidth, ScaleHeight
// and ScaleMode of its scale, pixels.
PropertyLookup get_panel_property(const Panel& p, std::string_view property,
                                  kestrone::Variant& out);
PropertyLookup put_panel_property(Panel& p, std::string_view property,
                                  const kestrone::Variant& value);

}  // namespace panel
