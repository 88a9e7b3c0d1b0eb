#include "ui/mainwindow/panesplitter.h"

#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ellwynd {

namespace {

using namespace std::chrono_literals;

constexpr double defaultWidth = 272;
constexpr double leastWidth = 100;
constexpr double mostWidth = 2000;
/// The shares of the window that the sidebar and both outer panes get at most.
constexpr double sidebarShare = 0.38;
/// Below this width of the middle pane, in units of the text size, the sidebar gets a smaller
/// share.
constexpr double enoughMiddle = 360;
constexpr double smallSidebarShare = 0.32;
constexpr double outerShare = 0.55;
/// Longer than the pauses between the events of one drag.
constexpr auto saveDelay = 500ms;

} // namespace

PaneSplitter::PaneSplitter(const Appearance &appearance, UserDefaults &defaults, QWidget *parent)
    : QSplitter(parent),
      appearance(appearance),
      defaults(defaults),
      sidebar(defaultWidth),
      details(defaultWidth) {
    setChildrenCollapsible(false);
    setHandleWidth(1);
    saveSoon.setSingleShot(true);
    saveSoon.setInterval(saveDelay);
    connect(&saveSoon, &QTimer::timeout, this, &PaneSplitter::save);
    connect(this, &QSplitter::splitterMoved, this, &PaneSplitter::setByTeacher);
    connect(&appearance, &Appearance::appearanceDidChange, this, &PaneSplitter::applyWidths);
}

PaneSplitter::~PaneSplitter() {
    if (saveSoon.isActive())
        save();
}

void PaneSplitter::resizeEvent(QResizeEvent *event) {
    QSplitter::resizeEvent(event);
    applyWidths();
}

void PaneSplitter::applyWidths() {
    if (count() < 3)
        return;
    const int total = width() - (count() - 1) * handleWidth();
    double left = std::min<double>(appearance.px(sidebar), total * sidebarShare);
    if (total - left < appearance.px(enoughMiddle))
        left = std::min(left, total * smallSidebarShare);
    double right = widget(2)->isHidden() ? 0 : appearance.px(details);
    if (const double most = total * outerShare; left + right > most) {
        const double shrink = most / (left + right);
        left *= shrink;
        right *= shrink;
    }
    setSizes({int(left), total - int(left) - int(right), int(right)});
}

/// The saved form is "272 272": the sidebar's and the details' width. An earlier version saved the
/// state of the splitter.
void PaneSplitter::restoreWidths() {
    const QString saved = qstring(defaults.value(preferences::mainWindowColumns));
    const QStringList words = saved.split(u' ');
    if (words.size() == 2) {
        const auto widthOf = [](const QString &word) {
            bool isNumber = false;
            const double number = word.toDouble(&isNumber);
            return isNumber && std::isfinite(number) ? std::clamp(number, leastWidth, mostWidth)
                                                     : defaultWidth;
        };
        sidebar = widthOf(words[0]);
        details = widthOf(words[1]);
    } else if (restoreState(QByteArray::fromBase64(saved.toLatin1()))) {
        setByTeacher();
    }
    applyWidths();
}

void PaneSplitter::setByTeacher() {
    const QList<int> current = sizes();
    const double unit = appearance.px(defaultWidth) / defaultWidth;
    if (current[0] > 0)
        sidebar = std::clamp(current[0] / unit, leastWidth, mostWidth);
    if (current[2] > 0)
        details = std::clamp(current[2] / unit, leastWidth, mostWidth);
    saveSoon.start();
}

void PaneSplitter::save() {
    saveSoon.stop();
    defaults.set(preferences::mainWindowColumns, fmt::format("{:.0f} {:.0f}", sidebar, details));
}

} // namespace ellwynd
