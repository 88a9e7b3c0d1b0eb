#include "ui/support/fontpreparation.h"

#include "ui/support/appearance.h"

#include <QFontMetrics>

#include <array>

namespace ellwynd {

namespace {

struct NameFont {
    double factor;
    QFont::Weight weight;
};

/// Those in which students are named: first those of lists, then that of the details. Each takes up
/// to a megabyte of memory, so those that name only courses and assignments, where such characters
/// are rare, are left out.
constexpr std::array nameFonts{
    NameFont{0.92, QFont::Medium},
    NameFont{1, QFont::DemiBold},
    NameFont{1, QFont::Normal},
};

/// Those of the captions and signs of a course, which have only letters and figures.
constexpr std::array captionFonts{
    NameFont{0.78, QFont::DemiBold},
    NameFont{0.8, QFont::DemiBold},
    NameFont{0.86, QFont::Normal},
};

const QString letters = QStringLiteral("a 1");
/// Characters that few fonts have. Each script of a text is looked for separately, in one font
/// after the other. A danda and a clef belong to the same script as an emoji, and are found before
/// it, so that the search for the emoji takes several short steps.
const std::array<QString, 4> samples{
    QStringLiteral("a\u0964"), QStringLiteral("a\U0001d11e"), QStringLiteral("a\U0001f98a"),
    QStringLiteral("\u5c71")};

} // namespace

void findFirstFonts(const Appearance &appearance) {
    for (const QFont &font :
         {appearance.font(), appearance.font(1, QFont::DemiBold), appearance.font(0.92)})
        static_cast<void>(QFontMetrics(font).horizontalAdvance(letters));
}

FontPreparation::FontPreparation(const Appearance &appearance, QObject *parent)
    : QObject(parent), appearance(appearance) {
    connect(&timer, &QTimer::timeout, this, &FontPreparation::prepareNext);
    connect(&appearance, &Appearance::appearanceDidChange, this, [this] {
        if (!prepared.empty())
            start();
    });
}

void FontPreparation::start() {
    prepared.clear();
    waiting.clear();
    for (const NameFont &font : nameFonts) {
        for (const QString &sample : samples)
            waiting.emplace_back(appearance.font(font.factor, font.weight), sample);
    }
    for (const NameFont &font : captionFonts)
        waiting.emplace_back(appearance.font(font.factor, font.weight), letters);
    timer.start(0);
}

void FontPreparation::prepareNext() {
    const auto [font, sample] = waiting.front();
    waiting.pop_front();
    static_cast<void>(QFontMetrics(font).horizontalAdvance(sample));
    prepared.push_back(font);
    if (waiting.empty())
        timer.stop();
}

} // namespace ellwynd
