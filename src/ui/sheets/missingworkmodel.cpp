#include "ui/sheets/missingworkmodel.h"

#include "uikit/convert.h"

#include <cmath>

namespace ellwynd {

namespace {

double shareOf(const MissedAssignment &assignment) {
    return assignment.rosterSize > 0
        ? double(assignment.studentIDs.size()) / double(assignment.rosterSize)
        : 0;
}

} // namespace

MissingWorkModel::MissingWorkModel(std::vector<MissedAssignment> work, QObject *parent)
    : QAbstractTableModel(parent), work(std::move(work)) {}

int MissingWorkModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(work.size());
}

int MissingWorkModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant MissingWorkModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const MissedAssignment &item = at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        if (index.column() == assignment)
            return qstring(item.name);
        if (index.column() == share)
            return QStringLiteral("%1%").arg(std::lround(shareOf(item) * 100));
        return QString::number(item.studentIDs.size());
    case Qt::ToolTipRole:
        return item.isClassWide ? qstring(classWideTooltip) : QString();
    case Qt::AccessibleTextRole:
        return qstring(missedWorkDescription(item));
    case shareRole:
        return shareOf(item);
    case classWideRole:
        return item.isClassWide;
    default:
        return {};
    }
}

QVariant MissingWorkModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((section == missing ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case assignment:
        return QStringLiteral("Assignment");
    case share:
        return QStringLiteral("Share of class");
    default:
        return QStringLiteral("Missing");
    }
}

} // namespace ellwynd
