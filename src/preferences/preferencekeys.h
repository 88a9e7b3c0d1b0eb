// The table of the program's preferences, and a typed constant for each key.
//
// A row determines the default, the validation of entered values, whether it is synced, the change
// signal, the limits and choices of the controls, and the entry in the manual.
#pragma once

#include "preferences/courseicon.h"
#include "preferences/preference.h"

#include <algorithm>
#include <array>

namespace ellwynd {

/// A preference's key with the type of its value.
template<class T>
struct PreferenceKey {
    using Fallback = std::conditional_t<
        std::is_same_v<T, std::string>, std::string_view,
        std::conditional_t<std::is_same_v<T, IDList>, std::monostate, T>>;

    /// @param row must describe a preference of this type.
    explicit consteval PreferenceKey(const Preference &row)
        : name(row.key), fallback(std::get<Fallback>(row.fallback)), row(&row) {}

    /// The value when none is stored.
    [[nodiscard]] T defaultValue() const {
        if constexpr (std::is_same_v<T, IDList>)
            return {};
        else
            return T(fallback);
    }

    /// A value within the preference's limits.
    [[nodiscard]] T normalise(T value) const {
        if constexpr (std::is_same_v<T, std::int64_t> || std::is_same_v<T, double>)
            return row->range.clamped(value);
        else
            return value;
    }

