// The dashboard's students as a list.
#pragma once

#include "app/dashboard/dashboardstudents.h"

#include <QAbstractListModel>

namespace ellwynd {

class StudentListModel : public QAbstractListModel {
    Q_OBJECT

  public:
    using QAbstractListModel::QAbstractListModel;

    void setStudents(SharedList<DashboardStudent> students, bool remembersContacts);
    [[nodiscard]] const SharedList<DashboardStudent> &students() const { return all; }
    [[nodiscard]] const DashboardStudent &student(const QModelIndex &index) const;
    /// What changed and what was written.
    [[nodiscard]] QString news(const QModelIndex &index) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

  private:
    SharedList<DashboardStudent> all;
    bool remembersContacts = true;
};

} // namespace ellwynd
