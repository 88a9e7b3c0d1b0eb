#include "uikit/painting.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <functional>

using namespace ellwynd;

namespace {

constexpr int allAlignments[] = {
    Qt::AlignLeft | Qt::AlignVCenter, Qt::AlignRight | Qt::AlignVCenter, Qt::AlignCenter,
    int(Qt::AlignLeft) | int(Qt::AlignTop)};

QImage drawn(const QFont &font, QColor pen, const std::function<void(QPainter &)> &draw) {
    QImage image(300, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(pen);
    draw(painter);
    return image;
}

/// Compares a line with the same one as the painter draws it.
void compareLine(const QFont &font, QColor pen, const QRect &rect, int alignment, QString text) {
    const auto drawnAnew = [&](const QString &line) {
        return drawn(font, pen, [&](QPainter &painter) {
            painter.drawText(rect, alignment | Qt::TextSingleLine, line);
        });
    };
    const QImage clipped =
        drawn(font, pen, [&](QPainter &painter) { drawLine(painter, rect, alignment, text); });
    EXPECT_EQ(clipped, drawnAnew(text)) << "clipped, " << alignment;
    int used = 0;
    const QImage fitted = drawn(font, pen, [&](QPainter &painter) {
        used = drawElided(painter, rect, alignment, text, Qt::ElideMiddle);
    });
    const QFontMetrics metrics(font);
    text.replace(u'\n', u' ').replace(u'\t', u' ');
    const QString elided = metrics.elidedText(text, Qt::ElideMiddle, rect.width());
    EXPECT_EQ(fitted, drawnAnew(elided)) << "elided, " << alignment;
    EXPECT_EQ(used, metrics.horizontalAdvance(elided));
}

/// Kept lines must not be told from those that the toolkit draws anew.
TEST(Painting, drawsAndMeasuresLinesAsThePainterDoes) {
    QFont bold;
    bold.setBold(true);
    QFont spaced;
    spaced.setLetterSpacing(QFont::PercentageSpacing, 130);
    for (const QString &text :
         {QStringLiteral("Essay 1"), QStringLiteral("Most missed: "), QString(),
          QStringLiteral("two\nlines,\ta tab"), QStringLiteral("Zoe\u0308 Müller"),
          QStringLiteral("נועה כהן"), QStringLiteral("李小龍 😀"),
          QStringLiteral("a very long title that no card is wide enough to show as a whole")}) {
        SCOPED_TRACE(qPrintable(text));
        QString oneLine = text;
        oneLine.replace(u'\n', u' ').replace(u'\t', u' ');
        for (const QFont &font : {QFont(), bold, spaced}) {
            const QFontMetrics metrics(font);
            const int width = metrics.horizontalAdvance(oneLine);
            EXPECT_EQ(textWidth(font, text), width);
            EXPECT_TRUE(fitsWidth(font, text, width));
            EXPECT_FALSE(fitsWidth(font, text, width - 1));
            for (const int lineWidth : {70, 280}) {
                const QRect space(0, 0, lineWidth, 1000);
                EXPECT_EQ(
                    wrappedSize(font, text, lineWidth),
                    metrics.boundingRect(space, Qt::TextWordWrap, text).size())
                    << "in lines of " << lineWidth;
            }
            for (const QRect &rect :
                 {QRect(10, 5, 280, 40), QRect(10, 5, 70, 40), QRect(10, 5, 3, 40),
                  QRect(40, 20, 200, 7)}) {
                for (const int alignment : allAlignments) {
                    // The second time the line is known, and the colour is another.
                    compareLine(font, Qt::black, rect, alignment, text);
                    compareLine(font, Qt::red, rect, alignment, text);
                }
            }
        }
    }
}

/// It is larger than everything that is kept.
TEST(Painting, drawsAVeryLongLine) {
    const QString text(40'000, u'x');
    compareLine(QFont(), Qt::black, QRect(0, 0, 280, 40), allAlignments[0], text);
    EXPECT_EQ(
        wrappedSize(QFont(), text, 280).width(),
        QFontMetrics(QFont()).boundingRect(QRect(0, 0, 280, 1000), Qt::TextWordWrap, text).width());
}

} // namespace
