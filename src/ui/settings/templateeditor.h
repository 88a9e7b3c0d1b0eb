// The editor of one message template, with a preview.
#pragma once

#include "outputs/messages/messagetemplate.h"

#include <QWidget>

#include <functional>
#include <optional>

class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace ellwynd {

class Appearance;
class TemplateBody;

/// The student for whom the preview is filled.
struct PreviewStudent {
    RiskRow row;
    std::string courseName;
    /// Percent.
    double passingScore = 0;
};
/// The students of the displayed roster; none when there is no roster.
struct PreviewStudents {
    std::vector<PreviewStudent> all;
    /// The index of the one to begin with.
    std::size_t selected = 0;
};
using PreviewSource = std::function<PreviewStudents()>;

/// Name and body of a template, a live preview for a student of the teacher's choice beside it, and
/// a menu of the placeholders. It saves nothing.
class TemplateEditor : public QWidget {
    Q_OBJECT

  public:
    TemplateEditor(PreviewSource source, const Appearance &appearance);

    /// Shows a template; null clears and disables the editor. The cursor is kept when the text is
    /// unchanged.
    void show(const MessageTemplate *message);
    /// Asks for the students of the preview again. The one that the teacher chose stays chosen
    /// while the roster has that student.
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
    QLayout *makeFields();
    QPushButton *makePlaceholders();
    void arrange();
    void fillPreview();
    void applyAppearance();

    PreviewSource source;
    const Appearance &appearance;
    std::optional<MessageTemplate> shown;
    QLineEdit *nameField;
    TemplateBody *bodyField;
    QLabel *previewTitle;
    QComboBox *studentChoice;
    QPlainTextEdit *preview;
    /// The text beside or above the preview.
    QBoxLayout *fields;
    QPushButton *placeholderButton;
    QLabel *problems;
    PreviewStudents students;
    /// The student whom the teacher chose; absent before.
    std::optional<StudentKey> chosenStudent;
};

} // namespace ellwynd
