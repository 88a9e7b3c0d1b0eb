// Draws the rows of the sidebar.
#pragma once

#include <QStyledItemDelegate>

namespace ellwynd {

class Appearance;
class UserDefaults;

/// Draws a term as a small heading, and a course as its tile, its name over its code, and its
/// count: a tick where nobody is flagged.
class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    /// @param defaults hold the courses' icons. The arguments must outlive this object.
    SidebarDelegate(const UserDefaults &defaults, const Appearance &appearance, QObject *parent);

    [[nodiscard]] QSize
    sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override;

  private:
    void paintDashboard(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintTerm(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintCourse(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    /// Draws a course's count at the right of `row` and returns the rest of `row`.
    [[nodiscard]] QRect paintCount(QPainter &painter, QRect row, const QModelIndex &index) const;

    const UserDefaults &defaults;
    const Appearance &appearance;
};

} // namespace ellwynd
