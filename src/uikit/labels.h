// Labels that are safe for untrusted text.
#pragma once

#include <QLabel>

namespace ellwynd {

/// A label that shows its text as plain text, never as markup.
[[nodiscard]] QLabel *plainLabel(QWidget *parent, bool wraps = false);

/// A plain label in the secondary text colour.
[[nodiscard]] QLabel *secondaryLabel(QWidget *parent, const QString &text = {}, bool wraps = true);

/// Shows a status in the secondary text colour, or a failure in the attention colour.
void showStatus(QLabel &label, const QString &text, bool failed);

/// One line that is elided when it does not fit; the full text is then its tooltip.
class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    explicit ElidedLabel(QWidget *parent = nullptr);
    void setFullText(const QString &text);
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    void elide();

    QString full;
};

} // namespace ellwynd
