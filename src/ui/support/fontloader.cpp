#include "ui/support/fontloader.h"

#include <QFontMetrics>

#include <utility>

namespace ellwynd {

void FontLoader::load(std::vector<QFont> fonts) {
    waiting = std::move(fonts);
    timer.start(0);
}

void FontLoader::loadNext() {
    if (waiting.empty())
        return timer.stop();
    // With the signs that are drawn beside words, for which another font may be needed.
    static_cast<void>(
        QFontMetrics(waiting.back()).horizontalAdvance(QStringLiteral("Ag 1 · … — ↑")));
    waiting.pop_back();
}

} // namespace ellwynd
