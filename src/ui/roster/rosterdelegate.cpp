#include "ui/roster/rosterdelegate.h"

#include "app/roster/rostertexts.h"
#include "base/calendar.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"
#include "uikit/tooltip.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTableView>
#include <QToolTip>

namespace ellwynd {

RosterDelegate::RosterDelegate(
    const Appearance &appearance, const RosterFilter &filter, QTableView *view)
    : QStyledItemDelegate(view), appearance(appearance), filter(filter), view(view) {}

int RosterDelegate::horizontalPadding() const {
    return appearance.px(10);
}

int RosterDelegate::verticalPadding() const {
    return appearance.px(compact ? 5 : 9);
}

WhyLayout RosterDelegate::layoutOf(const RiskRow &row, int cellWidth) const {
    const auto form = compact           ? WhyLayout::Form::compact
        : expanded.contains(keyOf(row)) ? WhyLayout::Form::expanded
                                        : WhyLayout::Form::normal;
    return {row, cellWidth - 2 * horizontalPadding(), form, appearance};
}

QSize RosterDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const {
    int height = pillSize(appearance.style(), QStringLiteral("X")).height();
    int width = 0;
    if (index.column() == RosterModel::why) {
        height = std::max(
            height, layoutOf(filter.row(index), view->columnWidth(RosterModel::why)).height());
    } else if (index.column() == RosterModel::level) {
        width = pillSize(appearance.style(), QStringLiteral("Concern")).width();
    } else if (index.column() == RosterModel::contacted) {
        const QFontMetrics metrics(appearance.font());
        width = metrics.horizontalAdvance(index.data().toString());
        if (showsFollowUpBelow(filter.row(index)))
            height += metrics.height();
    } else {
        const QFont font = appearance.font(1, QFont::DemiBold);
        width = QFontMetrics(font).horizontalAdvance(index.data().toString());
    }
    return {width + 2 * horizontalPadding(), height + 2 * verticalPadding() + 1};
}

void RosterDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const Theme &theme = appearance.theme();
    const RiskRow &row = filter.row(index);
    painter->save();
    painter->setClipRect(option.rect);
    if (option.state.testFlag(QStyle::State_Selected))
        painter->fillRect(option.rect, theme.selection);
    painter->fillRect(
        QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), theme.separator);
    const bool focused = option.state.testFlag(QStyle::State_HasFocus);

    const QRect cell = option.rect.adjusted(
        horizontalPadding(), verticalPadding(), -horizontalPadding(), -verticalPadding() - 1);
    const int lineHeight = pillSize(appearance.style(), QStringLiteral("X")).height();
    const QRect firstLine(cell.left(), cell.top(), cell.width(), lineHeight);
    switch (index.column()) {
    case RosterModel::level: {
        const int used = drawLevel(*painter, firstLine, row.level, appearance);
        if (const RosterChange *change = filter.roster().change(row))
            drawArrow(*painter, firstLine.adjusted(used + appearance.px(5), 0, 0, 0), *change);
        break;
    }
    case RosterModel::contacted:
        if (const OutreachOutcome *outcome = filter.roster().outcome(row))
            drawContact(*painter, cell, *outcome);
        break;
    case RosterModel::why: {
        const auto hover = hoveredIndex == index ? hovered : std::nullopt;
        const WhyLayout layout = layoutOf(filter.row(index), option.rect.width());
        // The first line is aligned with the level pill.
        const int offset = std::max(0, (lineHeight - QFontMetrics(appearance.font()).height()) / 2);
        layout.draw(*painter, cell.topLeft() + QPoint(0, offset), hover);
        break;
    }
    default: {
        const bool name = index.column() == RosterModel::student;
        painter->setFont(appearance.font(1, name ? QFont::DemiBold : QFont::Normal));
        painter->setPen(index.column() == RosterModel::course ? theme.secondaryText : theme.text);
        const auto align =
            Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()) & Qt::AlignHorizontal_Mask;
        QString text = index.data().toString();
        text.replace(u'\n', u' ');
        drawElided(*painter, firstLine, int(align | Qt::AlignVCenter), text);
    }
    }
    if (focused && index.column() == RosterModel::student) {
        painter->setRenderHint(QPainter::Antialiasing);
        drawFocusRing(*painter, QRectF(option.rect).adjusted(2, 2, -2, -3), 4, theme.accent, 1.5);
    }
    painter->restore();
}

