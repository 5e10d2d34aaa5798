// vcard.cpp - vCard and vCalendar objects, told by their first line.
//
//   Routine  Opening, from offset 0
//      1141  "begin", blanks, ":", blanks, "vcard" or "vcalendar", in any case; what follows is not looked at
//
// Source: RFC 6350, section 6.1.1, and RFC 5545, section 3.4; neither has the blanks.
#include "text/vcard.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/ascii_case.h"
#include "reader/reader.h"

namespace {

constexpr std::string_view beginWord = "begin";
constexpr std::string_view calendarWord = "calendar";
constexpr std::string_view cardWord = "card";
constexpr std::size_t objectNameSize = calendarWord.size();

bool FITakeInAnyCase(FIReader& reader, std::string_view word) {
    for (const char wanted : word) {
        if (FILowerAscii(FIReaderGetByte(reader)) != wanted) return false;
    }
    return true;
}

// The first byte that is neither a blank nor a tab.
std::uint16_t FITakeBehindBlanks(FIReader& reader) {
    std::uint16_t character;
    do {
        character = FIReaderGetByte(reader);
    } while (character == '\t' || character == ' ');
    return character;
}

}  // namespace

FIID FIProbeVCard(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || !FITakeInAnyCase(reader, beginWord)) return 0;
    if (FITakeBehindBlanks(reader) != ':') return 0;
    if (FILowerAscii(FITakeBehindBlanks(reader)) != 'v') return 0;
    char object[objectNameSize];
    for (char& letter : object) letter = static_cast<char>(FILowerAscii(FIReaderGetByte(reader)));  // FF behind the end
    const std::string_view name(object, objectNameSize);
    if (name == calendarWord) return 1196;
    return name.starts_with(cardWord) ? 1141 : 0;
}
