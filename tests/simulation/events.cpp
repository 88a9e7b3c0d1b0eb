#include "events.h"

#include <QMetaEnum>

#include <fmt/format.h>

#include <random>

namespace ellwynd::simulation {

using Kind = Event::Kind;

bool passesTime(Kind kind) {
    return kind == Kind::passSeconds || kind == Kind::passMinutes || kind == Kind::passHours ||
        kind == Kind::sleep || kind == Kind::setClock || kind == Kind::travel;
}

bool changesSchools(Kind kind) {
    return kind >= Kind::setWork && kind <= Kind::beginTerm;
}

bool isOfCloud(Kind kind) {
    return kind >= Kind::upload && kind <= Kind::folderBack;
}

bool canBeKilled(Kind kind) {
    return !changesSchools(kind) && !passesTime(kind) && !isOfCloud(kind) &&
        kind != Kind::runInSample && kind != Kind::kill;
}

std::vector<Event> randomTerm(unsigned seed) {
    std::mt19937 random(seed);
    const auto draw = [&](int below) { return int(random() % unsigned(below)); };
    constexpr int days = 120;
    const int computers = 1 + draw(2);
    // Without it the last value of each setting is known.
    const bool switchesSync = draw(2) == 0;
    std::vector<Event> events;
    for (int day = 0; day < days; ++day) {
        const int count = draw(8);
        for (int i = 0; i < count; ++i) {
            Event event{Kind(draw(Event::kinds)), draw(computers), draw(1 << 16)};
            // What takes everything away is rare.
            const bool isRare = event.kind == Kind::signOut || event.kind == Kind::deleteHistory ||
                event.kind == Kind::deleteElsewhere || event.kind == Kind::switchHistory ||
                event.kind == Kind::switchContacts || event.kind == Kind::loseNetwork ||
                event.kind == Kind::lockKeyring || event.kind == Kind::setClock ||
                event.kind == Kind::fillDisk || event.kind == Kind::beginTerm ||
                event.kind == Kind::endTerm;
            if ((isRare && draw(6) != 0) || (event.kind == Kind::switchSync && !switchesSync))
                event.kind = draw(3) == 0 ? Kind::changePreference : Kind::openCourse;
            events.push_back(event);
        }
        events.push_back({Kind::passHours, 0, 8 + draw(20)});
    }
    return events;
}

std::string textOf(const std::vector<Event> &events) {
    const auto names = QMetaEnum::fromType<Kind>();
    std::string text;
    for (const Event &event : events) {
        const char *name = names.valueToKey(int(event.kind));
        text += fmt::format("{{Kind::{}, {}, {}}}, ", name, event.computer, event.draw);
    }
    return text;
}

} // namespace ellwynd::simulation
