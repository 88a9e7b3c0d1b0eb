// Every preference of the program, once: its key, its type and what it reads as when absent.
#pragma once

#include "preferences/preferencevalue.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace ellwynd {

/// A preference's key with its type. `normalise` maps a stored value onto the values in use, at
/// every read and write.
template<class T>
struct PreferenceKey {
    using Fallback = std::conditional_t<
        std::is_same_v<T, std::string>, std::string_view,
        std::conditional_t<std::is_same_v<T, IDList>, std::nullptr_t, T>>;

    std::string_view name;
    Fallback fallback{};
    T (*normalise)(T) = nullptr;
};

namespace preferences {

// Connection and sample college.
/// The Canvas address as typed; empty means not connected.
inline constexpr PreferenceKey<std::string> canvasBaseURL{"CanvasBaseURL", ""};
/// Use the invented college instead of Canvas.
inline constexpr PreferenceKey<bool> sampleData{"SampleData", false};
/// In sample mode, whether widgets and notices are fed too.
inline constexpr PreferenceKey<bool> sampleWidgets{"SampleWidgets", false};
inline constexpr PreferenceKey<bool> sampleNotifications{"SampleNotifications", false};

// Scoring; a course may override both under "Course.{id}.".
/// Percent.
inline constexpr PreferenceKey<double> defaultPassingScore{"DefaultPassingScore", 70.0};
/// Whole days behind the class.
inline constexpr PreferenceKey<std::int64_t> defaultInactivityDays{"DefaultInactivityDays", 7};

// Appearance.
/// "automatic", "light" or "dark".
inline constexpr PreferenceKey<std::string> appearance{"Appearance", "automatic"};
/// "system", "blue", "indigo", "purple", "teal", "pink" or "graphite".
inline constexpr PreferenceKey<std::string> accentTheme{"AccentTheme", "system"};
/// Factor on every text, 0.8 to 2.0.
inline constexpr PreferenceKey<double> textScale{
    "TextScale", 1.0, [](double scale) { return std::clamp(scale, 0.8, 2.0); }};
/// One line per student in the roster.
inline constexpr PreferenceKey<bool> rosterCompactRows{"RosterCompactRows", false};
/// Terms in the sidebar, newest first; 0 stands for all of them.
inline constexpr PreferenceKey<std::int64_t> sidebarTermLimit{
    "SidebarTermLimit", 6, [](std::int64_t limit) { return std::max<std::int64_t>(limit, 0); }};
/// Ids of the terms whose group is open in the sidebar; absent until the teacher opens or closes
/// one.
inline constexpr PreferenceKey<IDList> sidebarExpandedTerms{"SidebarExpandedTerms"};

// What is remembered between visits; switching one off deletes its memory.
inline constexpr PreferenceKey<bool> rememberContacts{"RememberContacts", true};
inline constexpr PreferenceKey<bool> rememberRosterHistory{"RememberRosterHistory", true};

// Dashboard, widgets and notices.
/// The dashboard's term; 0 is Automatic.
inline constexpr PreferenceKey<std::int64_t> dashboardTermID{"DashboardTermID", 0};
/// Leave course names out of the widget snapshot.
inline constexpr PreferenceKey<bool> widgetsHideCourseNames{"WidgetsHideCourseNames", false};
inline constexpr PreferenceKey<bool> movementNotifications{"MovementNotifications", false};
/// Post notices even while the program is in front.
inline constexpr PreferenceKey<bool> notifyWhileActive{"NotifyWhileActive", false};

// Sync.
inline constexpr PreferenceKey<bool> syncSettings{"SyncSettingsViaICloud", false};
/// The folder that the teacher's own sync service keeps in step; empty for none. Never synced
/// itself.
inline constexpr PreferenceKey<std::string> cloudStoreFolder{"CloudStoreFolder", ""};

// Updates and first run.
/// Look for updates once a day without being asked; where the program was built without a feed
/// there is none to look at.
inline constexpr PreferenceKey<bool> automaticUpdateChecks{"AutomaticUpdateChecks", true};
/// The instant at which an update check last began; empty before the first.
inline constexpr PreferenceKey<std::string> lastUpdateCheck{"LastUpdateCheck", ""};
/// "yyyy-MM-dd", the last day whose first update check ended well.
inline constexpr PreferenceKey<std::string> lastCountedCheckDay{"LastCountedCheckDay", ""};
/// Build and version of an announced update; empty for none.
inline constexpr PreferenceKey<std::string> pendingUpdateBuild{"PendingUpdateBuild", ""};
inline constexpr PreferenceKey<std::string> pendingUpdateVersion{"PendingUpdateVersion", ""};
/// How far the first-run steps are, from 0.
inline constexpr PreferenceKey<std::int64_t> onboardingStep{"Onboarding.step", 0};
/// "shown", "small" or "hidden".
inline constexpr PreferenceKey<std::string> courseInsightPanelMode{
    "CourseInsightPanelMode", "shown"};

// The windows as they were left; base64 of the window system's own forms.
inline constexpr PreferenceKey<std::string> mainWindowGeometry{"MainWindowGeometry", ""};
inline constexpr PreferenceKey<std::string> mainWindowColumns{"MainWindowColumns", ""};
inline constexpr PreferenceKey<bool> studentDetailsHidden{"StudentDetailsHidden", false};
inline constexpr PreferenceKey<std::string> helpWindowGeometry{"HelpWindowGeometry", ""};

/// What reads as if it were saved when it is not: every key above that has a default.
[[nodiscard]] PreferenceMap registeredDefaults();

} // namespace preferences

} // namespace ellwynd