    std::string_view name;
    Fallback fallback;
    const Preference *row;
};

namespace preferences {

/// The prefix of the keys of course preferences.
inline constexpr std::string_view coursePrefix = "Course.";

inline constexpr std::array<std::string_view, 3> appearances{"automatic", "light", "dark"};
inline constexpr std::array<std::string_view, 7> accents{"system", "blue", "indigo",  "purple",
                                                         "teal",   "pink", "graphite"};
inline constexpr std::array<std::string_view, 3> panelModes{"shown", "small", "hidden"};

inline constexpr NumberRange passingScores{
    .minimum = 0, .maximum = 100, .step = 0.5, .rounded = true};
inline constexpr NumberRange inactivityWindows{
    .minimum = 1, .maximum = 60, .step = 1, .rounded = true};

using Type = Preference::Type;
using Signal = Preference::ChangeSignal;

inline constexpr auto table = std::to_array<Preference>({
    // Connection and sample college.
    {.key = "CanvasBaseURL",
     .type = Type::text,
     .fallback = "",
     .synced = true,
     .control = "Settings ▸ Connection",
     .meaning = "The Canvas address as typed; empty means not connected."},
    {.key = "SampleData",
     .type = Type::boolean,
     .fallback = false,
     .control = "File ▸ Explore with Sample Data…",
     .meaning = "Show the sample college instead of Canvas."},
    {.key = "SampleWidgets",
     .type = Type::boolean,
     .fallback = false,
     .control = "the command line",
     .meaning = "Update the widgets in the sample college too."},
    {.key = "SampleNotifications",
     .type = Type::boolean,
     .fallback = false,
     .control = "the command line",
     .meaning = "Post notices in the sample college too."},

    // Scoring; a course may override both.
    {.key = "DefaultPassingScore",
     .type = Type::real,
     .fallback = 70.0,
     .range = passingScores,
     .synced = true,
     .control = "Settings ▸ Risk Thresholds",
     .meaning = "The passing score in percent."},
    {.key = "DefaultInactivityDays",
     .type = Type::integer,
     .fallback = std::int64_t{7},
     .range = inactivityWindows,
     .synced = true,
     .control = "Settings ▸ Risk Thresholds",
     .meaning = "The inactivity window in days behind the class."},

    // Appearance.
    {.key = "Appearance",
     .type = Type::text,
     .fallback = "automatic",
     .choices = appearances,
     .synced = true,
     .changeSignal = Signal::appearance,
     .control = "Settings ▸ General",
     .meaning = "Light, dark, or the desktop's preference."},
    {.key = "AccentTheme",
     .type = Type::text,
     .fallback = "system",
     .choices = accents,
     .changeSignal = Signal::accentTheme,
     .control = "Settings ▸ General",
     .meaning = "The colour of selections and links."},
    {.key = "TextScale",
     .type = Type::real,
     .fallback = 1.0,
     .range = {.minimum = 0.8, .maximum = 2, .step = 0.1, .outside = NumberRange::Outside::clamped},
     .synced = true,
     .changeSignal = Signal::textScale,
     .control = "Settings ▸ General",
     .meaning = "The scale factor of all text, from 0.8 to 2."},
    {.key = "SidebarExpandedTerms",
     .type = Type::idList,
     .synced = true,
     .meaning =
         "The terms that are expanded in the sidebar, and as negative numbers those that are "
         "collapsed; of other terms, the newest two are expanded."},
    {.key = "SidebarTermLimit",
     .type = Type::integer,
     .fallback = std::int64_t{6},
     .range = {.minimum = 0, .outside = NumberRange::Outside::clamped},
     .synced = true,
     .changeSignal = Signal::termLimit,
     .control = "Settings ▸ General",
     .meaning = "How many terms the sidebar shows, newest first; 0 means all of them."},
    {.key = "RosterCompactRows",
     .type = Type::boolean,
     .fallback = false,
     .synced = true,
     .control = "Settings ▸ General",
     .meaning = "One line for each student."},

    // Data kept between runs; switching one off deletes its data.
    {.key = "RememberRosterHistory",
     .type = Type::boolean,
     .fallback = true,
     .control = "Settings ▸ Privacy",
     .meaning = "Remember levels from day to day."},
    {.key = "RememberContacts",
     .type = Type::boolean,
     .fallback = true,
     .control = "Settings ▸ Privacy",
     .meaning = "Remember when students were contacted."},

    // Dashboard, widgets and notices.
    {.key = "DashboardTermID",
     .type = Type::integer,
     .fallback = std::int64_t{0},
     .range = {.minimum = 0},
     .control = "Dashboard ▸ Term",
     .meaning = "The id of the dashboard's term; 0 is automatic."},
    {.key = "WidgetsHideCourseNames",
     .type = Type::boolean,
     .fallback = false,
     .control = "Settings ▸ Widgets",
     .meaning = "Leave course names out of the widget files."},
    {.key = "WidgetsAddress",
     .type = Type::text,
     .fallback = "",
     .meaning = "The Canvas address of the courses in the widget files; empty for none."},
    {.key = "MovementNotifications",
     .type = Type::boolean,
     .fallback = false,
     .control = "Settings ▸ Notifications",
     .meaning = "Post a notice when students do worse."},
    {.key = "NotifyWhileActive",
     .type = Type::boolean,
     .fallback = false,
     .control = "Settings ▸ Notifications",
     .meaning = "Post it even while the program is in front."},

    // Sync.
    {.key = "SyncSettingsViaICloud",
     .type = Type::boolean,
     .fallback = false,
     .control = "Settings ▸ Sync",
     .meaning = "Sync settings through the synced folder."},
    {.key = "CloudStoreFolder",
     .type = Type::text,
     .fallback = "",
     .control = "Settings ▸ Sync",
     .meaning = "The folder that the teacher's own sync service synchronises; empty for none."},
    {.key = "SyncedFolderMark",
     .type = Type::text,
     .fallback = "",
     .meaning = "The mark of the folder that these settings are in step with; empty before the "
                "first sync."},

    // Updates and first run.
    {.key = "AutomaticUpdateChecks",
     .type = Type::boolean,
     .fallback = true,
     .control = "Settings ▸ General",
     .meaning = "Check for updates once a day, if the program was built with update checks."},
    {.key = "LastUpdateCheck",
     .type = Type::text,
     .fallback = "",
     .meaning = "The instant at which an update check last began; empty before the first."},
    {.key = "LastCountedCheckDay",
     .type = Type::text,
     .fallback = "",
     .meaning = "\"yyyy-MM-dd\", the last day whose first update check succeeded."},
    {.key = "PendingUpdateBuild",
     .type = Type::text,
     .fallback = "",
     .meaning = "The build of an announced update; empty for none."},
    {.key = "PendingUpdateVersion",
     .type = Type::text,
     .fallback = "",
     .meaning = "The version of an announced update; empty for none."},
    {.key = "Onboarding.step",
     .type = Type::integer,
     .fallback = std::int64_t{0},
     .range = {.minimum = 0, .maximum = 3},
     .meaning = "The current step of the first-run setup; 3 means that it is complete."},

    {.key = "KeepRunningInBackground",
     .type = Type::boolean,
     .fallback = false,
     .control = "Settings ▸ General",
     .meaning = "Keep running when the window is closed."},
    {.key = "StartInBackground",
     .type = Type::boolean,
     .fallback = false,
     .meaning = "Start without the window; set by the start with the session."},

    // The state of the windows.
    {.key = "ExportFolder",
     .type = Type::text,
     .fallback = "",
     .meaning = "The folder of the last export; empty for the documents folder."},
    {.key = "LastTemplates",
     .type = Type::text,
     .fallback = "",
     .meaning = "The message template that was last copied in each course, as JSON."},
    {.key = "WriteWindowGeometry",
     .type = Type::text,
     .fallback = "",
     .meaning = "Saved window state, in Base64."},
    {.key = "CourseInsightPanelMode",
     .type = Type::text,
     .fallback = "small",
     .choices = panelModes,
     .control = "View ▸ Course Insight",
     .meaning = "The panel above the roster: full, on one line, or hidden."},
    {.key = "StudentDetailsHidden",
     .type = Type::boolean,
     .fallback = false,
     .control = "View ▸ Hide Student Details",
     .meaning = "Hide the pane of the selected student."},
    {.key = "MainWindowGeometry",
     .type = Type::text,
     .fallback = "",
     .meaning = "Saved window state, in Base64."},
    {.key = "MainWindowColumns",
     .type = Type::text,
     .fallback = "",
     .meaning = "Saved window state, in Base64."},
    {.key = "HelpWindowGeometry",
     .type = Type::text,
     .fallback = "",
     .meaning = "Saved window state, in Base64."},

    // Preferences of single courses. An absent threshold falls back to the default one.
    {.key = "Course.{id}.PassingScore",
     .type = Type::real,
     .range = passingScores,
     .synced = true,
     .control = "Course ▸ Risk Thresholds…",
     .meaning = "The passing score of one course in percent."},
    {.key = "Course.{id}.InactivityDays",
     .type = Type::integer,
     .range = inactivityWindows,
     .synced = true,
     .control = "Course ▸ Risk Thresholds…",
     .meaning = "The inactivity window of one course in days behind the class."},
    {.key = "Course.{id}.Icon",
     .type = Type::text,
     .choices = courseSettings::iconWords,
     .synced = true,
     .control = "Course ▸ Icon…",
     .meaning = "The picture on the tile of one course."},
    {.key = "Course.{id}.IconColor",
     .type = Type::text,
     .choices = courseSettings::colorWords,
     .synced = true,
     .control = "Course ▸ Icon…",
     .meaning = "The colour of the tile of one course."},
});

/// The row with exactly this key; any other key does not compile.
consteval const Preference &row(std::string_view key) {
    return *std::ranges::find(table, key, &Preference::key);
}

inline constexpr PreferenceKey<std::string> canvasBaseURL{row("CanvasBaseURL")};
inline constexpr PreferenceKey<bool> sampleData{row("SampleData")};
inline constexpr PreferenceKey<bool> sampleWidgets{row("SampleWidgets")};
inline constexpr PreferenceKey<bool> sampleNotifications{row("SampleNotifications")};
inline constexpr PreferenceKey<double> defaultPassingScore{row("DefaultPassingScore")};
inline constexpr PreferenceKey<std::int64_t> defaultInactivityDays{row("DefaultInactivityDays")};
inline constexpr PreferenceKey<std::string> appearance{row("Appearance")};
inline constexpr PreferenceKey<std::string> accentTheme{row("AccentTheme")};
inline constexpr PreferenceKey<double> textScale{row("TextScale")};
inline constexpr PreferenceKey<IDList> sidebarExpandedTerms{row("SidebarExpandedTerms")};
inline constexpr PreferenceKey<std::int64_t> sidebarTermLimit{row("SidebarTermLimit")};
inline constexpr PreferenceKey<bool> rosterCompactRows{row("RosterCompactRows")};
inline constexpr PreferenceKey<bool> rememberRosterHistory{row("RememberRosterHistory")};
inline constexpr PreferenceKey<bool> rememberContacts{row("RememberContacts")};
inline constexpr PreferenceKey<std::int64_t> dashboardTermID{row("DashboardTermID")};
inline constexpr PreferenceKey<bool> widgetsHideCourseNames{row("WidgetsHideCourseNames")};
inline constexpr PreferenceKey<std::string> widgetsAddress{row("WidgetsAddress")};
inline constexpr PreferenceKey<bool> movementNotifications{row("MovementNotifications")};
inline constexpr PreferenceKey<bool> notifyWhileActive{row("NotifyWhileActive")};
inline constexpr PreferenceKey<bool> syncSettings{row("SyncSettingsViaICloud")};
inline constexpr PreferenceKey<std::string> cloudStoreFolder{row("CloudStoreFolder")};
inline constexpr PreferenceKey<std::string> syncedFolderMark{row("SyncedFolderMark")};
inline constexpr PreferenceKey<bool> automaticUpdateChecks{row("AutomaticUpdateChecks")};
inline constexpr PreferenceKey<std::string> lastUpdateCheck{row("LastUpdateCheck")};
inline constexpr PreferenceKey<std::string> lastCountedCheckDay{row("LastCountedCheckDay")};
inline constexpr PreferenceKey<std::string> pendingUpdateBuild{row("PendingUpdateBuild")};
inline constexpr PreferenceKey<std::string> pendingUpdateVersion{row("PendingUpdateVersion")};
inline constexpr PreferenceKey<std::int64_t> onboardingStep{row("Onboarding.step")};
inline constexpr PreferenceKey<bool> keepRunningInBackground{row("KeepRunningInBackground")};
inline constexpr PreferenceKey<bool> startInBackground{row("StartInBackground")};
inline constexpr PreferenceKey<std::string> exportFolder{row("ExportFolder")};
inline constexpr PreferenceKey<std::string> lastTemplates{row("LastTemplates")};
inline constexpr PreferenceKey<std::string> writeWindowGeometry{row("WriteWindowGeometry")};
inline constexpr PreferenceKey<std::string> courseInsightPanelMode{row("CourseInsightPanelMode")};
inline constexpr PreferenceKey<bool> studentDetailsHidden{row("StudentDetailsHidden")};
inline constexpr PreferenceKey<std::string> mainWindowGeometry{row("MainWindowGeometry")};
inline constexpr PreferenceKey<std::string> mainWindowColumns{row("MainWindowColumns")};
inline constexpr PreferenceKey<std::string> helpWindowGeometry{row("HelpWindowGeometry")};

/// The row that matches a key; null if none does.
[[nodiscard]] const Preference *find(std::string_view key);

/// Whether a key is synced with the teacher's other computers. Course preferences always are,
/// including those that only a newer version of the program knows.
[[nodiscard]] bool isSynced(std::string_view key);

/// A value as the program stores it under the key; absent for a value of the wrong type. Any value
/// of a key without a row is kept.
[[nodiscard]] std::optional<PreferenceValue>
converted(std::string_view key, const PreferenceValue &value);

/// The defaults by key, without those that are empty.
[[nodiscard]] PreferenceMap registeredDefaults();

} // namespace preferences

} // namespace ellwynd
