#include "ui/mainwindow/panewidths.h"

#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QSplitter>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ellwynd {

namespace {

using namespace std::chrono_literals;

constexpr double defaultWidth = 272;
constexpr double leastWidth = 100;
constexpr double mostWidth = 2000;
/// The share of the window that both outer panes get at most.
constexpr double outerShare = 0.55;
/// Longer than the pauses between the events of one drag.
constexpr auto saveDelay = 500ms;

} // namespace

PaneWidths::PaneWidths(QSplitter &splitter, const Appearance &appearance, UserDefaults &defaults)
    : QObject(&splitter),
      splitter(splitter),
      appearance(appearance),
      defaults(defaults),
      sidebar(defaultWidth),
      details(defaultWidth) {
    saveSoon.setSingleShot(true);
    saveSoon.setInterval(saveDelay);
    restore();
    connect(&saveSoon, &QTimer::timeout, this, &PaneWidths::save);
    connect(&splitter, &QSplitter::splitterMoved, this, &PaneWidths::setByTeacher);
    connect(&appearance, &Appearance::appearanceDidChange, this, &PaneWidths::apply);
    apply();
}

PaneWidths::~PaneWidths() {
    if (saveSoon.isActive())
        save();
}

void PaneWidths::apply() {
    const int total = splitter.width();
    double left = appearance.px(sidebar);
    double right = splitter.widget(2)->isHidden() ? 0 : appearance.px(details);
    if (const double most = total * outerShare; left + right > most) {
        const double shrink = most / (left + right);
        left *= shrink;
        right *= shrink;
    }
    splitter.setSizes({int(left), total - int(left) - int(right), int(right)});
}

/// The saved form is "272 272": the sidebar's and the details' width. An earlier version saved the
/// state of the splitter.
void PaneWidths::restore() {
    const QString saved = qstring(defaults.value(preferences::mainWindowColumns));
    const QStringList words = saved.split(u' ');
    if (words.size() == 2) {
        const auto width = [](const QString &word) {
            bool isNumber = false;
            const double number = word.toDouble(&isNumber);
            return isNumber && std::isfinite(number) ? std::clamp(number, leastWidth, mostWidth)
                                                     : defaultWidth;
        };
        sidebar = width(words[0]);
        details = width(words[1]);
    } else if (splitter.restoreState(QByteArray::fromBase64(saved.toLatin1()))) {
        setByTeacher();
    }
}

void PaneWidths::setByTeacher() {
    const QList<int> sizes = splitter.sizes();
    const double unit = appearance.px(defaultWidth) / defaultWidth;
    if (sizes[0] > 0)
        sidebar = std::clamp(sizes[0] / unit, leastWidth, mostWidth);
    if (sizes[2] > 0)
        details = std::clamp(sizes[2] / unit, leastWidth, mostWidth);
    saveSoon.start();
}

void PaneWidths::save() {
    saveSoon.stop();
    defaults.set(preferences::mainWindowColumns, fmt::format("{:.0f} {:.0f}", sidebar, details));
}

} // namespace ellwynd
