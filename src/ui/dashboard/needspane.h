// The dashboard's flagged students, with their filters.
#pragma once

#include "app/dashboard/dashboardmodel.h"

#include <QWidget>

#include <array>

class QLabel;
class QPushButton;

namespace ellwynd {

class Appearance;
class FlowLayout;
class StudentList;
class TextLink;

/// "Needs you first": chips with counts, and the students of the chosen chip.
class NeedsPane : public QWidget {
    Q_OBJECT

  public:
    /// `appearance` must outlive this object.
    explicit NeedsPane(const Appearance &appearance, QWidget *parent = nullptr);

    /// Another term is shown without a filter.
    void setTerm(const DashboardTerm &term);
    [[nodiscard]] StudentList *list() const { return students; }

  Q_SIGNALS:
    /// All flagged students of the term should be shown.
    void termRequested(std::int64_t termID);

  private:
    void choose(std::optional<DashboardChip> chip);
    void showStudents();
    void applyAppearance();

    const Appearance &appearance;
    /// Copied, since the model changes during a pass.
    DashboardTerm term;
    std::optional<DashboardChip> chosen;
    QLabel *title;
    QWidget *heading;
    FlowLayout *flow;
    std::array<QPushButton *, allDashboardChips.size()> chips{};
    TextLink *all;
    QLabel *empty;
    TextLink *everyone;
    StudentList *students;
};

} // namespace ellwynd
