#include "base/logfilter.h"
#include "platform/log/systemlog.h"
#include "support/logcapture.h"

#include <QLoggingCategory>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

TEST(SystemLog, LogsQtsMessagesAndAppliesTheFilter) {
    struct Row {
        const char *rules;
        std::vector<std::string> lines;
    };
    const std::string loud = "qt: no font";
    const std::string named = "qt: ellwynd.test: broken";
    const std::string quiet = "qt: using a font";
    const std::string own = "network: read 5 pages";
    for (const Row &row : {
             Row{"", {loud, named, quiet, own}},
             Row{"qt:error", {loud, named}},
             Row{"network", {own}},
             Row{"qt:loudest", {loud, named, quiet, own}},
         }) {
        qputenv("ELLWYND_LOG", row.rules);
        installSystemLog();
        const test::LogCapture log;
        qWarning("no\nfont");
        const QLoggingCategory category("ellwynd.test");
        qCCritical(category, "broken");
        qInfo("using a %s", "font");
        Log("network").info("read 5 pages");
        qInstallMessageHandler(nullptr);
        EXPECT_EQ(log.lines(), row.lines) << row.rules;
    }
    qunsetenv("ELLWYND_LOG");
    Log::setFilter(LogFilter());
}

} // namespace
} // namespace ellwynd
