#include "uikit/painting.h"

#include <QCache>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QHash>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace ellwynd {

namespace {

struct LineKey {
    QFont font;
    QString text;

    bool operator==(const LineKey &other) const = default;
};

size_t qHash(const LineKey &key, size_t seed = 0) {
    return qHashMulti(seed, key.font, key.text);
}

/// A text in a space of limited width.
struct FittedKey {
    LineKey text;
    int width;
    Qt::TextElideMode mode = Qt::ElideNone;

    bool operator==(const FittedKey &other) const = default;
};

size_t qHash(const FittedKey &key, size_t seed = 0) {
    return qHashMulti(seed, key.text, key.width, int(key.mode));
}

QString asOneLine(QString text) {
    for (QChar &c : text) {
        if (c == u'\n' || c == u'\r' || c == u'\t')
            c = u' ';
    }
    return text;
}

/// A line that was shaped once and can be drawn many times.
class Line {
  public:
    explicit Line(const LineKey &key) : layout(key.text, key.font) {
        QTextOption option;
        option.setWrapMode(QTextOption::NoWrap);
        option.setFlags(QTextOption::IncludeTrailingSpaces);
        // Where the line begins is decided when it is drawn.
        option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
        option.setTextDirection(Qt::LeftToRight);
        layout.setTextOption(option);
        layout.setCacheEnabled(true);
        layout.beginLayout();
        constexpr int unlimited = 0x01000000;
        layout.createLine().setLineWidth(unlimited);
        layout.endLayout();
    }

    [[nodiscard]] double width() const { return layout.lineAt(0).horizontalAdvance(); }

    void draw(QPainter &painter, const QRectF &rect, int alignment) const {
        const QTextLine line = layout.lineAt(0);
        // The height of a QTextLine is rounded up, which moves the text by a pixel.
        const double height = line.ascent() + line.descent();
        QPointF at = rect.topLeft();
        if ((alignment & Qt::AlignVCenter) != 0)
            at.ry() += (rect.height() - height) / 2;
        if ((alignment & Qt::AlignRight) != 0)
            at.rx() += rect.width() - width();
        else if ((alignment & Qt::AlignHCenter) != 0)
            at.rx() += (rect.width() - width()) / 2;
        const bool fits = rect.contains(QRectF(at, QSizeF(width(), height)));
        if (!fits) {
            painter.save();
            painter.setClipRect(rect, Qt::IntersectClip);
        }
        line.draw(&painter, at);
        if (!fits)
            painter.restore();
    }

  private:
    QTextLayout layout;
};

/// How much is kept: more than a window shows at once, in about a megabyte. A line takes some 30
/// bytes for each character, and as much as 16 characters besides.
constexpr qsizetype keptCharacters = 30'000;

/// Not more than all, since a cache refuses to keep what costs more.
qsizetype costOf(const LineKey &key) {
    constexpr qsizetype fixed = 16;
    return std::min(key.text.size() + fixed, keptCharacters);
}

struct KeptLines;
KeptLines &kept();

struct KeptLines {
    /// A font must not be destroyed after the application.
    KeptLines() {
        qAddPostRoutine([] { kept().clear(); });
    }

    void clear() {
        characters.clear();
        lines.clear();
        wrapped.clear();
        elided.clear();
    }

    QHash<QFont, CharacterWidths> characters;
    QCache<LineKey, Line> lines{keptCharacters};
    QCache<FittedKey, QSize> wrapped{keptCharacters};
    QCache<FittedKey, QString> elided{keptCharacters};

    const Line &line(const LineKey &key) {
        if (const Line *known = lines.object(key))
            return *known;
        auto *line = new Line(key);
        lines.insert(key, line, costOf(key));
        return *line;
    }

    const QString &elidedText(const FittedKey &key) {
        if (const QString *known = elided.object(key))
            return *known;
        auto *text =
            new QString(QFontMetrics(key.text.font).elidedText(key.text.text, key.mode, key.width));
        elided.insert(key, text, costOf(key.text));
        return *text;
    }
};

KeptLines &kept() {
    static KeptLines all;
    return all;
}

} // namespace

void forgetTexts() {
    kept().clear();
}

CharacterWidths::CharacterWidths(const QFont &font) {
    // The width of a character is without the space that such a font adds.
    if (font.letterSpacing() != 0)
        return;
    const QFontMetricsF metrics(font);
    // Few characters of any script are wider.
    widest = 2 * metrics.height();
    widths.fill(widest);
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const QChar c{ushort(i)};
        // For a character that no font has, all fonts are searched.
        if (c.isPrint())
            widths[i] = metrics.horizontalAdvance(c);
    }
}

bool CharacterWidths::surelyFit(const QString &text, int width) const {
    double sum = 0;
    for (const QChar c : text)
        sum += c.unicode() < widths.size() ? widths[c.unicode()] : widest;
    return sum <= width;
}

bool CharacterWidths::surelyExceed(const QString &text, int width) const {
    // Kerning takes a few hundredths of a text's width.
    constexpr double closest = 0.9;
    double sum = 0;
    for (const QChar c : text)
        sum +=
            c.unicode() < widths.size() && widths[c.unicode()] < widest ? widths[c.unicode()] : 0;
    return sum * closest > width;
}

int textWidth(const QFont &font, const QString &text) {
    return qRound(kept().line({font, asOneLine(text)}).width());
}

bool fitsWidth(const QFont &font, const QString &text, int width) {
    auto known = kept().characters.find(font);
    if (known == kept().characters.end())
        known = kept().characters.insert(font, CharacterWidths(font));
    if (known->surelyFit(text, width))
        return true;
    return !known->surelyExceed(text, width) && textWidth(font, text) <= width;
}

QSize wrappedSize(const QFont &font, const QString &text, int width) {
    const FittedKey key{{font, text}, width};
    if (const QSize *known = kept().wrapped.object(key))
        return *known;
    constexpr int unlimited = 1'000'000;
    const QSize size = QFontMetrics(font)
                           .boundingRect(
                               QRect(0, 0, width, unlimited),
                               int(Qt::AlignLeft | Qt::AlignTop) | int(Qt::TextWordWrap), text)
                           .size();
    kept().wrapped.insert(key, new QSize(size), costOf(key.text));
    return size;
}

void drawLine(QPainter &painter, const QRect &rect, int alignment, const QString &text) {
    kept().line({painter.font(), asOneLine(text)}).draw(painter, rect, alignment);
}

int drawElided(
    QPainter &painter, const QRect &rect, int alignment, const QString &text,
    Qt::TextElideMode mode) {
    const LineKey whole{painter.font(), asOneLine(text)};
    const Line *line = &kept().line(whole);
    if (line->width() > rect.width())
        line = &kept().line({whole.font, kept().elidedText({whole, rect.width(), mode})});
    line->draw(painter, rect, alignment);
    return qRound(line->width());
}

void drawFocusRing(
    QPainter &painter, const QRectF &outline, double radius, const QColor &color, double width) {
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(outline, radius, radius);
}

} // namespace ellwynd
