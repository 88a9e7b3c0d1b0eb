// Plays the events of a term and checks what must hold after each.
#pragma once

#include "computer.h"
#include "events.h"
#include "model.h"

#include <array>
#include <random>
#include <stdexcept>

namespace ellwynd::simulation {

/// Something that must not happen did. The message is one line.
class Finding : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Whether an event is no reason to read anything.
bool isQuiet(Event::Kind kind);

/// Two computers, two institutions and a cloud folder, in a temporary folder and in this process.
class Simulation {
  public:
    /// @param root an empty folder.
    explicit Simulation(std::filesystem::path root);

    /// Plays the events, and then lets everything be delivered.
    /// @throws Finding
    void play(const std::vector<Event> &events);

  private:
    static constexpr std::array addresses{"https://one.example", "https://two.example"};

    /// A course and the second of a visit to it.
    using VisitKey = std::pair<std::int64_t, Date>;

    /// What the teacher did with contacts on one computer, by the rules.
    struct Contacts {
        using Records = std::map<StudentKey, Date>;
        struct Step {
            std::map<StudentKey, std::optional<Date>> before;
            std::map<StudentKey, std::optional<Date>> after;
        };
        Records records;
        std::vector<Step> steps;

        void change(const std::map<StudentKey, std::optional<Date>> &after);
        void undo();
    };
    /// What is known about one computer beside its program.
    struct Known {
        Contacts contacts;
        std::size_t noticesSeen = 0;
        /// What happened in a course since it was last on screen.
        struct Unseen {
            /// Students counted in notices.
            std::size_t mentioned = 0;
            /// Students who were flagged at any time.
            std::set<std::int64_t> flagged;
        };
        /// By the name of the course.
        std::map<std::string, Unseen> unseen;
        /// The roster that was on screen when the zone changed; its movement is of the old zone.
        std::optional<Date> shownInOtherZone;
        /// When the zone or the clock was last changed.
        Date zoneChangedAt;
        /// When a complete refresh ended after which only seconds passed; absent otherwise.
        std::optional<ElapsedTime> freshSince;
        /// The day of that refresh.
        Date freshDay;
        /// Whether what the teacher asked for may still be read.
        bool isAsked = false;
        /// The visits that were in the history at any time.
        std::set<VisitKey> visits;
        /// Those that were deleted at any time, and those that must not come back.
        std::set<VisitKey> everDeleted;
        std::set<VisitKey> deleted;
        /// Settings that were seen and are never removed.
        std::set<std::string> keys;
        /// The file call at which the program ends during its next event; 0 for none.
        int killedAt = 0;
        /// Whether the address may be one from before the widgets were written.
        bool lostSettings = false;
    };
    /// The schools that were read at a time.
    using Reads = std::map<Date, std::shared_ptr<const Schools>>;

    void playOne(const Event &event);
    void playKilled(const Event &event, Computer &computer, Known &known);
    static void checkContactsAfterKill(
        const Contacts::Records &before, const Contacts::Records &after,
        const Contacts::Records &saved);
    void noteLeftovers(const Computer &computer);
    /// Moves all computers to a time zone. @param number any; chooses one.
    static void enterZone(int number);
    void perform(const Event &event);
    void performInSchools(const Event &event);
    void performOnScreen(const Event &event, Computer &computer, Known &known);
    static void copyMessages(const Event &event, Program &program, Known &known);
    static void performInCloud(const Event &event, Computer &computer);
    void performOnMachine(const Event &event, Computer &computer, Known &known);
    void changePreference(UserDefaults &defaults, const Event &event);
    void performElsewhere(const Event &event, Computer &computer, Known &known);
    [[nodiscard]] static std::set<VisitKey> visitsOf(const std::vector<RosterSnapshot> &entries);
    static void noteDeleted(const std::vector<RosterSnapshot> &entries, Known &known);
    [[nodiscard]] static std::map<StudentKey, Date> recordsOf(const Program &program);
    void restart(Computer &computer, Known &known, const PreferenceMap &arguments = {});
    void runInSample(Computer &computer, Known &known);
    void connect(Computer &computer, int number);

    /// The entries of a history's file, which has whole seconds; empty without one.
    [[nodiscard]] static std::vector<RosterSnapshot> savedHistory(const Computer &computer);
    static void checkHistoryIsKept(
        const std::vector<RosterSnapshot> &entries, const Computer &computer, const Known &known,
        const std::string &finding);
    static void finishWork(Computer &computer);
    void settle();
    void settle(Computer &computer, bool completely);
    /// The schools change from here on.
    void schoolsDidChange();

    void check(Computer &computer, Known &known);
    static void checkVisit(const Program &program, Known &known);
    void checkCourses(const Program &program) const;
    static void checkSettings(const Program &program, Known &known);
    [[nodiscard]] bool wasScored(
        const Program &program, std::int64_t courseID, Reads::const_iterator read,
        const std::function<bool(const std::vector<Judged> &)> &agrees) const;
    void checkRoster(const Program &program, const Known &known) const;
    void checkTermRoster(const Program &program) const;
    void checkOutcomes(const Program &program, const Known &known) const;
    void checkDashboard(Program &program) const;
    static void checkCard(Computer &computer, const Known &known);
    void checkRequests(
        const Event &event, const Computer &computer, Known &known, std::size_t requests) const;
    [[nodiscard]] std::size_t mostRequests() const;
    void checkMovement(const Program &program) const;
    void checkHistory(const Program &program) const;
    void checkNotices(Program &program, Known &known) const;
    void checkFiles(const Computer &computer, Known &known) const;
    void checkWidgets(const Computer &computer, Known &known) const;
    void end();

    struct Start {
        Start() { resetClocks(); }
    };

    Start start;
    std::filesystem::path root;
    Schools schools;
    /// The schools after each change.
    std::vector<std::shared_ptr<const Schools>> versions;
    Reads readAt;
    /// The names of the temporary files that killed programs left.
    std::set<std::string> leftovers;
    test::CloudServer server;
    std::array<Computer, 2> computers;
    std::array<Known, 2> known;
    std::mt19937 random{1};
    std::int64_t lastTermID = 1;
    /// A setting that only the first computer changes, and its value; absent if that is not known.
    static constexpr std::string_view newerSetting = "Course.100.OfANewerVersion";
    std::optional<PreferenceValue> latestValue;
    /// Whether a computer forgot its folder at any time. Older values may then be taken over.
    bool hasForgottenFolder = false;
    void folderIsForgotten();
};

} // namespace ellwynd::simulation
