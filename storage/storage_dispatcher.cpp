// storage_dispatcher.cpp - compound storages with an empty class identifier, told by the names of their streams.
//
// The names stand in a table. The first one that opens tells the family for good, whatever is found in it; a short read
// of that stream then settles the format:
//
//   Stream                 Offset  Size  Field                Tells
//   "PowerPoint Document"       0     2  first word           3: 1543; any other: 1600
//   "WordDocument"              2     2  file-format number   either byte above 69: 1146 by its own routine; else 1082
//   "PerfectOffice_MAIN"        0     4  mark                 00 00 02 00 or FF "WPC"; any other: no answer
//                               4     2  kind                 behind 00 00 02 00: 07 10: 1444; any other: no answer
//                               9     1  file type            behind FF "WPC": 10: 1107; 22: 1556; else 1555
//   "NativeContent_MAIN"        0     8  two numbers           any: 1445
//   "FileHeader"                0     8  "HWP Docu"           1180; any other: no answer
//
// Reads at most 10 bytes of one stream.
#include "storage/storage_dispatcher.h"

#include <cstdint>

#include "platform/base_utility.h"
#include "storage/storage_streams.h"
#include "storage/word_storage.h"
#include "storage/workbook_storage.h"

namespace {

constexpr FIID wordStorage = 1146;      // settled by FIProbeWordStorage
constexpr FIID workbookStorage = 1446;  // settled by FIProbeWorkbookStorage

// A stream that a row of the table has opened, for the row's follow-up.
struct FIOpenedStream {
    HIOFILE stream;
    IOSubSpec& specification;  // the record it was opened with, free for further use
    const char* extension;
    FIID answer;  // the row's
};

// ---- Follow-ups: each returns the answer, 0 for none ---------------------------------------------------------------

FIID FITellPresentation(const FIOpenedStream& opened) {
    return FIReadStream(opened.stream, 0, [](FIReader& stream) -> FIID {
        const std::int32_t firstWord = FIReadWordLE(stream);
        if (firstWord < 0) return 0;
        return firstWord == 3 ? 1543 : 1600;
    });
}

FIID FITellWordGeneration(const FIOpenedStream& opened) {
    return FIReadStream(opened.stream, 0, [&opened](FIReader& stream) -> FIID {
        constexpr std::uint32_t lastOldHighByte = 0x69000000;
        constexpr std::uint32_t lastOldLowByte = 0x00690000;
        constexpr std::uint32_t lowByteMask = 0x00FF0000;
        std::uint32_t value = 0;
        if (FIReadDWordLE(stream, value) != 0) return 0;
        // Quirk: the number's low byte is compared alone, its high byte together with the three bytes in front of it,
        // so that a high byte of 69 is newer when one of them is not 0.
        const bool newer = value > lastOldHighByte || (value & lowByteMask) > lastOldLowByte;
        return newer ? wordStorage : opened.answer;
    });
}

FIID FITellPerfectOffice(const FIOpenedStream& opened) {
    return FIReadStream(opened.stream, 0, [&opened](FIReader& stream) -> FIID {
        constexpr std::uint32_t presentationMark = 0x00000200;
        constexpr std::int32_t presentationKind = 0x1007;
        constexpr std::uint32_t perfectMark = 0xFF575043;  // FF "WPC"
        constexpr std::uint32_t bytesToFileType = 3;       // from behind the word at offset 4
        std::uint32_t mark = 0;
        if (FIReadDWordBE(stream, mark) != 0) return 0;
        const std::int32_t kind = FIReadWordLE(stream);
        if (kind < 0) return 0;
        if (mark == presentationMark) return kind == presentationKind ? 1444 : 0;
        if (mark != perfectMark) return 0;
        static_cast<void>(FIReaderSeek(stream, FIReaderTell(stream) + bytesToFileType));
        switch (FIReaderGetByte(stream)) {
            case 10:
                return 1107;
            case 22:
                return 1556;
            default:  // the end of the stream too
                return opened.answer;
        }
    });
}

FIID FITellNativeContent(const FIOpenedStream& opened) {
    return FIReadStream(opened.stream, 0, [&opened](FIReader& stream) -> FIID {
        // Quirk: the stream has to hold two double words, but what they say is not asked for;
        // FIProbeNativeContentStorage does ask.
        std::uint32_t value = 0;
        if (FIReadDWordLE(stream, value) != 0 || FIReadDWordLE(stream, value) != 0) return 0;
        return opened.answer;
    });
}

FIID FITellFileHeader(const FIOpenedStream& opened) {
    return FIReadStream(opened.stream, 0, [&opened](FIReader& stream) -> FIID {
        constexpr std::uint32_t firstMark = 0x48575020;   // "HWP "
        constexpr std::uint32_t secondMark = 0x446F6375;  // "Docu"
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        if (FIReadDWordBE(stream, first) != 0 || FIReadDWordBE(stream, second) != 0) return 0;
        return first == firstMark && second == secondMark ? opened.answer : 0;
    });
}

// What an encrypted package holds, by the file's extension.
struct FIExtensionRow {
    const char* extension;
    FIID fiid;
};

constexpr FIExtensionRow extensionRows[] = {
    {"PPTX", 1637}, {"POTX", 1637}, {"XLSX", 1456}, {"XLTX", 1456}, {"DOCX", 1313}, {"DOTX", 1313},
};

// The stream itself can't be looked into. A "WordDocument" beside it tells a document; else the extension may help.
FIID FITellEncryptedPackage(const FIOpenedStream& opened) {
    const HIOFILE document = FIOpenStorageObject(opened.specification, IOSUB_STREAM, "WordDocument");
    if (document != nullptr) {
        FICloseStorageObject(document);
        return 1313;
    }
    for (const FIExtensionRow& row : extensionRows) {
        if (lstrcmpiA(opened.extension, row.extension) == 0) return row.fiid;
    }
    return opened.answer;
}

// ---- The table ------------------------------------------------------------------------------------------------------

struct FIStorageRow {
    const char* name;
    FIID fiid;
    std::uint32_t kind;
    FIID (*followUp)(const FIOpenedStream& opened);  // null: the name is enough
};

// In the order in which the names are tried, which decides for a storage that holds several.
constexpr FIStorageRow storageRows[] = {
    // clang-format off
    // name                        fiid  kind           follow-up
    {"PP40",                       1538, IOSUB_STREAM,  nullptr},
    {"EncryptedPackage",           1819, IOSUB_STREAM,  FITellEncryptedPackage},
    {"PP97_DUALSTORAGE",           1592, IOSUB_STORAGE, nullptr},
    {"PowerPoint Document",        1543, IOSUB_STREAM,  FITellPresentation},
    {"WordDocument",               1082, IOSUB_STREAM,  FITellWordGeneration},
    {"NOVELL_MAIN",                1433, IOSUB_STREAM,  nullptr},
    {"PerfectOffice_MAIN",         1555, IOSUB_STREAM,  FITellPerfectOffice},
    {"Book",                       1424, IOSUB_STREAM,  nullptr},
    {"BOOK",                       1424, IOSUB_STREAM,  nullptr},  // handles may look names up with or without case
    {"Workbook",                   1446, IOSUB_STREAM,  nullptr},
    {"NativeContent_MAIN",         1445, IOSUB_STREAM,  FITellNativeContent},
    {"FileHeader",                 1180, IOSUB_STREAM,  FITellFileHeader},
    {"MN0",                        1105, IOSUB_STREAM,  nullptr},
    {"__properties_version1.0",    1143, IOSUB_STREAM,  nullptr},
    // clang-format on
};

// The answer of the first row whose name opens, 0 when none does.
FIID FIWalkStorageRows(HIOFILE storage, const char* extension) {
    IOSubSpec specification;
    specification.parent = storage;
    for (const FIStorageRow& row : storageRows) {
        const HIOFILE object = FIOpenStorageObject(specification, row.kind, row.name);
        if (object == nullptr) continue;
        const FIID answer =
            row.followUp != nullptr ? row.followUp({object, specification, extension, row.fiid}) : row.fiid;
        FICloseStorageObject(object);
        return answer;
    }
    return 0;
}

}  // namespace

FIID FIProbeStorage(FIReader& reader, const char* extension) {
    if (!FIIsStorage(reader.file)) return 0;
    const FIID answer = FIWalkStorageRows(reader.file, extension);
    if (answer == wordStorage) return FIProbeWordStorage(reader);
    if (answer == workbookStorage) return FIProbeWorkbookStorage(reader);
    return answer;
}
