// The table model of missing work by assignment.
#pragma once

#include "risk/missedwork.h"

#include <QAbstractTableModel>

namespace ellwynd {

class MissingWorkModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { assignment, share, missing, columns };
    enum Role { shareRole = Qt::UserRole, classWideRole };

    explicit MissingWorkModel(std::vector<MissedAssignment> work, QObject *parent = nullptr);

    [[nodiscard]] const MissedAssignment &at(int row) const { return work[std::size_t(row)]; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant
    headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    std::vector<MissedAssignment> work;
};

} // namespace ellwynd
