#include "app/shell/settings.h"
#include "base/text.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/table.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

/// A value as people read it: text without quotes, a whole number without a fraction.
std::string plain(const PreferenceValue &value) {
    if (const auto *text = std::get_if<std::string>(&value))
        return oneLine(*text);
    if (const auto *real = std::get_if<double>(&value))
        return fmt::format("{}", *real);
    return toJSON(value);
}

int listSaved(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "defaults list", "Show the saved preferences.");
    if (!line.parse(words))
        return done;
    if (line.wantsJSON()) {
        line.print(context.defaults().persistentDomainJSON());
        return done;
    }
    Table table({{"Key"}, {"Value"}});
    for (const auto &[key, value] : context.defaults().persistentDomain())
        table.add({key, plain(value)});
    line.print(table.text(line.columns()));
    return done;
}

JSON keyDocument(const Preference &row, const std::optional<PreferenceValue> &value) {
    JSON choices = JSON::array();
    if (row.type == Preference::Type::boolean)
        choices = {"YES", "NO"};
    for (const std::string_view choice : row.choices)
        choices.push_back(choice);
    return {
        {"key", row.key},
        {"takes", row.acceptedValues()},
        {"choices", std::move(choices)},
        {"value", value ? JSON::parse(toJSON(*value)) : JSON(nullptr)},
        {"meaning", row.meaning}};
}

/// The preferences that teachers change, in the order of their table.
int listKeys(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "defaults keys", "Show what can be set, and the values in effect.");
    if (!line.parse(words))
        return done;
    // The completions of the shells read these columns.
    Table table({{"Key"}, {"Value"}, {"Meaning"}, {"Takes"}});
    JSON list = JSON::array();
    for (const Preference &row : preferences::table) {
        if (!row.isForTeachers())
            continue;
        const auto value = context.defaults().object(std::string(row.key));
        table.add(
            {std::string(row.key), value ? plain(*value) : "", std::string(row.meaning),
             row.acceptedValues()});
        list.push_back(keyDocument(row, value));
    }
    line.print(line.wantsJSON() ? printed(list) : table.text(line.columns()));
    return done;
}

int readOne(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "defaults read", "Show the value in effect.");
    line.argument("KEY", "The preference's key.");
    if (!line.parse(words))
        return done;
    const auto value = context.defaults().object(line.word(0));
    if (!value)
        throw Failure(fmt::format("There is no value for {}.", line.word(0)));
    line.print((line.wantsJSON() ? toJSON(*value) : plain(*value)) + "\n");
    return done;
}

int writeOne(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "defaults write", "Save a value, as the settings window does.");
    line.argument("KEY", "The preference's key.");
    line.argument("VALUE", "YES, NO, a number or a text.");
    // A value may begin with "-", so both words are positional.
    const bool asksForHelp = words.size() != 2;
    if (!line.parse(asksForHelp ? words : QStringList{QStringLiteral("--")} + words))
        return done;
    const std::string key = line.word(0);
    const PreferenceValue value = parsePreferenceValue(line.word(1));
    const bool isMemory =
        key == preferences::rememberRosterHistory.name || key == preferences::rememberContacts.name;
    // The store deletes its data when its preference is switched off, so it has to exist. Opened
    // for another value, it might delete data because of a launch argument.
    if (isMemory && valueAs<bool>(value) == false)
        static_cast<void>(context.stores());
    try {
        writeSetting(context.defaults(), key, value);
    } catch (const InvalidPreference &error) {
        throw UsageError(error.what());
    }
    requireSaved(context);
    return done;
}

int deleteOne(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "defaults delete", "Forget a saved value.");
    line.argument("KEY", "The preference's key.");
    if (!line.parse(words))
        return done;
    context.defaults().remove(line.word(0));
    requireSaved(context);
    return done;
}

} // namespace

static int runDefaults(CommandContext &context, const QStringList &words) {
    const QString verb = words.value(0);
    const QStringList rest = words.mid(1);
    if (verb == u"list")
        return listSaved(context, rest);
    if (verb == u"keys")
        return listKeys(context, rest);
    if (verb == u"read")
        return readOne(context, rest);
    if (verb == u"write")
        return writeOne(context, rest);
    if (verb == u"delete")
        return deleteOne(context, rest);
    CommandLine line(context, "defaults", "Show or change the preferences.");
    line.argument("VERB", "list, keys, read KEY, write KEY VALUE or delete KEY.");
    if (!line.parse(words))
        return done;
    throw UsageError(fmt::format("defaults has no verb {}", verb.toStdString()));
}

Command defaultsCommand() {
    return {"defaults", "show or change the preferences", runDefaults};
}

} // namespace ellwynd::cli
