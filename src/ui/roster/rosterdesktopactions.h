// Clipboard, files and browser for the actions of a roster.
#pragma once

#include "outputs/export/rosterexport.h"

#include <QObject>

#include <functional>
#include <vector>

class QMenu;
class QWidget;

namespace ellwynd {

class RosterActions;
class TemplateStore;
class UserDefaults;
struct RiskRow;

/// Connects the actions of the displayed roster to the desktop: text goes to the clipboard, exports
/// to the file chosen in the save panel, URLs to the browser.
class RosterDesktopActions : public QObject {
    Q_OBJECT

  public:
    using Selected = std::function<SharedList<RiskRow>()>;

    /// @param selected returns the selected students, for messages.
    /// @param window owns this object; the other arguments must outlive it.
    RosterDesktopActions(
        RosterActions &actions, const TemplateStore &templates, UserDefaults &defaults,
        Selected selected, QWidget &window);

    /// Opens the save panel for the displayed roster.
    void exportRoster(ExportFormat format);
    /// Fills a menu with one entry per template. An entry copies messages for the students selected
    /// when it is chosen. Without templates, the only entry leads to their settings.
    void fillCopyMenu(QMenu *menu);

  Q_SIGNALS:
    /// A note about what was done should be shown.
    void noteRequested(const QString &note);
    /// The settings of templates should be shown.
    void templatesRequested();

  private:
    RosterActions &actions;
    const TemplateStore &templates;
    UserDefaults &defaults;
    Selected selected;
    QWidget &window;
};

} // namespace ellwynd
