// The words of one message template, and what they become.
#pragma once

#include "outputs/messages/messagetemplate.h"

#include <QWidget>

#include <functional>
#include <optional>

class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace ellwynd {

class Appearance;

/// Whom a template is shown filled for.
struct PreviewStudent {
    RiskRow row;
    std::string courseName;
    /// Percent.
    double passingScore = 0;
};
/// A student of the roster on screen; absent when there is none.
using PreviewSource = std::function<std::optional<PreviewStudent>()>;

/// Name and body of a template with a button for each placeholder, and the message filled for a
/// student as it is written. It stores nothing.
class TemplateEditor : public QWidget {
    Q_OBJECT

  public:
    TemplateEditor(PreviewSource student, const Appearance &appearance);

    /// Shows a template; null empties the editor and takes no words. The one that is shown already
    /// keeps its cursor.
    void show(const MessageTemplate *message);
    void refreshPreview();
    /// Puts the cursor into the name, which is selected whole.
    void beginNaming();

    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string body() const;

  Q_SIGNALS:
    /// The teacher changed a word.
    void templateDidChange();
    /// The keyboard went elsewhere.
    void saveRequested();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    QWidget *makePlaceholders();
    void arrangePlaceholders();
    void applyAppearance();

    PreviewSource student;
    const Appearance &appearance;
    std::optional<MessageTemplate> shown;
    QLineEdit *nameField;
    QPlainTextEdit *bodyField;
    QLabel *previewTitle;
    QPlainTextEdit *preview;
    QWidget *placeholderButtons;
    QGridLayout *placeholderGrid;
    /// A button and the meaning of its placeholder, in their order.
    std::vector<std::pair<QWidget *, QWidget *>> placeholderRows;
};

} // namespace ellwynd
