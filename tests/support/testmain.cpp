// Runs a test program with a Qt application and a temporary home folder.
#include <gtest/gtest.h>

#ifdef ELLWYND_TEST_WIDGETS
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif

#include <QTemporaryDir>

int main(int argc, char **argv) {
    const QTemporaryDir home;
    for (const char *variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
          "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().toLocal8Bit());
    const Application application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
