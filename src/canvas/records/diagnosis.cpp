#include "canvas/records/diagnosis.h"

#include "canvas/records/decoding.h"

#include <simdjson.h>

namespace ellwynd {

namespace {

constexpr std::string_view digits = "0123456789";

/// Reads JSON up to its first error.
class Reader {
  public:
    explicit Reader(std::string_view text) : text(text) {}

    /// Whether the text is a single JSON value. `position` is its end, or that of the error.
    bool readDocument() {
        if (!readValue(0))
            return false;
        skipSpace();
        return position == text.size();
    }

    std::size_t position = 0;
    bool tooDeep = false;

  private:
    [[nodiscard]] char next() const { return position < text.size() ? text[position] : '\0'; }
    void skipSpace() {
        position = std::min(text.find_first_not_of(" \t\r\n", position), text.size());
    }
    bool skip(std::string_view expected) {
        if (!text.substr(position).starts_with(expected))
            return false;
        position += expected.size();
        return true;
    }
    bool skipDigits() {
        const std::size_t begin = position;
        position = std::min(text.find_first_not_of(digits, position), text.size());
        return position > begin;
    }

    bool readValue(std::size_t depth) {
        skipSpace();
        switch (next()) {
        case '[':
            return readMembers(depth + 1, ']', [&] { return readValue(depth + 1); });
        case '{':
            return readMembers(depth + 1, '}', [&] {
                skipSpace();
                if (!readString())
                    return false;
                skipSpace();
                return skip(":") && readValue(depth + 1);
            });
        case '"':
            return readString();
        case 't':
            return skip("true");
        case 'f':
            return skip("false");
        case 'n':
            return skip("null");
        default:
            return readNumber();
        }
    }

    template<class ReadMember>
    bool readMembers(std::size_t depth, char end, ReadMember readMember) {
        tooDeep = depth > maxNesting;
        if (tooDeep)
            return false;
        ++position;
        skipSpace();
        if (skip({&end, 1}))
            return true;
        while (readMember()) {
            skipSpace();
            if (skip({&end, 1}))
                return true;
            if (!skip(","))
                return false;
        }
        return false;
    }

    bool readString() {
        if (!skip("\""))
            return false;
        while (position < text.size() && static_cast<unsigned char>(next()) >= ' ') {
            if (skip("\""))
                return true;
            position += next() == '\\' ? 2 : 1;
        }
        return false;
    }

    bool readNumber() {
        skip("-");
        if (!skip("0") && !skipDigits())
            return false;
        if (skip(".") && !skipDigits())
            return false;
        if (!skip("e") && !skip("E"))
            return true;
        if (!skip("+"))
            skip("-");
        return skipDigits();
    }

    std::string_view text;
};

} // namespace

std::string diagnose(const std::string &json) {
    if (json.find_first_not_of(" \t\r\n") == std::string::npos)
        return "the text is empty";
    if (!simdjson::validate_utf8(json))
        return "it is not UTF-8 text";
    Reader reader(json);
    // This reader does not check the range of numbers and the code points of escapes.
    if (reader.readDocument())
        return "it is not valid JSON";
    if (reader.tooDeep)
        return "it nests deeper than " + std::to_string(maxNesting) + " levels";
    return "it is not valid JSON near byte " + std::to_string(reader.position);
}

} // namespace ellwynd
