// Decodes parsed JSON into records by their schemas.
#pragma once

#include "canvas/records/schema.h"

#include <simdjson.h>

namespace ellwynd::decoding {

/// An error in a record. While it propagates, each level prepends its key or index to the path.
struct Fault {
    std::string path;
    std::string problem;
};

[[noreturn]] void fail(std::string_view key, std::string problem);

// Each throws a Fault for a value of the wrong type.
void decodeValue(const simdjson::dom::element &value, std::int64_t &into);
void decodeValue(const simdjson::dom::element &value, double &into);
void decodeValue(const simdjson::dom::element &value, bool &into);
void decodeValue(const simdjson::dom::element &value, std::string &into);
void decodeValue(const simdjson::dom::element &value, Date &into);
void decodeValue(const simdjson::dom::element &value, WorkflowState &into);

template<class Record>
void decodeRecord(const simdjson::dom::element &value, Record &into);

template<class Value>
void decodeValue(const simdjson::dom::element &value, Value &into) {
    decodeRecord(value, into);
}

template<class Record>
void decodeValue(const simdjson::dom::element &value, std::vector<Record> &into) {
    simdjson::dom::array list;
    if (value.get(list) != simdjson::SUCCESS)
        fail("", "is not an array");
    into.reserve(list.size());
    std::size_t index = 0;
    for (const simdjson::dom::element item : list) {
        try {
            decodeRecord(item, into.emplace_back());
        } catch (Fault &fault) {
            fault.path =
                "[" + std::to_string(index) + "]" + (fault.path.empty() ? "" : ".") + fault.path;
            throw;
        }
        ++index;
    }
}

template<class Value>
void decodeValue(const simdjson::dom::element &value, std::optional<Value> &into) {
    if (value.is_null())
        into.reset();
    else
        decodeValue(value, into.emplace());
}

template<class Record, class Value>
void decodeField(
    const Field<Record, Value> &field, const simdjson::dom::element &value, Record &into) {
    try {
        decodeValue(value, into.*field.member);
    } catch (Fault &fault) {
        const bool isIndex = !fault.path.empty() && fault.path.front() == '[';
        const bool needsDot = !fault.path.empty() && !isIndex;
        fault.path = std::string(field.key) + (needsDot ? "." : "") + fault.path;
        throw;
    }
}

/// The lengths of a record's keys, as bits. Most keys that Canvas sends have another length.
template<class Record>
constexpr std::uint64_t keyLengths = std::apply(
    [](const auto &...field) { return ((std::uint64_t{1} << field.key.size()) | ...); },
    Schema<Record>::fields);

template<class Record>
bool mayBeKey(std::size_t length) {
    constexpr std::size_t lengths = 64;
    return length < lengths && ((keyLengths<Record> >> length) & 1) != 0;
}

template<class Record>
void decodeRecord(const simdjson::dom::element &value, Record &into) {
    simdjson::dom::object object;
    if (value.get(object) != simdjson::SUCCESS)
        fail("", "is not an object");
    constexpr auto &fields = Schema<Record>::fields;
    constexpr auto indices =
        std::make_index_sequence<std::tuple_size_v<std::remove_cvref_t<decltype(fields)>>>();
    unsigned seen = 0;
    for (auto item = object.begin(), end = object.end(); item != end; ++item) {
        if (!mayBeKey<Record>(item.key_length()))
            continue;
        const std::string_view name = item.key();
        const auto tryField = [&]<std::size_t index>() {
            // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): the fields are constants.
            constexpr auto &field = std::get<index>(fields);
            // Faster than comparing with ==, since the length is known to the compiler.
            if (name.size() != field.key.size() ||
                !std::equal(field.key.begin(), field.key.end(), name.begin()))
                return false;
            decodeField(field, item.value(), into);
            seen |= 1U << index;
            return true;
        };
        [&]<std::size_t... index>(std::index_sequence<index...>) {
            (void)(tryField.template operator()<index>() || ...);
        }
        (indices);
    }
    const auto check = [&]<std::size_t index>() {
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage)
        constexpr auto &field = std::get<index>(fields);
        if (field.required && (seen & (1U << index)) == 0)
            fail(field.key, "is missing");
    };
    [&]<std::size_t... index>(std::index_sequence<index...>) {
        (check.template operator()<index>(), ...);
    }
    (indices);
}

} // namespace ellwynd::decoding
