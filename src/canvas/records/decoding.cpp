#include "canvas/records/decoding.h"

#include <cmath>
#include <simdjson.h>
#include <tuple>

namespace ellwynd {

namespace {

namespace dom = simdjson::dom;

/// What went wrong inside a record. The path to it grows on the way out: the key, the record the
/// key stands in, its place in the list.
struct Fault {
    std::string path;
    std::string problem;
};

[[noreturn]] void fail(std::string_view key, std::string problem) {
    throw Fault{std::string(key), std::move(problem)};
}

// ---- Which key fills which field -------------------------------------------------------------

template<class Record, class Value>
struct Field {
    std::string_view key;
    Value Record::*member;
    bool required;
};

template<class Record, class Value>
constexpr Field<Record, Value> required(std::string_view key, Value Record::*member) {
    return {key, member, true};
}

template<class Record, class Value>
constexpr Field<Record, std::optional<Value>>
optional(std::string_view key, std::optional<Value> Record::*member) {
    return {key, member, false};
}

/// The schema of a record: its name in errors and its fields.
template<class Record>
struct Schema;

template<>
struct Schema<Term> {
    static constexpr std::string_view name = "Term";
    static constexpr std::tuple fields{
        required("id", &Term::id),
        optional("name", &Term::name),
        optional("start_at", &Term::startAt),
        optional("end_at", &Term::endAt),
    };
};

template<>
struct Schema<Course> {
    static constexpr std::string_view name = "Course";
    static constexpr std::tuple fields{
        required("id", &Course::id),
        optional("name", &Course::name),
        optional("course_code", &Course::courseCode),
        optional("term", &Course::term),
        optional("apply_assignment_group_weights", &Course::appliesGroupWeights),
    };
};

template<>
struct Schema<Assignment> {
    static constexpr std::string_view name = "Assignment";
    static constexpr std::tuple fields{
        required("id", &Assignment::id),
        optional("name", &Assignment::name),
        optional("points_possible", &Assignment::pointsPossible),
        optional("omit_from_final_grade", &Assignment::omitFromFinalGrade),
        optional("published", &Assignment::published),
    };
};

template<>
struct Schema<AssignmentGroup> {
    static constexpr std::string_view name = "AssignmentGroup";
    static constexpr std::tuple fields{
        required("id", &AssignmentGroup::id),
        optional("name", &AssignmentGroup::name),
        optional("group_weight", &AssignmentGroup::groupWeight),
        optional("assignments", &AssignmentGroup::assignments),
    };
};

template<>
struct Schema<EnrolledUser> {
    static constexpr std::string_view name = "EnrolledUser";
    static constexpr std::tuple fields{
        required("id", &EnrolledUser::id),
        optional("name", &EnrolledUser::name),
        optional("sortable_name", &EnrolledUser::sortableName),
    };
};

template<>
struct Schema<Grades> {
    static constexpr std::string_view name = "Grades";
    static constexpr std::tuple fields{
        optional("current_score", &Grades::currentScore),
        optional("current_grade", &Grades::currentGrade),
    };
};

template<>
struct Schema<Enrollment> {
    static constexpr std::string_view name = "Enrollment";
    static constexpr std::tuple fields{
        required("user_id", &Enrollment::userID),
        optional("user", &Enrollment::user),
        optional("grades", &Enrollment::grades),
        optional("last_activity_at", &Enrollment::lastActivityAt),
        optional("total_activity_time", &Enrollment::totalActivityTime),
    };
};

template<>
struct Schema<SubmissionSummary> {
    static constexpr std::string_view name = "SubmissionSummary";
    static constexpr std::tuple fields{
        required("user_id", &SubmissionSummary::userID),
        required("assignment_id", &SubmissionSummary::assignmentID),
        required("workflow_state", &SubmissionSummary::workflowState),
        optional("missing", &SubmissionSummary::missing),
        optional("late", &SubmissionSummary::late),
        optional("score", &SubmissionSummary::score),
        optional("cached_due_date", &SubmissionSummary::cachedDueDate),
    };
};

template<>
struct Schema<CanvasUser> {
    static constexpr std::string_view name = "CanvasUser";
    static constexpr std::tuple fields{
        optional("name", &CanvasUser::name),
        optional("short_name", &CanvasUser::shortName),
    };
};

// ---- Values ----------------------------------------------------------------------------------

template<class Record>
void decodeRecord(const dom::element &value, Record &into);

template<class Value>
void decodeValue(const dom::element &value, Value &into) {
    decodeRecord(value, into);
}

void decodeValue(const dom::element &value, std::int64_t &into) {
    if (value.get(into) == simdjson::SUCCESS)
        return;
    // A whole number may be written with a fraction of zero.
    double real = 0;
    constexpr double exact = 9007199254740992.0; // 2^53
    if (!value.is<double>() || value.get(real) != simdjson::SUCCESS || real != std::trunc(real) ||
        std::abs(real) >= exact)
        fail("", "is not a 64-bit integer");
    into = std::int64_t(real);
}

void decodeValue(const dom::element &value, double &into) {
    if (value.get(into) != simdjson::SUCCESS || !std::isfinite(into))
        fail("", "is not a number");
}

void decodeValue(const dom::element &value, bool &into) {
    if (value.get(into) != simdjson::SUCCESS)
        fail("", "is not true or false");
}

void decodeValue(const dom::element &value, std::string &into) {
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS)
        fail("", "is not a text");
    into = text;
}

void decodeValue(const dom::element &value, Date &into) {
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS)
        fail("", "is not a date");
    const auto date = parseInstant(text);
    if (!date)
        fail("", "is not an ISO 8601 date with a time and an offset");
    into = *date;
}

