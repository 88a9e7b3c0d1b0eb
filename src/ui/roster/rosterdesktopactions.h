// Carries out on the desktop what is done with a roster.
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
struct RiskRow;

/// Connects the actions of the roster on screen to the desktop: texts go to the clipboard, files
/// where the save panel says, pages to the browser.
class RosterDesktopActions : public QObject {
    Q_OBJECT

  public:
    using Selected = std::function<std::vector<RiskRow>()>;

    /// @param selected the students that messages are about.
    /// @param window owns this; the other arguments must outlive it.
    RosterDesktopActions(
        RosterActions &actions, const TemplateStore &templates, Selected selected, QWidget &window);

    /// Offers to save the roster on screen.
    void exportRoster(ExportFormat format);
    /// Fills a menu with one entry a template, for the students selected when it is chosen.
    void fillCopyMenu(QMenu *menu);

  Q_SIGNALS:
    /// A note should be shown for a moment.
    void noteRequested(const QString &note);

  private:
    RosterActions &actions;
    const TemplateStore &templates;
    Selected selected;
    QWidget &window;
    /// Where the next roster is offered to be saved.
    QString exportFolder;
};

} // namespace ellwynd
