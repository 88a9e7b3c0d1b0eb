// All widgets on the desktop.
#pragma once

#include "preferences/userdefaults.h"
#include "widgets/desktop/desktoplayer.h"
#include "widgets/snapshotsource.h"
#include "widgets/widgetwindow.h"

#include <QTimer>

namespace ellwynd {

/// Shows the saved widgets, updates them when the snapshot, the preferences or the day change, and
/// saves their state.
class WidgetBoard : public QObject {
    Q_OBJECT

  public:
    using OpenLink = std::function<std::optional<std::string>(const QString &link)>;

    /// @param source, defaults must outlive this object.
    /// @param stateFile the file with the saved widgets.
    /// @param openLink opens a URL of the program's own scheme or, if it is empty, the program.
    ///        Returns an error message; absent on success.
    WidgetBoard(
        SnapshotSource &source, UserDefaults &defaults, std::filesystem::path stateFile,
        bool desktopIsDark, OpenLink openLink, Clock now = systemNow);
    ~WidgetBoard() override;

    /// Shows the saved widgets, or a first one. While their file is unavailable, nothing is saved.
    void show();
    /// Shows all cards, closed ones too, in front of other windows until another program is used.
    /// Returns false if the window system does not let them come to the front.
    bool showInFront();

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
    void putAllOnScreen();
    void setBehind();
    void open(WidgetWindow &window, const QString &link);
    void save();

    SnapshotSource &source;
    UserDefaults &defaults;
    std::filesystem::path stateFile;
    bool desktopIsDark;
    OpenLink openLink;
    Clock now;
    QFont base;
    VisualStyle visualStyle;
    std::unique_ptr<DesktopLayer> layer = DesktopLayer::make();
    std::vector<std::unique_ptr<WidgetWindow>> placed;
    /// Puts the cards behind again if the teacher does not use them.
    QTimer inFront;
    QTimer minute;
    QTimer saveSoon;
    /// False when the saved widgets could not be read; they are then kept.
    bool savesState = true;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