template<class Record>
void decodeValue(const dom::element &value, std::vector<Record> &into) {
    dom::array list;
    if (value.get(list) != simdjson::SUCCESS)
        fail("", "is not a list");
    into.reserve(list.size());
    std::size_t index = 0;
    for (const dom::element item : list) {
        try {
            decodeRecord(item, into.emplace_back());
        } catch (Fault &fault) {
            const std::string place = std::to_string(index);
            fault.path = "[" + place + "]" + (fault.path.empty() ? "" : ".") + fault.path;
            throw;
        }
        ++index;
    }
}

template<class Value>
void decodeValue(const dom::element &value, std::optional<Value> &into) {
    if (value.is_null())
        into.reset();
    else
        decodeValue(value, into.emplace());
}

template<class Record, class Value>
void decodeField(const Field<Record, Value> &field, const dom::element &value, Record &into) {
    try {
        decodeValue(value, into.*field.member);
    } catch (Fault &fault) {
        const bool list = !fault.path.empty() && fault.path.front() == '[';
        fault.path = std::string(field.key) + (fault.path.empty() || list ? "" : ".") + fault.path;
        throw;
    }
}

template<class Record>
void decodeRecord(const dom::element &value, Record &into) {
    dom::object object;
    if (value.get(object) != simdjson::SUCCESS)
        fail("", "is not an object");
    constexpr auto &fields = Schema<Record>::fields;
    unsigned seen = 0;
    for (const auto [key, item] : object) {
        const std::string_view name = key;
        const dom::element element = item;
        std::apply(
            [&](const auto &...field) {
                unsigned bit = 1;
                const auto tryField = [&](const auto &f) {
                    const bool match = f.key == name;
                    if (match) {
                        decodeField(f, element, into);
                        seen |= bit;
                    }
                    bit <<= 1U;
                    return match;
                };
                (void)(tryField(field) || ...);
            },
            fields);
    }
    std::apply(
        [&](const auto &...field) {
            unsigned bit = 1;
            const auto check = [&](const auto &f) {
                if (f.required && (seen & bit) == 0)
                    fail(f.key, "is missing");
                bit <<= 1U;
            };
            (check(field), ...);
        },
        fields);
}

// ---- Whole responses -------------------------------------------------------------------------

std::string tooDeep() {
    return "it nests deeper than " + std::to_string(maximumNesting) + " levels";
}

/// What is wrong with a text that is no JSON, and where. The fast parser does not say where, so a
/// failed text is read again by the one that does.
std::string diagnose(const std::string &json) {
    namespace od = simdjson::ondemand;
    struct Walk {
        static simdjson::error_code through(od::value value, std::size_t depth) {
            od::json_type type{};
            if (const auto error = value.type().get(type))
                return error;
            switch (type) {
            case od::json_type::array: {
                if (depth >= maximumNesting)
                    return simdjson::DEPTH_ERROR;
                od::array list;
                if (const auto error = value.get(list))
                    return error;
                for (auto item : list) {
                    od::value next;
                    if (const auto error = item.get(next))
                        return error;
                    if (const auto error = through(next, depth + 1))
                        return error;
                }
                return simdjson::SUCCESS;
            }
            case od::json_type::object: {
                if (depth >= maximumNesting)
                    return simdjson::DEPTH_ERROR;
                od::object object;
                if (const auto error = value.get(object))
                    return error;
                for (auto field : object) {
                    od::field next;
                    if (const auto error = std::move(field).get(next))
                        return error;
                    std::string_view key;
                    if (const auto error = next.unescaped_key().get(key))
                        return error;
                    if (const auto error = through(next.value(), depth + 1))
                        return error;
                }
                return simdjson::SUCCESS;
            }
            case od::json_type::string: {
                std::string_view text;
                return value.get(text);
            }
            case od::json_type::number: {
                od::number number;
                return value.get_number().get(number);
            }
            case od::json_type::boolean: {
                bool flag = false;
                return value.get(flag);
            }
            case od::json_type::null:
                bool isNull = false;
                if (const auto error = value.is_null().get(isNull))
                    return error;
                return isNull ? simdjson::SUCCESS : simdjson::N_ATOM_ERROR;
            }
            return simdjson::TAPE_ERROR;
        }
    };
    od::parser parser;
    const simdjson::padded_string padded(json);
    od::document document;
    od::value root;
    const std::string invalid = "it is not valid JSON";
    if (parser.iterate(padded).get(document) || document.get_value().get(root))
        return invalid;
    const auto error = Walk::through(root, 0);
    if (error == simdjson::DEPTH_ERROR)
        return tooDeep();
    const char *place = nullptr;
    if (error == simdjson::SUCCESS || document.current_location().get(place))
        return invalid;
    return invalid + " near byte " + std::to_string(place - padded.data());
}

