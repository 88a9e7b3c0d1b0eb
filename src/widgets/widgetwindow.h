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
class WidgetLayout;
class WindowDrag;

/// A frameless card in one of three sizes that can be dragged anywhere. It shows what is passed to
/// `present`, and its signals report what the teacher asked for.
class WidgetWindow : public QWidget {
    Q_OBJECT

  public:
    /// @param defaults hold the courses' icons; must outlive the window.
    WidgetWindow(
        const PlacedWidget &state, const VisualStyle &visualStyle, const UserDefaults &defaults);

    [[nodiscard]] const PlacedWidget &placed() const { return state; }

    void
    present(const std::optional<WidgetSnapshotFile> &file, const VisualStyle &newStyle, Date now);

    /// "Automatic" and the terms of the snapshot, with the displayed one checked.
    [[nodiscard]] QMenu *makeTermMenu(QWidget *parent);
    [[nodiscard]] QMenu *makeMenu();

    [[nodiscard]] TermButton *termButton() const { return title; }
    /// The visible rows.
    [[nodiscard]] std::vector<CourseRow *> rows() const;

  Q_SIGNALS:
    /// The teacher chose another term or size.
    void choiceDidChange();
    void placeDidChange();
    void linkRequested(const QString &link);
    void addRequested();
    void removeRequested();
    /// The window system has closed the window; the widget is shown again at the next start.
    void windowDidClose();
    void quitRequested();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

  private:
    [[nodiscard]] WidgetLayout cardLayout() const;
    void fill(const WidgetContent &content);
    [[nodiscard]] CourseIcon tileIcon(const WidgetRow &row) const;
    void arrange();
    void setTerm(const std::optional<std::int64_t> &termID);
    void setSize(WidgetSize size);

    PlacedWidget state;
    VisualStyle visualStyle;
    const UserDefaults &defaults;
    std::vector<WidgetTermEntity> terms;
    WidgetContent shown;

    WindowDrag *dragging;
    TermButton *title;
    QLabel *asOf;
    QLabel *message;
    QLabel *more;
    SummaryView *summary;
    std::vector<CourseRow *> rowPool;
};

} // namespace ellwynd
