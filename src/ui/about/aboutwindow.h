// "About Ellwynd".
#pragma once

#include <QDialog>

namespace ellwynd {

class Appearance;

/// Name, version and purpose of the program, its privacy promises, and its libraries.
class AboutWindow : public QDialog {
    Q_OBJECT

  public:
    explicit AboutWindow(const Appearance &appearance, QWidget *parent = nullptr);
};

} // namespace ellwynd
