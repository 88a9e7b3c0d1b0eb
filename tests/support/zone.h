// The time zone of a test.
#pragma once

#include <QByteArray>

#include <ctime>

namespace ellwynd::test {

/// Another zone for as long as it lives.
class Zone {
  public:
    explicit Zone(const char *name) : before(qgetenv("TZ")) { set(name); }
    ~Zone() { set(before); }
    Zone(const Zone &) = delete;
    Zone &operator=(const Zone &) = delete;

  private:
    static void set(const QByteArray &name) {
        qputenv("TZ", name);
        ::tzset();
    }

    QByteArray before;
};

} // namespace ellwynd::test
