#include "app/shell/appdelegate.h"

#include "app/mainwindowcontroller.h"
#include "app/shell/deeplink.h"
#include "app/updates/updater.h"
#include "base/log.h"
#include "platform/session/applicationservice.h"

#include <fmt/format.h>

namespace ellwynd {

namespace {

constexpr Log logger{"settings"};
constexpr Log clicks{"links"};

} // namespace

AppDelegate::AppDelegate(
    UserDefaults &defaults, MainWindowController &controller, ApplicationService &service,
    Updater &updater, NewInstance newInstance)
    : defaults(defaults),
      controller(controller),
      service(service),
      updater(updater),
      newInstance(std::move(newInstance)) {
    connect(
        &service, &ApplicationService::activationRequested, this,
        &AppDelegate::activationRequested);
    connect(&service, &ApplicationService::linksRequested, this, &AppDelegate::openLinks);
    connect(&service, &ApplicationService::courseRequested, this, &AppDelegate::openNotice);
    logger.info("Ellwynd launching");
}

void AppDelegate::launch(const QStringList &links) {
    openLinks(links);
    controller.refresh();
    updater.start();
}

bool AppDelegate::isSampleMode() const {
    return defaults.value(preferences::sampleData);
}

void AppDelegate::openLinks(const QStringList &links, const QString &activationToken) {
    std::optional<std::int64_t> courseID;
    for (const QString &link : links) {
        if (const auto named = courseOfLink(link.toStdString()))
            courseID = named;
    }
    if (!courseID)
        return;
    clicks.info(fmt::format("A link requested course {}", *courseID));
    Q_EMIT activationRequested(activationToken);
    controller.showCourse(*courseID);
}

void AppDelegate::openNotice(std::optional<std::int64_t> courseID, const QString &activationToken) {
    Q_EMIT activationRequested(activationToken);
    if (!courseID)
        return;
    clicks.info(fmt::format("A notice requested course {}", *courseID));
    controller.showCourse(*courseID);
}

void AppDelegate::switchSampleMode() {
    const PreferenceMap saved = defaults.persistentDomain();
    const auto before = saved.find(preferences::sampleData.name);
    // The opposite of the effective value: a launch argument applies to this run only.
    const bool on = !isSampleMode();
    defaults.set(preferences::sampleData, on);
    logger.info(fmt::format("Sample data {}; relaunching", on ? "on" : "off"));
    // Otherwise the new instance would forward its links to this one and quit.
    service.releaseName();
    const auto failure = newInstance();
    if (!failure) {
        Q_EMIT terminationRequested();
        return;
    }
    logger.error(fmt::format("Relaunch failed: {}", *failure));
    // This run continues in its mode, so restore the saved preference.
    if (before != saved.end())
        defaults.set(preferences::sampleData.name, before->second);
    else
        defaults.remove(preferences::sampleData.name);
    service.reclaimName();
    Q_EMIT relaunchDidFail(QString::fromStdString(*failure));
}

} // namespace ellwynd
