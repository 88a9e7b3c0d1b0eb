#include "network.h"

namespace ellwynd::simulation {

namespace {

class SchoolReading final : public CanvasReading {
  public:
    SchoolReading(const School &school, Network &network, Clock now, std::stop_token stop = {})
        : school(school), network(network), now(now), stop(std::move(stop)) {}

    std::shared_ptr<CanvasReading> scoped(std::stop_token token, RequestPriority) const override {
        return std::make_shared<SchoolReading>(school, network, now, std::move(token));
    }

    QCoro::Task<ListRead<Course>> fetchCourses() override {
        const School &from = school;
        Network::Request request = network.request(0, stop);
        co_await request;
        ListRead<Course> list{.records = from.courseList()};
        co_return list;
    }

    QCoro::Task<ListRead<Enrollment>> fetchEnrollments(std::int64_t courseID) override {
        const School &from = school;
        Network::Request request = network.request(courseID, stop);
        co_await request;
        ListRead<Enrollment> list{.records = School::enrollments(courseOf(from, courseID))};
        co_return list;
    }

    QCoro::Task<ListRead<AssignmentGroup>> fetchAssignmentGroups(std::int64_t courseID) override {
        const School &from = school;
        Network::Request request = network.request(courseID, stop);
        co_await request;
        ListRead<AssignmentGroup> list{.records = School::groups(courseOf(from, courseID))};
        co_return list;
    }

    QCoro::Task<ListRead<SubmissionSummary>> fetchSubmissions(std::int64_t courseID) override {
        const School &from = school;
        const Clock clock = now;
        Network::Request request = network.request(courseID, stop);
        co_await request;
        ListRead<SubmissionSummary> list{
            .records = School::submissions(courseOf(from, courseID), clock())};
        co_return list;
    }

  private:
    static const School::OneCourse &courseOf(const School &school, std::int64_t courseID) {
        const School::OneCourse *course = school.find(courseID);
        if (course == nullptr)
            throw CanvasError(CanvasError::Kind::notFound);
        return *course;
    }

    const School &school;
    Network &network;
    Clock now;
    std::stop_token stop;
};

} // namespace

QCoro::Task<std::shared_ptr<CanvasReading>>
SimulatedConnector::open(UnlockPrompt prompt, std::stop_token stop) const {
    if (defaults.value(preferences::sampleData)) {
        auto sample = Connector::open(prompt, stop);
        co_return co_await sample;
    }
    std::shared_ptr<CanvasReading> opened;
    const std::string address = defaults.value(preferences::canvasBaseURL);
    if (!address.empty()) {
        if (keyring.isLocked)
            throw KeychainError(KeychainError::locked, "The keyring is locked.");
        const auto school = schools.find(address);
        if (school != schools.end() && keyring.tokens.contains(address))
            opened = std::make_shared<SchoolReading>(school->second, network, now);
    }
    co_return opened;
}

} // namespace ellwynd::simulation
