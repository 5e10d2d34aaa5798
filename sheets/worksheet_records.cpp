// worksheet_records.cpp - worksheets in records: five records behind the opening one have to fit.
//
// A record: type (2 bytes, little-endian), length of the data (2 bytes, at most 128 here), the data.
//
//   Type  Length  Counts as
//      2       1  a known record
//      3       1  a known record
//      6       8  the record that must be there
//     47       1  a known record
//     75     any  a known record
//    150     any  a known record
//
// Any other type is let pass. Two different known records beside the required one make a worksheet.
#include "sheets/worksheet_records.h"

#include <bit>
#include <cstdint>

#include "reader/reader.h"
#include "reader/unchecked_numbers.h"

namespace {

constexpr FIID worksheetFormat = 1416;

constexpr std::uint32_t recordsLookedAt = 5;
constexpr std::uint16_t longestRecord = 128;
constexpr std::int32_t knownRecordsNeeded = 2;

struct FIKnownRecord {
    std::uint16_t type;
    std::uint16_t length;  // anyLength when it does not matter
    bool required;
};

constexpr std::uint16_t anyLength = 0xFFFF;

constexpr FIKnownRecord knownRecords[] = {
    // clang-format off
    {  2, 1,         false},
    {  3, 1,         false},
    {  6, 8,         true},
    { 47, 1,         false},
    { 75, anyLength, false},
    {150, anyLength, false},
    // clang-format on
};

struct FISeenRecords {
    bool required = false;
    std::uint32_t known = 0;  // a bit for each row of the table, the required one's apart
};

// Notes a record. False when its type is known and its length does not fit.
bool FINoteRecord(std::uint16_t type, std::uint16_t length, FISeenRecords& seen) {
    std::uint32_t bit = 1;
    for (const FIKnownRecord& record : knownRecords) {
        if (record.type == type) {
            if (record.length != anyLength && record.length != length) return false;
            if (record.required) {
                seen.required = true;
            } else {
                seen.known |= bit;
            }
        }
        bit <<= 1;
    }
    return true;
}

}  // namespace

FIID FIProbeWorksheetRecords(FIReader& reader) {
    FIReaderGetByte(reader);  // the data of the opening record
    FIReaderGetByte(reader);
    FISeenRecords seen;
    for (std::uint32_t record = 0; record < recordsLookedAt; ++record) {
        const std::uint16_t type = FIJoinWordLE(reader);
        const std::uint16_t length = FIJoinWordLE(reader);  // above every limit where the end of the file is in it
        if (length > longestRecord || !FINoteRecord(type, length, seen)) return 0;
        if (FIReaderSeek(reader, FIReaderTell(reader) + length) != 0) return 0;
    }
    return seen.required && std::popcount(seen.known) >= knownRecordsNeeded ? worksheetFormat : FIID{0};
}
