// The course list by term, as a tree.
#pragma once

#include "app/courses/courseselection.h"
#include "canvas/records/termgroups.h"

#include <QAbstractItemModel>

#include <functional>

namespace ellwynd {

/// The dashboard, then terms with their courses beneath. A course's flagged students are counted
/// beside it once it was scored.
class SidebarModel : public QAbstractItemModel {
    Q_OBJECT

  public:
    enum Role { flaggedRole = Qt::UserRole, courseIDRole };
    using FlaggedCount = std::function<std::optional<std::int64_t>(std::int64_t courseID)>;

    SidebarModel(FlaggedCount flagged, QObject *parent = nullptr);

    /// Keeps the tree as it is where only counts have changed.
    void setTerms(std::vector<TermGroup> terms);

    [[nodiscard]] Selection selectionAt(const QModelIndex &index) const;
    [[nodiscard]] QModelIndex indexOf(const Selection &selection) const;
    /// The rows of terms: from here to the last.
    static constexpr int firstTerm = 1;
    /// The term of such a row, or nothing for the courses without one.
    [[nodiscard]] std::optional<std::int64_t> termAt(int row) const;
    [[nodiscard]] static bool isDashboard(const QModelIndex &index);

    [[nodiscard]] QModelIndex
    index(int row, int column, const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    /// The header is hidden, but screen readers find it.
    [[nodiscard]] QVariant
    headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    [[nodiscard]] const Course *courseAt(const QModelIndex &index) const;

    std::vector<TermGroup> terms;
    FlaggedCount flaggedCount;
};

} // namespace ellwynd
