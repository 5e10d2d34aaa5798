// The row filter against the rows themselves: a row that is left out is one that fails.
//
// For each row there are files that fit it: its skeleton, and for rows that call a routine also files that the routine
// answers for. In each of them every place that the filter looks at takes all 256 values in turn, and then the file's
// end. Where the filter leaves the row out, the row is run in full over a reader without a head, and must fail.
#include "signatures/row_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/interpreter.h"
#include "package/xml_namespace.h"
#include "platform/base_utility.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "signatures/row_needs.h"
#include "signatures/table.h"
#include "support/bytes.h"
#include "support/golden.h"
#include "support/ordinary_files.h"
#include "support/skeleton.h"
#include "support/storage_writer.h"

namespace {

// A file that a row is run over.
struct Body {
    std::string bytes;
    std::string extension;  // as the rows see it
    std::string classId;    // in memory form; empty for a file that is no storage
};

FIFilterBytes HeadOf(std::string_view bytes) {
    const std::size_t size = std::min<std::size_t>(bytes.size(), largestHead);
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), static_cast<std::uint32_t>(size)};
}

bool IsSelected(std::uint16_t row, std::string_view bytes, bool hasClassId) {
    const FIRowSet rows = FISelectRows(HeadOf(bytes), hasClassId);
    return (rows[(row - 1U) / 64] >> (row - 1U) % 64 & 1) != 0;
}

bool IsLeftOut(std::uint16_t row, std::string_view bytes, bool hasClassId) {
    return !IsSelected(row, bytes, hasClassId) || !FIFarByteFits(row, HeadOf(bytes));
}

// Runs a row in full, over a handle of the platform layer and a reader without a head.
FIID RunRow(std::uint16_t row, std::string_view bytes, const Body& body) {
    const IOMemorySpec memory = {bytes.data(), bytes.size(), nullptr};
    HIOFILE file = nullptr;
    EXPECT_EQ(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead), 0);
    FIReader* const reader = FIReaderNew(file);
    FIRequest request = {};
    request.xmlNamespace[0] = xmlNamespaceNotScanned;
    request.hasClassId = !body.classId.empty();
    body.classId.copy(reinterpret_cast<char*>(request.classId), classIdSize);
    body.extension.copy(request.extension, extensionLength);
    const FIID fiid = FIRunSignature(FISignatureEntry(row), *reader, request);
    FIReaderFree(*reader);
    file->operations.IOClose(file);
    return fiid;
}

std::string ExtensionOf(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    std::string extension = dot != std::string::npos ? name.substr(dot + 1, extensionLength) : "";
    for (char& letter : extension) letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return extension;
}

// The class identifier of a storage in these bytes, or nothing.
std::string ClassIdOf(const std::string& bytes) {
    const IOMemorySpec memory = {bytes.data(), bytes.size(), nullptr};
    HIOFILE file = nullptr;
    EXPECT_EQ(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead), 0);
    std::string classId(classIdSize, '\0');
    const bool isStorage = file->operations.IOGetInfo(file, IOInfoClassId, classId.data()) == 0;
    file->operations.IOClose(file);
    return isStorage ? classId : "";
}

