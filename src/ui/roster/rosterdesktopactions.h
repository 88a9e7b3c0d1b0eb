// Where what leaves a roster goes on a desktop.
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

/// Answers what is done with the roster on screen: texts go to the clipboard, files where the save
/// panel says, pages to the browser.
class RosterOutlets : public QObject {
    Q_OBJECT

  public:
    using Selected = std::function<std::vector<RiskRow>()>;

    /// @param selected the students that messages are about.
    RosterOutlets(
        RosterActions &actions, const TemplateStore &templates, Selected selected, QWidget &window);

    /// Offers to save the roster on screen.
    void exportRoster(ExportFormat format);
    /// Fills a menu with one entry a template, for the students selected when it is chosen.
    void fillCopyMenu(QMenu *menu);

  Q_SIGNALS:
    /// Something to say in passing.
    void noted(const QString &note);

  private:
    RosterActions &actions;
    const TemplateStore &templates;
    Selected selected;
    QWidget &window;
    /// Where the next roster is offered to be saved.
    QString exportFolder;
};

} // namespace ellwynd
