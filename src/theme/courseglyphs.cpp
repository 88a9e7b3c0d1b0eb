#include "theme/courseglyphs.h"

#include "theme/resources.h"

#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace ellwynd {

namespace {

/// The pen's width in the view box. Small glyphs have wider lines, which would otherwise be thinner
/// than a pixel and look grey.
double penWidth(double pixels) {
    constexpr double small = 14;
    constexpr double large = 26;
    constexpr double heavy = 2.7;
    constexpr double light = 1.9;
    const double share = std::clamp((pixels - small) / (large - small), 0.0, 1.0);
    return heavy + (light - heavy) * share;
}

/// The SVG with another colour and pen width.
QByteArray restyled(const QByteArray &svg, const QColor &color, double pen) {
    QByteArray result;
    QXmlStreamWriter writer(&result);
    QXmlStreamReader reader(svg);
    // Namespace declarations are then read as attributes.
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement()) {
            if (!reader.hasError())
                writer.writeCurrentToken(reader);
            continue;
        }
        writer.writeStartElement(reader.qualifiedName().toString());
        for (const QXmlStreamAttribute &attribute : reader.attributes()) {
            const QString name = attribute.qualifiedName().toString();
            QString value = attribute.value().toString();
            const bool paints = name == u"fill" || name == u"stroke";
            if (paints && value != u"none")
                value = color.name();
            else if (name == u"stroke-width")
                value = QString::number(pen, 'f', 2);
            writer.writeAttribute(name, value);
        }
    }
    return result;
}

} // namespace

bool drawCourseGlyph(
    QPainter &painter, std::string_view word, const QRectF &box, const QColor &color) {
    const QString name = QString::fromUtf8(word.data(), qsizetype(word.size()));
    const QByteArray svg = resourceFile(QStringLiteral("glyphs/%1.svg").arg(name));
    if (svg.isEmpty())
        return false;
    const double pen = penWidth(box.width() * painter.device()->devicePixelRatioF());
    QSvgRenderer renderer(restyled(svg, color, pen));
    renderer.render(&painter, box);
    return true;
}

} // namespace ellwynd
