#include "ui/roster/rosterdelegate.h"

#include "app/courses/courselabel.h"
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

#include <algorithm>
#include <cmath>
#include <utility>

namespace ellwynd {

namespace {

QFont nameFont(const Appearance &appearance) {
    return appearance.font(1, QFont::DemiBold);
}

/// Breaks a text into lines of that width, and returns their height.
int layLines(QTextLayout &layout, int width, int lineHeight) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    int y = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1, width));
        line.setPosition({0, y + (lineHeight - line.height()) / 2.0});
        y += lineHeight;
    }
    layout.endLayout();
    return std::max(lineHeight, y);
}

} // namespace

RosterDelegate::RosterDelegate(
    const Appearance &appearance, const RosterModel &model, QTableView *view)
    : QStyledItemDelegate(view), appearance(appearance), model(model), view(view) {}

void RosterDelegate::setForm(const RowForm &newForm) {
    if (newForm != form || nameFont(appearance) != measuredFont)
        forgetTexts();
    form = newForm;
    if (nameFont(appearance) != measuredFont) {
        measuredFont = nameFont(appearance);
        characterWidths = CharacterWidths(measuredFont);
    }
    lineHeight = pillSize(appearance.style(), QStringLiteral("X")).height();
    reasonHeight = QFontMetrics(reasonFont(appearance)).height();
}

void RosterDelegate::forgetTexts() {
    laidReasons.clear();
    nameHeights.clear();
}

int RosterDelegate::leftMargin() const {
    return appearance.px(18);
}

int RosterDelegate::horizontalPadding() const {
    return appearance.px(10);
}

int RosterDelegate::verticalPadding() const {
    return appearance.px(5);
}

int RosterDelegate::nameHeight(const QString &name) const {
    if (characterWidths.surelyFit(name, form.nameWidth))
        return lineHeight;
    if (const auto known = nameHeights.constFind(name); known != nameHeights.constEnd())
        return *known;
    QTextLayout layout(name, nameFont(appearance));
    const int height = layLines(layout, form.nameWidth, lineHeight);
    constexpr qsizetype kept = 10'000;
    if (nameHeights.size() == kept)
        nameHeights.clear();
    nameHeights.insert(name, height);
    return height;
}

int RosterDelegate::normalHeight() const {
    int height = lineHeight + 2 * verticalPadding() + 1;
    if (!form.compact) {
        height += (form.reasonLines + (form.narrow ? 1 : 0)) * reasonHeight;
    }
    return height;
}

int RosterDelegate::heightOf(int row) const {
    if (model.isFold(row))
        return lineHeight + 2 * appearance.px(8);
    const RiskRow &student = model.row(row);
    const QString name = qstring(collapsed(student.name));
    int height = normalHeight() + nameHeight(name) - lineHeight;
    if (!form.compact && student.reasonLines.empty())
        height -= form.reasonLines * reasonHeight;
    return height;
}

void RosterDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const Theme &theme = appearance.theme();
    painter->save();
    painter->setClipRect(option.rect);
    const bool fold = model.isFold(index.row());
    if (option.state.testFlag(QStyle::State_Selected))
        painter->fillRect(option.rect, theme.selection);
    else if (fold)
        painter->fillRect(option.rect, theme.surface);
    painter->fillRect(
        QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), theme.separator);
    if (fold) {
        painter->restore();
        return;
    }
    const RiskRow &row = model.row(index.row());
    const QRect line(
        option.rect.left() + horizontalPadding(), option.rect.top() + verticalPadding(),
        option.rect.width() - 2 * horizontalPadding(), lineHeight);
    switch (index.column()) {
    case RosterModel::level: {
        const QRect place = line.adjusted(leftMargin() - horizontalPadding(), 0, 0, 0);
        const int used = drawLevel(*painter, place, row.level, appearance);
        if (const RosterChange *change = model.roster().change(row))
            drawArrow(*painter, place.adjusted(used + appearance.px(5), 0, 0, 0), *change);
        break;
    }
    case RosterModel::student:
        drawName(*painter, line, index.data().toString());
        break;
    case RosterModel::contacted:
        if (const OutreachOutcome *outcome = model.roster().outcome(row))
            drawContact(*painter, line, *outcome);
        break;
    default: {
        painter->setFont(appearance.font());
        painter->setPen(index.column() == RosterModel::course ? theme.secondaryText : theme.text);
        const auto align =
            Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()) & Qt::AlignHorizontal_Mask;
        drawElided(*painter, line, int(align | Qt::AlignVCenter), index.data().toString());
    }
    }
    painter->restore();
}

