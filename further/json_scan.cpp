// json_scan.cpp - a validator of JSON that knows the members of the outermost object.
//
// What is open is a bit for each level: object or array. Where a reading step fails it leaves its place where it stopped:
// at the end of the bytes nothing was wrong, and more bytes might go on.
#include "further/json_scan.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "reader/ascii_digit.h"
#include "reader/text_bytes.h"

namespace {

constexpr std::uint32_t deepest = 1000;

struct FIJsonReading {
    const std::uint8_t* place;
    const std::uint8_t* end;
};

// The value of a hexadecimal digit, or 16.
std::uint32_t FIHexDigit(std::uint8_t byte) {
    if (FIIsDigit(static_cast<char>(byte))) return byte - std::uint32_t{'0'};
    const std::uint32_t letter = byte | 0x20U;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : 16;
}

// The character of the four digits of an escape; above FFFF when they are none.
std::uint32_t FIEscapedCharacter(const std::uint8_t* digits) {
    constexpr std::uint32_t noCharacter = 0x10000;
    std::uint32_t character = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        const std::uint32_t digit = FIHexDigit(digits[index]);
        if (digit == 16) return noCharacter;
        character = character << 4 | digit;
    }
    return character;
}

constexpr std::ptrdiff_t escapeSize = 2;
constexpr std::ptrdiff_t unicodeEscapeSize = 6;

bool FIFailAtEnd(FIJsonReading& reading) {
    reading.place = reading.end;
    return false;
}

// Behind the backslash's place.
bool FIPassEscape(FIJsonReading& reading) {
    const std::ptrdiff_t left = reading.end - reading.place;
    if (left < escapeSize) return FIFailAtEnd(reading);
    constexpr std::string_view plain = "\"\\/bfnrt";
    const std::uint8_t kind = reading.place[1];
    if (kind == 'u') {
        if (left < unicodeEscapeSize) return FIFailAtEnd(reading);
        if (FIEscapedCharacter(reading.place + escapeSize) > 0xFFFF) return false;
        reading.place += unicodeEscapeSize;
        return true;
    }
    if (plain.find(static_cast<char>(kind)) == std::string_view::npos) return false;
    reading.place += escapeSize;
    return true;
}

// From the opening quotation mark to behind the closing one.
bool FIPassString(FIJsonReading& reading) {
    ++reading.place;
    while (true) {
        reading.place = FIPassStringBytes(reading.place, reading.end);
        if (reading.place == reading.end) return false;
        if (*reading.place == '"') break;
        if (*reading.place != '\\' || !FIPassEscape(reading)) return false;
    }
    ++reading.place;
    return true;
}

bool FIPassWord(FIJsonReading& reading, std::string_view word) {
    if (reading.end - reading.place < static_cast<std::ptrdiff_t>(word.size())) return FIFailAtEnd(reading);
    const std::string_view here(reinterpret_cast<const char*>(reading.place), word.size());
    if (here != word) return false;
    reading.place += word.size();
    return true;
}

bool FIPassDigits(FIJsonReading& reading) {
    const std::uint8_t* const start = reading.place;
    const std::uint8_t* place = start;  // of its own: the bytes might else be the record's, and it be written at each
    while (place != reading.end && FIIsDigit(static_cast<char>(*place))) ++place;
    reading.place = place;
    return place != start;
}

bool FIStandsAt(const FIJsonReading& reading, char character) {
    return reading.place != reading.end && *reading.place == static_cast<std::uint8_t>(character);
}

bool FIPassNumber(FIJsonReading& reading) {
    if (FIStandsAt(reading, '-')) ++reading.place;
    if (FIStandsAt(reading, 'I')) return FIPassWord(reading, "Infinity");
    if (FIStandsAt(reading, '0')) {
        ++reading.place;
    } else if (!FIPassDigits(reading)) {
        return false;
    }
    if (FIStandsAt(reading, '.')) {
        ++reading.place;
        if (!FIPassDigits(reading)) return false;
    }
    if (FIStandsAt(reading, 'e') || FIStandsAt(reading, 'E')) {
        ++reading.place;
        if (FIStandsAt(reading, '+') || FIStandsAt(reading, '-')) ++reading.place;
        if (!FIPassDigits(reading)) return false;
    }
    return true;
}

