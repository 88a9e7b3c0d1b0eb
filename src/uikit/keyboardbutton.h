// A button that draws itself.
#pragma once

#include <QAbstractButton>

namespace ellwynd {

/// Return and Enter click it, as Space does.
class KeyboardButton : public QAbstractButton {
    Q_OBJECT

  public:
    using QAbstractButton::QAbstractButton;

  protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace ellwynd
