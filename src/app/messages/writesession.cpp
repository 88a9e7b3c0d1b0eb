#include "app/messages/writesession.h"

#include "app/messages/lasttemplates.h"
#include "app/messages/messagetexts.h"
#include "app/undo/undotexts.h"
#include "base/log.h"
#include "base/text.h"
#include "risk/coursethresholds.h"

#include <QPointer>

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

namespace ellwynd {

namespace {

constexpr Log exports{"export"};

bool isBlank(std::string_view text) {
    return trim(text).empty();
}

std::set<StudentKey> studentsOf(const ContactChange &change) {
    std::set<StudentKey> students;
    for (const ContactChange::Entry &entry : change.entries)
        students.insert({entry.after->courseID, entry.after->studentID});
    return students;
}

} // namespace

WriteSession::WriteSession(
    const SharedList<RiskRow> &rows, UserDefaults &defaults, Stores &stores, UndoStack &undo,
    ClipboardWriter clipboard, Clock now)
    : defaults(defaults), stores(stores), undo(undo), clipboard(std::move(clipboard)), now(now) {
    for (const RiskRow &row : rows)
        all.push_back({.row = row, .text = {}, .templateID = {}});
    if (!all.empty())
        shown = 0;
    connect(
        &stores.templates, &TemplateStore::templatesDidChange, this,
        &WriteSession::sessionDidChange);
    connect(&undo, &UndoStack::newestDidChange, this, &WriteSession::sessionDidChange);
    connect(&undo, &UndoStack::stackDidClear, this, [this] {
        steps.clear();
        Q_EMIT sessionDidExpire();
    });
}

// ---- Students ----------------------------------------------------------------------------------

const WriteSession::Student *WriteSession::currentStudent() const {
    return shown ? &all[*shown] : nullptr;
}

void WriteSession::setCurrent(std::size_t index) {
    if (index >= all.size() || shown == index)
        return;
    shown = index;
    Q_EMIT sessionDidChange();
}

void WriteSession::add(const SharedList<RiskRow> &rows) {
    const std::size_t known = all.size();
    std::optional<std::size_t> first;
    for (const RiskRow &row : rows) {
        const auto found = std::ranges::find(
            all, keyOf(row), [](const Student &student) { return keyOf(student.row); });
        if (!first)
            first = std::size_t(found - all.begin());
        if (found == all.end())
            all.push_back({.row = row, .text = {}, .templateID = {}});
    }
    if (first)
        shown = known < all.size() ? known : *first;
    Q_EMIT sessionDidChange();
}

/// The next student who is waiting, after the current one and then from the first.
void WriteSession::showNext() {
    const std::size_t from = shown ? *shown + 1 : 0;
    shown.reset();
    for (std::size_t i = 0; i < all.size() && !shown; ++i) {
        const std::size_t index = (from + i) % all.size();
        if (all[index].progress == Progress::waiting)
            shown = index;
    }
    if (!shown)
        finish();
    Q_EMIT sessionDidChange();
}

void WriteSession::skip() {
    if (shown && all[*shown].progress == Progress::waiting)
        all[*shown].progress = Progress::skipped;
    showNext();
}

std::size_t WriteSession::count(Progress progress) const {
    return std::size_t(std::ranges::count(all, progress, &Student::progress));
}

std::size_t WriteSession::uncopiedEdits() const {
    return std::size_t(std::ranges::count_if(all, [](const Student &student) {
        return student.progress == Progress::waiting && student.text.has_value();
    }));
}

std::optional<OutreachOutcome> WriteSession::outreach() const {
    return shown ? lastOutcome(all[*shown].row, stores.contacts, stores.history, now())
                 : std::nullopt;
}

// ---- The message -------------------------------------------------------------------------------

const MessageTemplate *WriteSession::messageOf(const Student &student) const {
    const TemplateStore &templates = stores.templates;
    for (const std::string &id :
         {student.templateID, chosenTemplate, lastTemplates::of(defaults, student.row.courseID)}) {
        if (const MessageTemplate *known = templates.find(id))
            return known;
    }
    return templates.templates().empty() ? nullptr : &templates.templates().front();
}

std::string WriteSession::textOf(const Student &student) const {
    if (student.text)
        return *student.text;
    const MessageTemplate *message = messageOf(student);
    if (message == nullptr)
        return {};
    return fill(
        *message, student.row, std::nullopt,
        courseThresholds(defaults, student.row.courseID).passingScore);
}

std::string WriteSession::text() const {
    return shown ? textOf(all[*shown]) : std::string();
}

const MessageTemplate *WriteSession::message() const {
    return shown ? messageOf(all[*shown]) : nullptr;
}

void WriteSession::edit(const std::string &text) {
    if (!shown || text == this->text())
        return;
    Student &student = all[*shown];
    // The message remains that of its template, whatever is chosen for others.
    if (const MessageTemplate *message = messageOf(student))
        student.templateID = message->id;
    student.text.reset();
    if (text != textOf(student))
        student.text = text;
    Q_EMIT sessionDidChange();
}

void WriteSession::chooseTemplate(const std::string &id) {
    if (!shown || stores.templates.find(id) == nullptr)
        return;
    chosenTemplate = id;
    all[*shown].text.reset();
    all[*shown].templateID.clear();
    Q_EMIT sessionDidChange();
}

// ---- Copying -----------------------------------------------------------------------------------

WriteSession::CopyResult WriteSession::copyAndNext() {
    const std::string message = text();
    if (isBlank(message))
        return CopyResult::empty;
    if (!clipboard(message))
        return CopyResult::clipboardFailed;
    didCopy({*shown});
    showNext();
    return CopyResult::copied;
}

WriteSession::CopyResult WriteSession::copyAll() {
    std::vector<std::size_t> copied;
    std::string joined;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].progress != Progress::waiting)
            continue;
        const std::string message = textOf(all[i]);
        if (isBlank(message))
            continue;
        if (!copied.empty())
            joined += "\n\n";
        joined += message;
        if (joined.size() > maxJoinedSize)
            return CopyResult::tooLong;
        copied.push_back(i);
    }
    if (copied.empty())
        return CopyResult::empty;
    if (!clipboard(joined))
        return CopyResult::clipboardFailed;
    didCopy(copied);
    showNext();
    return CopyResult::copied;
}

