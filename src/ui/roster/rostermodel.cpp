#include "ui/roster/rostermodel.h"

#include "app/roster/rostertexts.h"
#include "uikit/convert.h"

#include <algorithm>

namespace ellwynd {

void RosterModel::setRoster(const RosterView &roster, Date at) {
    beginResetModel();
    rows = roster.rows;
    movement.clear();
    for (const RosterChange &moved : roster.movement)
        movement.emplace(StudentKey{moved.courseID, moved.studentID}, moved);
    outreach = roster.outreach;
    now = at;
    endResetModel();
}

const RosterChange *RosterModel::change(const RiskRow &row) const {
    const auto found = movement.find(keyOf(row));
    return found != movement.end() ? &found->second : nullptr;
}

const OutreachOutcome *RosterModel::outcome(const RiskRow &row) const {
    const auto found = outreach.find(keyOf(row));
    return found != outreach.end() ? &found->second : nullptr;
}

int RosterModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(rows.size());
}

int RosterModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : columns;
}

QString RosterModel::display(const RiskRow &row, int column) const {
    switch (column) {
    case level:
        return qstring(levelName(row.level));
    case student:
        return qstring(row.name);
    case course:
        return qstring(row.courseName);
    case why:
        return qstring(reasonsText(row));
    case score:
        return qstring(scoreAndGradeText(row));
    case missing:
        return row.missingCount > 0 ? QString::number(row.missingCount) : QString();
    case lastActive:
        return qstring(lastActiveText(row.lastActivityAt, now));
    case contacted: {
        const OutreachOutcome *since = outcome(row);
        return since != nullptr ? qstring(contactedText(*since)) : QString();
    }
    default:
        return {};
    }
}

/// Sorts so that the first click on a column puts the most worrying rows on top.
QVariant RosterModel::sortValue(const RiskRow &row, int index, int column) const {
    switch (column) {
    case level:
    case why:
        return index;
    case score:
        return row.currentScore.value_or(1e9);
    case missing:
        return -qlonglong(row.missingCount);
    case lastActive:
        return row.lastActivityAt ? qlonglong(row.lastActivityAt->time_since_epoch().count())
                                  : std::numeric_limits<qlonglong>::min();
    case contacted: {
        // Awaiting follow-up first, then by date with the oldest first; students never contacted
        // last.
        const OutreachOutcome *since = outcome(row);
        if (since == nullptr)
            return std::numeric_limits<qlonglong>::max();
        const auto date = qlonglong(since->contactedAt.time_since_epoch().count());
        return isAwaitingFollowUp(*since) ? date - std::numeric_limits<qlonglong>::max() / 2 : date;
    }
    default:
        return display(row, column);
    }
}

QString RosterModel::accessibleText(const RiskRow &row, int column) const {
    const QString shown = display(row, column);
    switch (column) {
    case level: {
        const RosterChange *moved = change(row);
        return moved != nullptr ? shown + QStringLiteral(". ") + qstring(arrowText(*moved)) : shown;
    }
    case missing:
        return QStringLiteral("%1 missing").arg(row.missingCount);
    case lastActive:
        return QStringLiteral("Last active ") + shown;
    case contacted:
        return shown.isEmpty() ? QStringLiteral("Not contacted") : toolTip(row, column);
    case why:
        if (const std::size_t hidden = hiddenNames ? hiddenNames(row) : 0; hidden > 0)
            return shown + QStringLiteral(", ") + qstring(moreAccessibleText(hidden));
        return shown;
    default:
        return shown;
    }
}

QString RosterModel::toolTip(const RiskRow &row, int column) const {
    if (column == level) {
        const RosterChange *moved = change(row);
        return moved != nullptr
            ? qstring(changeText(*moved)) + QStringLiteral(". ") + qstring(arrowText(*moved))
            : QString();
    }
    if (column == contacted) {
        const OutreachOutcome *since = outcome(row);
        return since != nullptr ? qstring(outreachText(*since)) : QString();
    }
    return display(row, column);
}

QVariant RosterModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const RiskRow &item = row(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return display(item, index.column());
    case sortRole:
        return sortValue(item, index.row(), index.column());
    case Qt::TextAlignmentRole: {
        const bool number = index.column() == score || index.column() == missing;
        return int((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop);
    }
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
    if (role == Qt::TextAlignmentRole) {
        const bool number = section == score || section == missing;
        return int((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case level:
        return QStringLiteral("Level");
    case student:
        return QStringLiteral("Student");
    case course:
        return QStringLiteral("Course");
    case why:
        return QStringLiteral("Why");
    case score:
        return QStringLiteral("Score");
    case missing:
        return QStringLiteral("Missing");
    case lastActive:
        return QStringLiteral("Last active");
    case contacted:
        return QStringLiteral("Contacted");
    default:
        return {};
    }
}

RosterFilter::RosterFilter(QObject *parent) : QSortFilterProxyModel(parent) {
    setSortRole(RosterModel::sortRole);
    setSortLocaleAware(true);
    setSortCaseSensitivity(Qt::CaseInsensitive);
}

void RosterFilter::setWords(const QString &typed) {
    words = typed.simplified().split(u' ', Qt::SkipEmptyParts);
    invalidateFilter();
}

const RosterModel &RosterFilter::roster() const {
    return *static_cast<const RosterModel *>(sourceModel());
}

const RiskRow &RosterFilter::row(const QModelIndex &proxyIndex) const {
    return roster().row(mapToSource(proxyIndex).row());
}

bool RosterFilter::filterAcceptsRow(int row, const QModelIndex &parent) const {
    return std::ranges::all_of(words, [&](const QString &word) {
        for (const int column :
             {RosterModel::student, RosterModel::level, RosterModel::why, RosterModel::course}) {
            const QString text = sourceModel()->index(row, column, parent).data().toString();
            if (text.contains(word, Qt::CaseInsensitive))
                return true;
        }
        return false;
    });
}

bool RosterFilter::lessThan(const QModelIndex &left, const QModelIndex &right) const {
    if (QSortFilterProxyModel::lessThan(left, right))
        return true;
    // Rows that are equal in the column keep the roster's order in both directions.
    if (QSortFilterProxyModel::lessThan(right, left))
        return false;
    return sortOrder() == Qt::AscendingOrder ? left.row() < right.row() : right.row() < left.row();
}

} // namespace ellwynd
