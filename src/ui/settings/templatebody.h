// The field for the text of a message template.
#pragma once

#include <QPlainTextEdit>

class QCompleter;

namespace ellwynd {

class Appearance;

/// A text field that offers the placeholders once "{" is typed, and underlines text in braces that
/// is no placeholder.
class TemplateBody : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit TemplateBody(const Appearance &appearance, QWidget *parent = nullptr);

    /// Called whenever the text has changed; must be called if its signals were blocked.
    void underlineUnknown();

  protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    void offerPlaceholders();
    void insertPlaceholder(const QString &token);
    /// The unfinished placeholder before the cursor, such as "{mis"; empty if there is none.
    [[nodiscard]] QString unfinished() const;

    const Appearance &appearance;
    QCompleter *completer;
};

} // namespace ellwynd
