// A program's chart as a picture: painted from the same SVG document it is exported as, so that
// the window, the SVG file and the PNG file show one drawing.
#pragma once

#include <QImage>
#include <optional>
#include <string>

#include "chart_svg.h"

class QPainter;

namespace chartqt {

// Paints the chart with its top left at the painter's origin, `options.zoom` times its layout.
void paint_chart(QPainter& painter, const chart::Chart& chart, const chart::Layout& layout,
                 const chart::PictureOptions& options);
QImage chart_image(const chart::Chart& chart, const chart::Layout& layout,
                   const chart::PictureOptions& options);
enum class ChartFormat { Svg, Png };
// By the file name's ending, .svg or .png; nothing for another.
std::optional<ChartFormat> format_of(const std::string& path);

// Writes the chart as SVG or PNG, as the file's name ends: "" when written, else why not. A PNG
// needs a GUI application (offscreen will do).
std::string write_chart(const chart::Chart& chart, const chart::Layout& layout,
                        const std::string& path, int zoom);

}  // namespace chartqt
