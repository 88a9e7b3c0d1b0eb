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
class StampLine;
class UserDefaults;
struct RosterView;

/// The name of the course or term with a subtitle, the filter and the commands: in one row, or in
/// several when the width is too small.
class RosterHeader : public QWidget {
    Q_OBJECT

  public:
    /// @param defaults hold the course's icon. The arguments must outlive the header.
    RosterHeader(const UserDefaults &defaults, const Appearance &appearance, QWidget *parent);

    void setRoster(const RosterView &roster);
    /// The line below the name.
    void setSubtitle(const QString &text, const QString &stamp, const QString &note);

    void focusFilter();
    void setFilterText(const QString &typed);

  Q_SIGNALS:
    void filterDidChange(const QString &typed);
    /// The focus should move from the filter to the table of students.
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
    StampLine *subtitle;
    QLineEdit *filter;
    QPushButton *thresholds;
    QPushButton *missingWork;
    QPushButton *refresh;
    QBoxLayout *rows;
    QBoxLayout *controls;
    QWidget *buttons;
};

} // namespace ellwynd
