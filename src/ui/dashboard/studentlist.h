// "Needs you first": the flagged students of the dashboard's term.
#pragma once

#include "app/dashboard/dashboardmodel.h"

#include <QListView>

class QPushButton;

namespace ellwynd {

class Appearance;
class StudentListDelegate;
class StudentListModel;

/// One row for each student, as tall as all of them, so that the page scrolls. The row under the
/// pointer, or else the current one, has the commands.
class StudentList : public QListView {
    Q_OBJECT

  public:
    /// `appearance` must outlive this object.
    explicit StudentList(const Appearance &appearance, QWidget *parent = nullptr);

    /// Keeps the current student; if they are no longer shown, the next one becomes the current.
    void setStudents(SharedList<DashboardStudent> students, bool remembersContacts);
    /// The current student; none before the list had the focus.
    [[nodiscard]] SharedList<RiskRow> selectedRows() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  Q_SIGNALS:
    /// The course should be opened with the student selected.
    void studentRequested(const ellwynd::StudentKey &student);
    void writeRequested(const ellwynd::SharedList<ellwynd::RiskRow> &students);
    void contactsRequested(const ellwynd::SharedList<ellwynd::RiskRow> &students);
    void contextMenuRequested(const QPoint &position);
    void selectionDidChange();
    /// A row became the current one, in the list's coordinates.
    void rowShown(const QRect &row);

  protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void wheelEvent(QWheelEvent *event) override;

  private:
    void applyAppearance();
    void measure();
    /// The height of all rows.
    [[nodiscard]] int contentsHeight() const;
    /// Puts the commands on a row.
    void showCommands(const QModelIndex &index);
    /// The row with the commands.
    [[nodiscard]] QModelIndex commandRow() const;

    const Appearance &appearance;
    StudentListModel *students;
    StudentListDelegate *delegate;
    QWidget *commands;
    QPushButton *write;
    QPushButton *contacted;
    QPersistentModelIndex hovered;
};

} // namespace ellwynd
