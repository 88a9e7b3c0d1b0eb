// All widgets on the desktop.
#pragma once

#include "preferences/userdefaults.h"
#include "widgets/snapshotsource.h"
#include "widgets/widgetwindow.h"

#include <QTimer>

namespace ellwynd {

/// Shows the saved widgets, updates them when the snapshot, the preferences or the day change, and
/// saves their state.
class WidgetBoard : public QObject {
    Q_OBJECT

  public:
    /// @param source, defaults must outlive this object.
    /// @param stateFile the file with the saved widgets.
    /// @param openLink opens a URL of the program's own scheme.
    WidgetBoard(
        SnapshotSource &source, UserDefaults &defaults, std::filesystem::path stateFile,
        bool desktopIsDark, std::function<void(const QString &)> openLink, Clock now = systemNow);
    ~WidgetBoard() override;

    /// Shows the saved widgets, or a first one. While their file is unavailable, nothing is saved.
    void show();

    /// Sets whether "automatic" is dark.
    void setDesktopIsDark(bool dark);
    /// Updates the widgets from the file and the clock.
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
    /// False when the saved widgets could not be read; they are then kept.
    bool savesState = true;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
