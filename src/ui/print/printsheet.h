// The Print sheet.
#pragma once

#include "ui/print/printedpages.h"
#include "ui/support/sheet.h"

#include <filesystem>
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

    /// @param choices at least one; the first is chosen.
    /// @param defaults and `appearance` must outlive this object.
    PrintSheet(
        std::vector<Choice> choices, UserDefaults &defaults, const Appearance &appearance,
        QWidget *parent);
    ~PrintSheet() override;

  Q_SIGNALS:
    /// A note about what was done should be shown.
    void noteRequested(const QString &note);

  private:
    void print();
    void printOn(QPrinter &on);
    void savePDF();
    void save(const std::filesystem::path &path);
    void showProblem(const QString &text);
    [[nodiscard]] const PrintedDocument &chosen() const;

    std::vector<Choice> choices;
    UserDefaults &defaults;
    QButtonGroup *group;
    QLabel *problem;
    /// While the print dialog is open.
    std::unique_ptr<QPrinter> printer;
};

} // namespace ellwynd