void WriteSession::didCopy(const std::vector<std::size_t> &indices) {
    std::vector<RiskRow> rows;
    std::map<std::string, std::set<std::int64_t>> coursesByTemplate;
    clipboardNames.clear();
    for (const std::size_t index : indices) {
        Student &student = all[index];
        const MessageTemplate *message = messageOf(student);
        student.text = textOf(student);
        student.templateID = message != nullptr ? message->id : std::string();
        student.progress = Progress::copied;
        if (message != nullptr)
            coursesByTemplate[message->id].insert(student.row.courseID);
        rows.push_back(student.row);
        clipboardNames.push_back(student.row.name);
    }
    for (const auto &[templateID, courses] : coursesByTemplate)
        lastTemplates::save(defaults, courses, templateID);
    ContactChange change = noteContacts(stores.contacts, rows, now());
    exports.info(fmt::format("Copied messages for {} student(s)", rows.size()));
    if (!change.entries.empty())
        push(std::move(change));
}

void WriteSession::clipboardDidChange() {
    if (clipboardNames.empty())
        return;
    clipboardNames.clear();
    Q_EMIT sessionDidChange();
}

// ---- Undo --------------------------------------------------------------------------------------

void WriteSession::push(ContactChange change) {
    const std::set<StudentKey> students = studentsOf(change);
    std::vector<std::string> names;
    for (const Student &student : all) {
        if (students.contains(keyOf(student.row)))
            names.push_back(student.row.name);
    }
    UndoTexts texts = undotexts::markedContacted(names);
    texts.note = messagetexts::copiedFor(names.size());
    const QPointer<WriteSession> self(this);
    const UndoStack::ID id =
        undo.push({.texts = std::move(texts), .undo = [&contacts = stores.contacts, change, self] {
                       const std::size_t left = contacts.undo(change);
                       if (self)
                           self->takeBack(change);
                       return undoResult(left, change.entries.size());
                   }});
    steps.push_back({.id = id, .change = std::move(change)});
}

/// The students of an undone copy wait again.
void WriteSession::takeBack(const ContactChange &change) {
    // Ids ascend, so the undone step and those after it are gone.
    std::erase_if(steps, [newest = undo.newestID()](const Step &step) { return step.id > newest; });
    const std::set<StudentKey> students = studentsOf(change);
    std::optional<std::size_t> first;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!students.contains(keyOf(all[i].row)))
            continue;
        all[i].progress = Progress::waiting;
        if (!first)
            first = i;
    }
    if (first)
        shown = first;
    Q_EMIT sessionDidChange();
}

bool WriteSession::canUndo() const {
    return std::ranges::find(steps, undo.newestID(), &Step::id) != steps.end();
}

void WriteSession::finish() {
    if (steps.size() < 2)
        return;
    std::vector<ContactChange> latest;
    // The stack keeps only some steps; below its oldest were those that it has dropped.
    while (!steps.empty() && (steps.back().id == undo.newestID() || undo.newest() == nullptr)) {
        latest.push_back(std::move(steps.back().change));
        steps.pop_back();
        undo.dropNewest();
    }
    if (latest.empty())
        return;
    ContactChange merged = std::move(latest.back());
    for (auto change = latest.rbegin() + 1; change != latest.rend(); ++change)
        merged.append(*change);
    push(std::move(merged));
}

} // namespace ellwynd
