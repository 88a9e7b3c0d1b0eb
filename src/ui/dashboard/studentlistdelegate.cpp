#include "ui/dashboard/studentlistdelegate.h"

#include "app/roster/rosterquery.h"
#include "app/roster/rostertexts.h"
#include "ui/dashboard/studentlistmodel.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"

#include <QPainter>

#include <algorithm>

namespace ellwynd {

namespace {

// Lengths at text scale 1.
constexpr double padding = 10;
constexpr double arrowWidth = 20;
constexpr double columnGap = 14;
constexpr double verticalPadding = 4;
/// Below this width of the list the reasons are below the name.
constexpr double enoughWidth = 560;

QFont nameFont(const Appearance &appearance) {
    return appearance.font(1, QFont::DemiBold);
}

QFont smallFont(const Appearance &appearance) {
    return appearance.font(0.88);
}

} // namespace

StudentListDelegate::StudentListDelegate(
    const Appearance &appearance, const StudentListModel &model, QObject *parent)
    : QStyledItemDelegate(parent), appearance(appearance), model(model) {}

void StudentListDelegate::setCommands(int row, int width) {
    commandRow = row;
    commandsWidth = width;
}

void StudentListDelegate::measureNames() {
    pillWidth = 0;
    for (const RiskLevel level : allRiskLevels) {
        const QString text = qstring(levelName(level));
        pillWidth = std::max(pillWidth, pillSize(appearance.style(), text).width());
    }
    const QFontMetrics names(nameFont(appearance));
    const QFontMetrics codes(smallFont(appearance));
    widestName = appearance.px(84);
    for (const DashboardStudent *student : studentsToMeasure())
        widestName = std::max(
            {widestName, names.horizontalAdvance(qstring(student->row->name)),
             codes.horizontalAdvance(qstring(student->courseCode))});
}

void StudentListDelegate::setWidth(int width) {
    narrow = width < appearance.px(enoughWidth);
    // Wide enough for the names, up to a share of the list.
    nameWidth = std::min(widestName, width * 35 / 100);
}

/// The students among whom the widest name is sought. In a long list they are those with the most
/// letters, so that its length does not matter.
std::vector<const DashboardStudent *> StudentListDelegate::studentsToMeasure() const {
    constexpr std::ptrdiff_t measured = 64;
    std::vector<const DashboardStudent *> students;
    students.reserve(model.students().size());
    for (const DashboardStudent &student : model.students())
        students.push_back(&student);
    const auto lengthOf = [](const DashboardStudent *student) {
        return std::max(student->row->name.size(), student->courseCode.size());
    };
    if (std::ssize(students) > measured) {
        std::ranges::nth_element(students, students.begin() + measured, std::greater{}, lengthOf);
        students.resize(measured);
    }
    return students;
}

int StudentListDelegate::lineHeight() const {
    return std::max(
        QFontMetrics(nameFont(appearance)).height(),
        pillSize(appearance.style(), QStringLiteral("X")).height());
}

int StudentListDelegate::rowHeight() const {
    const int small = QFontMetrics(smallFont(appearance)).height();
    return lineHeight() + small * (narrow ? 2 : 1) + 2 * appearance.px(verticalPadding) + 1;
}

int StudentListDelegate::nameLeft() const {
    return appearance.px(padding) + pillWidth + appearance.px(arrowWidth);
}

QRect StudentListDelegate::nameLine(const QRect &row) const {
    return {row.left(), row.top() + appearance.px(verticalPadding), row.width(), lineHeight()};
}

QSize StudentListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const {
    return {option.rect.width(), rowHeight()};
}

void StudentListDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const Theme &theme = appearance.theme();
    const DashboardStudent &student = model.student(index);
    const QRect row = option.rect;
    painter->save();
    painter->setClipRect(row);
    const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
    if (isCurrent || index.row() == commandRow)
        painter->fillRect(row, isCurrent ? theme.selection : theme.hover);
    painter->fillRect(QRect(row.left(), row.bottom(), row.width(), 1), theme.separator);

    const int top = row.top() + appearance.px(verticalPadding);
    const QRect line(row.left() + appearance.px(padding), top, pillWidth, lineHeight());
    drawLevel(*painter, line, student.row->level, appearance);
    if (student.change) {
        painter->setFont(appearance.font(1, QFont::Bold));
        painter->setPen(isWorse(*student.change) ? theme.atRisk.text : theme.ok.text);
        drawLine(
            *painter, QRect(line.right(), top, appearance.px(arrowWidth), line.height()),
            Qt::AlignCenter, qstring(arrowOf(*student.change)));
    }
    paintName(*painter, row, index);
    QRect area = row.adjusted(0, appearance.px(verticalPadding), -appearance.px(padding), 0);
    if (narrow) {
        area.setLeft(row.left() + nameLeft());
        area.setTop(area.top() + lineHeight());
    } else {
        area.setLeft(row.left() + nameLeft() + nameWidth + appearance.px(columnGap));
    }
    if (index.row() == commandRow && !narrow)
        area.setRight(area.right() - commandsWidth);
    paintReasons(*painter, area, index);
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setRenderHint(QPainter::Antialiasing);
        drawFocusRing(*painter, QRectF(row).adjusted(2, 2, -2, -3), 4, theme.accent, 1.5);
    }
    painter->restore();
}

/// The name over the course, or in a narrow list both on one line.
void StudentListDelegate::paintName(
    QPainter &painter, const QRect &row, const QModelIndex &index) const {
    const Theme &theme = appearance.theme();
    const int top = row.top() + appearance.px(verticalPadding);
    QRect name(row.left() + nameLeft(), top, nameWidth, lineHeight());
    if (narrow)
        name.setRight(
            row.right() - appearance.px(padding) - (index.row() == commandRow ? commandsWidth : 0));
    painter.setFont(nameFont(appearance));
    painter.setPen(theme.text);
    const int used =
        drawElided(painter, name, Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
    painter.setFont(smallFont(appearance));
    painter.setPen(theme.secondaryText);
    QRect code = name;
    if (narrow)
        code.setLeft(name.left() + used + appearance.px(8));
    else
        code.moveTop(name.bottom());
    drawElided(
        painter, code, int(Qt::AlignLeft) | int(narrow ? Qt::AlignVCenter : Qt::AlignTop),
        qstring(model.student(index).courseCode));
}

/// The sentences that fit on one line, over the news.
void StudentListDelegate::paintReasons(
    QPainter &painter, const QRect &area, const QModelIndex &index) const {
    const Theme &theme = appearance.theme();
    const QFont font = narrow ? smallFont(appearance) : appearance.font(0.96);
    const QFontMetrics metrics(font);
    const RiskRow &row = *model.student(index).row;
    const FittedReasons fitted = fittedReasons(
        row, [&](const std::string &text) { return fitsWidth(font, qstring(text), area.width()); });
    QStringList sentences;
    for (std::size_t i = 0; i < fitted.shown; ++i)
        sentences << qstring(row.reasonLines[i].text);
    QString text = sentences.join(QStringLiteral(" · "));
    if (!fitted.more.empty())
        text += u' ' + qstring(fitted.more);
    QRect line = area;
    line.setHeight(narrow ? metrics.height() : lineHeight());
    painter.setFont(font);
    painter.setPen(theme.text);
    drawElided(painter, line, Qt::AlignLeft | Qt::AlignVCenter, text);
    line.moveTop(line.bottom() + 1);
    painter.setFont(smallFont(appearance));
    painter.setPen(theme.secondaryText);
    drawElided(painter, line, Qt::AlignLeft | Qt::AlignTop, model.news(index));
}

} // namespace ellwynd
