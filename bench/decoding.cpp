// Decodes a course's submissions from JSON to records: 30,000 of realistic size, about 36 MB.
#include "canvas/records/decoding.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <simdjson.h>

namespace {

constexpr int records = 30'000;

/// A list as Canvas sends it: about forty keys per record, of which seven are used.
const std::string &submissions() {
    static const std::string json = [] {
        std::string text = "[";
        text.reserve(40'000'000);
        for (int i = 0; i < records; ++i) {
            fmt::format_to(
                std::back_inserter(text),
                R"({}{{"id":{},"body":"{}","url":null,"grade":"8.5","score":8.5,)"
                R"("submitted_at":"2026-09-{:02}T21:14:05Z","assignment_id":{},"user_id":{},)"
                R"("submission_type":"online_upload","workflow_state":"graded",)"
                R"("grade_matches_current_submission":true,"graded_at":"2026-09-20T08:00:00Z",)"
                R"("grader_id":-42,"attempt":1,"cached_due_date":"2026-09-19T05:59:59Z",)"
                R"("excused":false,"late_policy_status":null,"points_deducted":null,)"
                R"("grading_period_id":null,"extra_attempts":null,)"
                R"("posted_at":"2026-09-20T08:00:01Z","redo_request":false,)"
                R"("custom_grade_status_id":null,"sticker":null,"late":false,"missing":false,)"
                R"("seconds_late":0,"entered_grade":"8.5","entered_score":8.5,)"
                R"("preview_url":"https://canvas.example.edu/courses/4021/assignments/{}/submissions/)"
                R"({}?preview=1&version=1","attachments":[{{"id":{},"uuid":"aGVsbG8gd29ybGQ",)"
                R"("folder_id":null,"display_name":"essay-final.docx","filename":"essay-final.docx",)"
                R"("content-type":"application/octet-stream","size":18233,"locked":false}}],)"
                R"("anonymous_id":"a1B2c"}})",
                i > 0 ? "," : "", 70'000'000 + i, std::string(120, 'x'), i % 28 + 1, 500 + i % 60,
                90'000 + i / 60, 500 + i % 60, 90'000 + i / 60, i);
        }
        text += "]";
        text.reserve(text.size() + simdjson::SIMDJSON_PADDING);
        return text;
    }();
    return json;
}

void parseOnly(benchmark::State &state) {
    const std::string &json = submissions();
    for (auto _ : state) {
        simdjson::dom::parser parser;
        benchmark::DoNotOptimize(parser.parse(json).error());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(json.size()));
}

void decodeSubmissions(benchmark::State &state) {
    const std::string &json = submissions();
    for (auto _ : state) {
        const auto decoded = ellwynd::decodeSubmissions(json);
        if (decoded.size() != records)
            state.SkipWithError("records were lost");
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(json.size()));
}

/// The same parse, and a loop over the records that looks at the seven keys alone: what can be
/// reached without the general decoding by schemas.
void handWrittenLoop(benchmark::State &state) {
    namespace dom = simdjson::dom;
    const std::string &json = submissions();
    for (auto _ : state) {
        dom::parser parser;
        std::vector<ellwynd::SubmissionSummary> decoded;
        const dom::array list = parser.parse(json).get_array().value();
        decoded.reserve(list.size());
        for (const dom::element item : list) {
            ellwynd::SubmissionSummary &record = decoded.emplace_back();
            const dom::object object = item.get_object().value();
            for (const auto [key, value] : object) {
                if (key == "user_id")
                    record.userID = value.get_int64().value();
                else if (key == "assignment_id")
                    record.assignmentID = value.get_int64().value();
                else if (key == "workflow_state")
                    record.workflowState = value.get_string().value();
                else if (key == "missing")
                    record.missing = value.get_bool().value();
                else if (key == "late")
                    record.late = value.get_bool().value();
                else if (key == "score" && !value.is_null())
                    record.score = value.get_double().value();
                else if (key == "cached_due_date" && !value.is_null())
                    record.cachedDueDate = ellwynd::parseInstant(value.get_string().value());
            }
        }
        if (decoded.size() != records)
            state.SkipWithError("records were lost");
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(json.size()));
}

} // namespace

BENCHMARK(handWrittenLoop)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(parseOnly)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(decodeSubmissions)->Unit(benchmark::kMillisecond)->UseRealTime();
