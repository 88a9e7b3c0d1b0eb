// Scored students as a table.
#pragma once

#include "app/roster/rosterview.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <functional>

namespace ellwynd {

/// The rows in the roster's order, worst first.
class RosterModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { level, student, course, why, score, missing, lastActive, contacted, columns };
    /// The values that a column sorts by.
    static constexpr int sortRole = Qt::UserRole;

    explicit RosterModel(QObject *parent = nullptr) : QAbstractTableModel(parent) {}

    /// @param at "now" for the days since the last activity.
    void setRoster(const RosterView &roster, Date at);
    /// Returns how many names of missing work the view hides in a row, for the accessible text. May
    /// be empty.
    std::function<std::size_t(const RiskRow &)> hiddenNames;
    [[nodiscard]] const RiskRow &row(int index) const { return rows[std::size_t(index)]; }
    /// The student's movement; null for none.
    [[nodiscard]] const RosterChange *change(const RiskRow &row) const;
    /// The outcome of the student's last contact; null for none.
    [[nodiscard]] const OutreachOutcome *outcome(const RiskRow &row) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant
    headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    [[nodiscard]] QString display(const RiskRow &row, int column) const;
    [[nodiscard]] QVariant sortValue(const RiskRow &row, int index, int column) const;
    [[nodiscard]] QString accessibleText(const RiskRow &row, int column) const;
    [[nodiscard]] QString toolTip(const RiskRow &row, int column) const;

    std::vector<RiskRow> rows;
    std::map<StudentKey, RosterChange> movement;
    std::map<StudentKey, OutreachOutcome> outreach;
    Date now;
};

/// The rows that contain the typed words, sorted by the chosen column.
class RosterFilter : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    explicit RosterFilter(QObject *parent = nullptr);

    /// Accepts the rows in which every word occurs in the name, course, level or reasons.
    void setWords(const QString &typed);

    [[nodiscard]] const RosterModel &roster() const;
    [[nodiscard]] const RiskRow &row(const QModelIndex &proxyIndex) const;

  protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex &parent) const override;
    [[nodiscard]] bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

  private:
    QStringList words;
};

} // namespace ellwynd
