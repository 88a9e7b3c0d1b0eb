#include "ui/roster/rostermodel.h"

#include "app/rostertexts.h"
#include "ui/support/convert.h"

#include <algorithm>

namespace ellwynd {

void RosterModel::setRows(std::vector<RiskRow> newRows, Date at) {
    beginResetModel();
    rows = std::move(newRows);
    now = at;
    endResetModel();
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
    default:
        return {};
    }
}

/// Columns sort so that the first click puts what worries most on top.
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
    default:
        return display(row, column);
    }
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
        if (index.column() == missing)
            return QStringLiteral("%1 missing").arg(item.missingCount);
        if (index.column() == lastActive)
            return QStringLiteral("Last active ") + display(item, lastActive);
        if (index.column() == why && hiddenNames) {
            if (const std::size_t hidden = hiddenNames(item); hidden > 0)
                return display(item, why) + QStringLiteral(", ") +
                    qstring(moreAccessibleText(hidden));
        }
        return display(item, index.column());
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

const RiskRow &RosterFilter::row(const QModelIndex &proxyIndex) const {
    return static_cast<const RosterModel *>(sourceModel())->row(mapToSource(proxyIndex).row());
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
    // What is equal in the column stays in the program's own order, either way round.
    if (QSortFilterProxyModel::lessThan(right, left))
        return false;
    return sortOrder() == Qt::AscendingOrder ? left.row() < right.row() : right.row() < left.row();
}

} // namespace ellwynd