void RosterDelegate::drawArrow(
    QPainter &painter, const QRect &line, const RosterChange &change) const {
    const Theme &theme = appearance.theme();
    painter.setFont(appearance.font(1, QFont::Bold));
    painter.setPen(isWorse(change) ? theme.atRisk.text : theme.ok.text);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, qstring(arrowOf(change)));
}

bool RosterDelegate::showsFollowUpBelow(const RiskRow &row) const {
    const OutreachOutcome *outcome = filter.roster().outcome(row);
    return !compact && outcome != nullptr && !followUpWord(*outcome).empty();
}

/// Draws the contact's date, and below it the outcome if the student awaits follow-up.
void RosterDelegate::drawContact(
    QPainter &painter, const QRect &cell, const OutreachOutcome &outcome) const {
    const Theme &theme = appearance.theme();
    const int lineHeight = pillSize(appearance.style(), QStringLiteral("X")).height();
    const QRect line(cell.left(), cell.top(), cell.width(), lineHeight);
    const QString word = qstring(followUpWord(outcome));
    const bool below = !compact && !word.isEmpty();
    painter.setFont(appearance.font());
    painter.setPen(word.isEmpty() || below ? theme.text : theme.concern.text);
    const QString text =
        below ? qstring(calendar::shortDay(outcome.contactedAt)) : qstring(contactedText(outcome));
    drawElided(painter, line, Qt::AlignLeft | Qt::AlignVCenter, text);
    if (below) {
        painter.setPen(theme.concern.text);
        const QRect second = line.translated(0, painter.fontMetrics().height());
        painter.drawText(second, Qt::AlignLeft | Qt::AlignVCenter, word);
    }
}

std::optional<WhyTarget> RosterDelegate::targetAt(
    QPoint position, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    if (index.column() != RosterModel::why)
        return std::nullopt;
    const QPoint origin = option.rect.topLeft() + QPoint(horizontalPadding(), verticalPadding());
    return layoutOf(filter.row(index), option.rect.width()).targetAt(position - origin);
}

bool RosterDelegate::editorEvent(
    QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
    const QModelIndex &index) {
    if (event->type() == QEvent::MouseMove) {
        const auto target =
            targetAt(static_cast<QMouseEvent *>(event)->position().toPoint(), option, index);
        if (target != hovered || hoveredIndex != index) {
            hovered = target;
            hoveredIndex = index;
            view->viewport()->setCursor(target ? Qt::PointingHandCursor : Qt::ArrowCursor);
            view->viewport()->update();
        }
        return false;
    }
    if (event->type() != QEvent::MouseButtonRelease)
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    const auto *mouse = static_cast<QMouseEvent *>(event);
    const auto target = targetAt(mouse->position().toPoint(), option, index);
    if (!target || mouse->button() != Qt::LeftButton || mouse->modifiers() != Qt::NoModifier)
        return false;
    const RiskRow row = filter.row(index);
    if (const auto *assignment = std::get_if<AssignmentRef>(&*target)) {
        Q_EMIT assignmentRequested(row, assignment->id);
    } else if (std::holds_alternative<GradesTarget>(*target)) {
        Q_EMIT gradesRequested(row);
    } else {
        expand(index);
    }
    return true;
}

bool RosterDelegate::helpEvent(
    QHelpEvent *event, QAbstractItemView *where, const QStyleOptionViewItem &option,
    const QModelIndex &index) {
    QString tip = index.data(Qt::ToolTipRole).toString();
    if (const auto target = targetAt(event->pos(), option, index)) {
        if (const auto *assignment = std::get_if<AssignmentRef>(&*target))
            tip = QStringLiteral("Open “%1” in Canvas").arg(qstring(assignment->name));
        else if (std::holds_alternative<GradesTarget>(*target))
            tip = QStringLiteral("Open the grades in Canvas");
        else
            tip = qstring(moreAccessibleText(std::get<ShowMore>(*target).hidden));
    } else if (tip.isEmpty()) {
        QToolTip::hideText();
        return true;
    }
    QToolTip::showText(event->globalPos(), plainToolTip(tip), where);
    return true;
}

void RosterDelegate::expand(const QModelIndex &index) {
    expanded.insert(keyOf(filter.row(index)));
    Q_EMIT rowHeightDidChange(index);
}

std::size_t RosterDelegate::hiddenNames(const RiskRow &row) const {
    return layoutOf(row, view->columnWidth(RosterModel::why)).hiddenNames();
}

void RosterDelegate::clearHover() {
    hovered.reset();
    hoveredIndex = QModelIndex();
    view->viewport()->unsetCursor();
    view->viewport()->update();
}

} // namespace ellwynd
