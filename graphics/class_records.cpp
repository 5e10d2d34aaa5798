// class_records.cpp - class records: three of them from offset 0 on, all fields little-endian. Each class must come
// once.
//
//   Offset  Size  Field                           Accepted
//        0     2  type                            high byte without its top bit: 8, 9, 10
//        2     2  length of what follows          any, in 16-bit units
#include "graphics/class_records.h"

#include <cstdint>

#include "reader/reader.h"
#include "reader/rewind.h"

namespace {

constexpr FIID classRecordsFormat = 1601;

constexpr std::uint32_t classRecordCount = 3;
constexpr std::uint32_t firstClass = 8;
constexpr std::uint32_t lastClass = 10;
constexpr std::uint32_t allClasses = 7;  // a bit for each of the three
constexpr std::uint32_t classMask = 0x7F;
constexpr std::uint32_t classUnitSize = 2;

}  // namespace

FIID FIProbeClassRecords(FIReader& reader) {
    if (!FIReaderRewindTwice(reader)) return 0;
    std::uint32_t classes = 0;
    for (std::uint32_t record = 0; record < classRecordCount; ++record) {
        const std::int32_t type = FIReadWordLE(reader);
        const std::int32_t length = FIReadWordLE(reader);
        if (type < 0 || length < 0) return 0;
        const std::uint32_t recordClass = static_cast<std::uint32_t>(type) >> 8 & classMask;
        if (recordClass < firstClass || recordClass > lastClass) return 0;
        classes |= 1U << (recordClass - firstClass);
        const std::uint32_t bytes = static_cast<std::uint32_t>(length) * classUnitSize;
        static_cast<void>(FIReaderSeek(reader, FIReaderTell(reader) + bytes));  // a failure shows in the next record
    }
    return classes == allClasses ? classRecordsFormat : FIID{0};
}
