// identifiers.cpp - the three entries that list identifiers and tell their names.
//
// An identifier has a name when the string service has one under its key: the catalogue has no other notion of a
// format.
#include <cstring>

#include "fiid.h"
#include "platform/base_utility.h"
#include "reader/reader.h"

namespace {

constexpr std::uint16_t firstIdentifier = 1000;
constexpr std::uint16_t lastNamedIdentifier = 5015;
constexpr std::uint16_t endOfWalk = 9999;

// Moves the cursor from its own place on to the first identifier with a name. The test for the end is equality and
// comes behind a number without a name only, so the cursor stops at 9999 there and a name at 9999 is not reported.
std::int16_t FIFindNamed(std::uint16_t& cursor, FIID& fiid, char* name, std::uint16_t nameSize) {
    while (UTGetString(cursor | UTStringKeyFormat, name, nameSize, 0) != 0) {
        if (cursor == endOfWalk) break;
        cursor = static_cast<std::uint16_t>(cursor + 1);
    }
    fiid = cursor;
    return cursor != endOfWalk ? 1 : 0;
}

}  // namespace

extern "C" {

std::int16_t FIGetFirstId(std::uint16_t* cursor, FIID* fiid, char* name, std::uint16_t nameSize) {
    *cursor = firstIdentifier;
    return FIFindNamed(*cursor, *fiid, name, nameSize);
}

std::int16_t FIGetNextId(std::uint16_t* cursor, FIID* fiid, char* name, std::uint16_t nameSize) {
    // Quirk: behind the end the walk runs on upwards and wraps through 65535; a host stops at the first 0.
    *cursor = static_cast<std::uint16_t>(*cursor + 1);
    return FIFindNamed(*cursor, *fiid, name, nameSize);
}

std::uint16_t FIGetIDString(FIID fiid, char* name, std::uint16_t nameSize) {
    if (name == nullptr) return 0;
    if (fiid < firstIdentifier || fiid > lastNamedIdentifier) {
        name[0] = '\0';
        return 0;
    }
    static_cast<void>(UTGetString(fiid | UTStringKeyFormat, name, nameSize, 0));
    return static_cast<std::uint16_t>(std::strlen(name));
}

}  // extern "C"
