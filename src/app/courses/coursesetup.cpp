#include "app/courses/coursesetup.h"

#include "base/text.h"
#include "risk/coursethresholds.h"

#include <QRegularExpression>
#include <QString>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>

namespace ellwynd {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

bool isSeparator(QChar c) {
    return c.isSpace() || QStringView(u"-_./:&").contains(c);
}

bool isLetter(QChar c) {
    return c.isLetter() || c.isMark();
}

template<class Matches>
qsizetype skip(const QString &code, qsizetype at, Matches matches) {
    while (at < code.size() && matches(code[at]))
        ++at;
    return at;
}

/// The result of reading a subject and a number at one position of a text: letters, then digits
/// with any letters that follow directly.
struct Reading {
    /// "CS 101L", or "BIO-L 101"; empty if no number follows the letters.
    QString found;
    /// The position after the letters.
    qsizetype lettersEnd = 0;
    /// The position after the number.
    qsizetype end = 0;
};

/// Whether a reading is a term, such as "FALL 2025" or "SP 26"; many codes begin with one.
bool isTerm(const QString &found) {
    static const QRegularExpression term(QStringLiteral(
        "^(FALL|AUTUMN|WINTER|SPRING|SUMMER|TERM|SEM|SEMESTER|QUARTER|YEAR|F|FA|AU|W|"
        "WI|S|SP|SU|AY) (\\d|\\d\\d|20\\d\\d)$"));
    return term.match(found).hasMatch();
}

/// Whether a reading is a section, such as "SECTION 3"; some codes begin with one.
bool isSection(const QString &found) {
    static const QRegularExpression section(QStringLiteral(
        "^((SECTION|CRN) \\d+|(SECT?|LEC|LECTURE|GROUP|CLASS|PERIOD|BLOCK) \\d\\d?)$"));
    return section.match(found).hasMatch();
}

Reading readSubjectAndNumber(const QString &code, qsizetype start) {
    const auto isDigit = [](QChar c) { return c.isDigit(); };
    qsizetype letters = skip(code, start, isLetter);
    if (letters == start)
        return {.found = {}, .lettersEnd = start, .end = start};
    // One letter after a hyphen belongs to the subject, as in "BIO-L 101", the laboratory.
    const bool hasSuffix = letters + 1 < code.size() && code[letters] == u'-' &&
        skip(code, letters + 1, isLetter) == letters + 2;
    const QString first = code.mid(start, letters - start).toUpper();
    if (hasSuffix && !isTerm(first + QStringLiteral(" 1")))
        letters += 2;
    const qsizetype number = skip(code, letters, isSeparator);
    const qsizetype digits = skip(code, number, isDigit);
    if (digits == number)
        return {.found = {}, .lettersEnd = letters, .end = letters};
    const qsizetype end = skip(code, digits, isLetter);
    return {
        .found = code.mid(start, letters - start).toUpper() + u' ' +
            code.mid(number, end - number).toUpper(),
        .lettersEnd = letters,
        .end = end};
}

bool isEarlier(const std::optional<Term> &term, const std::optional<Term> &own) {
    if (!term || !own)
        return true;
    if (term->id == own->id)
        return false;
    if (term->startAt && own->startAt)
        return *term->startAt < *own->startAt;
    return term->startAt || own->startAt || term->id < own->id;
}

/// The first course of the groups with the wanted edition; absent if that is empty.
template<class Edition>
std::optional<std::int64_t>
newest(const std::vector<TermGroup> &terms, const std::string &wanted, Edition edition) {
    if (wanted.empty())
        return std::nullopt;
    for (const TermGroup &group : terms) {
        for (const Course &course : group.courses) {
            if (edition(course) == wanted)
                return course.id;
        }
    }
    return std::nullopt;
}

/// The values of a setup as preferences of a course.
PreferenceChanges asChanges(const CourseSetup &setup, std::int64_t courseID) {
    using namespace courseSettings;
    PreferenceChanges changes;
    if (setup.passingScore)
        changes.emplace(key(courseID, passingScore), *setup.passingScore);
    if (setup.inactivityDays)
        changes.emplace(key(courseID, inactivityDays), *setup.inactivityDays);
    if (!setup.icon.icon.empty())
        changes.emplace(key(courseID, icon), setup.icon.icon);
    if (!setup.icon.color.empty())
        changes.emplace(key(courseID, iconColor), setup.icon.color);
    return changes;
}

} // namespace