Body BodyOf(const std::filesystem::path& path) {
    constexpr std::size_t mostBytes = 200000;
    std::ifstream file(path, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    if (bytes.size() > mostBytes) bytes.resize(mostBytes);
    return {bytes, ExtensionOf(path.filename().string()), ClassIdOf(bytes)};
}

Body BodyOf(const Skeleton& skeleton) {
    return {skeleton.bytes, ExtensionOf(skeleton.name), skeleton.isStorage ? skeleton.classId : ""};
}

// Files of formats that no sample has.
std::vector<std::string> MadeFiles() {
    StorageWriter content;
    content.AddStream(u"NativeContent_MAIN", FIBytes(R"(d:0x000E0001 "QPW9")"));
    StorageWriter drawing;
    drawing.AddStream(u"VisioDocument", FIBytes(">24 d:0x00060000"));
    return {
        content.Write().bytes,
        drawing.Write().bytes,
        FIBytes(R"(74 00 >118 40 00 "|N" 40 "|O" >300)"),
        FIBytes(R"(37 FF >14 w:1009 >34 "CUSTOMER" >1024 "CUSTOMER")"),
        FIBytes(">24 FF FF FF 7F >1024"),
    };
}

// Samples, the files that fuzzing starts from, skeletons, made files, and files of no format.
std::vector<Body> MakeBodies() {
    std::vector<std::filesystem::path> paths;
    for (const char* const directory : {FIID_SAMPLES_DIR, FIID_SAMPLES_DIR "/../fuzz/seeds"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<Body> bodies;
    for (const auto& path : paths) bodies.push_back(BodyOf(path));
    // Those of fuzzing whose first byte chooses an extension.
    const std::size_t files = bodies.size();
    for (std::size_t index = 0; index < files; ++index) {
        if (paths[index].string().find("/fuzz/seeds/") == std::string::npos || bodies[index].bytes.empty()) continue;
        bodies.push_back({bodies[index].bytes.substr(1), "", ""});
    }
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        bodies.push_back(BodyOf(FIMakeSkeleton(FIFindSignatureRow(row)->signature)));
    }
    for (const std::string& bytes : MadeFiles()) bodies.push_back({bytes, "", ClassIdOf(bytes)});
    for (const std::string& bytes : FIOrdinaryFiles()) bodies.push_back({bytes.substr(0, 9000), "", ""});
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{3}, std::size_t{600}, std::size_t{9000}}) {
        bodies.push_back({std::string(size, '\0'), "", ""});
        bodies.push_back({std::string(size, '\xFF'), "", ""});
    }
    return bodies;
}

const std::vector<Body>& Bodies() {
    static const std::vector<Body> bodies = MakeBodies();
    return bodies;
}

// Each place that the filter looks at takes every value, and the file ends there. Returns in how many of these files
// the row was left out.
std::uint32_t PlantEverywhere(std::uint16_t row, const Body& body) {
    std::vector<std::size_t> places = {0, 1, 2, 3};
    const FIFarNeed far = FINeedsOfRow(*FIFindSignatureRow(row)).far;
    if (far.offset != 0) places.push_back(far.offset);
    std::uint32_t leftOut = 0;
    const auto tryFile = [&](std::string_view bytes, std::size_t place, std::uint32_t value) {
        if (!IsLeftOut(row, bytes, !body.classId.empty())) return;
        ++leftOut;
        EXPECT_EQ(RunRow(row, bytes, body), 0) << "row " << row << " offset " << place << " value " << value;
    };
    for (const std::size_t place : places) {
        std::string planted = body.bytes;
        planted.resize(std::max(planted.size(), place + 1));
        for (std::uint32_t value = 0; value < pastEnd; ++value) {
            planted[place] = static_cast<char>(value);
            tryFile(planted, place, value);
        }
        tryFile(std::string_view(planted).substr(0, place), place, pastEnd);
    }
    return leftOut;
}

// The skeleton, and the same with other bytes where the row says nothing.
std::vector<Body> SkeletonBodies(std::uint16_t row) {
    const Skeleton skeleton = FIMakeSkeleton(FIFindSignatureRow(row)->signature);
    Body filled = BodyOf(skeleton);
    std::vector<bool> isTested(filled.bytes.size());
    for (const SkeletonChange& change : skeleton.changes) {
        for (std::size_t index = 0; index < change.bytes.size(); ++index) isTested[change.offset + index] = true;
    }
    std::mt19937 generator(row);
    const bool isMarkup = FIFindSignatureRow(row)->signature.starts_with("xmlns");
    for (std::size_t index = 0; index < filled.bytes.size() && !isMarkup; ++index) {
        const auto random = static_cast<char>(generator() & 0xFF);
        if (!isTested[index]) filled.bytes[index] = random;
    }
    return {BodyOf(skeleton), filled};
}

