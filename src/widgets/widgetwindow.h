// One widget on the desktop.
#pragma once

#include "outputs/snapshot/widgettexts.h"
#include "preferences/coursesettings.h"
#include "theme/visualstyle.h"
#include "widgets/placedwidget.h"

#include <QLabel>
#include <QMenu>
#include <QPainterPath>

namespace ellwynd {

class CourseRow;
class DesktopLayer;
class SummaryView;
class TermButton;
class TextButton;
class WidgetLayout;
class WindowDrag;

/// A frameless card in one of three sizes that can be dragged anywhere. It shows what is passed to
/// `present`, and its signals report what the teacher asked for.
class WidgetWindow : public QWidget {
    Q_OBJECT

  public:
    /// @param defaults hold the courses' icons. @param layer, defaults must outlive the window.
    WidgetWindow(
        const PlacedWidget &state, const VisualStyle &visualStyle, const UserDefaults &defaults,
        DesktopLayer &layer);

    [[nodiscard]] const PlacedWidget &placed() const { return state; }

    void
    present(const std::optional<WidgetSnapshotFile> &file, const VisualStyle &newStyle, Date now);

    /// Shows what went wrong instead of the figures, until they are presented again.
    void showFailure(const QString &what);
    /// Moves the window to its saved place, or onto a screen if the saved one is not connected. The
    /// saved place is kept, so that the window returns with its screen.
    void putOnScreen();
    /// Hides the window and shows it at the same place.
    void reshow();

    /// "Automatic" and the terms of the snapshot, with the displayed one checked.
    [[nodiscard]] QMenu *makeTermMenu(QWidget *parent);
    [[nodiscard]] QMenu *makeMenu();

    [[nodiscard]] TermButton *termButton() const { return title; }
    [[nodiscard]] SummaryView *summaryButton() const { return summary; }
    /// The text that is shown instead of the figures, and the number of courses left out.
    [[nodiscard]] TextButton *messageButton() const { return message; }
    [[nodiscard]] TextButton *moreButton() const { return more; }
    /// The visible rows.
    [[nodiscard]] std::vector<CourseRow *> rows() const;

  Q_SIGNALS:
    /// The teacher chose another term or size.
    void choiceDidChange();
    void placeDidChange();
    /// A course, or with an empty link the program itself, was clicked.
    void linkRequested(const QString &link);
    void addRequested();
    void removeRequested();
    /// The window system has closed the window; the widget is shown again at the next start.
    void windowDidClose();
    void quitRequested();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

  private:
    [[nodiscard]] WidgetLayout cardLayout() const;
    void fill(const WidgetContent &content);
    void fitScreen();
    void storePlace();
    [[nodiscard]] CourseIcon tileIcon(const WidgetRow &row) const;
    void arrange();
    void cutCorners();
    [[nodiscard]] QPainterPath outline(double inset) const;
    void setTerm(const std::optional<std::int64_t> &termID);
    void setSize(WidgetSize size);

    PlacedWidget state;
    VisualStyle visualStyle;
    const UserDefaults &defaults;
    DesktopLayer &layer;
    std::vector<WidgetTermEntity> terms;
    WidgetContent shown;

    WindowDrag *dragging;
    TermButton *title;
    QLabel *asOf;
    TextButton *message;
    TextButton *more;
    SummaryView *summary;
    std::vector<CourseRow *> rowPool;
};

} // namespace ellwynd
