#include "ui/sidebar/sidebarmodel.h"

#include "uikit/convert.h"
#include "uikit/tooltip.h"

#include <algorithm>

namespace ellwynd {

namespace {

// The internal id of a top-level row. The internal id of a course is its term's row.
constexpr quintptr termID = quintptr(-1);

} // namespace

SidebarModel::SidebarModel(CourseLevels courseLevels, QObject *parent)
    : QAbstractItemModel(parent), courseLevels(std::move(courseLevels)) {}

void SidebarModel::setTerms(std::vector<TermGroup> newTerms) {
    if (newTerms == terms) {
        for (int row = firstTerm; row < rowCount(); ++row) {
            const QModelIndex term = index(row, 0);
            if (const int count = rowCount(term); count > 0)
                Q_EMIT dataChanged(index(0, 0, term), index(count - 1, 0, term));
        }
        return;
    }
    beginResetModel();
    terms = std::move(newTerms);
    labels.clear();
    for (const TermGroup &term : terms) {
        std::vector<CourseLabel> &ofTerm = labels.emplace_back();
        for (const Course &course : term.courses)
            ofTerm.push_back(courseLabel(course));
        std::vector<CourseLabel *> compared;
        for (CourseLabel &label : ofTerm)
            compared.push_back(&label);
        compareNames(compared);
    }
    endResetModel();
}

const Course *SidebarModel::courseAt(const QModelIndex &index) const {
    if (!index.isValid() || index.internalId() == termID)
        return nullptr;
    return &terms[index.internalId() - firstTerm].courses[std::size_t(index.row())];
}

const CourseLabel &SidebarModel::labelOf(const QModelIndex &index) const {
    return labels[index.internalId() - firstTerm][std::size_t(index.row())];
}

Selection SidebarModel::selectionAt(const QModelIndex &index) const {
    if (const Course *course = courseAt(index))
        return CourseSelection{course->id};
    if (isDashboard(index))
        return DashboardSelection{};
    return TermSelection{termAt(index.row())};
}

std::optional<std::int64_t> SidebarModel::termAt(int row) const {
    return terms[std::size_t(row - firstTerm)].id();
}

bool SidebarModel::isDashboard(const QModelIndex &index) {
    return index.isValid() && index.internalId() == termID && index.row() < firstTerm;
}

QModelIndex SidebarModel::indexOf(const Selection &selection) const {
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex term = index(row, 0);
        if (selectionAt(term) == selection)
            return term;
        for (int child = 0; child < rowCount(term); ++child) {
            const QModelIndex course = index(child, 0, term);
            if (selectionAt(course) == selection)
                return course;
        }
    }
    return {};
}

QModelIndex SidebarModel::index(int row, int column, const QModelIndex &parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row()) : termID);
}

QModelIndex SidebarModel::parent(const QModelIndex &child) const {
    if (!child.isValid() || child.internalId() == termID)
        return {};
    return createIndex(int(child.internalId()), 0, termID);
}

int SidebarModel::rowCount(const QModelIndex &parent) const {
    if (!parent.isValid())
        return firstTerm + int(terms.size());
    if (parent.internalId() != termID || parent.column() != 0 || isDashboard(parent))
        return 0;
    return int(terms[std::size_t(parent.row() - firstTerm)].courses.size());
}

int SidebarModel::columnCount(const QModelIndex &) const {
    return 1;
}

QVariant SidebarModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const Course *course = courseAt(index);
    if (course == nullptr) {
        if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
            return {};
        return isDashboard(index) ? QStringLiteral("Dashboard")
                                  : qstring(title(terms[std::size_t(index.row() - firstTerm)]));
    }
    const std::optional<LevelCounts> levels = courseLevels(course->id);
    switch (role) {
    case Qt::DisplayRole:
        return qstring(collapsed(displayName(*course)));
    case Qt::ToolTipRole:
        return plainToolTip(qstring(displayName(*course)));
    case Qt::AccessibleTextRole:
        return levels ? qstring(displayName(*course)) +
                QStringLiteral(", %1 flagged").arg(QString::number(levels->flagged()))
                      : qstring(displayName(*course));
    case flaggedRole:
        return levels ? QVariant(qlonglong(levels->flagged())) : QVariant();
    case worstLevelRole:
        return levels && levels->worst() ? QVariant(int(*levels->worst())) : QVariant();
    case courseIDRole:
        return qlonglong(course->id);
    default:
        return {};
    }
}

QVariant SidebarModel::headerData(int, Qt::Orientation, int role) const {
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
        return QStringLiteral("Terms and courses");
    return {};
}

} // namespace ellwynd
