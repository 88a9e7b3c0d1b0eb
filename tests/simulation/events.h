// What happens to the computers of a simulated teacher.
#pragma once

#include <QObject>

#include <cstdint>
#include <string>
#include <vector>

namespace ellwynd::simulation {

struct Event {
    Q_GADGET

  public:
    enum class Kind {
        passSeconds,
        passMinutes,
        passHours,
        openCourse,
        openTerm,
        openDashboard,
        refresh,
        refreshRoster,
        activate,
        deactivate,
        sleep,
        timer,
        loseNetwork,
        findNetwork,
        failCourse,
        failList,
        endFailures,
        lockKeyring,
        unlockKeyring,
        signOut,
        signIn,
        saveToken,
        setWork,
        handIn,
        grade,
        beActive,
        join,
        leave,
        comeBack,
        endTerm,
        beginTerm,
        markContacted,
        removeMark,
        copyMessage,
        undo,
        changeThreshold,
        useDefaults,
        changePreference,
        /// By the command line on the same computer.
        changeElsewhere,
        switchSync,
        switchHistory,
        switchContacts,
        deleteHistory,
        /// By the command line on the same computer.
        visitElsewhere,
        deleteElsewhere,
        fillDisk,
        freeDisk,
        restart,
        runWithArgument,
        runInSample,
        push,
        upload,
        deliver,
        deliverTorn,
        deliverOld,
        folderAway,
        createMountPoint,
        folderBack,
        travel,
        setClock,
        /// The next event of the program on this computer ends with a kill.
        kill,
    };
    Q_ENUM(Kind)
    static constexpr int kinds = int(Kind::kill) + 1;

    Kind kind{};
    /// 0 or 1.
    int computer = 0;
    /// Chooses among what there is at the time.
    int draw = 0;
};

/// Events of the clock, which concern all computers.
[[nodiscard]] bool passesTime(Event::Kind kind);
[[nodiscard]] bool changesSchools(Event::Kind kind);
[[nodiscard]] bool isOfCloud(Event::Kind kind);
/// Whether it is an event of the program. A run in the sample college compares files itself.
[[nodiscard]] bool canBeKilled(Event::Kind kind);

/// The events of a term of 120 days.
[[nodiscard]] std::vector<Event> randomTerm(unsigned seed);

/// "{Kind::openCourse, 0, 512}, …"
[[nodiscard]] std::string textOf(const std::vector<Event> &events);

} // namespace ellwynd::simulation
