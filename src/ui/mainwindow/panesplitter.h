// The panes of the main window side by side.
#pragma once

#include "preferences/userdefaults.h"

#include <QSplitter>
#include <QTimer>

namespace ellwynd {

class Appearance;

/// Keeps the widths of the sidebar and the details in units of the text size, so that they grow
/// with the text, up to a share of the window. The pane between them gets the rest. A width that
/// the teacher sets is saved shortly afterwards.
class PaneSplitter : public QSplitter {
    Q_OBJECT

  public:
    /// The references must outlive this object.
    PaneSplitter(const Appearance &appearance, UserDefaults &defaults, QWidget *parent = nullptr);
    ~PaneSplitter() override;

    /// To be called when the sidebar, the middle pane and the details have been added.
    void restoreWidths();
    /// To be called when the details were shown or hidden.
    void applyWidths();

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void setByTeacher();
    void save();

    const Appearance &appearance;
    UserDefaults &defaults;
    // In units of the text size.
    double sidebar;
    double details;
    QTimer saveSoon;
};

} // namespace ellwynd
