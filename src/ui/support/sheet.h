// The base of window-modal dialogs.
#pragma once

#include <QDialog>

class QVBoxLayout;

namespace ellwynd {

class Appearance;

/// A window-modal dialog with a heading. It is always tall enough for its wrapped texts.
class Sheet : public QDialog {
    Q_OBJECT

  public:
    Sheet(
        const QString &title, const QString &heading, const Appearance &appearance,
        QWidget *parent);

  protected:
    /// The layout of the contents below the heading.
    [[nodiscard]] QVBoxLayout &column() const { return *contents; }
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

  private:
    void fitHeight();

    QVBoxLayout *contents;
};

} // namespace ellwynd
