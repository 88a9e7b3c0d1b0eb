#include "ui/details/signalbars.h"

#include "app/explain/explaintexts.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/painting.h"

#include <QPainter>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr double fontFactor = 0.86;

} // namespace

SignalBars::SignalBars(const RiskRow &row, const Appearance &appearance, QWidget *parent)
    : QWidget(parent), shares(row.signals), appearance(appearance) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    const QString text = qstring(signalsText(row));
    setAccessibleName(text);
    setToolTip(
        QStringLiteral("What each signal added to the score of %1").arg(row.score, 0, 'f', 2));
}

int SignalBars::lineHeight() const {
    return QFontMetrics(appearance.font(fontFactor)).height() + appearance.px(2);
}

QSize SignalBars::sizeHint() const {
    constexpr int width = 200;
    return {appearance.px(width), lineHeight() * int(allSignals.size())};
}

void SignalBars::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme &theme = appearance.theme();
    painter.setFont(appearance.font(fontFactor));
    const QFont &font = painter.font();
    int nameWidth = 0;
    int figureWidth = 0;
    for (const Signal signal : allSignals) {
        nameWidth = std::max(nameWidth, textWidth(font, qstring(signalName(signal))));
        figureWidth = std::max(figureWidth, textWidth(font, qstring(shareText(shares[signal]))));
    }
    const int gap = appearance.px(8);
    const int left = nameWidth + gap;
    const int right = width() - figureWidth - gap;
    const double thickness = appearance.px(4);
    int top = 0;
    for (const Signal signal : allSignals) {
        const QRect line(0, top, width(), lineHeight());
        top += lineHeight();
        painter.setPen(theme.secondaryText);
        drawLine(painter, line, Qt::AlignLeft | Qt::AlignVCenter, qstring(signalName(signal)));
        drawLine(
            painter, line, Qt::AlignRight | Qt::AlignVCenter, qstring(shareText(shares[signal])));
        if (!shares[signal])
            continue;
        painter.setPen(Qt::NoPen);
        const double middle = line.top() + line.height() / 2.0;
        QRectF bar(left, middle - thickness / 2, right - left, thickness);
        painter.setBrush(theme.separator);
        painter.drawRoundedRect(bar, thickness / 2, thickness / 2);
        bar.setWidth(bar.width() * std::clamp(*shares[signal] / maxSignalShare, 0.0, 1.0));
        if (bar.width() >= 1) {
            bar.setWidth(std::max(bar.width(), thickness));
            painter.setBrush(theme.accent);
            painter.drawRoundedRect(bar, thickness / 2, thickness / 2);
        }
    }
}

} // namespace ellwynd
