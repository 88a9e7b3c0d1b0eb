// Labels that show texts from anywhere as they are.
#pragma once

#include <QLabel>

namespace ellwynd {

/// A label that never reads its text as markup and may wrap.
[[nodiscard]] QLabel *plainLabel(QWidget *parent, bool wraps = false);

/// A plain label in the quieter text colour.
[[nodiscard]] QLabel *secondaryLabel(QWidget *parent, const QString &text = {}, bool wraps = true);

/// Shows a state in quiet text, or a failure in the colour that asks for attention.
void showStatus(QLabel &label, const QString &text, bool failed);

/// One line that ends in "…" where there is no room, with the whole text as its tooltip.
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

/// A text that is one link; wraps, and is reached and pressed by keyboard.
class TextLink : public QLabel {
    Q_OBJECT

  public:
    explicit TextLink(const QString &text, QWidget *parent = nullptr);

  Q_SIGNALS:
    void openRequested();
};

} // namespace ellwynd
