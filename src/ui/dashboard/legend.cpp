#include "ui/dashboard/legend.h"

#include "app/dashboard/dashboardtexts.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"

#include <QPainter>

#include <algorithm>

namespace ellwynd {

Legend::Legend(const Appearance &appearance, QWidget *parent)
    : QWidget(parent), appearance(appearance) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(QStringLiteral("Legend"));
    QStringList entries;
    for (const LegendEntry &entry : levelLegend)
        entries << qstring(entry.term) + QStringLiteral(": ") + qstring(entry.meaning);
    for (const LegendEntry &entry : markLegend)
        entries << qstring(entry.term) + QStringLiteral(": ") + qstring(entry.meaning);
    setAccessibleDescription(entries.join(u' '));
    connect(&appearance, &Appearance::appearanceDidChange, this, [this] {
        updateGeometry();
        update();
    });
}

QSize Legend::sizeHint() const {
    return {appearance.px(600), heightForWidth(appearance.px(600))};
}

int Legend::heightForWidth(int width) const {
    return layOut(width, nullptr);
}

void Legend::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    layOut(width(), &painter);
}

int Legend::layOut(int width, QPainter *painter) const {
    const Theme &theme = appearance.theme();
    const QFont font = appearance.font(0.9);
    const QFontMetrics metrics(font);
    const int lineHeight =
        pillSize(appearance.style(), QStringLiteral("X")).height() + appearance.px(4);
    QPoint at(0, 0);
    const auto place = [&](const QString &term, std::optional<RiskLevel> level, const QColor &color,
                           const QString &meaning) {
        const int gap = appearance.px(6);
        const int termWidth = level
            ? pillSize(appearance.style(), term).width()
            : QFontMetrics(appearance.font(0.9, QFont::DemiBold)).horizontalAdvance(term);
        const int entryWidth = termWidth + gap + metrics.horizontalAdvance(meaning);
        if (at.x() > 0 && at.x() + entryWidth > width)
            at = QPoint(0, at.y() + lineHeight);
        if (painter != nullptr) {
            const QRect line(at, QSize(width - at.x(), lineHeight));
            if (level) {
                QRect pill(at, pillSize(appearance.style(), term));
                pill.moveTop(at.y() + (lineHeight - pill.height()) / 2);
                drawPill(*painter, pill, term, levelColors(theme, *level), appearance.style());
            } else {
                painter->setFont(appearance.font(0.9, QFont::DemiBold));
                painter->setPen(color);
                painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter, term);
            }
            painter->setFont(font);
            painter->setPen(theme.secondaryText);
            const QRect rest = line.adjusted(termWidth + gap, 0, 0, 0);
            drawElided(*painter, rest, Qt::AlignLeft | Qt::AlignVCenter, meaning);
        }
        at.rx() += entryWidth + appearance.px(20);
    };
    for (std::size_t i = 0; i < std::size(levelLegend); ++i) {
        place(qstring(levelLegend[i].term), allRiskLevels[i], {}, qstring(levelLegend[i].meaning));
    }
    for (const LegendEntry &entry : markLegend) {
        const QColor color = entry.term == "↑" ? theme.atRisk.text
            : entry.term == "↓"                ? theme.ok.text
                                               : theme.text;
        place(qstring(entry.term), std::nullopt, color, qstring(entry.meaning));
    }
    return at.y() + lineHeight;
}

} // namespace ellwynd
