// workbook_storage.cpp - the releases that wrote a stream "Workbook", by the build told in its first record.
//
//   Offset  Size  Field
//        8     2  build number, little-endian
//       10     2  year of the build, little-endian
#include "storage/workbook_storage.h"

#include <cstdint>

#include "reader/reader.h"
#include "storage/storage_streams.h"

namespace {

constexpr FIID firstRelease = 1438;
constexpr FIID otherRelease = 1446;
constexpr std::uint32_t buildField = 8;
constexpr std::uint32_t yearField = 10;
constexpr std::int32_t yearOfFirstRelease = 1996;

struct FIBuildRow {
    std::int32_t build;
    FIID fiid;
};

constexpr FIBuildRow buildRows[] = {
    {5110, 1451}, {5612, 1451}, {6111, 1448}, {6214, 1448}, {7106, 1448}, {8124, 1448},
};

FIID FITellByBuildAndYear(FIReader& workbook) {
    static_cast<void>(FIReaderSeek(workbook, buildField));
    const std::int32_t build = FIReadWordLE(workbook);
    if (build < 0) return firstRelease;
    static_cast<void>(FIReaderSeek(workbook, yearField));
    const std::int32_t year = FIReadWordLE(workbook);
    if (year < 0 || year == yearOfFirstRelease) return firstRelease;
    for (const FIBuildRow& row : buildRows) {
        if (row.build == build) return row.fiid;
    }
    return otherRelease;
}

}  // namespace

FIID FIProbeWorkbookStorage(FIReader& reader) {
    if (!FIIsStorage(reader.file)) return firstRelease;
    return FIRunOverStream(reader.file, "Workbook", firstRelease, FITellByBuildAndYear);
}