std::string describe(simdjson::error_code error, const std::string &json) {
    switch (error) {
    case simdjson::EMPTY:
        return "the text is empty";
    case simdjson::DEPTH_ERROR:
        return tooDeep();
    case simdjson::UTF8_ERROR:
        return "it is not UTF-8 text";
    case simdjson::CAPACITY:
    case simdjson::MEMALLOC:
        return "it is too large";
    default:
        return diagnose(json);
    }
}

/// Writes integers of 19 digits and more as reals: the parser has none beyond 64 bits, and fails
/// the text for one even where nobody reads it.
std::string withoutLargeIntegers(const std::string &json) {
    constexpr std::size_t digitsOf64Bits = 19;
    std::string result;
    bool inString = false;
    for (std::size_t i = 0; i < json.size();) {
        const char c = json[i];
        if (inString || c < '0' || c > '9') {
            const bool escape = inString && c == '\\';
            if (c == '"')
                inString = !inString;
            const std::size_t taken = escape ? 2 : 1;
            result.append(json, i, taken);
            i += taken;
            continue;
        }
        // A whole number token, from its first digit on.
        const std::size_t end = std::min(json.find_first_not_of("0123456789.eE+-", i), json.size());
        const std::string_view number = std::string_view(json).substr(i, end - i);
        result += number;
        if (number.size() >= digitsOf64Bits && number.find_first_of(".eE") == std::string::npos)
            result += ".0";
        i = end;
    }
    return result;
}

/// Parses a text and decodes its root; names `what` in the error.
template<class Root>
Root decode(const std::string &json, std::string_view what) {
    dom::parser parser;
    const std::string subject(what);
    if (const auto error = parser.allocate(json.size(), maximumNesting))
        throw DecodingError(subject + ": " + describe(error, json));
    dom::element root;
    auto error = parser.parse(json).get(root);
    if (error == simdjson::NUMBER_ERROR)
        error = parser.parse(withoutLargeIntegers(json)).get(root);
    if (error)
        throw DecodingError(subject + ": " + describe(error, json));
    Root result;
    try {
        decodeValue(root, result);
    } catch (const Fault &fault) {
        const std::string path = fault.path.empty() ? "" : " " + fault.path;
        throw DecodingError(subject + path + " " + fault.problem);
    }
    return result;
}

template<class Record>
std::vector<Record> decodeList(const std::string &json) {
    return decode<std::vector<Record>>(json, Schema<Record>::name);
}

} // namespace

std::vector<Course> decodeCourses(const std::string &json) {
    return decodeList<Course>(json);
}

std::vector<Enrollment> decodeEnrollments(const std::string &json) {
    return decodeList<Enrollment>(json);
}

std::vector<AssignmentGroup> decodeAssignmentGroups(const std::string &json) {
    return decodeList<AssignmentGroup>(json);
}

std::vector<SubmissionSummary> decodeSubmissions(const std::string &json) {
    return decodeList<SubmissionSummary>(json);
}

Course decodeCourse(const std::string &json) {
    return decode<Course>(json, Schema<Course>::name);
}

CanvasUser decodeUser(const std::string &json) {
    return decode<CanvasUser>(json, Schema<CanvasUser>::name);
}

std::vector<std::string> decodeErrorMessages(const std::string &json) {
    dom::parser parser;
    dom::object body;
    if (parser.allocate(json.size(), maximumNesting) || parser.parse(json).get(body))
        return {};
    const auto messageOf = [](const dom::object &object) {
        std::string_view text;
        return object["message"].get(text) ? std::string_view() : text;
    };
    if (const auto message = messageOf(body); !message.empty())
        return {std::string(message)};
    dom::array errors;
    std::vector<std::string> messages;
    if (body["errors"].get(errors))
        return {};
    for (const dom::element error : errors) {
        dom::object object;
        if (error.get(object))
            return {};
        if (const auto message = messageOf(object); !message.empty())
            messages.emplace_back(message);
    }
    return messages;
}

bool looksLikeHTML(std::string_view body) {
    constexpr std::size_t examined = 256;
    const std::string_view start = body.substr(0, examined);
    const std::size_t first = start.find_first_not_of(" \t\r\n\v\f");
    return first != std::string_view::npos && start[first] == '<' &&
        simdjson::validate_utf8(start.data(), start.size());
}

} // namespace ellwynd
