// table_headers.cpp - database tables without magic: a length leads to a terminator, a count gives the length of a
// field list, a name stands twice. All numbers are little-endian.
//
// xBase table (DBF):
//
//   Offset  Size  Field             Accepted
//        0     1  version           03 and 83 for 1201; 8B, 8E, 63 and F5 for 1202
//        1     1  year of the date  any
//        2     1  month             0 to 12
//        3     1  day               0 to 31
//        4     4  record count      any
//        8     2  header length H   48 or more
//       43     1  first field type  C D F L M N
//      H-2     2  terminator        one of the two bytes is 0D
//
// Table with a list of field types:
//
//   Offset  Size  Field             Accepted
//        2     2  size word         2,048 tells 1207 from 1206
//       32     1  zero              0
//       33     1  field count       1 to 255
//       57     1  generation        above 8: the later layout, 1217
//       62     2  mark              1F 0F
//       88     2  each: field list of the earlier layout: a type from 1 to 6, 9, or 12 to 16, and a byte of any value
//      120     2  each: field list of the later layout
//
// Table with a repeated name:
//
//   Offset  Size  Field             Accepted
//        0     2  mark              37 FF
//       14     2  W                 1,009 or more
//       34     8  name              any
//     W+15     8  the name again; or
//     W+57     8  the name again
#include "sheets/table_headers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "reader/low_byte.h"
#include "reader/reader.h"

namespace {

constexpr FIID dbaseThreeFormat = 1201;
constexpr FIID dbaseFourFormat = 1202;
constexpr FIID fieldTableFormat = 1206;
constexpr FIID fieldTable2048Format = 1207;
constexpr FIID laterFieldTableFormat = 1217;
constexpr FIID repeatedNameFormat = 1212;

// ---- xBase ---------------------------------------------------------------------------------------------------------

constexpr std::uint16_t lastMonth = 12;
constexpr std::uint16_t lastDay = 31;
constexpr std::uint16_t recordCountSize = 4;
constexpr std::int32_t shortestHeader = 48;
constexpr std::uint32_t firstFieldType = 43;
constexpr std::string_view fieldTypes = "CDFLMN";
constexpr std::uint16_t headerTerminator = 0x0D;
constexpr std::uint32_t terminatorSize = 2;

FIID FITellXBaseVersion(std::uint16_t version) {
    switch (version) {
        case 0x03:
        case 0x83:
            return dbaseThreeFormat;
        case 0x8B:
        case 0x8E:
        case 0x63:
        case 0xF5:
            return dbaseFourFormat;
        default:
            return 0;
    }
}

// Quirk: a month and a day of 0 pass. The end of the file is above both limits.
bool FITakeXBaseDate(FIReader& reader) {
    FIReaderGetByte(reader);  // the year
    if (FIReaderGetByte(reader) > lastMonth) return false;
    return FIReaderGetByte(reader) <= lastDay;
}

bool FITakeFieldTypeLetter(FIReader& reader) {
    const std::uint16_t letter = FIReaderGetByte(reader);
    return letter != endOfFile && fieldTypes.find(static_cast<char>(letter)) != std::string_view::npos;
}

// ---- Field lists ---------------------------------------------------------------------------------------------------

constexpr std::uint32_t sizeWordOffset = 2;
constexpr std::uint32_t zeroOffset = 32;  // the field count follows
constexpr std::uint32_t generationOffset = 57;
constexpr std::uint8_t lastEarlierGeneration = 8;
constexpr std::uint32_t markOffset = 62;
constexpr std::uint16_t firstMark = 0x1F;
constexpr std::uint16_t secondMark = 0x0F;
constexpr std::uint32_t earlierFieldList = 88;
constexpr std::uint32_t laterFieldList = 120;
constexpr std::int32_t size2048 = 2048;

bool FIIsFieldType(std::uint16_t type) { return (type >= 1 && type <= 6) || type == 9 || (type >= 12 && type <= 16); }

bool FITakeFieldList(FIReader& reader, std::uint8_t fieldCount) {
    for (std::uint8_t field = 0; field < fieldCount; ++field) {
        const std::uint16_t type = FIReaderGetByte(reader);
        FIReaderGetByte(reader);
        if (!FIIsFieldType(type)) return false;
    }
    return true;
}

// ---- Repeated names ------------------------------------------------------------------------------------------------

constexpr std::int32_t repeatedNameMark = 0xFF37;
constexpr std::uint32_t distanceOffset = 14;
constexpr std::int32_t distanceBase = 15;
constexpr std::int32_t shortestDistance = 1024;
constexpr std::uint32_t nameOffset = 34;
constexpr std::size_t nameSize = 8;
constexpr std::uint32_t secondPlace = 42;  // behind the first

bool FITakeName(FIReader& reader, const std::uint16_t (&name)[nameSize]) {
    return std::all_of(std::begin(name), std::end(name),
                       [&reader](std::uint16_t value) { return FIReaderGetByte(reader) == value; });
}

}  // namespace

