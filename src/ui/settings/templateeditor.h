// The editor of one message template, with a preview.
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

/// The student for whom the preview is filled.
struct PreviewStudent {
    RiskRow row;
    std::string courseName;
    /// Percent.
    double passingScore = 0;
};
/// Returns a student of the displayed roster; absent when there is none.
using PreviewSource = std::function<std::optional<PreviewStudent>()>;

/// Name and body of a template, a button for each placeholder, and a live preview. It saves
/// nothing.
class TemplateEditor : public QWidget {
    Q_OBJECT

  public:
    TemplateEditor(PreviewSource student, const Appearance &appearance);

    /// Shows a template; null clears and disables the editor. The cursor is kept when the text is
    /// unchanged.
    void show(const MessageTemplate *message);
    void refreshPreview();
    /// Focuses the name and selects it.
    void beginNaming();

    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string body() const;

  Q_SIGNALS:
    /// The teacher edited the name or the body.
    void templateDidChange();
    /// A field lost the focus.
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
    /// Each placeholder's button and meaning, in display order.
    std::vector<std::pair<QWidget *, QWidget *>> placeholderRows;
};

} // namespace ellwynd
