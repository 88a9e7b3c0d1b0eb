// One widget on the desktop.
#pragma once

#include "outputs/snapshot/widgettexts.h"
#include "preferences/coursesettings.h"
#include "theme/visualstyle.h"
#include "widgets/placedwidget.h"

#include <QLabel>
#include <QMenu>

namespace ellwynd {

class CourseRow;
class SummaryView;
class TermButton;

/// A frameless card in one of three sizes that is dragged about by any of its parts. What it shows
/// is handed to it; what the teacher does with it is told by its signals.
class WidgetWindow : public QWidget {
    Q_OBJECT

  public:
    /// @param defaults hold the icons that the teacher chose for courses.
    WidgetWindow(const PlacedWidget &placed, const Look &look, const UserDefaults &defaults);

    [[nodiscard]] const PlacedWidget &placed() const { return state; }

    void present(const std::optional<WidgetSnapshotFile> &file, const Look &look, Date now);

    /// "Automatic" and the terms of what is shown, the one shown checked.
    [[nodiscard]] QMenu *makeTermMenu(QWidget *parent);
    [[nodiscard]] QMenu *makeMenu();

    [[nodiscard]] TermButton *termButton() const { return title; }
    /// The rows that are shown.
    [[nodiscard]] std::vector<CourseRow *> rows() const;

  Q_SIGNALS:
    /// The teacher chose another term or size.
    void choiceDidChange();
    void moved();
    void linkActivated(const QString &link);
    void addRequested();
    void removeRequested();
    void quitRequested();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    [[nodiscard]] QSize cardSize() const;
    [[nodiscard]] QRect rowsRect() const;
    [[nodiscard]] std::size_t room() const;
    void fill(const WidgetContent &content);
    [[nodiscard]] CourseIcon tileIcon(const WidgetRow &row) const;
    void arrange();
    void setTerm(const std::optional<std::int64_t> &termID);
    void setSize(WidgetSize size);
    /// Whether the pointer's move is a drag.
    bool drag(const QMouseEvent &event);
    void endDrag();

    PlacedWidget state;
    Look look;
    const UserDefaults &defaults;
    std::vector<WidgetTermEntity> terms;
    WidgetContent shown;

    TermButton *title;
    QLabel *asOf;
    QLabel *message;
    QLabel *more;
    SummaryView *summary;
    std::vector<CourseRow *> rowPool;

    /// Where the pointer went down, on the desktop, and whether the card follows it since.
    std::optional<QPoint> pressedAt;
    std::optional<QPoint> grip;
};

} // namespace ellwynd
