// What could not be saved: the note about it, and further attempts.
#pragma once

#include "app/shell/stores.h"

#include <QObject>

namespace ellwynd {

/// "Couldn’t save the history and the templates. Ellwynd will try again.", for what is not on the
/// disk; absent if everything is.
[[nodiscard]] std::optional<std::string>
unsavedNote(const Stores &stores, const UserDefaults &defaults);

/// Observes whether the stores and the preferences are saved. Used on the main thread.
class UnsavedChanges : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object.
    UnsavedChanges(Stores &stores, UserDefaults &defaults);

    /// The current note; absent if everything is saved.
    [[nodiscard]] const std::optional<std::string> &note() const { return current; }

    /// A status with the note, if there is one, as a second line.
    [[nodiscard]] std::string addedTo(const std::string &status) const;

    /// Tries to save what the stores could not save. The preferences try by themselves, and all of
    /// them once more at their end.
    void saveAgain();

  Q_SIGNALS:
    void noteDidChange();

  private:
    void check();

    Stores &stores;
    UserDefaults &defaults;
    std::optional<std::string> current;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
