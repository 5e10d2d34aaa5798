// Skeletons: for each row the smallest file that fits it.
#include "support/skeleton.h"

#include <gtest/gtest.h>

#include <sstream>

#include "core/driver.h"
#include "core/interpreter.h"
#include "package/xml_namespace.h"
#include "reader/reader.h"
#include "signatures/table.h"
#include "support/golden.h"

namespace {

constexpr FIID reached = 7777;

// The row's own bytecode, with its result replaced by an identifier that tells that its end was reached.
std::vector<std::uint8_t> CodeOf(std::uint16_t number) {
    constexpr std::ptrdiff_t resultSize = 6;  // FF, the opcode and the number; FF E0
    const auto next = static_cast<std::uint16_t>(number + 1);
    std::vector<std::uint8_t> code(FISignatureEntry(number), FISignatureEntry(next) - resultSize);
    code.insert(code.end(), {0xFF, 0x08, reached & 0xFF, reached >> 8, 0xFF, 0xE0});
    return code;
}

bool Fits(std::uint16_t number, const Skeleton& skeleton) {
    const std::vector<std::uint8_t> code = CodeOf(number);
    const auto handle = FIOpenSkeleton(skeleton);
    FIReader* const reader = FIReaderNew(FIFileOf(*handle));
    FIRequest request = {};
    request.xmlNamespace[0] = xmlNamespaceNotScanned;
    request.hasClassId = skeleton.isStorage;
    skeleton.classId.copy(reinterpret_cast<char*>(request.classId), classIdSize);
    const std::string extension = skeleton.name.empty() ? "" : skeleton.name.substr(skeleton.name.find('.') + 1);
    extension.copy(request.extension, extensionLength);
    const FIID result = FIRunSignature(code.data(), *reader, request);
    FIReaderFree(*reader);
    return result == reached;
}

// The numbers of the rows whose skeleton a rule has something to say about.
template <typename Rule>
std::vector<std::uint16_t> RowsFor(Rule hasSomethingToSay) {
    std::vector<std::uint16_t> numbers;
    for (std::uint16_t number = 1; number <= signatureRowCount; ++number) {
        const std::string_view signature = FIFindSignatureRow(number)->signature;
        if (hasSomethingToSay(FIMakeSkeleton(signature), signature)) numbers.push_back(number);
    }
    return numbers;
}

std::string NameOfRow(const testing::TestParamInfo<std::uint16_t>& row) { return "Row" + std::to_string(row.param); }

class SkeletonOfRow : public testing::TestWithParam<std::uint16_t> {
 protected:
    std::string_view signature_ = FIFindSignatureRow(GetParam())->signature;
    Skeleton skeleton_ = FIMakeSkeleton(signature_);
};

TEST_P(SkeletonOfRow, Fits) { EXPECT_TRUE(Fits(GetParam(), skeleton_)); }

INSTANTIATE_TEST_SUITE_P(Table, SkeletonOfRow,
                         testing::ValuesIn(RowsFor([](const Skeleton& /*skeleton*/, std::string_view /*signature*/) {
                             return true;
                         })),
                         NameOfRow);

class SkeletonWithTestedBytes : public SkeletonOfRow {};

TEST_P(SkeletonWithTestedBytes, DoesNotFitWithOneOfThemChanged) {
    for (const SkeletonChange& change : skeleton_.changes) {
        Skeleton changed = skeleton_;
        changed.bytes.replace(change.offset, change.bytes.size(), change.bytes);
        EXPECT_FALSE(Fits(GetParam(), changed)) << "offset " << change.offset;
    }
}

INSTANTIATE_TEST_SUITE_P(Table, SkeletonWithTestedBytes,
                         testing::ValuesIn(RowsFor([](const Skeleton& skeleton, std::string_view /*signature*/) {
                             return !skeleton.changes.empty();
                         })),
                         NameOfRow);

class SkeletonWithALastByte : public SkeletonOfRow {};

TEST_P(SkeletonWithALastByte, DoesNotFitWhenTheFileEndsAByteEarlier) {
    Skeleton shorter = skeleton_;
    shorter.bytes.pop_back();
    // A word to be outside a range may lack its high half, which then counts as FF.
    if (signature_.find("out[") != std::string_view::npos) shorter.bytes.pop_back();
    EXPECT_FALSE(Fits(GetParam(), shorter));
}

// A namespace may be followed by anything.
INSTANTIATE_TEST_SUITE_P(Table, SkeletonWithALastByte,
                         testing::ValuesIn(RowsFor([](const Skeleton& skeleton, std::string_view signature) {
                             return !skeleton.bytes.empty() && !signature.starts_with("xmlns");
                         })),
                         NameOfRow);

class SkeletonWithAnExtension : public SkeletonOfRow {};

TEST_P(SkeletonWithAnExtension, DoesNotFitWithAnotherOne) {
    Skeleton changed = skeleton_;
    changed.name = "file.XYZ";
    EXPECT_FALSE(Fits(GetParam(), changed));
    changed.name = skeleton_.name.substr(0, skeleton_.name.size() - 1);
    EXPECT_FALSE(Fits(GetParam(), changed)) << "an extension that is shorter";
    changed.name = skeleton_.name + "X";
    EXPECT_TRUE(Fits(GetParam(), changed)) << "an extension that is longer and starts with the text";
}

INSTANTIATE_TEST_SUITE_P(Table, SkeletonWithAnExtension,
                         testing::ValuesIn(RowsFor([](const Skeleton& skeleton, std::string_view /*signature*/) {
                             return !skeleton.name.empty();
                         })),
                         NameOfRow);

class SkeletonOfAStorage : public SkeletonOfRow {};

TEST_P(SkeletonOfAStorage, DoesNotFitWithAnotherClassIdentifierOrAsAPlainFile) {
    ASSERT_EQ(skeleton_.classId.size(), 16U);
    Skeleton changed = skeleton_;
    for (std::size_t index = 0; index < changed.classId.size(); ++index) {
        changed.classId = skeleton_.classId;
        changed.classId[index] = static_cast<char>(changed.classId[index] ^ 0x01);
        EXPECT_FALSE(Fits(GetParam(), changed)) << "byte " << index << " of the class identifier";
    }
    changed = skeleton_;
    changed.isStorage = false;
    EXPECT_FALSE(Fits(GetParam(), changed)) << "a plain file";
}

INSTANTIATE_TEST_SUITE_P(Table, SkeletonOfAStorage,
                         testing::ValuesIn(RowsFor([](const Skeleton& skeleton, std::string_view /*signature*/) {
                             return skeleton.isStorage;
                         })),
                         NameOfRow);

// What the whole system says of each skeleton: row, answer, deciding row. Where the deciding row is another one, the
// skeleton's row is hidden from this file by an earlier row, or its routine said no.
TEST(Skeletons, GetTheirAnswers) {
    std::vector<std::string> lines;
    for (std::uint16_t number = 1; number <= signatureRowCount; ++number) {
        const auto handle = FIOpenSkeleton(FIMakeSkeleton(FIFindSignatureRow(number)->signature));
        FIVerdict verdict = {0, 0};
        ASSERT_EQ(FIIdHandleWithRow(FIFileOf(*handle), FIFlagExtendedText, verdict), 0);
        std::ostringstream line;
        line << number << "\t" << verdict.fiid << "\t" << verdict.row;
        lines.push_back(line.str());
    }
    FIExpectGolden("skeletons.tsv", lines);
}

}  // namespace
