// All widgets of the desktop.
#pragma once

#include "preferences/userdefaults.h"
#include "widgets/snapshotsource.h"
#include "widgets/widgetwindow.h"

#include <QTimer>

namespace ellwynd {

/// Places the widgets that the teacher has left on the desktop, keeps them drawn as the snapshot,
/// the preferences and the day change, and remembers them.
class WidgetBoard : public QObject {
    Q_OBJECT

  public:
    /// @param stateFile where placed widgets are remembered.
    /// @param openLink opens an address of the program's own scheme.
    WidgetBoard(
        SnapshotSource &source, UserDefaults &defaults, std::filesystem::path stateFile,
        bool desktopIsDark, std::function<void(const QString &)> openLink, Clock now = systemNow);
    ~WidgetBoard() override;

    /// Shows the widgets that were left, or a first one.
    void show();

    /// Whether "automatic" is dark from now on.
    void setDesktopIsDark(bool dark);
    /// Looks at the file and the time again.
    void refresh();

    [[nodiscard]] const std::vector<std::unique_ptr<WidgetWindow>> &windows() const {
        return placed;
    }

  Q_SIGNALS:
    /// The teacher quit, or removed the last widget.
    void quitRequested();

  private:
    void place(const PlacedWidget &widget);
    void addBeside(const WidgetWindow &window);
    void remove(const WidgetWindow &window);
    void applyStyle();
    void presentAll();
    void save();

    SnapshotSource &source;
    UserDefaults &defaults;
    std::filesystem::path stateFile;
    bool desktopIsDark;
    std::function<void(const QString &)> openLink;
    Clock now;
    QFont base;
    VisualStyle visualStyle;
    std::vector<std::unique_ptr<WidgetWindow>> placed;
    QTimer minute;
    QTimer saveSoon;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
