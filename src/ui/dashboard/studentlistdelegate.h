// Draws the dashboard's students.
#pragma once

#include <QStyledItemDelegate>

#include <vector>

namespace ellwynd {

class Appearance;
class StudentListModel;
struct DashboardStudent;

/// The level, the arrow, the name over the course, and the reasons over what changed and what was
/// written. In a narrow list the reasons are below the name.
class StudentListDelegate : public QStyledItemDelegate {
  public:
    /// The arguments must outlive this object.
    StudentListDelegate(
        const Appearance &appearance, const StudentListModel &model, QObject *parent);

    /// Measures the names; to be called when they or the text size have changed, before `setWidth`.
    void measureNames();
    void setWidth(int width);
    /// The row that has the commands; -1 for none.
    /// @param width kept free at the right of that row, in pixels.
    void setCommands(int row, int width);

    [[nodiscard]] QSize
    sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override;
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] bool isNarrow() const { return narrow; }
    /// The line with the name in a row.
    [[nodiscard]] QRect nameLine(const QRect &row) const;

  private:
    void paintName(QPainter &painter, const QRect &row, const QModelIndex &index) const;
    void paintReasons(QPainter &painter, const QRect &area, const QModelIndex &index) const;
    [[nodiscard]] std::vector<const DashboardStudent *> studentsToMeasure() const;
    [[nodiscard]] int nameLeft() const;
    [[nodiscard]] int lineHeight() const;

    const Appearance &appearance;
    const StudentListModel &model;
    int pillWidth = 0;
    int widestName = 0;
    int nameWidth = 0;
    int commandsWidth = 0;
    int commandRow = -1;
    bool narrow = false;
};

} // namespace ellwynd
