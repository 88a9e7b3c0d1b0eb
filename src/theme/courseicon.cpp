#include "theme/courseicon.h"

#include "theme/courseglyphs.h"

#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <array>

namespace ellwynd {

namespace {

/// In the order of `colorWords`.
constexpr std::array<QRgb, courseSettings::colorWords.size()> tileColors{
    0xff2f6bdb, 0xffc2408a, 0xff7552cc, 0xff0f7f76, 0xffb45f06,
    0xff2f7a46, 0xffb3403a, 0xff4a6785, 0xff8a5a2b, 0xff5b6abf};

/// The tile without its margin, in whole pixels. Small tiles have a narrower margin.
QRectF glyphBox(int tile) {
    const int margin = tile * (tile < 24 ? 15 : 19) / 100;
    return QRectF(0, 0, tile, tile).adjusted(margin, margin, -margin, -margin);
}

} // namespace

QString courseInitials(std::string_view courseName) {
    QString letters;
    const QString name = QString::fromUtf8(courseName.data(), qsizetype(courseName.size()));
    for (const QChar c : name) {
        const bool isLetter = c.isLetter();
        if (isLetter)
            letters += c.toUpper();
        if (letters.size() == 3 || (!letters.isEmpty() && !isLetter))
            break;
    }
    return letters;
}

QColor courseColor(std::int64_t courseID, std::string_view chosen) {
    const auto &words = courseSettings::colorWords;
    if (const auto *word = std::ranges::find(words, chosen); word != words.end())
        return tileColors[std::size_t(word - words.begin())];
    // By digit sum, so that consecutive ids, which are common in a term, get different colours.
    std::size_t sum = 0;
    for (std::uint64_t rest = std::uint64_t(courseID); rest > 0; rest /= 10)
        sum += rest % 10;
    return tileColors[sum % tileColors.size()];
}

QPixmap courseTile(
    std::int64_t courseID, std::string_view courseName, int size, qreal pixelRatio,
    const CourseIcon &chosen) {
    QPixmap pixmap(QSize(size, size) * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(courseColor(courseID, chosen.color));
    painter.drawRoundedRect(QRectF(0, 0, size, size), size * 0.26, size * 0.26);
    if (drawCourseGlyph(painter, chosen.icon, glyphBox(size), Qt::white))
        return pixmap;
    QFont font = QGuiApplication::font();
    const QString letters = courseInitials(courseName);
    font.setPixelSize(std::max(6, int(size * (letters.size() > 2 ? 0.34 : 0.44))));
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(0, 0, size, size), Qt::AlignCenter, letters);
    return pixmap;
}

} // namespace ellwynd
