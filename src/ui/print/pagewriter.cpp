#include "ui/print/pagewriter.h"

#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QTextLayout>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr double pointsPerInch = 72;
constexpr double footerSize = 8;
constexpr double footerHeight = 24;
const QColor footerColor(0x55, 0x55, 0x55);

} // namespace

PageWriter::PageWriter(QPagedPaintDevice &device, const QFont &base, QString title)
    : device(device),
      base(base),
      title(std::move(title)),
      painter(&device),
      resolution(painter.isActive() ? device.logicalDpiY() : pointsPerInch) {
    if (painter.isActive())
        painter.setRenderHint(QPainter::Antialiasing);
}

PageWriter::~PageWriter() {
    if (painter.isActive())
        writeFooter();
}

double PageWriter::dots(double points) const {
    return points * resolution / pointsPerInch;
}

double PageWriter::width() const {
    return device.width() * pointsPerInch / resolution;
}

double PageWriter::bottom() const {
    return device.height() - dots(footerHeight);
}

QFont PageWriter::font(double size, QFont::Weight weight) const {
    QFont result = base;
    result.setPointSizeF(size);
    result.setWeight(weight);
    return result;
}

std::vector<QTextLine> PageWriter::layOut(const Text &text, QTextLayout &layout) const {
    const double available = text.width > 0 ? dots(text.width) : device.width() - dots(text.left);
    if (!text.rest.isEmpty()) {
        QTextCharFormat normal;
        normal.setFontWeight(QFont::Normal);
        const int begin = int(text.text.size());
        layout.setText(text.text + QStringLiteral("   ") + text.rest);
        layout.setFormats({{begin, int(layout.text().size()) - begin, normal}});
    }
    QTextOption option(text.alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    std::vector<QTextLine> lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(available);
        lines.push_back(line);
    }
    layout.endLayout();
    return lines;
}

double PageWriter::write(const Text &text, double top, bool breaksPages) {
    QTextLayout layout(text.text, font(text.size, text.weight), &device);
    painter.setPen(text.color);
    for (QTextLine &line : layOut(text, layout)) {
        if (breaksPages && top + line.height() > bottom()) {
            newPage();
            top = y;
            painter.setPen(text.color);
        }
        line.setPosition({0, 0});
        line.draw(&painter, {dots(text.left), top});
        top += line.height();
    }
    return top;
}

double PageWriter::heightOf(const Text &text) const {
    QTextLayout layout(text.text, font(text.size, text.weight), &device);
    double height = 0;
    for (const QTextLine &line : layOut(text, layout))
        height += line.height();
    return height * pointsPerInch / resolution;
}

void PageWriter::keepTogether(double height) {
    if (y + dots(height) > bottom() && dots(height) < bottom())
        newPage();
}

void PageWriter::space(double height) {
    y += dots(height);
}

void PageWriter::paragraph(const Text &text) {
    y = write(text, y, true);
}

void PageWriter::row(const std::vector<Text> &texts) {
    double height = 0;
    for (const Text &text : texts)
        height = std::max(height, heightOf(text));
    keepTogether(height);
    for (const Text &text : texts)
        write(text, y, false);
    y += dots(height);
}

void PageWriter::line(const QColor &color) {
    painter.setPen(QPen(color, dots(0.5)));
    painter.drawLine(QPointF(0, y), QPointF(device.width(), y));
}

void PageWriter::drawing(
    double height, const std::function<void(QPainter &, const QRectF &)> &draw) {
    keepTogether(height);
    painter.save();
    painter.translate(0, y);
    painter.scale(resolution / pointsPerInch, resolution / pointsPerInch);
    draw(painter, QRectF(0, 0, width(), height));
    painter.restore();
    y += dots(height);
}

void PageWriter::pill(const QString &text, double size, const LevelColors &colors) {
    const QFont pillFont = font(size, QFont::DemiBold);
    const QFontMetricsF metrics(pillFont, &device);
    const double padding = dots(4);
    const QRectF box(0, y, metrics.horizontalAdvance(text) + 2 * padding, metrics.height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.fill);
    painter.drawRoundedRect(box, dots(3), dots(3));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(colors.text);
    painter.setFont(pillFont);
    painter.drawText(QPointF(box.left() + padding, y + metrics.ascent()), text);
}

void PageWriter::newPage() {
    writeFooter();
    device.newPage();
    ++page;
    y = 0;
}

void PageWriter::writeFooter() {
    const QString number = QStringLiteral("Page %1").arg(page);
    const double numberWidth = 60;
    const double top = device.height() - dots(footerHeight) / 2;
    const QFontMetricsF metrics(font(footerSize, QFont::Normal), &device);
    const double titleWidth = dots(width() - numberWidth);
    write(
        {.text = metrics.elidedText(title, Qt::ElideRight, titleWidth - dots(2)),
         .size = footerSize,
         .color = footerColor,
         .width = width() - numberWidth},
        top, false);
    write(
        {.text = number,
         .size = footerSize,
         .color = footerColor,
         .left = width() - numberWidth,
         .alignment = Qt::AlignRight},
        top, false);
}

} // namespace ellwynd
