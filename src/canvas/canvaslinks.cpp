#include "canvas/canvaslinks.h"

#include "net/origin.h"

namespace ellwynd {

namespace {

std::optional<std::string> pageURL(
    const std::string &baseURL, const std::string &path, std::initializer_list<std::int64_t> ids) {
    const auto base = httpsURL(baseURL);
    if (!base)
        return std::nullopt;
    for (const std::int64_t id : ids) {
        if (id < 1)
            return std::nullopt;
    }
    QUrl url = base->adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    QString joined = url.path();
    if (!joined.endsWith(u'/'))
        joined += u'/';
    url.setPath(joined + QString::fromStdString(path));
    return url.toString(QUrl::FullyEncoded).toStdString();
}

std::string coursePath(std::int64_t courseID) {
    return "courses/" + std::to_string(courseID);
}

} // namespace

std::optional<std::string> canvasLinks::course(const std::string &baseURL, std::int64_t courseID) {
    return pageURL(baseURL, coursePath(courseID), {courseID});
}

std::optional<std::string>
canvasLinks::grades(const std::string &baseURL, std::int64_t courseID, std::int64_t studentID) {
    return pageURL(
        baseURL, coursePath(courseID) + "/grades/" + std::to_string(studentID),
        {courseID, studentID});
}

std::optional<std::string> canvasLinks::assignment(
    const std::string &baseURL, std::int64_t courseID, std::int64_t assignmentID) {
    return pageURL(
        baseURL, coursePath(courseID) + "/assignments/" + std::to_string(assignmentID),
        {courseID, assignmentID});
}

std::optional<std::string> canvasLinks::tokenPage(const std::string &baseURL) {
    return pageURL(baseURL, "profile/settings", {});
}

} // namespace ellwynd
