// The rows of the second table: each against the smallest file that fits it, and what the whole system says of all of them.
#include "further/table.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "core/driver.h"
#include "core/interpreter.h"
#include "further/formats.h"
#include "further/further.h"
#include "further/routines.h"
#include "platform/byte_objects.h"
#include "platform/operations.h"
#include "reader/reader.h"
#include "support/golden.h"
#include "support/skeleton.h"
#include "support/storage_writer.h"

namespace {

// Takes the place of the routines: each says yes, by its number.
FIID SayYes(FIFurtherCalls&, std::uint16_t number) { return number; }

FIID RunRow(std::uint16_t number, const Skeleton& skeleton) {
    FIFurtherCalls calls = {SayYes};
    const auto handle = FIOpenSkeleton(skeleton);
    FIReader* const reader = FIReaderNew(FIFileOf(*handle));
    FIRequest request = {};
    request.hasClassId = skeleton.isStorage;
    skeleton.classId.copy(reinterpret_cast<char*>(request.classId), classIdSize);
    request.calls = &calls;
    const FIID result = FIRunSignature(FIFurtherEntry(number), *reader, request);
    FIReaderFree(*reader);
    return result;
}

bool IsSelected(std::uint16_t number, const Skeleton& skeleton) {
    FIFurtherRowSet all;
    all.fill(~std::uint64_t{0});
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(skeleton.bytes.data());
    const FIFilterBytes head = {bytes, static_cast<std::uint32_t>(std::min<std::size_t>(skeleton.bytes.size(), 8192))};
    const FIFurtherRowSet rows = FISelectFurtherRows(all, head, skeleton.isStorage);
    return (rows[(number - 1U) / 64] >> (number - 1U) % 64 & 1) != 0 &&
           FIFarByteFits(FIFurtherFarNeedsOfRows()[number - 1U], head);
}

template <typename Visit>
void VisitRows(Visit visit) {
    for (std::uint16_t number = 1; number <= furtherRowCount; ++number) {
        const FIFurtherRow& row = *FIFindFurtherRow(number);
        SCOPED_TRACE(std::to_string(number) + ": " + std::string(row.signature));
        visit(number, row, FIMakeSkeleton(row.signature));
    }
}

TEST(FurtherRows, FitTheirSkeletonsAndPassTheFilter) {
    VisitRows([](std::uint16_t number, const FIFurtherRow& row, const Skeleton& skeleton) {
        EXPECT_EQ(RunRow(number, skeleton), row.result.number);
        EXPECT_TRUE(IsSelected(number, skeleton));
    });
}

TEST(FurtherRows, DoNotFitWithATestedByteChanged) {
    VisitRows([](std::uint16_t number, const FIFurtherRow&, const Skeleton& skeleton) {
        for (const SkeletonChange& change : skeleton.changes) {
            Skeleton changed = skeleton;
            changed.bytes.replace(change.offset, change.bytes.size(), change.bytes);
            EXPECT_EQ(RunRow(number, changed), 0) << "offset " << change.offset;
        }
    });
}

TEST(FurtherRows, DoNotFitAFileThatEndsAByteEarlier) {
    VisitRows([](std::uint16_t number, const FIFurtherRow&, Skeleton skeleton) {
        if (skeleton.bytes.empty()) return;
        skeleton.bytes.pop_back();
        EXPECT_EQ(RunRow(number, skeleton), 0);
    });
}

TEST(FurtherRows, OfClassesDoNotFitAnotherClassOrAPlainFile) {
    VisitRows([](std::uint16_t number, const FIFurtherRow&, Skeleton skeleton) {
        if (!skeleton.isStorage) return;
        for (char& byte : skeleton.classId) {
            byte = static_cast<char>(byte ^ 1);
            EXPECT_EQ(RunRow(number, skeleton), 0);
            byte = static_cast<char>(byte ^ 1);
        }
        skeleton.isStorage = false;
        EXPECT_EQ(RunRow(number, skeleton), 0);
        EXPECT_FALSE(IsSelected(number, skeleton));
    });
}

TEST(FurtherRows, NameFormatsAndRoutinesThatExist) {
    std::set<std::uint16_t> called;
    VisitRows([&called](std::uint16_t, const FIFurtherRow& row, const Skeleton&) {
        if (row.result.opcode == FIOpcode::Call) {
            EXPECT_NE(FIFindFurtherRoutine(row.result.number), nullptr);
            called.insert(row.result.number);
        } else {
            EXPECT_NE(FIFindFurtherFormat(row.result.number), nullptr);
        }
    });
    for (const FIFurtherRoutine& routine : FIFurtherRoutines())
        EXPECT_TRUE(called.contains(routine.number)) << routine.number;
    EXPECT_EQ(FIFindFurtherRow(0), nullptr);
    EXPECT_EQ(FIFindFurtherRow(furtherRowCount + 1), nullptr);
    EXPECT_EQ(FIFindFurtherRoutine(20001), nullptr);
}

TEST(FurtherRows, StandOverSomeAnswersOnly) {
    for (std::uint32_t fiid = 0; fiid <= 0xFFFF; ++fiid) {
        std::size_t rows = 0;
        for (const std::uint64_t word : FIFurtherRowsOver(static_cast<FIID>(fiid))) {
            rows += static_cast<std::size_t>(std::popcount(word));
        }
        const std::set<std::uint32_t> text = {4005, 4022, 4025};
        const std::set<std::uint32_t> packages = {1309, 1312, 1454, 1455, 1632, 1633, 1635, 1802};
        const std::size_t expected = text.contains(fiid)       ? furtherRowCount - 1
                                     : fiid == 1999            ? furtherRowCount - 2  // not what an extension tells
                                     : packages.contains(fiid) ? 1
                                                               : 0;
        ASSERT_EQ(rows, expected) << fiid;
    }
}

TEST(FurtherFormats, AreFoundByTheirIdentifiers) {
    EXPECT_EQ(FIFurtherFormats().size(), 388U);
    for (const FIFormatRecord& format : FIFurtherFormats()) EXPECT_EQ(FIFindFurtherFormat(format.fiid), &format);
    EXPECT_EQ(FIFindFurtherFormat(19999), nullptr);
    EXPECT_EQ(FIFindFurtherFormat(20006), nullptr);
    EXPECT_EQ(FIFindFurtherFormat(65535), nullptr);
}

struct WholeAnswer {
    FIVerdict first;
    FIFurtherVerdict further;
};

WholeAnswer Identify(const std::string& bytes) {
    const IOMemorySpec memory = {bytes.data(), bytes.size(), "file"};
    UTHandle* const handle = UTOpenMemory(memory);
    UTGiveOperations(*handle);
    WholeAnswer answer = {{0, 0}, {0, 0}};
    EXPECT_EQ(FIIdHandleWithRow(UTHandleFile(*handle), FIFlagExtendedText, answer.first), 0);
    FILook look;
    EXPECT_TRUE(FIStartLook(look, *handle, answer.first.fiid, answer.first.row));
    answer.further = FITellFurther(look);
    FIEndLook(look);
    UTCloseHandle(*handle);
    return answer;
}

std::string BytesOf(const Skeleton& skeleton) {
    if (!skeleton.isStorage) return skeleton.bytes;
    StorageWriter storage;
    storage.SetClassId(skeleton.classId);
    return storage.Write().bytes;
}

// What the whole system says of the skeletons of all rows: table, row, identifier, further. Where it is not what the row
// says, an earlier row has taken the file, or a routine said no.
TEST(FurtherRows, SkeletonsOfBothTablesGetTheirAnswers) {
    std::vector<std::string> lines;
    const auto tell = [&lines](int table, std::uint16_t row, const Skeleton& skeleton) {
        const WholeAnswer answer = Identify(BytesOf(skeleton));
        std::ostringstream line;
        line << table << "\t" << row << "\t" << answer.first.fiid << "\t" << answer.further.further;
        lines.push_back(line.str());
    };
    for (std::uint16_t number = 1; number <= signatureRowCount; ++number) {
        tell(1, number, FIMakeSkeleton(FIFindSignatureRow(number)->signature));
    }
    VisitRows(
        [&tell](std::uint16_t number, const FIFurtherRow&, const Skeleton& skeleton) { tell(2, number, skeleton); });
    FIExpectGolden("further_skeletons.tsv", lines);
}

}  // namespace
