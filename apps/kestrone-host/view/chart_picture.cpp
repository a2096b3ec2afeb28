#include "chart_picture.h"

#include <QByteArray>
#include <QFile>
#include <QImageWriter>
#include <QPainter>
#include <QSvgRenderer>

namespace chartqt {

std::optional<ChartFormat> format_of(const std::string& path) {
    const auto ends_with = [&path](std::string_view end) {
        return path.size() > end.size() &&
               path.compare(path.size() - end.size(), end.size(), end) == 0;
    };
    if (ends_with(".svg")) return ChartFormat::Svg;
    if (ends_with(".png")) return ChartFormat::Png;
    return std::nullopt;
}

void paint_chart(QPainter& painter, const chart::Chart& chart, const chart::Layout& layout,
                 const chart::PictureOptions& options) {
    QSvgRenderer renderer(QByteArray::fromStdString(chart::chart_svg(chart, layout, options)));
    renderer.render(&painter,
                    QRectF(0, 0, layout.width * options.zoom, layout.height * options.zoom));
}

QImage chart_image(const chart::Chart& chart, const chart::Layout& layout,
                   const chart::PictureOptions& options) {
    QImage image(layout.width * options.zoom, layout.height * options.zoom, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint_chart(painter, chart, layout, options);
    return image;
}

std::string write_chart(const chart::Chart& chart, const chart::Layout& layout,
                        const std::string& path, int zoom) {
    const QString name = QString::fromStdString(path);
    const auto format = format_of(path);
    if (!format) return "a chart is written as FILE.svg or FILE.png, not " + path;
    if (*format == ChartFormat::Svg) {
        QFile file(name);
        const std::string svg = chart::chart_svg(chart, layout, {zoom, 0});
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            file.write(svg.data(), static_cast<qint64>(svg.size())) !=
                static_cast<qint64>(svg.size()) ||
            !file.flush())
            return "cannot write " + path + ": " + file.errorString().toStdString();
        return {};
    }
    QImageWriter writer(name, "png");
    if (!writer.write(chart_image(chart, layout, {zoom, 0})))
        return "cannot write " + path + ": " + writer.errorString().toStdString();
    return {};
}

}  // namespace chartqt
