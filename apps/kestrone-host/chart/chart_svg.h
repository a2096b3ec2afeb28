// A chart as an SVG document: every icon of a line of code carries that line as its <title>
// ("line 7: DriveForwards(200)"), which viewers show as a tooltip and screen readers read. The
// window's picture and the PNG are drawn from this same document.
#pragma once

#include <string>

#include "chart_layout.h"

namespace chart {

struct PictureOptions {
    int zoom = 1;      // whole multiples of the layout's size
    int lit_line = 0;  // the icon of this line is lit (the running line); 0: none
};

// The document of a chart laid out as `layout`; `chart` gives each titled icon its line's code.
std::string chart_svg(const Chart& chart, const Layout& layout, const PictureOptions& options);

// Text made safe inside an XML element or attribute.
std::string xml_escaped(std::string_view text);

}  // namespace chart
