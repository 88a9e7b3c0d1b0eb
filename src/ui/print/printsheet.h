// The Print sheet.
#pragma once

#include "platform/printing/printqueue.h"
#include "ui/print/printedpages.h"
#include "ui/support/sheet.h"

#include <filesystem>
#include <functional>
#include <memory>

class QButtonGroup;
class QLabel;
class QPrinter;

namespace ellwynd {

class UserDefaults;

/// Prints the displayed roster, its flagged students or one student, or saves them as a PDF.
class PrintSheet : public Sheet {
    Q_OBJECT

  public:
    /// What can be printed.
    struct Choice {
        QString title;
        PrintedDocument document;
    };

    /// Whether a queue takes jobs; its argument is the printer's name.
    using QueueState = std::function<PrintQueueState(const std::string &)>;

    /// @param choices at least one; the first is chosen.
    /// @param defaults and `appearance` must outlive this object.
    PrintSheet(
        std::vector<Choice> choices, UserDefaults &defaults, const Appearance &appearance,
        QWidget *parent, QueueState queueState = printQueueState);
    ~PrintSheet() override;

    /// Prints the chosen document and closes, or says why it cannot be printed.
    void printOn(QPrinter &on);

  Q_SIGNALS:
    /// A note about what was done should be shown.
    void noteRequested(const QString &note);

  private:
    void print();
    void savePDF();
    void save(const std::filesystem::path &path);
    void showProblem(const QString &text);
    [[nodiscard]] const PrintedDocument &chosen() const;

    std::vector<Choice> choices;
    UserDefaults &defaults;
    QueueState queueState;
    QButtonGroup *group;
    QLabel *problem;
    /// While the print dialog is open.
    std::unique_ptr<QPrinter> printer;
};

} // namespace ellwynd
