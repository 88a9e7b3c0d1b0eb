#include "app/updates/appcast.h"

#include "base/text.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr QLatin1StringView appcastNamespace("http://www.andymatuschak.org/xml-namespaces/sparkle");
constexpr qsizetype longestText = 64;

bool isBuild(std::string_view text) {
    // No component may be empty.
    char before = '.';
    for (const char c : text) {
        if (!isDigit(c) && (c != '.' || before == '.'))
            return false;
        before = c;
    }
    return before != '.';
}

/// Removes the first component and returns it without leading zeros.
std::string_view takeComponent(std::string_view &rest) {
    const std::size_t point = rest.find('.');
    std::string_view component = rest.substr(0, point);
    rest = point == std::string_view::npos ? std::string_view() : rest.substr(point + 1);
    component.remove_prefix(std::min(component.find_first_not_of('0'), component.size()));
    return component;
}

/// The text if it can be shown on one line of the window; otherwise empty.
QString shown(const QString &text) {
    const QString line = text.trimmed();
    const bool fits = line.size() <= longestText &&
        std::ranges::all_of(line, [](QChar c) { return c.isPrint() || c.isSurrogate(); });
    return fits ? line : QString();
}

std::optional<Update> readItem(QXmlStreamReader &xml) {
    QString build;
    QString version;
    QString channel;
    QString system;
    while (xml.readNextStartElement()) {
        const QStringView name = xml.name();
        if (xml.namespaceUri() == appcastNamespace) {
            if (name == u"version")
                build = xml.readElementText();
            else if (name == u"shortVersionString")
                version = xml.readElementText();
            else if (name == u"channel")
                channel = xml.readElementText();
            else
                xml.skipCurrentElement();
            continue;
        }
        if (xml.namespaceUri().isEmpty() && name == u"enclosure") {
            // Elements take precedence over attributes of the enclosure.
            const QXmlStreamAttributes attributes = xml.attributes();
            const auto take = [&](QString &text, const char *attribute) {
                if (text.isEmpty())
                    text =
                        attributes.value(appcastNamespace, QLatin1StringView(attribute)).toString();
            };
            take(build, "version");
            take(version, "shortVersionString");
            take(system, "os");
        }
        xml.skipCurrentElement();
    }
    const std::string number = build.trimmed().left(longestText + 1).toStdString();
    // Without a system the item is for all of them.
    const bool isForOther =
        !system.trimmed().isEmpty() && system.trimmed().compare(u"linux", Qt::CaseInsensitive) != 0;
    if (isForOther || !channel.trimmed().isEmpty() || !isBuild(number) ||
        number.size() > longestText)
        return std::nullopt;
    const QString line = shown(version);
    return Update{.build = number, .version = line.isEmpty() ? number : line.toStdString()};
}

} // namespace

bool isNewerBuild(std::string_view build, std::string_view than) {
    if (!isBuild(build) || !isBuild(than))
        return false;
    while (!build.empty() || !than.empty()) {
        const std::string_view a = takeComponent(build);
        const std::string_view b = takeComponent(than);
        if (a != b)
            return a.size() != b.size() ? a.size() > b.size() : a > b;
    }
    return false;
}

std::optional<Update> newestUpdate(std::string_view feed) {
    QXmlStreamReader xml(QByteArray::fromRawData(feed.data(), qsizetype(feed.size())));
    xml.setEntityExpansionLimit(0);
    while (!xml.atEnd() && !xml.isStartElement()) {
        if (xml.readNext() == QXmlStreamReader::DTD)
            xml.raiseError(QStringLiteral("it declares a document type"));
    }
    if (xml.isStartElement() && (xml.name() != u"rss" || !xml.namespaceUri().isEmpty()))
        xml.raiseError(QStringLiteral("it is not RSS"));
    std::optional<Update> newest;
    while (xml.readNextStartElement()) {
        if (xml.name() != u"channel" || !xml.namespaceUri().isEmpty()) {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {
            if (xml.name() != u"item" || !xml.namespaceUri().isEmpty()) {
                xml.skipCurrentElement();
                continue;
            }
            const auto item = readItem(xml);
            if (item && (!newest || isNewerBuild(item->build, newest->build)))
                newest = item;
        }
    }
    while (!xml.atEnd())
        xml.readNext();
    if (xml.hasError())
        throw UpdateError(
            "The list of updates couldn’t be read: " + xml.errorString().toStdString() + ".");
    return newest;
}

} // namespace ellwynd
