// Scored students as a table.
#pragma once

#include "app/roster/rosterquery.h"

#include <QAbstractTableModel>

#include <memory>

namespace ellwynd {

/// The rows of a query on a roster, and below them one line for the folded students. Holds values
/// only: which rows are shown is decided by `RosterRows`.
class RosterModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { level, student, course, score, lastActive, contacted, columns };

    explicit RosterModel(QObject *parent = nullptr) : QAbstractTableModel(parent) {}

    /// Resets the model.
    /// @param at "now" for the days since the last activity.
    void setRoster(std::shared_ptr<const RosterRows> roster, const RosterQuery &query, Date at);
    /// Resets the model.
    void setQuery(const RosterQuery &query);

    [[nodiscard]] const RosterRows &roster() const { return *rows; }
    [[nodiscard]] const RosterQuery &query() const { return shownQuery; }
    /// How many students are shown, without the folded ones.
    [[nodiscard]] int studentCount() const { return int(shown.order.size()); }
    /// Whether a row is the line of the folded students.
    [[nodiscard]] bool isFold(int row) const { return row == studentCount(); }
    /// A student's row.
    [[nodiscard]] const RiskRow &row(int index) const {
        return rows->rows()[shown.order[std::size_t(index)]];
    }
    /// The figures of a student's row in one line, after the course code if there are several
    /// courses.
    [[nodiscard]] QString figures(int index, bool severalCourses) const;
    /// What a column sorts by.
    [[nodiscard]] static RosterSort sortOf(int column);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant
    headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    [[nodiscard]] QString display(const RiskRow &row, int column) const;
    [[nodiscard]] QString accessibleText(const RiskRow &row, int column) const;
    [[nodiscard]] QString toolTip(const RiskRow &row, int column) const;

    std::shared_ptr<const RosterRows> rows = std::make_shared<RosterRows>();
    RosterQuery shownQuery;
    ShownRows shown;
    Date now;
};

} // namespace ellwynd
