// Scored students as a table.
#pragma once

#include "app/roster/rosterview.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <functional>

namespace ellwynd {

/// The rows in the program's own order, worst first.
class RosterModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { level, student, course, why, score, missing, lastActive, contacted, columns };
    /// What a column sorts by.
    static constexpr int sortRole = Qt::UserRole;

    explicit RosterModel(QObject *parent = nullptr) : QAbstractTableModel(parent) {}

    /// @param at "now" for the days since the last activity.
    void setRoster(const RosterView &roster, Date at);
    /// How many names of a row's missing work its view folds, for the accessible text.
    std::function<std::size_t(const RiskRow &)> hiddenNames;
    [[nodiscard]] const RiskRow &row(int index) const { return rows[std::size_t(index)]; }
    /// Null for a student who did not move.
    [[nodiscard]] const RosterChange *change(const RiskRow &row) const;
    /// Null for a student never written to.
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

/// The rows that hold the typed words, in the order of the chosen column.
class RosterFilter : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    explicit RosterFilter(QObject *parent = nullptr);

    /// A row stays when every word is found in its name, course, level or reasons.
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
