// A dialog over its window.
#pragma once

#include <QDialog>

class QVBoxLayout;

namespace ellwynd {

class Appearance;

/// A window-modal dialog with a heading. It is always tall enough for its texts, which wrap.
class Sheet : public QDialog {
    Q_OBJECT

  public:
    Sheet(
        const QString &title, const QString &heading, const Appearance &appearance,
        QWidget *parent);

  protected:
    /// Where a sheet puts its contents, below the heading.
    [[nodiscard]] QVBoxLayout &column() const { return *contents; }
    void resizeEvent(QResizeEvent *event) override;

  private:
    QVBoxLayout *contents;
};

} // namespace ellwynd