CourseSetup courseSetup(const UserDefaults &defaults, std::int64_t courseID) {
    const CourseThresholds thresholds = courseThresholds(defaults, courseID);
    CourseSetup setup{.icon = courseIcon(defaults, courseID)};
    if (thresholds.passingOverridden)
        setup.passingScore = thresholds.passingScore;
    if (thresholds.inactivityOverridden)
        setup.inactivityDays = thresholds.inactivityDays;
    return setup;
}

std::string setupText(const CourseSetup &setup) {
    std::vector<std::string> parts;
    if (setup.passingScore)
        parts.push_back(fmt::format("passing score {}%", *setup.passingScore));
    if (setup.inactivityDays)
        parts.push_back(plural(*setup.inactivityDays, "inactivity day"));
    if (!setup.icon.icon.empty())
        parts.emplace_back("icon");
    if (!setup.icon.color.empty())
        parts.emplace_back("colour");
    std::string list = join(parts, ", ");
    // The list begins a sentence. toupper leaves digits unchanged.
    if (!list.empty())
        list.front() = char(std::toupper(static_cast<unsigned char>(list.front())));
    return list;
}

std::string setupSummary(const CourseSetup &setup) {
    const std::string parts = setupText(setup);
    if (parts.empty())
        return "This course follows the defaults, so there is nothing to copy.";
    return parts + ". Everything else stays as it is.";
}

std::string editionOf(std::string_view courseCode) {
    const QString code = text(courseCode).simplified();
    for (qsizetype at = 0; at < code.size();) {
        const Reading reading = readSubjectAndNumber(code, at);
        const bool isOther = isTerm(reading.found) || isSection(reading.found);
        if (!reading.found.isEmpty() && !isOther)
            return reading.found.toStdString();
        at = std::max(isOther ? reading.end : reading.lettersEnd, at + 1);
    }
    return code.toUpper().toStdString();
}

std::string subjectAndNumber(std::string_view courseName) {
    const QString name = text(courseName).trimmed();
    Reading reading = readSubjectAndNumber(name, 0);
    // A name begins with the subject, but for a term or a section before it.
    while (isTerm(reading.found) || isSection(reading.found))
        reading = readSubjectAndNumber(name, skip(name, reading.end, isSeparator));
    return reading.found.toStdString();
}

SetupCandidates setupCandidates(const std::vector<Course> &courses, std::int64_t courseID) {
    const auto own = std::ranges::find(courses, courseID, &Course::id);
    if (own == courses.end())
        return {};
    std::vector<Course> others;
    for (const Course &course : courses) {
        if (course.id != courseID && isEarlier(course.term, own->term))
            others.push_back(course);
    }
    SetupCandidates candidates{.terms = groupByTerm(others), .suggested = std::nullopt};
    const auto byCode = [](const Course &course) {
        return editionOf(course.courseCode.value_or(""));
    };
    const auto byName = [](const Course &course) {
        return subjectAndNumber(course.name.value_or(""));
    };
    candidates.suggested = newest(candidates.terms, byCode(*own), byCode);
    if (!candidates.suggested)
        candidates.suggested = newest(candidates.terms, byName(*own), byName);
    return candidates;
}

PreferenceChanges
copyCourseSetup(UserDefaults &defaults, std::int64_t fromCourseID, std::int64_t toCourseID) {
    return defaults.update(asChanges(courseSetup(defaults, fromCourseID), toCourseID));
}

} // namespace ellwynd
