#include "ui/roster/rostermodel.h"

#include "app/courses/courselabel.h"
#include "app/roster/rostertexts.h"
#include "uikit/convert.h"

#include <utility>

namespace ellwynd {

void RosterModel::setRoster(
    std::shared_ptr<const RosterRows> roster, const RosterQuery &query, Date at) {
    beginResetModel();
    rows = std::move(roster);
    shownQuery = query;
    shown = rows->shown(query);
    now = at;
    endResetModel();
}

void RosterModel::setQuery(const RosterQuery &query) {
    setRoster(rows, query, now);
}

QString RosterModel::figures(int index, bool severalCourses) const {
    const RiskRow &item = row(index);
    const QString text = qstring(figuresText(item, rows->outcome(item), now));
    return severalCourses ? display(item, course) + QStringLiteral(" · ") + text : text;
}

RosterSort RosterModel::sortOf(int column) {
    switch (column) {
    case level:
        return RosterSort::level;
    case student:
        return RosterSort::student;
    case course:
        return RosterSort::course;
    case score:
        return RosterSort::score;
    case lastActive:
        return RosterSort::lastActive;
    case contacted:
        return RosterSort::contacted;
    default:
        return RosterSort::worstFirst;
    }
}

int RosterModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : studentCount() + (shown.folded > 0 ? 1 : 0);
}

int RosterModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : columns;
}

Qt::ItemFlags RosterModel::flags(const QModelIndex &index) const {
    // The line of the folded students is reached by the arrow keys, but it is no student.
    return isFold(index.row()) ? Qt::ItemIsEnabled : QAbstractTableModel::flags(index);
}

QString RosterModel::display(const RiskRow &row, int column) const {
    switch (column) {
    case level:
        return qstring(levelName(row.level));
    case student:
        return qstring(collapsed(row.name));
    case course:
        return qstring(collapsed(rows->courseCode(row)));
    case score:
        return qstring(scoreAndGradeText(row));
    case lastActive:
        return qstring(lastActiveText(row.lastActivityAt, now));
    case contacted: {
        const OutreachOutcome *since = rows->outcome(row);
        return since != nullptr ? qstring(contactedText(*since)) : QString();
    }
    default:
        return {};
    }
}

QString RosterModel::accessibleText(const RiskRow &row, int column) const {
    const QString text = display(row, column);
    switch (column) {
    case level: {
        const RosterChange *moved = rows->change(row);
        return moved != nullptr ? text + QStringLiteral(". ") + qstring(arrowText(*moved)) : text;
    }
    case student:
        return qstring(rowDescription(row));
    case lastActive:
        return QStringLiteral("Last active ") + text;
    case contacted:
        return text.isEmpty() ? QStringLiteral("Not contacted") : toolTip(row, column);
    default:
        return text;
    }
}

QString RosterModel::toolTip(const RiskRow &row, int column) const {
    if (column == level) {
        const RosterChange *moved = rows->change(row);
        return moved != nullptr
            ? qstring(changeText(*moved)) + QStringLiteral(". ") + qstring(arrowText(*moved))
            : QString();
    }
    if (column == contacted) {
        const OutreachOutcome *since = rows->outcome(row);
        return since != nullptr ? qstring(outreachText(*since)) : QString();
    }
    return column == course ? qstring(row.courseName) : display(row, column);
}

QVariant RosterModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    if (isFold(index.row())) {
        const bool named = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
        return named ? qstring(foldedText(shown.folded)) : QVariant();
    }
    const RiskRow &item = row(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return display(item, index.column());
    case Qt::TextAlignmentRole:
        return int((index.column() == score ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop);
    case Qt::AccessibleTextRole:
        return accessibleText(item, index.column());
    case Qt::ToolTipRole:
        return toolTip(item, index.column());
    default:
        return {};
    }
}

QVariant RosterModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((section == score ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case level:
        return QStringLiteral("Level");
    case student:
        return QStringLiteral("Student and why");
    case course:
        return QStringLiteral("Course");
    case score:
        return QStringLiteral("Score");
    case lastActive:
        return QStringLiteral("Last active");
    case contacted:
        return QStringLiteral("Contacted");
    default:
        return {};
    }
}

} // namespace ellwynd