std::vector<std::uint16_t> RowNumbers(bool callsRoutine) {
    std::vector<std::uint16_t> rows;
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        if ((FIFindSignatureRow(row)->result.opcode == FIOpcode::Call) == callsRoutine) rows.push_back(row);
    }
    return rows;
}

// ---- What is left out fails -----------------------------------------------------------------------------------------

class RowWithAnIdentifier : public testing::TestWithParam<std::uint16_t> {};
class RowWithACall : public testing::TestWithParam<std::uint16_t> {};

std::string NameOfRow(const testing::TestParamInfo<std::uint16_t>& row) { return "Row" + std::to_string(row.param); }

TEST_P(RowWithAnIdentifier, FailsWhereItIsLeftOut) {
    for (const Body& body : SkeletonBodies(GetParam())) {
        EXPECT_EQ(RunRow(GetParam(), body.bytes, body), FIFindSignatureRow(GetParam())->result.number)
            << "does not fit";
        EXPECT_FALSE(IsLeftOut(GetParam(), body.bytes, !body.classId.empty()));
        static_cast<void>(PlantEverywhere(GetParam(), body));
    }
}

INSTANTIATE_TEST_SUITE_P(Table, RowWithAnIdentifier, testing::ValuesIn(RowNumbers(false)), NameOfRow);

// A body as the row wants it besides the bytes: with its extension, and a storage with its class identifier.
Body Suited(Body body, const Body& skeleton) {
    if (!skeleton.extension.empty()) body.extension = skeleton.extension;
    if (!skeleton.classId.empty() && !body.classId.empty()) body.classId = skeleton.classId;
    return body;
}

// Files that the row answers for and a few that it does not. The first ones are planted in, all are asked about.
TEST_P(RowWithACall, FailsWhereItIsLeftOut) {
    constexpr std::uint32_t mostPlanted = 8;
    constexpr std::size_t everySoManyOthers = 400;
    const std::uint16_t row = GetParam();
    for (const Body& body : SkeletonBodies(row)) static_cast<void>(PlantEverywhere(row, body));
    const Body skeleton = SkeletonBodies(row).front();
    std::uint32_t answered = 0;
    for (std::size_t index = 0; index < Bodies().size(); ++index) {
        const Body body = Suited(Bodies()[index], skeleton);
        const bool fits = RunRow(row, body.bytes, body) != 0;
        if (fits) {
            ++answered;
            EXPECT_FALSE(IsLeftOut(row, body.bytes, !body.classId.empty())) << "file " << index;
        }
        const bool isPlanted = fits ? answered <= mostPlanted : index % everySoManyOthers == row % everySoManyOthers;
        if (isPlanted) static_cast<void>(PlantEverywhere(row, body));
    }
    EXPECT_GT(answered, 0U) << "there is no file that the row answers for: add one to MadeFiles";
}

INSTANTIATE_TEST_SUITE_P(Table, RowWithACall, testing::ValuesIn(RowNumbers(true)), NameOfRow);

// ---- What is in the sets --------------------------------------------------------------------------------------------

// The bit sets that the compiler made against the needs of each row, worked out here and now.
TEST(RowFilter, HoldsTheNeedsOfEachRow) {
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        const FIRowNeeds needs = FINeedsOfRow(*FIFindSignatureRow(row));
        // A file that fits the row at the other offsets.
        std::string fitting;
        for (const FIByteSet& set : needs.first) {
            std::uint16_t value = 0;
            while (value < pastEnd && !set.Holds(value)) ++value;
            ASSERT_LT(value, pastEnd) << row;
            fitting += static_cast<char>(value);
        }
        for (std::size_t offset = 0; offset < firstOffsets; ++offset) {
            for (std::uint16_t value = 0; value < pastEnd; ++value) {
                std::string bytes = fitting;
                bytes[offset] = static_cast<char>(value);
                EXPECT_EQ(IsSelected(row, bytes, true), needs.first[offset].Holds(value))
                    << row << " " << offset << " " << value;
            }
            bool endsLater = needs.first[offset].Holds(pastEnd);
            for (std::size_t later = offset; later < firstOffsets; ++later)
                endsLater &= needs.first[later].Holds(pastEnd);
            EXPECT_EQ(IsSelected(row, fitting.substr(0, offset), true), endsLater) << row << " ends at " << offset;
        }
        EXPECT_EQ(IsSelected(row, fitting, false), !needs.needsClassId) << row;
    }
}

