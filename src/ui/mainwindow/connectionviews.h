// The views of a program that is not connected.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>

class QStackedWidget;
class QWidget;

namespace ellwynd {

class Appearance;
class ConnectionCards;
class ConnectionCheck;
class MainWindowController;

/// The welcome window, and the page in the main window on which the teacher connects to Canvas or
/// opens the sample college.
class ConnectionViews : public QObject {
    Q_OBJECT

  public:
    /// @param panes gets the page when it is first shown.
    /// @param window owns this object; the other arguments must outlive it.
    ConnectionViews(
        UserDefaults &defaults, ConnectionCheck &connection, MainWindowController &controller,
        const Appearance &appearance, QStackedWidget &panes, QWidget &window);

    void showPage();
    /// Shows the welcome window when it is due, now or when it is known that there is no
    /// connection.
    void showWelcomeIfDue();

  Q_SIGNALS:
    /// The teacher asked for the sample college; the receiver asks for confirmation and switches.
    void sampleRequested();

  private:
    void showWelcome();

    UserDefaults &defaults;
    ConnectionCheck &connection;
    MainWindowController &controller;
    const Appearance &appearance;
    QStackedWidget &panes;
    QWidget &window;
    ConnectionCards *cards = nullptr;
    QWidget *page = nullptr;
};

} // namespace ellwynd
