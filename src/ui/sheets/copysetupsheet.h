// "Copy Course Setup…".
#pragma once

#include "app/courses/coursesetup.h"
#include "app/undo/preferenceedit.h"
#include "ui/support/sheet.h"

class QLabel;
class QListWidget;
class QPushButton;

namespace ellwynd {

class Appearance;

/// Lists the courses of earlier terms and copies the settings of one of them to a course. An
/// earlier edition of the course is preselected.
class CopySetupSheet : public Sheet {
    Q_OBJECT

  public:
    /// @param courses all of the teacher's courses, including the one to be set up.
    CopySetupSheet(
        std::int64_t courseID, const std::vector<Course> &courses, UserDefaults &defaults,
        const Appearance &appearance, QWidget *parent);

  Q_SIGNALS:
    /// The setup was copied.
    /// @param from the name of the other course, on one line.
    /// @param edit what was changed; empty if the course had the same setup.
    void setupDidChange(const std::string &from, const ellwynd::PreferenceEdit &edit);

  private:
    void fillList(const SetupCandidates &candidates);
    void showSummary();
    void copy();
    [[nodiscard]] std::optional<std::int64_t> chosen() const;

    std::int64_t courseID;
    UserDefaults &defaults;
    const Appearance &appearance;
    QListWidget *list;
    QLabel *summary;
    QPushButton *copyButton;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