FIID FIProbeXBaseTable(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    const FIID format = FITellXBaseVersion(FIReaderGetByte(reader));
    if (format == 0 || !FITakeXBaseDate(reader)) return 0;
    static_cast<void>(FIReaderSkip(recordCountSize, reader));  // an end of the file shows in the next read
    const std::int32_t headerLength = FIReadWordLE(reader);
    if (headerLength < shortestHeader) return 0;
    if (FIReaderSeek(reader, firstFieldType) != 0 || !FITakeFieldTypeLetter(reader)) return 0;
    if (FIReaderSeek(reader, static_cast<std::uint32_t>(headerLength) - terminatorSize) != 0) return 0;
    const std::uint16_t first = FIReaderGetByte(reader);
    const std::uint16_t second = FIReaderGetByte(reader);
    return first == headerTerminator || second == headerTerminator ? format : FIID{0};
}

FIID FIProbeFieldTable(FIReader& reader) {
    if (FIReaderSeek(reader, sizeWordOffset) != 0) return 0;
    const std::int32_t sizeWord = FIReadWordLE(reader);
    if (FIReaderSeek(reader, zeroOffset) != 0 || FIReaderGetByte(reader) != 0) return 0;
    const std::uint8_t fieldCount = FITakeLowByte(reader);
    if (fieldCount == 0) return 0;
    if (FIReaderSeek(reader, generationOffset) != 0) return 0;
    const bool later = FITakeLowByte(reader) > lastEarlierGeneration;
    if (FIReaderSeek(reader, markOffset) != 0) return 0;
    const std::uint16_t mark = FIReaderGetByte(reader);
    if (FIReaderGetByte(reader) != secondMark || mark != firstMark) return 0;
    if (FIReaderSeek(reader, later ? laterFieldList : earlierFieldList) != 0) return 0;
    if (!FITakeFieldList(reader, fieldCount)) return 0;
    if (later) return laterFieldTableFormat;
    return sizeWord == size2048 ? fieldTable2048Format : fieldTableFormat;
}

// Quirk: the name is kept in 16 bits with the ends of the file in it. A file that ends in front of the name, of which
// the first two and the two bytes at 14 fit, passes: behind its end the same values stand.
FIID FIProbeRepeatedName(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0 || FIReadWordLE(reader) != repeatedNameMark) return 0;
    if (FIReaderSeek(reader, distanceOffset) != 0) return 0;
    const std::int32_t distance = FIReadWordLE(reader) + distanceBase;
    if (distance < shortestDistance) return 0;
    if (FIReaderSeek(reader, nameOffset) != 0) return 0;
    std::uint16_t name[nameSize];
    for (std::uint16_t& value : name) value = FIReaderGetByte(reader);
    const auto place = static_cast<std::uint32_t>(distance);
    if (FIReaderSeek(reader, place) != 0) return 0;
    if (FITakeName(reader, name)) return repeatedNameFormat;
    if (FIReaderSeek(reader, place + secondPlace) != 0) return 0;
    return FITakeName(reader, name) ? repeatedNameFormat : FIID{0};
}
