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

/// Those in which courses, assignments and students are named: first those of the cards, then those
/// of lists and headings. Each takes up to a megabyte of memory.
constexpr std::array nameFonts{
    NameFont{0.92, QFont::Normal}, NameFont{0.92, QFont::Medium}, NameFont{1, QFont::DemiBold},
    NameFont{1, QFont::Bold},      NameFont{1, QFont::Normal},    NameFont{1, QFont::Medium},
    NameFont{1.24, QFont::Bold},
};

/// An emoji among letters, and a script that is in fonts of its own: few fonts have either. Each
/// script of a text is looked up separately.
const std::array<QString, 2> samples{QStringLiteral("a\U0001f98a"), QStringLiteral("\u5c71")};

} // namespace

void findFirstFonts(const Appearance &appearance) {
    for (const QFont &font :
         {appearance.font(), appearance.font(1, QFont::DemiBold), appearance.font(0.92)})
        static_cast<void>(QFontMetrics(font).horizontalAdvance(QStringLiteral("a 1")));
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
    timer.start(0);
}

void FontPreparation::prepareNext() {
    const NameFont &next = nameFonts.at(prepared.size() / samples.size());
    const QString &sample = samples.at(prepared.size() % samples.size());
    prepared.push_back(appearance.font(next.factor, next.weight));
    static_cast<void>(QFontMetrics(prepared.back()).horizontalAdvance(sample));
    if (prepared.size() == nameFonts.size() * samples.size())
        timer.stop();
}

} // namespace ellwynd
