// The dashboard: one card per course of a term, and its flagged students.
#pragma once

#include "app/dashboard/dashboardmodel.h"

#include <QWidget>

class QBoxLayout;
class QGridLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class QScrollArea;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class CourseCard;
class ElidedLabel;
class NeedsPane;
class StudentList;
class TextLink;

/// Shows the dashboard's model and updates in place as terms are scored.
class DashboardPane : public QWidget {
    Q_OBJECT

  public:
    DashboardPane(
        Dashboard &dashboard, UserDefaults &defaults, const Appearance &appearance,
        QWidget *parent = nullptr);

    /// Whether a refresh of everything is under way.
    void setRefreshing(bool refreshing);

    /// Moves the keyboard focus to the first card.
    void focusCards();
    [[nodiscard]] StudentList *students() const;

  Q_SIGNALS:
    void courseRequested(std::int64_t courseID);
    /// The commands of a course should be shown at a position of the screen.
    void courseMenuRequested(std::int64_t courseID, const QPoint &position);
    /// The flagged students of all courses of a term should be shown.
    void termRequested(std::int64_t termID);
    void refreshRequested();

  protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

  private:
    void showModel();
    void showTermMenu();
    void showWait();
    /// Creates cards until there are `count`, and shows as many.
    void setCardCount(std::size_t count);
    void arrangeHeader();
    void arrangeCards();
    /// Moves the focus from a card by an arrow key. Returns whether there is a card.
    bool moveFocus(std::size_t from, int key);
    void applyAppearance();

    Dashboard &dashboard;
    UserDefaults &defaults;
    const Appearance &appearance;
    ElidedLabel *headline;
    QLabel *movement;
    ElidedLabel *updated;
    QPushButton *terms;
    QPushButton *refresh;
    QStackedWidget *stack;
    QScrollArea *scroll;
    QWidget *page;
    QGridLayout *grid;
    QBoxLayout *heading;
    QWidget *waitPage;
    QLabel *wait;
    QProgressBar *progress;
    QWidget *header;
    NeedsPane *needs;
    QWidget *footer;
    TextLink *levelsLink;
    QWidget *legend;
    std::vector<CourseCard *> cards;
    int columns = 0;
    bool isRefreshing = false;
    /// Whether the model may have changed since it was last shown.
    bool isOutdated = true;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
