#include "ui/dashboard/studentlistmodel.h"

#include "app/courses/courselabel.h"
#include "app/roster/rostertexts.h"
#include "uikit/convert.h"
#include "uikit/tooltip.h"

namespace ellwynd {

void StudentListModel::setStudents(
    SharedList<DashboardStudent> students, bool newRemembersContacts) {
    beginResetModel();
    all = std::move(students);
    remembersContacts = newRemembersContacts;
    endResetModel();
}

const DashboardStudent &StudentListModel::student(const QModelIndex &index) const {
    return all[std::size_t(index.row())];
}

QString StudentListModel::news(const QModelIndex &index) const {
    return qstring(newsText(student(index), remembersContacts));
}

int StudentListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(all.size());
}

QVariant StudentListModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const DashboardStudent &student = this->student(index);
    switch (role) {
    case Qt::DisplayRole:
        return qstring(collapsed(student.row->name));
    case Qt::ToolTipRole:
        return plainToolTip(qstring(
            collapsed(student.row->name) + " · " + collapsed(student.row->courseName) + " · " +
            reasonsText(*student.row)));
    case Qt::AccessibleTextRole:
        return qstring(accessibleText(student, remembersContacts));
    default:
        return {};
    }
}

} // namespace ellwynd