bool FIPassScalar(FIJsonReading& reading) {
    switch (*reading.place) {
        case '"':
            return FIPassString(reading);
        case 't':
            return FIPassWord(reading, "true");
        case 'f':
            return FIPassWord(reading, "false");
        case 'n':
            return FIPassWord(reading, "null");
        case 'N':
            return FIPassWord(reading, "NaN");
        default:
            return FIPassNumber(reading);
    }
}

// A string that was passed, as the characters it stands for.
struct FIShortString {
    std::array<char, 20> text;  // longer than all that is asked for
    std::size_t size;
};

// Of a string that is longer, or has other characters than ASCII, an empty one: it is none of those asked for.
FIShortString FIReadShortString(const std::uint8_t* opening, const std::uint8_t* behind) {
    FIShortString result = {};
    const std::uint8_t* const closing = behind - 1;
    for (const std::uint8_t* place = opening + 1; place != closing;) {
        std::uint32_t character = *place;
        if (character != '\\') {
            ++place;
        } else if (place[1] == 'u') {
            character = FIEscapedCharacter(place + escapeSize);
            place += unicodeEscapeSize;
        } else {
            // The others stand for a mark, or for a control character, which is in none of the words either.
            character = place[1] == '/' ? '/' : 0;
            place += escapeSize;
        }
        if (character >= 0x80 || result.size == result.text.size()) return {};
        result.text[result.size] = static_cast<char>(character);
        ++result.size;
    }
    return result;
}

constexpr std::string_view geometryTypes[] = {
    "Point",        "MultiPoint",         "LineString", "MultiLineString",   "Polygon",
    "MultiPolygon", "GeometryCollection", "Feature",    "FeatureCollection",
};

bool FIIsGeometryType(std::string_view type) {
    return std::ranges::find(geometryTypes, type) != std::end(geometryTypes);
}

// Notes the name of a member of the outermost object. Returns whether its value is to be noted.
bool FINoteName(FIJsonFacts& facts, const std::uint8_t* opening, const std::uint8_t* behind) {
    const FIShortString string = FIReadShortString(opening, behind);
    const std::string_view name(string.text.data(), string.size);
    if (name == "features" || name == "geometry" || name == "coordinates" || name == "geometries") {
        facts.hasGeometry = true;
    } else if (name == "nbformat") {
        facts.hasNotebookForm = true;
    } else if (name == "cells" || name == "worksheets") {
        facts.hasCells = true;
    }
    return name == "type";
}

// The objects and arrays that are open.
struct FIJsonNest {
    std::uint32_t depth;
    bool inObject;                                        // the innermost one
    std::array<std::uint64_t, deepest / 64 + 1> objects;  // those around it
};

void FIOpenLevel(FIJsonNest& nest, bool isObject) {
    std::uint64_t& word = nest.objects[nest.depth / 64];
    const std::uint64_t bit = std::uint64_t{1} << nest.depth % 64;
    word = nest.inObject ? word | bit : word & ~bit;
    ++nest.depth;
    nest.inObject = isObject;
}

void FICloseLevel(FIJsonNest& nest) {
    --nest.depth;
    nest.inObject = (nest.objects[nest.depth / 64] >> nest.depth % 64 & 1) != 0;
}

enum class FIJsonStep : std::uint8_t {
    FirstName,   // or the end of the object
    Name,        // with the colon behind it
    FirstValue,  // or the end of the array
    Value,
    Behind,  // a comma, or the end of what is open
};

struct FIJsonState {
    FIJsonReading reading;
    FIJsonNest nest;
    bool isTypeNext;  // whether the next value is that of the outermost "type"
};