TEST(RowFilter, LooksAtTheFarByteOfEachRow) {
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        const FIFarNeed far = FINeedsOfRow(*FIFindSignatureRow(row)).far;
        ASSERT_LT(far.offset, leastFilterBytes);
        std::string bytes(leastFilterBytes, '\0');
        if (far.offset == 0) {
            EXPECT_TRUE(FIFarByteFits(row, HeadOf(""))) << row;
            continue;
        }
        for (std::uint32_t value = 0; value < pastEnd; ++value) {
            bytes[far.offset] = static_cast<char>(value);
            EXPECT_EQ(FIFarByteFits(row, HeadOf(bytes)), value >= far.low && value <= far.high) << row << " " << value;
        }
        EXPECT_FALSE(FIFarByteFits(row, HeadOf(bytes.substr(0, far.offset)))) << row;
    }
}

// ---- It is good for something ---------------------------------------------------------------------------------------

// The rows that golden/skeletons.tsv tells to decide.
TEST(RowFilter, SelectsTheDecidingRowOfEachSkeleton) {
    for (const std::string& line : FIReadGolden("skeletons.tsv")) {
        std::istringstream fields(line);
        std::uint16_t row = 0;
        std::uint16_t answer = 0;
        std::uint16_t decidingRow = 0;
        ASSERT_TRUE(fields >> row >> answer >> decidingRow) << line;
        const Skeleton skeleton = FIMakeSkeleton(FIFindSignatureRow(row)->signature);
        if (decidingRow == 0) continue;
        EXPECT_FALSE(IsLeftOut(decidingRow, skeleton.bytes, skeleton.isStorage)) << line;
    }
}

struct Selected {
    std::uint32_t byFirstBytes;
    std::uint32_t byAll;
};

Selected CountSelected(std::string_view bytes) {
    Selected selected = {0, 0};
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        selected.byFirstBytes += IsSelected(row, bytes, false);
        selected.byAll += !IsLeftOut(row, bytes, false);
    }
    return selected;
}

// Of 404. A row or a need more may raise a number a little; much more makes the filter useless.
TEST(RowFilter, LeavesFewRows) {
    const auto expectAtMost = [](const char* what, std::string_view bytes, Selected most) {
        const Selected selected = CountSelected(bytes);
        EXPECT_LE(selected.byFirstBytes, most.byFirstBytes) << what;
        EXPECT_LE(selected.byAll, most.byAll) << what;
    };
    expectAtMost("English text", FIEnglishText("\n"), {52, 21});
    expectAtMost("C source", FIProgramSource(), {53, 22});
    expectAtMost("random bytes", FIRandomBytes(), {52, 20});
    expectAtMost("zero bytes", std::string(9000, '\0'), {77, 38});
    expectAtMost("no bytes", "", {48, 19});
}

// Every row that has a test of a byte at a known place is left out of some file.
TEST(RowFilter, LeavesOutEveryRowWithATestAtAPlace) {
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        const FISignatureRow& told = *FIFindSignatureRow(row);
        const bool hasPlace = told.signature.starts_with(">") && !told.signature.starts_with(">end");
        if (!hasPlace) continue;
        std::uint32_t leftOut = 0;
        for (const Body& body : SkeletonBodies(row)) leftOut += PlantEverywhere(row, body);
        EXPECT_GT(leftOut, 0U) << row << " " << told.signature;
    }
}

}  // namespace
