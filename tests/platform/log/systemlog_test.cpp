#include "base/logfilter.h"
#include "platform/log/systemlog.h"
#include "support/logcapture.h"

#include <QLoggingCategory>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

TEST(SystemLog, LogsQtsMessagesAndAppliesTheFilter) {
    const std::string loud = "qt: no font";
    const std::string named = "qt: ellwynd.test: broken";
    const std::string quiet = "qt: using a font";
    const std::string own = "network: read 5 pages";
    for (const auto &[rules, lines] :
         std::vector<std::pair<const char *, std::vector<std::string>>>{
             {"", {loud, named, quiet, own}},
             {"qt:error", {loud, named}},
             {"network", {own}},
             {"qt:loudest", {loud, named, quiet, own}},
         }) {
        qputenv("ELLWYND_LOG", rules);
        installSystemLog();
        const test::LogCapture log;
        qWarning("no\nfont");
        const QLoggingCategory category("ellwynd.test");
        qCCritical(category, "broken");
        qInfo("using a %s", "font");
        Log("network").info("read 5 pages");
        qInstallMessageHandler(nullptr);
        EXPECT_EQ(log.lines(), lines) << rules;
    }
    qunsetenv("ELLWYND_LOG");
    Log::setFilter(LogFilter());
}

} // namespace
} // namespace ellwynd
