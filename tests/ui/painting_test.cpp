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
        QString oneLine = text;
        oneLine.replace(u'\n', u' ').replace(u'\t', u' ');
        for (const QFont &font : {QFont(), bold, spaced}) {
            const QFontMetrics metrics(font);
            const int width = metrics.horizontalAdvance(oneLine);
            EXPECT_EQ(textWidth(font, text), width) << qPrintable(text);
            EXPECT_TRUE(fitsWidth(font, text, width)) << qPrintable(text);
            EXPECT_FALSE(fitsWidth(font, text, width - 1)) << qPrintable(text);
            for (const int lineWidth : {70, 280}) {
                EXPECT_EQ(
                    wrappedSize(font, text, lineWidth),
                    metrics.boundingRect(QRect(0, 0, lineWidth, 1000), Qt::TextWordWrap, text)
                        .size())
                    << qPrintable(text) << " in lines of " << lineWidth;
            }
            for (const QRect &rect :
                 {QRect(10, 5, 280, 40), QRect(10, 5, 70, 40), QRect(10, 5, 3, 40),
                  QRect(40, 20, 200, 7)}) {
                for (const int alignment : allAlignments) {
                    // The second time the line is known, and the colour is another.
                    for (const QColor &pen : {QColor(Qt::black), QColor(Qt::red)}) {
                        const QString elided =
                            metrics.elidedText(oneLine, Qt::ElideMiddle, rect.width());
                        int used = 0;
                        EXPECT_EQ(
                            drawn(
                                font, pen,
                                [&](QPainter &painter) {
                                    used =
                                        drawElided(painter, rect, alignment, text, Qt::ElideMiddle);
                                }),
                            drawn(
                                font, pen,
                                [&](QPainter &painter) {
                                    painter.drawText(rect, alignment | Qt::TextSingleLine, elided);
                                }))
                            << qPrintable(text) << " elided, " << alignment;
                        EXPECT_EQ(used, metrics.horizontalAdvance(elided)) << qPrintable(text);
                        EXPECT_EQ(
                            drawn(
                                font, pen,
                                [&](QPainter &painter) {
                                    drawLine(painter, rect, alignment, text);
                                }),
                            drawn(
                                font, pen,
                                [&](QPainter &painter) {
                                    painter.drawText(rect, alignment | Qt::TextSingleLine, text);
                                }))
                            << qPrintable(text) << " clipped, " << alignment;
                    }
                }
            }
        }
    }
}

/// It is larger than everything that is kept.
TEST(Painting, drawsAVeryLongLine) {
    const QString text(40'000, u'x');
    const QRect rect(0, 0, 280, 40);
    const auto draw = [&](QPainter &painter) {
        drawElided(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, text);
    };
    const auto drawAnew = [&](QPainter &painter) {
        const QString elided = painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width());
        painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, elided);
    };
    EXPECT_EQ(drawn(QFont(), Qt::black, draw), drawn(QFont(), Qt::black, drawAnew));
    EXPECT_EQ(
        wrappedSize(QFont(), text, 280).width(),
        QFontMetrics(QFont()).boundingRect(QRect(0, 0, 280, 1000), Qt::TextWordWrap, text).width());
}

} // namespace
