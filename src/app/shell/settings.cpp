#include "app/shell/settings.h"

namespace ellwynd {

void writeSetting(UserDefaults &defaults, const std::string &key, PreferenceValue value) {
    if (const Preference *row = preferences::find(key))
        value = row->accept(key, value);
    defaults.set(key, std::move(value));
}

Settings::Settings(UserDefaults &store)
    : store(store), observing(store.observe([this](std::string_view key) {
          if (const Preference *row = preferences::find(key))
              announce(row->changeSignal);
      })) {}

void Settings::setTextScale(double scale) {
    scale = preferences::textScale.normalise(scale);
    if (scale != store.value(preferences::textScale))
        store.set(preferences::textScale, scale);
}

void Settings::announce(Preference::ChangeSignal change) {
    using Signal = Preference::ChangeSignal;
    switch (change) {
    case Signal::none:
        break;
    case Signal::appearance:
        Q_EMIT appearanceDidChange();
        break;
    case Signal::accentTheme:
        Q_EMIT accentThemeDidChange();
        break;
    case Signal::textScale:
        Q_EMIT textScaleDidChange();
        break;
    case Signal::termLimit:
        Q_EMIT termLimitDidChange();
        break;
    }
}

} // namespace ellwynd
