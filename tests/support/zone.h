// The time zone of a test.
#pragma once

#include <QByteArray>

#include <ctime>

namespace ellwynd::test {

/// Sets another time zone for its lifetime.
class Zone {
  public:
    explicit Zone(const char *name) : previous(qgetenv("TZ")) { set(name); }
    ~Zone() { set(previous); }
    Zone(const Zone &) = delete;
    Zone &operator=(const Zone &) = delete;

  private:
    static void set(const QByteArray &name) {
        qputenv("TZ", name);
        ::tzset();
    }

    QByteArray previous;
};

} // namespace ellwynd::test
