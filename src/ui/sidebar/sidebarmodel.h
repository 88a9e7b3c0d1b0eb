// The tree model of terms and courses.
#pragma once

#include "app/courses/courseselection.h"
#include "canvas/records/termgroups.h"
#include "risk/levelcounts.h"

#include <QAbstractItemModel>

#include <functional>

namespace ellwynd {

/// The dashboard, then terms with their courses. A scored course has the count of its flagged
/// students.
class SidebarModel : public QAbstractItemModel {
    Q_OBJECT

  public:
    enum Role {
        /// How many students are flagged; absent before the course was scored.
        flaggedRole = Qt::UserRole,
        /// The most severe level of the course; absent if nobody is flagged.
        worstLevelRole,
        courseIDRole,
        /// The course's name without its code, and the code, which may be empty.
        nameRole,
        codeRole,
        /// Whether another course of the term has a name that begins alike.
        endMattersRole
    };
    /// Returns how many students of a course are at each level; absent before it was scored.
    using CourseLevels = std::function<std::optional<LevelCounts>(std::int64_t courseID)>;

    SidebarModel(CourseLevels courseLevels, QObject *parent = nullptr);

    /// Resets the model only if the terms have changed; otherwise updates the counts.
    void setTerms(std::vector<TermGroup> terms);

    [[nodiscard]] Selection selectionAt(const QModelIndex &index) const;
    [[nodiscard]] QModelIndex indexOf(const Selection &selection) const;
    /// The row of the first term; all later rows are terms too.
    static constexpr int firstTerm = 1;
    /// The id of the term in a row; absent for the courses without a term.
    [[nodiscard]] std::optional<std::int64_t> termAt(int row) const;
    [[nodiscard]] static bool isDashboard(const QModelIndex &index);

    [[nodiscard]] QModelIndex
    index(int row, int column, const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    /// The header is hidden, but screen readers read it.
    [[nodiscard]] QVariant
    headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    [[nodiscard]] const Course *courseAt(const QModelIndex &index) const;
    [[nodiscard]] bool endMatters(const QModelIndex &index) const;

    std::vector<TermGroup> terms;
    CourseLevels courseLevels;
};

} // namespace ellwynd
