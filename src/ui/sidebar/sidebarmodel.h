// The tree model of terms and courses.
#pragma once

#include "app/courses/courselabel.h"
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
        courseIDRole
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

    /// The label of the course in a row, which must be one of a course. Valid until the next reset.
    [[nodiscard]] const CourseLabel &labelOf(const QModelIndex &index) const;

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

    std::vector<TermGroup> terms;
    /// For each term, those of its courses.
    std::vector<std::vector<CourseLabel>> labels;
    CourseLevels courseLevels;
};

} // namespace ellwynd
