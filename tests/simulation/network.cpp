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
        return answer<Course>(0, [&from = school] { return from.courseList(); });
    }

    QCoro::Task<ListRead<Enrollment>> fetchEnrollments(std::int64_t courseID) override {
        return answer<Enrollment>(courseID, [&from = school, courseID] {
            return School::enrollments(courseOf(from, courseID));
        });
    }

    QCoro::Task<ListRead<AssignmentGroup>> fetchAssignmentGroups(std::int64_t courseID) override {
        return answer<AssignmentGroup>(courseID, [&from = school, courseID] {
            return School::groups(courseOf(from, courseID));
        });
    }

    QCoro::Task<ListRead<SubmissionSummary>> fetchSubmissions(std::int64_t courseID) override {
        return answer<SubmissionSummary>(courseID, [&from = school, courseID, clock = now] {
            return School::submissions(courseOf(from, courseID), clock());
        });
    }

  private:
    /// The records as they are when the network answers. This object may be gone by then.
    template<class Record>
    QCoro::Task<ListRead<Record>>
    answer(std::int64_t courseID, std::function<std::vector<Record>()> records) {
        Network::Request request = network.request(courseID, stop);
        co_await request;
        ListRead<Record> list{.records = records()};
        co_return list;
    }

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
