// The heading above a roster.
#pragma once

#include <QWidget>

class QBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ellwynd {

class Appearance;
class ElidedLabel;
class UserDefaults;
struct RosterView;

/// The course's or the term's name with a line below it, the filter and the commands. They share a
/// row, or take rows of their own where there is no room.
class RosterHeader : public QWidget {
    Q_OBJECT

  public:
    /// @param defaults where a course's icon is chosen. The arguments must outlive the header.
    RosterHeader(const UserDefaults &defaults, const Appearance &appearance, QWidget *parent);

    void setRoster(const RosterView &roster);
    /// The line below the name.
    void setSubtitle(const QString &text);

    void focusFilter();
    void clearFilter();
    [[nodiscard]] QString filterText() const;

  Q_SIGNALS:
    void filterDidChange(const QString &typed);
    /// The teacher goes on from the filter to who was found.
    void studentsRequested();
    void thresholdsRequested();
    void missingWorkRequested();
    void refreshRequested();

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void applyAppearance();
    void arrange();

    const UserDefaults &defaults;
    const Appearance &appearance;
    QLabel *tile;
    ElidedLabel *title;
    ElidedLabel *subtitle;
    QLineEdit *filter;
    QPushButton *thresholds;
    QPushButton *missingWork;
    QPushButton *refresh;
    QBoxLayout *rows;
    QBoxLayout *controls;
    QWidget *buttons;
};

} // namespace ellwynd