bool FIPassName(FIJsonState& state, FIJsonFacts& facts) {
    FIJsonReading& reading = state.reading;
    if (*reading.place != '"') return false;
    const std::uint8_t* const opening = reading.place;
    if (!FIPassString(reading)) return false;
    if (state.nest.depth == 1) state.isTypeNext = FINoteName(facts, opening, reading.place);
    reading.place = FIPassJsonSpace(reading.place, reading.end);
    if (!FIStandsAt(reading, ':')) return false;
    ++reading.place;
    return true;
}

// Passes a value, or opens what it is. Returns false when it is wrong.
bool FIPassValue(FIJsonState& state, FIJsonFacts& facts, FIJsonStep& step) {
    FIJsonReading& reading = state.reading;
    const bool isType = state.isTypeNext;
    state.isTypeNext = false;
    if (isType) facts.hasGeometryType = false;
    const bool isObject = *reading.place == '{';
    if (isObject || *reading.place == '[') {
        if (state.nest.depth == deepest) return false;
        FIOpenLevel(state.nest, isObject);
        ++reading.place;
        step = isObject ? FIJsonStep::FirstName : FIJsonStep::FirstValue;
        return true;
    }
    const std::uint8_t* const start = reading.place;
    if (!FIPassScalar(reading)) return false;
    if (isType && *start == '"') {
        const FIShortString string = FIReadShortString(start, reading.place);
        facts.hasGeometryType = FIIsGeometryType({string.text.data(), string.size});
    }
    step = FIJsonStep::Behind;
    return true;
}

// What follows a value: a comma or an end. Returns false when it is neither.
bool FIPassBehind(FIJsonState& state, FIJsonStep& step) {
    const std::uint8_t byte = *state.reading.place;
    if (byte == ',') {
        step = state.nest.inObject ? FIJsonStep::Name : FIJsonStep::Value;
    } else if (byte == (state.nest.inObject ? std::uint8_t{'}'} : std::uint8_t{']'})) {
        FICloseLevel(state.nest);
        step = FIJsonStep::Behind;
    } else {
        return false;
    }
    ++state.reading.place;
    return true;
}

bool FIPassStep(FIJsonState& state, FIJsonFacts& facts, FIJsonStep& step) {
    const std::uint8_t byte = *state.reading.place;
    switch (step) {
        case FIJsonStep::FirstName:
            if (byte == '}') return FIPassBehind(state, step);
            [[fallthrough]];
        case FIJsonStep::Name:
            step = FIJsonStep::Value;
            return FIPassName(state, facts);
        case FIJsonStep::FirstValue:
            if (byte == ']') return FIPassBehind(state, step);
            [[fallthrough]];
        case FIJsonStep::Value:
            return FIPassValue(state, facts, step);
        default:
            return FIPassBehind(state, step);
    }
}

}  // namespace

FIJsonEnd FIScanJson(std::span<const std::uint8_t> bytes, FIJsonFacts& facts) {
    facts = {};
    FIJsonState state = {};
    FIJsonReading& reading = state.reading;
    reading = {bytes.data(), bytes.data() + bytes.size()};
    FIJsonStep step = FIJsonStep::Value;

    reading.place = FIPassJsonSpace(reading.place, reading.end);
    if (reading.place == reading.end) return FIJsonEnd::Cut;
    facts.isObject = *reading.place == '{';
    if (!facts.isObject && *reading.place != '[') return FIJsonEnd::Wrong;
    do {
        if (!FIPassStep(state, facts, step)) {
            return reading.place == reading.end ? FIJsonEnd::Cut : FIJsonEnd::Wrong;
        }
        reading.place = FIPassJsonSpace(reading.place, reading.end);
        if (reading.place == reading.end && state.nest.depth > 0) return FIJsonEnd::Cut;
    } while (state.nest.depth > 0);
    if (reading.place != reading.end) return FIJsonEnd::Wrong;
    return FIIsUtf8(bytes.data(), bytes.size(), false) ? FIJsonEnd::Complete : FIJsonEnd::Wrong;
}
