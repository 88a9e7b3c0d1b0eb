// The settings window.
#pragma once

#include "platform/userdefaults.h"

#include <QDialog>

class QListWidget;
class QStackedWidget;

namespace ellwynd {

class Appearance;

/// Panes by name at the left, the chosen one at the right. Every change takes effect at once.
class SettingsWindow : public QDialog {
    Q_OBJECT

  public:
    enum Page { general, riskThresholds };

    SettingsWindow(UserDefaults &defaults, const Appearance &appearance, QWidget *parent = nullptr);

    void open(Page page);

  private:
    void addPage(const QString &title, QWidget *pane);
    void applyAppearance();

    const Appearance &appearance;
    QListWidget *pages;
    QStackedWidget *panes;
};

} // namespace ellwynd
