// named_streams.cpp - probes that read a field or two of one named stream.
//
//   Routine           Stream                Offset  Size  Field, little-endian                Accepted
//   1445              "NativeContent_MAIN"       0     4  mark                                01 00 0E 00
//                                                4     4  mark                                "QPW9"
//   1447, 1450, 1453  "PerfectOffice_MAIN"       0     8  mark                                00 00 02 00 07 10 C9 00
//   1082              "Book"                     0     4  first record's number and length,   09 08 08 00
//                                                         of a spreadsheet
//   1597, 1631        "VisioDocument"           24     4  version                             see versionRows
//   1579              "DesignerDoc"             13     2  version                             5 is 1579, else 1608
#include "storage/named_streams.h"

#include <cstdint>

#include "reader/reader.h"
#include "storage/storage_streams.h"

namespace {

// A double word in which the end of the stream counts as 0, a value that none of the marks has.
std::uint32_t FIReadMark(FIReader& stream) {
    std::uint32_t mark = 0;
    static_cast<void>(FIReadDWordLE(stream, mark));
    return mark;
}

FIID FITellNativeContent(FIReader& stream) {
    const std::uint32_t first = FIReadMark(stream);
    const std::uint32_t second = FIReadMark(stream);
    return first == 0x000E0001 && second == 0x39575051 ? 1445 : 0;
}

FIID FITellBook(FIReader& stream) { return FIReadMark(stream) == 0x00080809 ? 1424 : 1082; }

struct FIVersionRow {
    std::uint32_t version;
    FIID fiid;
};

constexpr FIVersionRow versionRows[] = {
    {0x00030003, 1607}, {0x00040000, 1586}, {0x00050000, 1595}, {0x00060000, 1597}, {0x000B0000, 1631},
};

FIID FITellVisio(FIReader& stream) {
    constexpr std::uint16_t versionField = 24;
    std::uint32_t version = 0;
    static_cast<void>(FIReaderSkip(versionField, stream));
    if (FIReadDWordLE(stream, version) != 0) return 0;
    for (const FIVersionRow& row : versionRows) {
        if (row.version == version) return row.fiid;
    }
    return 0;
}

FIID FITellDesigner(FIReader& stream) {
    constexpr std::uint32_t versionField = 13;
    static_cast<void>(FIReaderSeek(stream, versionField));
    const std::int32_t version = FIReadWordLE(stream);
    return version < 0 || version == 5 ? 1579 : 1608;
}

}  // namespace

FIID FIProbeBookStorage(FIReader& reader) {
    // "BOOK", which the dispatcher knows too, is not asked for here.
    if (!FIIsStorage(reader.file)) return 1082;
    return FIRunOverStream(reader.file, "Book", 1082, FITellBook);
}

FIID FIProbeDesignerStorage(FIReader& reader) {
    if (!FIIsStorage(reader.file)) return 1579;
    return FIRunOverStream(reader.file, "DesignerDoc", 1579, FITellDesigner);
}

FIID FIProbeNativeContentStorage(FIReader& reader) {
    if (!FIIsStorage(reader.file)) return 0;
    return FIRunOverStream(reader.file, "NativeContent_MAIN", 0, FITellNativeContent);
}

FIID FIProbePerfectOfficeStorage(FIReader& reader, FIID number) {
    if (!FIIsStorage(reader.file)) return 0;
    return FIRunOverStream(reader.file, "PerfectOffice_MAIN", number, [number](FIReader& stream) -> FIID {
        const std::uint32_t first = FIReadMark(stream);
        const std::uint32_t second = FIReadMark(stream);
        return first == 0x00020000 && second == 0x00C91007 ? 1433 : number;
    });
}

FIID FIProbeVisioStorage(FIReader& reader) {
    if (!FIIsStorage(reader.file)) return 0;
    return FIRunOverStream(reader.file, "VisioDocument", 0, FITellVisio);
}