void RosterDelegate::paintText(QPainter &painter, const QRect &rect, int row) const {
    if (model.isFold(row)) {
        paintFold(painter, rect, row);
        return;
    }
    const RiskRow &student = model.row(row);
    const QPoint at = reasonsAt(student, rect);
    painter.save();
    painter.setClipRect(rect);
    if (form.narrow && !form.compact) {
        painter.setFont(reasonFont(appearance));
        painter.setPen(appearance.theme().text);
        drawElided(
            painter, QRect(at.x(), at.y() - reasonHeight, form.textWidth, reasonHeight),
            Qt::AlignLeft | Qt::AlignVCenter, model.figures(row, form.severalCourses));
    }
    if (!student.reasonLines.empty())
        reasonsOf(student)->draw(painter, at, hoveredRow == row ? hovered : std::nullopt);
    if (view->hasFocus() && view->currentIndex().row() == row) {
        painter.setRenderHint(QPainter::Antialiasing);
        drawFocusRing(
            painter, QRectF(rect).adjusted(2, 2, -2, -3), 4, appearance.theme().accent, 1.5);
    }
    painter.restore();
}

void RosterDelegate::paintFold(QPainter &painter, const QRect &rect, int row) const {
    const Theme &theme = appearance.theme();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double r = appearance.px(3);
    painter.setPen(QPen(theme.secondaryText, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF arrow(leftMargin() + r, rect.center().y());
    painter.drawPolyline(QPolygonF{
        arrow + QPointF(-r / 2, -r), arrow + QPointF(r / 2, 0), arrow + QPointF(-r / 2, r)});
    QRect text = rect.adjusted(leftMargin() + appearance.px(14), 0, 0, -1);
    text.setRight(form.right);
    painter.setFont(appearance.font(1, QFont::Medium));
    painter.setPen(theme.text);
    drawElided(
        painter, text, Qt::AlignLeft | Qt::AlignVCenter, model.index(row, 0).data().toString());
    painter.setPen(theme.link);
    drawLine(painter, text, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Show"));
    if (view->hasFocus() && view->currentIndex().row() == row)
        drawFocusRing(painter, QRectF(rect).adjusted(2, 2, -2, -3), 4, theme.accent, 1.5);
    painter.restore();
}

/// Draws the name with what was searched for marked; in a compact row, the first reason beside it.
void RosterDelegate::drawName(QPainter &painter, const QRect &cell, const QString &name) const {
    const Theme &theme = appearance.theme();
    const std::vector<MatchedPart> matches = matchedParts(name.toStdString(), model.query().typed);
    painter.setPen(theme.text);
    if (matches.empty() && characterWidths.surelyFit(name, form.nameWidth)) {
        painter.setFont(nameFont(appearance));
        const QRect line(form.nameLeft, cell.top(), form.nameWidth, lineHeight);
        drawLine(painter, line, Qt::AlignLeft | Qt::AlignVCenter, name);
        return;
    }
    QTextLayout layout(name, nameFont(appearance));
    layLines(layout, form.nameWidth, lineHeight);
    QList<QTextLayout::FormatRange> formats;
    for (const MatchedPart &part : matches) {
        QTextCharFormat format;
        format.setBackground(theme.watch.fill);
        format.setForeground(theme.watch.text);
        formats.push_back({int(part.begin), int(part.length), format});
    }
    layout.draw(&painter, QPointF(form.nameLeft, cell.top()), formats);
}

std::shared_ptr<const ReasonLayout> RosterDelegate::reasonsOf(const RiskRow &row) const {
    const QString match =
        qstring(matchedAssignmentsText(row, model.roster().courseCode(row), model.query().typed));
    const auto known = std::ranges::find_if(laidReasons, [&](const LaidReasons &laid) {
        return laid.match == match && laid.sentences == row.reasonLines;
    });
    if (known != laidReasons.end()) {
        // Equal sentences of a newer roster, so that the old one can be released.
        known->sentences = row.reasonLines;
        std::rotate(known, known + 1, laidReasons.end());
        return laidReasons.back().layout;
    }
    constexpr std::size_t kept = 100;
    if (laidReasons.size() == kept)
        laidReasons.pop_front();
    const ReasonLayout::Form lines{
        .width = form.textWidth, .lines = form.reasonLines, .firstOnly = form.compact};
    laidReasons.push_back(
        {row.reasonLines, match,
         std::make_shared<const ReasonLayout>(row, match, lines, appearance)});
    return laidReasons.back().layout;
}

/// The top left corner of a row's reasons.
QPoint RosterDelegate::reasonsAt(const RiskRow &row, const QRect &rect) const {
    const int top = rect.top() + verticalPadding();
    if (form.compact)
        return {form.textLeft, top + (lineHeight - reasonHeight) / 2};
    const int names = nameHeight(qstring(collapsed(row.name)));
    return {form.textLeft, top + names + (form.narrow ? reasonHeight : 0)};
}

QRect RosterDelegate::rowRect(int row) const {
    return {0, view->rowViewportPosition(row), view->viewport()->width(), view->rowHeight(row)};
}

void RosterDelegate::drawArrow(
    QPainter &painter, const QRect &line, const RosterChange &change) const {
    const Theme &theme = appearance.theme();
    painter.setFont(appearance.font(1, QFont::Bold));
    painter.setPen(isWorse(change) ? theme.atRisk.text : theme.ok.text);
    drawLine(painter, line, Qt::AlignLeft | Qt::AlignVCenter, qstring(arrowOf(change)));
}

/// Draws the contact's date, and beside it the outcome if the student awaits follow-up.
void RosterDelegate::drawContact(
    QPainter &painter, const QRect &line, const OutreachOutcome &outcome) const {
    const Theme &theme = appearance.theme();
    painter.setFont(appearance.font());
    painter.setPen(theme.text);
    const int used = drawElided(
        painter, line, Qt::AlignLeft | Qt::AlignVCenter,
        qstring(calendar::shortDay(outcome.contactedAt)));
    painter.setFont(appearance.font(0.92, QFont::Medium));
    painter.setPen(theme.concern.text);
    drawElided(
        painter, line.adjusted(used + appearance.px(6), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
        qstring(followUpWord(outcome)));
}

std::optional<ReasonTarget> RosterDelegate::targetAt(QPoint position, int row) const {
    if (model.isFold(row) || model.row(row).reasonLines.empty())
        return std::nullopt;
    const RiskRow &student = model.row(row);
    return reasonsOf(student)->targetAt(position - reasonsAt(student, rowRect(row)));
}

bool RosterDelegate::isOnContact(
    QPoint position, const QRect &cell, const QModelIndex &index) const {
    if (index.column() != RosterModel::contacted || model.isFold(index.row()))
        return false;
    const OutreachOutcome *outcome = model.roster().outcome(model.row(index.row()));
    if (outcome == nullptr)
        return false;
    const int width =
        QFontMetrics(appearance.font()).horizontalAdvance(qstring(contactedText(*outcome)));
    return QRect(
               cell.left() + horizontalPadding(), cell.top() + verticalPadding(), width, lineHeight)
        .contains(position);
}

bool RosterDelegate::editorEvent(
    QEvent *event, QAbstractItemModel *abstractModel, const QStyleOptionViewItem &option,
    const QModelIndex &index) {
    if (event->type() == QEvent::MouseMove) {
        const QPoint at = static_cast<QMouseEvent *>(event)->position().toPoint();
        const auto target = targetAt(at, index.row());
        const bool contact = isOnContact(at, option.rect, index);
        const bool fold = model.isFold(index.row());
        if (target != hovered || hoveredRow != index.row() || hoversContact != contact) {
            hovered = target;
            hoveredRow = index.row();
            hoversContact = contact;
            view->viewport()->setCursor(
                target || fold || contact ? Qt::PointingHandCursor : Qt::ArrowCursor);
            view->viewport()->update();
        }
        return false;
    }
    if (event->type() == QEvent::MouseButtonPress) {
        const QPoint at = static_cast<QMouseEvent *>(event)->position().toPoint();
        pressedContact = isOnContact(at, option.rect, index) ? index.row() : -1;
    }
    if (event->type() != QEvent::MouseButtonRelease)
        return QStyledItemDelegate::editorEvent(event, abstractModel, option, index);
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (mouse->button() != Qt::LeftButton || mouse->modifiers() != Qt::NoModifier)
        return false;
    if (model.isFold(index.row())) {
        Q_EMIT unfoldRequested();
        return true;
    }
    const RiskRow row = model.row(index.row());
    if (std::exchange(pressedContact, -1) == index.row() &&
        isOnContact(mouse->position().toPoint(), option.rect, index)) {
        Q_EMIT contactRemovalRequested(row);
        return true;
    }
    const auto target = targetAt(mouse->position().toPoint(), index.row());
    if (!target)
        return false;
    if (*target == ReasonTarget::grades)
        Q_EMIT gradesRequested(row);
    else
        Q_EMIT detailsRequested(row);
    return true;
}

bool RosterDelegate::helpEvent(
    QHelpEvent *event, QAbstractItemView *where, const QStyleOptionViewItem &option,
    const QModelIndex &index) {
    QString tip = index.data(Qt::ToolTipRole).toString();
    if (const auto target = targetAt(event->pos(), index.row())) {
        tip = *target == ReasonTarget::grades
            ? QStringLiteral("Open the grades in Canvas")
            : qstring(moreAccessibleText(missingAssignments(model.row(index.row())).size()));
    } else if (
        !model.isFold(index.row()) &&
        event->pos().y() > option.rect.top() + verticalPadding() + lineHeight) {
        tip = qstring(reasonsText(model.row(index.row())));
    } else if (isOnContact(event->pos(), option.rect, index)) {
        tip += QStringLiteral(". Click to remove the contact mark.");
    }
    if (tip.isEmpty()) {
        QToolTip::hideText();
        return true;
    }
    QToolTip::showText(event->globalPos(), plainToolTip(tip), where);
    return true;
}

void RosterDelegate::clearHover() {
    hovered.reset();
    hoveredRow = -1;
    view->viewport()->unsetCursor();
    view->viewport()->update();
}

} // namespace ellwynd
