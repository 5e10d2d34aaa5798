// Sources: what is asked of them, how large they may be, and what comes of those that fail or lie.
#include <gtest/gtest.h>

#include <cstdint>

#include "fiid/detect.h"
#include "support/bytes.h"
#include "support/process_heap.h"
#include "support/relationships.h"
#include "support/sparse_source.h"
#include "support/storage_writer.h"
#include "support/zip_writer.h"

namespace {

constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;

fiid_result Detect(SparseSource& source, std::int32_t status = FIID_OK, std::uint32_t flags = 0) {
    fiid_result result;
    const fiid_source told = source.Told();
    const fiid_options options = {sizeof(options), flags};
    source.calls.clear();
    const std::size_t blocks = FIHeapBlocks();
    EXPECT_EQ(fiid_detect_source(&told, &options, &result), status);
    EXPECT_EQ(FIHeapBlocks(), blocks);
    EXPECT_EQ(result.calls, source.calls.size());
    return result;
}

// ---- Large packages -------------------------------------------------------------------------------------------------

constexpr char officeDocument[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument";

std::string ContentTypes(const std::string& main) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<Types "
           "xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"><Default Extension=\"rels\" "
           "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/><Default Extension=\"xml\" "
           "ContentType=\"application/xml\"/><Override PartName=\"/xl/workbook.xml\" "
           "ContentType=\"application/" +
           main + "\"/></Types>";
}
const std::string relationships =
    "<?xml version=\"1.0\"?><Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">" +
    FIRelationship(officeDocument, "xl/workbook.xml") + "</Relationships>";
const std::string workbook =
    "<?xml version=\"1.0\"?><workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"></workbook>";
const std::string sheet = "THE SHEET'S DATA";

constexpr char workbookType[] = "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";

// A workbook whose sheet has so many more bytes. Its other parts stand in front of it, or behind it, as writers do that
// learn what there is while they write.
SparseSource LargeWorkbook(std::uint64_t bytes, bool partsFirst, std::size_t fillerBehind = 0,
                           const char* type = workbookType) {
    const bool large = bytes > UINT32_MAX;
    const ZipMember data = {.name = "xl/worksheets/sheet1.xml",
                            .method = zipDeflated,
                            .zip64 = large,
                            .packed = sheet,
                            .sizeTold = 5 * bytes,
                            .packedSizeTold = sheet.size() + bytes};
    std::vector<ZipMember> members = {{"[Content_Types].xml", ContentTypes(type), zipDeflated},
                                      {"_rels/.rels", relationships, zipDeflated},
                                      {"xl/workbook.xml", workbook, zipDeflated},
                                      {"xl/styles.xml", std::string(fillerBehind, 's'), zipStored}};
    members.insert(partsFirst ? members.end() : members.begin(), data);
    ZipLayout layout;
    layout.zip64 = large;
    const std::string plain = FIWriteZip(members, layout);
    // Once more, with the offsets of what is behind the sheet.
    const std::size_t place = plain.find(sheet);
    std::size_t offset = 0;
    for (ZipMember& member : members) {
        offset = plain.find("PK\3\4", offset);
        if (offset > place) {
            member.headerOffsetTold = offset + bytes;
            member.zip64 = large;
        }
        ++offset;
    }
    layout.directoryOffsetTold = plain.find("PK\1\2") + bytes;
    SparseSource source = FIStretch(FIWriteZip(members, layout), place + sheet.size(), bytes);
    source.name = "figures.xlsx";
    return source;
}

struct LargeCase {
    const char* name;
    std::uint64_t bytes;
    bool partsFirst;
    std::size_t fillerBehind;  // between the parts and the directory
};

const LargeCase largeCases[] = {
    // clang-format off
    {"PartsFirst",                     gibibyte,     true,  0},
    {"PartsLast",                      gibibyte,     false, 0},
    {"PartsLastAndNotInTheTail",       gibibyte,     false, 3500},
    {"PartsFirstAbove4GiB",            5 * gibibyte, true,  0},
    {"PartsLastAbove4GiB",             5 * gibibyte, false, 0},
    {"PartsLastNotInTheTailAbove4GiB", 5 * gibibyte, false, 3500},
    // clang-format on
};

TEST(LargePackage, IsToldWithFewReads) {
    for (const LargeCase& large : largeCases) {
        SparseSource source = LargeWorkbook(large.bytes, large.partsFirst, large.fillerBehind);
        ASSERT_GT(source.size, large.bytes);
        const fiid_result result = Detect(source);
        EXPECT_EQ(result.fiid, 1455) << large.name;
        EXPECT_EQ(result.basis, FIID_BASIS_PACKAGE) << large.name;
        EXPECT_EQ(result.warnings & (FIID_WARN_CUT | FIID_WARN_EXTENSION), 0U) << large.name;
        EXPECT_EQ(result.size, source.size) << large.name;
        EXPECT_LE(result.calls, 4U) << large.name;
        EXPECT_LE(source.BytesAsked(), 20480U) << large.name;
        EXPECT_EQ(result.bytes_read, source.BytesAsked()) << large.name;
    }
}

// With macros it is another kind of the same format, which the further table tells by the type of the main part.
TEST(LargePackage, HasItsKindToldWithFewReads) {
    for (const bool partsFirst : {true, false}) {
        SparseSource source = LargeWorkbook(gibibyte, partsFirst, 3500, "vnd.ms-excel.sheet.macroEnabled.main+xml");
        const fiid_result result = Detect(source);
        EXPECT_EQ(result.fiid, 1455);
        EXPECT_EQ(result.further, 20404);
        EXPECT_EQ(result.basis, FIID_BASIS_PACKAGE);
        EXPECT_EQ(result.warnings, FIID_WARN_EXTENSION);
        EXPECT_LE(result.calls, 4U);
        EXPECT_LE(source.BytesAsked(), 20480U);
    }
}

TEST(LargePackage, IsExplainedWithNoMoreReads) {
    SparseSource source = LargeWorkbook(gibibyte, false, 3500);
    const fiid_result result = Detect(source, FIID_OK, FIID_EXPLAIN);
    EXPECT_LE(result.calls, 4U);
    EXPECT_LE(source.BytesAsked(), 20480U);
}

TEST(LargePackage, IsReadInPreferredBlocks) {
    SparseSource source = LargeWorkbook(gibibyte, false, 20000);
    source.preferredBlock = 30000;  // 32,768
    const fiid_result result = Detect(source);
    EXPECT_EQ(result.fiid, 1455);
    ASSERT_EQ(source.calls.size(), 3U);
    EXPECT_EQ(source.calls[0].size, 8192U);
    EXPECT_EQ(source.calls[1].size, 8192U) << "of the tail no more";
    EXPECT_EQ(source.calls[2].size, 32768U);
}

// ---- Large storages -------------------------------------------------------------------------------------------------

// A storage with sectors of 4,096 bytes, whose directory is the sector directoryAt, and of whose allocation table only
// what leads there is true: its sector 1,024, which the first further list of such sectors tells.
SparseSource LargeStorage(std::uint32_t directoryAt, const std::string& root) {
    const auto sectorOf = [](std::uint32_t sector) { return (std::uint64_t{sector} + 1) * 4096; };
    SparseSource source;
    source.size = sectorOf(directoryAt + 10);
    source.pieces[0] = FIBytes("D0 CF 11 E0 A1 B1 1A E1 >24 3E 00 04 00 FE FF 0C 00 06 00 >40 d:1 d:1025") +
                       FIBytes("d:" + std::to_string(directoryAt)) +
                       FIBytes("00*4 d:4096 FE FF FF FF 00*4 d:0 d:1 (d:1)*109");
    source.pieces[sectorOf(0)] = FIBytes("(d:1)*915 d:2 (FF FF FF FF)*107 FE FF FF FF");
    source.pieces[sectorOf(1)] = FIBytes("(FE FF FF FF)*1024");
    source.pieces[sectorOf(2)] = FIBytes("(FE FF FF FF)*1024");
    source.pieces[sectorOf(directoryAt)] = root;
    return source;
}

TEST(LargeStorage, IsSeenAbove4GiB) {
    const std::string root = FIBytes(
        "\"R\" 00 \"o\" 00 \"o\" 00 \"t\" 00 >64 w:10 05 01 (FF FF FF FF)*3 "
        "D1 F9 0C C2 AE 85 D1 11 AA B4 00 60 97 DA 56 1A >116 FE FF FF FF 00*8 >4096");
    SparseSource source = LargeStorage(1048576, root);
    const fiid_result result = Detect(source, FIID_OK, FIID_EXPLAIN);
    EXPECT_EQ(result.fiid, 1165);
    EXPECT_EQ(result.basis, FIID_BASIS_STORAGE);
    EXPECT_STREQ(result.explanation, "class {C20CF9D1-85AE-11D1-AAB4-006097DA561A}");
    EXPECT_EQ(result.warnings & FIID_WARN_CUT, 0U);
    SparseSource cut = LargeStorage(1048576, root);
    cut.size = 5 * 4096;
    EXPECT_NE(Detect(cut).warnings & FIID_WARN_CUT, 0U);
}

// ---- Reads ----------------------------------------------------------------------------------------------------------

TEST(Source, IsReadOnceWhereItsHeadDecides) {
    SparseSource source = FISourceOf("GIF89a" + std::string(100000, 'x'), "a.gif");
    EXPECT_EQ(Detect(source).fiid, 1503);
    ASSERT_EQ(source.calls.size(), 1U);
    EXPECT_EQ(source.calls[0].size, 8192U);
}

TEST(Source, OfNoBytesIsNotAsked) {
    SparseSource source = FISourceOf("");
    const fiid_result result = Detect(source);
    EXPECT_EQ(result.fiid, 4022);
    EXPECT_EQ(result.size, 0U);
    EXPECT_EQ(result.calls, 0U);
}

TEST(Source, ThatDeliversByteByByteHasTheSameAnswer) {
    for (const char* const bytes : {R"("GIF89a")", R"("PK" 03 04 00*5000)", R"("plain text" 0D 0A)", R"(00*9000)"}) {
        SparseSource source = FISourceOf(FIBytes(bytes));
        const fiid_result whole = Detect(source);
        SparseSource slow = FISourceOf(FIBytes(bytes));
        slow.mostBytes = 1;
        const fiid_result result = Detect(slow);
        EXPECT_EQ(result.fiid, whole.fiid) << bytes;
        EXPECT_EQ(result.further, whole.further) << bytes;
        EXPECT_EQ(result.bytes_read, whole.bytes_read) << bytes;
    }
}

TEST(Source, ThatFailsAtOnceIsAFailure) {
    SparseSource source = FISourceOf("GIF89a", "a.gif");
    source.failFrom = 0;
    const fiid_result result = Detect(source, FIID_ERROR_READ);
    EXPECT_EQ(result.fiid, 0);
    EXPECT_STREQ(result.name, "");
    EXPECT_EQ(result.source_error, 77);
    EXPECT_EQ(result.system_error, 0);
    EXPECT_EQ(result.size, 6U);
    EXPECT_EQ(result.bytes_read, 0U);
}

TEST(Source, ThatFailsLaterHasTheAnswerOfWhatCameAndTellsIt) {
    SparseSource source = FISourceOf("GIF89a" + std::string(100000, 'x'));
    source.failFrom = 6;
    fiid_result result = Detect(source);
    EXPECT_EQ(result.fiid, 1503);
    EXPECT_EQ(result.source_error, 77);
    SparseSource package = LargeWorkbook(gibibyte, true);
    package.failFrom = 20000;
    result = Detect(package);
    EXPECT_EQ(result.fiid, 1802);
    EXPECT_EQ(result.source_error, 77);
}

TEST(Source, ThatFailsInItsHeadHasTheWarningOfItsAnswer) {
    SparseSource source = FISourceOf("{\\rtf1\\ansi and more");
    source.failFrom = 11;
    const fiid_result result = Detect(source);
    EXPECT_EQ(result.fiid, 1028);
    EXPECT_EQ(result.source_error, 77);
    EXPECT_EQ(result.warnings, std::uint32_t{FIID_WARN_SEVERAL});
}

TEST(Source, ThatTellsTooManyBytesIsAFailure) {
    SparseSource source = FISourceOf("GIF89a");
    source.countLie = 1;
    EXPECT_EQ(Detect(source, FIID_ERROR_READ).source_error, -1);
}

TEST(Source, ThatEndsInItsHeadIsAsLongAsThat) {
    SparseSource source = FISourceOf("plain text\n" + std::string(100000, 'x'));
    source.endsAt = 11;
    const fiid_result result = Detect(source);
    EXPECT_EQ(result.fiid, 4022);
    EXPECT_EQ(result.size, 11U);
    EXPECT_EQ(result.source_error, 0);
    EXPECT_NE(result.warnings & FIID_WARN_CUT, 0U) << "it told a larger size";
}

TEST(Source, ThatEndsBehindItsHeadHasAnAnswer) {
    SparseSource source = LargeWorkbook(gibibyte, true);
    source.endsAt = 20000;
    const fiid_result result = Detect(source);
    EXPECT_EQ(result.fiid, 1802);
    EXPECT_NE(result.warnings & FIID_WARN_CUT, 0U);
}

TEST(Source, IsNeverAskedForMoreThan64KiBOrBehindItsEnd) {
    const std::string starts[] = {"PK\3\4", "no text, of which the first 64 KiB are looked at"};
    for (const std::uint32_t block : {0U, 1U, 65536U, UINT32_MAX}) {
        for (const std::uint64_t size :
             {std::uint64_t{8192}, std::uint64_t{8193}, std::uint64_t{48048}, std::uint64_t{70000}, gibibyte}) {
            for (const std::string& start : starts) {
                SparseSource source;
                source.size = size;
                source.pieces[0] = start;
                source.preferredBlock = block;
                static_cast<void>(Detect(source));
                for (const SparseSource::Call& call : source.calls) {
                    EXPECT_GE(call.size, 1U);
                    EXPECT_LE(call.size, 65536U);
                    EXPECT_LE(call.offset + call.size, size);
                }
            }
        }
    }
}

TEST(Source, OfTheLargestSizeHasAnAnswer) {
    SparseSource source;
    source.size = UINT64_MAX - 1;
    source.pieces[0] = "PK\3\4";
    EXPECT_EQ(Detect(source).fiid, 1802);
    source.pieces[0] = FIBytes("D0 CF 11 E0 A1 B1 1A E1");
    static_cast<void>(Detect(source));
}

TEST(Source, ThatMakesNoSenseIsRefused) {
    SparseSource source = FISourceOf("GIF89a");
    fiid_result result;
    fiid_source told = source.Told();
    told.read_at = nullptr;
    EXPECT_EQ(fiid_detect_source(&told, nullptr, &result), FIID_ERROR_ARGUMENT);
    told = source.Told();
    told.size = FIID_SIZE_UNKNOWN;
    EXPECT_EQ(fiid_detect_source(&told, nullptr, &result), FIID_ERROR_ARGUMENT);
    told = source.Told();
    told.reserved = 1;
    EXPECT_EQ(fiid_detect_source(&told, nullptr, &result), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(fiid_detect_source(nullptr, nullptr, &result), FIID_ERROR_ARGUMENT);
    told = source.Told();
    EXPECT_EQ(fiid_detect_source(&told, nullptr, nullptr), FIID_ERROR_ARGUMENT);
    told.name = nullptr;
    EXPECT_EQ(fiid_detect_source(&told, nullptr, &result), FIID_OK);
    EXPECT_TRUE(source.calls.size() == 1);
}

// Whatever read fails, and whatever memory runs out, the answer is a defined one and nothing is lost.
TEST(Source, SurvivesEveryFailure) {
    const std::string package = FIWriteZip({{"[Content_Types].xml", ContentTypes(workbookType), zipDeflated},
                                            {"filler", std::string(30000, 'x'), zipStored},
                                            {"_rels/.rels", relationships, zipDeflated},
                                            {"xl/workbook.xml", workbook, zipDeflated}});
    for (std::uint64_t failFrom = 0; failFrom < package.size(); failFrom += 501) {
        SparseSource source = FISourceOf(package, "a.xlsx");
        source.failFrom = failFrom;
        const fiid_result result = Detect(source, failFrom == 0 ? FIID_ERROR_READ : FIID_OK);
        EXPECT_EQ(result.source_error, 77) << failFrom;
    }
    for (std::uint32_t allocation = 0; allocation < 30; ++allocation) {
        SparseSource source = FISourceOf(package, "a.xlsx");
        const fiid_source told = source.Told();
        fiid_result result;
        const std::size_t blocks = FIHeapBlocks();
        FIFailAllocationsFrom(allocation);
        const std::int32_t status = fiid_detect_source(&told, nullptr, &result);
        FIHeapNeverFails();
        EXPECT_EQ(FIHeapBlocks(), blocks);
        EXPECT_TRUE(status == FIID_OK || status == FIID_ERROR_MEMORY) << allocation;
        EXPECT_EQ(status == FIID_OK, result.fiid != 0) << allocation;
        EXPECT_EQ(status == FIID_OK, result.name[0] != '\0') << allocation;
    }
}

}  // namespace
