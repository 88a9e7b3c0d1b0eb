// Text and drawings, from top to bottom, on pages.
#pragma once

#include "theme/theme.h"

#include <QColor>
#include <QFont>
#include <QPainter>

#include <functional>
#include <vector>

class QPagedPaintDevice;
class QTextLayout;
class QTextLine;

namespace ellwynd {

/// Fills the pages of a printer or a PDF, and begins a new one when the page is full. Each page has
/// a line with the title and its number at its lower edge. Lengths are points, from the left and
/// the upper margin.
class PageWriter {
  public:
    struct Text {
        QString text;
        /// Follows the text after a gap, in normal weight.
        QString rest;
        double size = 10;
        QFont::Weight weight = QFont::Normal;
        QColor color = Qt::black;
        double left = 0;
        /// 0 for the width up to the right margin.
        double width = 0;
        Qt::Alignment alignment = Qt::AlignLeft;
    };

    /// Begins to paint; see `isActive`.
    /// @param device must outlive this object.
    PageWriter(QPagedPaintDevice &device, const QFont &base, QString title);
    /// Finishes the last page.
    ~PageWriter();
    PageWriter(const PageWriter &) = delete;
    PageWriter &operator=(const PageWriter &) = delete;

    /// False if the device could not be opened.
    [[nodiscard]] bool isActive() const { return painter.isActive(); }
    [[nodiscard]] double width() const;

    [[nodiscard]] double heightOf(const Text &text) const;
    /// Begins a new page unless this height is left. More than a page has no effect.
    void keepTogether(double height);
    void space(double height);
    /// Writes a text below the last one; its lines may continue on the next page.
    void paragraph(const Text &text);
    /// Writes texts beside each other, all on one page.
    void row(const std::vector<Text> &texts);
    void line(const QColor &color);
    /// Draws in a rectangle over the whole width, in points.
    void drawing(double height, const std::function<void(QPainter &, const QRectF &)> &draw);
    /// Draws text on a rounded background at the current height, without moving on.
    void pill(const QString &text, double size, const LevelColors &colors);

  private:
    [[nodiscard]] double dots(double points) const;
    /// Breaks a text into lines. They are valid as long as the layout.
    std::vector<QTextLine> layOut(const Text &text, QTextLayout &layout) const;
    [[nodiscard]] QFont font(double size, QFont::Weight weight) const;
    [[nodiscard]] double bottom() const;
    /// Writes a text from `top` on, in dots, and returns where it ends.
    double write(const Text &text, double top, bool breaksPages);
    void newPage();
    void writeFooter();

    QPagedPaintDevice &device;
    QFont base;
    QString title;
    QPainter painter;
    double resolution = 72;
    /// In dots.
    double y = 0;
    int page = 1;
};

} // namespace ellwynd
