// The widths of the main window's panes.
#pragma once

#include "preferences/userdefaults.h"

#include <QTimer>

class QSplitter;

namespace ellwynd {

class Appearance;

/// Keeps the widths of the sidebar and the details in units of the text size, so that they grow
/// with the text, up to a share of the window. The pane between them gets the rest. A width that
/// the teacher sets is saved shortly afterwards.
class PaneWidths : public QObject {
    Q_OBJECT

  public:
    /// @param splitter has the sidebar, the middle pane and the details, and owns this object. The
    ///        other arguments must outlive it.
    PaneWidths(QSplitter &splitter, const Appearance &appearance, UserDefaults &defaults);
    ~PaneWidths() override;

    /// To be called when the window's width has changed, or the details were shown.
    void apply();

  private:
    void restore();
    void setByTeacher();
    void save();

    QSplitter &splitter;
    const Appearance &appearance;
    UserDefaults &defaults;
    // In units of the text size.
    double sidebar;
    double details;
    QTimer saveSoon;
};

} // namespace ellwynd
