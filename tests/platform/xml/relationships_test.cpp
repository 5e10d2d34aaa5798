// Relationships parts: which relationship is meant, and where its target leads.
#include "platform/xml/relationships.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

#include "support/case_name.h"
#include "support/process_heap.h"
#include "support/relationships.h"
#include "support/test_handle.h"
#include "support/utf16_text.h"

namespace {

using ::PrintTo;

// ---- Targets -------------------------------------------------------------------------------------------------------

struct TargetCase {
    const char* name;
    const char* target;
    const char* part;
};

const TargetCase targetCases[] = {
    // clang-format off
    {"ANameInTheRoot", "part.xml", "part.xml"},
    {"ANameInADirectory", "word/document.xml", "word/document.xml"},
    {"ALeadingSlashIsDropped", "/word/document.xml", "word/document.xml"},
    {"OneLeadingSlash", "//word/document.xml", "/word/document.xml"},
    {"DotsStandForTheDirectory", "./word/./document.xml", "word/document.xml"},
    {"DotsAlone", ".", ""},
    {"ADotAtTheEnd", "word/.", "word/"},
    {"TwoDotsLeadUp", "word/../xl/workbook.xml", "xl/workbook.xml"},
    {"TwoDotsTwice", "a/b/../../c", "c"},
    {"TwoDotsAtTheRootStayThere", "../../word/document.xml", "word/document.xml"},
    {"TwoDotsAtTheRootBehindASlash", "/../word/document.xml", "word/document.xml"},
    {"TwoDotsAtTheEnd", "word/..", ""},
    {"TwoDotsAtTheEndOfTwo", "a/b/..", "a/"},
    {"ThreeDotsAreAName", ".../a", ".../a"},
    {"DotsInANameAreItsOwn", "a../..b/.c", "a../..b/.c"},
    {"EmptySegmentsStay", "a//b", "a//b"},
    {"TwoDotsTakeAnEmptySegment", "a//../b", "a/b"},
    {"EscapesAreDecoded", "word/my%20document%2exml", "word/my document.xml"},
    {"EscapesInCapitalsAndSmallLetters", "%C3%a4.xml", "\xC3\xA4.xml"},
    {"AnEscapeIsDecodedOnce", "a%2520b", "a%20b"},
    {"AnEscapedSlashIsASlash", "word%2Fdocument.xml", "word/document.xml"},
    {"EscapedDotsAreNotWorkedOut", "a/%2e%2e/b", "a/../b"},
    {"WhatIsNoEscapeStays", "100%/a%2/%zz%4", "100%/a%2/%zz%4"},
    {"ABackslashIsNoSlash", "word\\document.xml", "word\\document.xml"},
    {"Nothing", "", ""},
    {"ASlash", "/", ""},
    // clang-format on
};

class ResolveTarget : public testing::TestWithParam<TargetCase> {};

TEST_P(ResolveTarget, Answers) {
    std::string target = GetParam().target;
    target.resize(UTResolveTarget(target.data(), target.size()));
    EXPECT_EQ(target, GetParam().part);
}

INSTANTIATE_TEST_SUITE_P(Targets, ResolveTarget, testing::ValuesIn(targetCases), FICaseName);

// ---- Relationships -------------------------------------------------------------------------------------------------

constexpr const char none[] = "(none)";

// The part to which a type leads.
std::string PartOf(const UTRelationships& relationships, std::string_view type) {
    return std::string(UTFindTarget(relationships, type).value_or(none));
}

// The same in a relationships part.
std::string PartOf(TestHandle& handle, const char* type = "t") {
    const std::size_t blocks = FIHeapBlocks();
    UTRelationships* const relationships = UTReadRelationships(FIFileOf(handle));
    const std::string part = PartOf(*relationships, type);
    UTFreeRelationships(*relationships);
    EXPECT_EQ(FIHeapBlocks(), blocks);
    return part;
}

struct RelationshipCase {
    const char* name;
    std::string document;
    const char* part;
};

const RelationshipCase relationshipCases[] = {
    // clang-format off
    {"TheOneRelationship", FIRelationships("<Relationship Id='1' Type='t' Target='a'/>"), "a"},
    {"TheTypeMustBeEqual", FIRelationships("<Relationship Type='T' Target='a'/><Relationship Type='tt' Target='b'/><Relationship Type='' Target='c'/>"), none},
    {"TheTypeMayHoldEntities", FIRelationships("<Relationship Type='&#x74;' Target='&lt;a&amp;'/>"), "<a&"},
    {"TheFirstCounts", FIRelationships("<Relationship Type='u' Target='z'/><Relationship Type='t' Target='a'/><Relationship Type='t' Target='b'/>"), "a"},
    {"AnExternalOneIsPassedOver", FIRelationships("<Relationship Type='t' TargetMode='External' Target='a'/><Relationship Type='t' Target='b'/>"), "b"},
    {"AnInternalOneCounts", FIRelationships("<Relationship Type='t' TargetMode='Internal' Target='a'/>"), "a"},
    {"ExternalIsTheExactWord", FIRelationships("<Relationship Type='t' TargetMode='external' Target='a'/>"), "a"},
    {"AtAnyDepth", FIRelationships("<x><Relationship Type='u'><y><Relationship Type='t' Target='a'/></y></Relationship></x>"), "a"},
    {"AsTheRoot", "<Relationship xmlns='http://schemas.openxmlformats.org/package/2006/relationships' Type='t' Target='a'/>", "a"},
    {"InTheDraftsNamespace", "<r:R xmlns:r='http://schemas.microsoft.com/package/2005/06/relationships'><r:Relationship Type='t' Target='a'/></r:R>", "a"},
    {"InAMixOfBoth", FIRelationships("<Relationship xmlns='http://schemas.microsoft.com/package/2005/06/relationships' Type='t' Target='a'/>"), "a"},
    {"InNoNamespace", "<Relationships><Relationship Type='t' Target='a'/></Relationships>", none},
    {"InAnotherNamespace", "<R xmlns='http://schemas.openxmlformats.org/package/2005/06/relationships'><Relationship Type='t' Target='a'/></R>", none},
    {"InTheOtherHostsNamespace", "<R xmlns='http://schemas.microsoft.com/package/2006/relationships'><Relationship Type='t' Target='a'/></R>", none},
    {"OfAnotherName", FIRelationships("<relationship Type='t' Target='a'/><Relationships Type='t' Target='b'/>"), none},
    {"AttributesInANamespaceAreOthers", FIRelationships("<Relationship xmlns:p='p' p:Type='t' Target='a'/><Relationship xmlns:p='p' Type='t' p:TargetMode='External' p:Target='b' Target='c'/>"), "c"},
    {"WithoutATarget", FIRelationships("<Relationship Type='t'/><Relationship Type='t' Target='b'/>"), none},
    {"WithoutAType", FIRelationships("<Relationship Target='a'/>"), none},
    {"WithAnEmptyTarget", FIRelationships("<Relationship Type='t' Target=''/>"), ""},
    {"TargetsAreResolved", FIRelationships("<Relationship Type='t' Target='/x/../a%20b'/>"), "a b"},
    {"InFrontOfAnError", FIRelationships("<Relationship Type='t' Target='a'/><"), "a"},
    {"InFrontOfARelationshipThatIsWrong", FIRelationships("<Relationship Type='t' Target='a'/><Relationship Type='t' Target='b' Target='c'/>"), "a"},
    {"BehindAnError", FIRelationships("<x></y><Relationship Type='t' Target='a'/>"), none},
    {"ThatIsWrongItself", FIRelationships("<Relationship Type='t' Target='a'"), none},
    {"InUtf16", markLow + FILowFirst(FIRelationships("<Relationship Type='t' Target='a'/>")), "a"},
    {"InAnEntity", "<!DOCTYPE R [<!ENTITY e \"<Relationship Type='t' Target='a'/>\">]>" + FIRelationships("&e;"), "a"},
    {"WithADefaultedTarget", "<!DOCTYPE R [<!ATTLIST Relationship Target CDATA 'a'>]>" + FIRelationships("<Relationship Type='t'/>"), "a"},
    {"NotInAComment", FIRelationships("<!--<Relationship Type='t' Target='a'/>-->"), none},
    {"NotInText", FIRelationships("<![CDATA[<Relationship Type='t' Target='a'/>]]>"), none},
    {"NotInAnEmptyPart", "", none},
    // clang-format on
};

class FindTarget : public testing::TestWithParam<RelationshipCase> {};

TEST_P(FindTarget, Answers) {
    EXPECT_EQ(PartOf(*FIMakeTestHandle(GetParam().document)), GetParam().part);
    const auto slow = FIMakeTestHandle(GetParam().document);
    slow->bytesPerRead = 1;
    EXPECT_EQ(PartOf(*slow), GetParam().part) << "one byte per read";
}

INSTANTIATE_TEST_SUITE_P(Relationships, FindTarget, testing::ValuesIn(relationshipCases), FICaseName);

TEST(Relationships, InFrontOfDamageCount) {
    const auto handle =
        FIMakeTestHandle(FIRelationships("<Relationship Type='t' Target='a'/><Relationship Type='u' Target='b'/>"));
    handle->bytesPerRead = 130;
    handle->failReadsFrom = 1;
    EXPECT_EQ(PartOf(*handle), "a");
    handle->position = 0;
    handle->reads = 0;
    EXPECT_EQ(PartOf(*handle, "u"), none);
}

TEST(Relationships, LieWithinTheFirst64Mebibytes) {
    const std::string relationship = "<Relationship Type='t' Target='a'/>";
    const std::string open =
        FIRelationships("").substr(0, FIRelationships("").size() - std::string("</Relationships>").size());
    const std::size_t limit = std::size_t{64} << 20;
    const std::size_t blanks = limit - open.size() - relationship.size();
    EXPECT_EQ(PartOf(*FIMakeTestHandle(open + std::string(blanks, ' ') + relationship + "</Relationships>")), "a");
    EXPECT_EQ(PartOf(*FIMakeTestHandle(open + std::string(blanks + 1, ' ') + relationship + "</Relationships>")), none);
}

TEST(Relationships, OfAllTypesAreReadInOnePass) {
    const auto handle = FIMakeTestHandle(FIRelationships(
        FIRelationship("t", "a") + FIRelationship("u", "b") +
        "<Relationship Type='v' TargetMode='External' Target='c'/>" + FIRelationship("t", "d") +
        "<Relationship Type='w'/>" + FIRelationship("v", "e") + FIRelationship("w", "f") + FIRelationship("", "g")));
    UTRelationships* const relationships = UTReadRelationships(FIFileOf(*handle));
    const std::uint64_t delivered = handle->bytesDelivered;
    EXPECT_EQ(delivered, handle->bytes.size());
    EXPECT_EQ(PartOf(*relationships, "t"), "a");
    EXPECT_EQ(PartOf(*relationships, "u"), "b");
    EXPECT_EQ(PartOf(*relationships, "v"), "e") << "the first one is external";
    EXPECT_EQ(PartOf(*relationships, "w"), none) << "the first one has no target";
    EXPECT_EQ(PartOf(*relationships, ""), "g");
    EXPECT_EQ(PartOf(*relationships, "x"), none);
    EXPECT_EQ(handle->bytesDelivered, delivered);
    UTFreeRelationships(*relationships);
}

TEST(Relationships, OfManyTypesAreAllFound) {
    constexpr int count = 10000;
    std::string content;
    for (int index = 0; index < count; ++index) {
        content += FIRelationship("t" + std::to_string(index), "a" + std::to_string(index));
    }
    const auto handle = FIMakeTestHandle(FIRelationships(content));
    UTRelationships* const relationships = UTReadRelationships(FIFileOf(*handle));
    for (int index = 0; index < count; ++index) {
        ASSERT_EQ(PartOf(*relationships, "t" + std::to_string(index)), "a" + std::to_string(index));
    }
    UTFreeRelationships(*relationships);
}

// Relationships of so many types that all are kept, and the limit is met but for the size of one named "tt".
std::string FillToTheLimit(std::size_t spare) {
    const std::size_t each = relationshipsLimit / 8;
    const std::size_t last = std::strlen("tt") + std::strlen("a") + relationshipOverhead;
    std::string content;
    for (char type = '0'; type < '8'; ++type) {
        const std::size_t taken = 1 + relationshipOverhead + (type == '7' ? last + spare : 0);
        content += FIRelationship(std::string(1, type), std::string(each - taken, 'n'));
    }
    return content;
}

TEST(Relationships, AreKeptToTheLimit) {
    const std::string rest = FIRelationship("tt", "a") + FIRelationship("0", "b");
    EXPECT_EQ(PartOf(*FIMakeTestHandle(FIRelationships(FillToTheLimit(0) + rest)), "tt"), "a");
    EXPECT_EQ(PartOf(*FIMakeTestHandle(FIRelationships(FillToTheLimit(1) + rest)), "tt"), "a");
    // One byte more, and the part ends there, also for what would have had room; what stands in front of it counts.
    const std::string full = FillToTheLimit(0) + FIRelationship("tt", "ab") + FIRelationship("u", "");
    EXPECT_EQ(PartOf(*FIMakeTestHandle(FIRelationships(full)), "tt"), none);
    EXPECT_EQ(PartOf(*FIMakeTestHandle(FIRelationships(full)), "u"), none);
    EXPECT_EQ(PartOf(*FIMakeTestHandle(FIRelationships(full)), "7").substr(0, 3), "nnn");
}

TEST(Relationships, OfATypeThatIsKeptTakeNoMore) {
    std::string content = FIRelationship("t", "a");
    const std::string again = FIRelationship("t", std::string(100000, 'n'));
    for (std::size_t bytes = 0; bytes < relationshipsLimit; bytes += again.size()) content += again;
    EXPECT_EQ(PartOf(*FIMakeTestHandle(FIRelationships(content + FIRelationship("u", "b"))), "u"), "b");
}

TEST(Relationships, InFrontOfALongAddressCount) {
    const auto declare = [](std::size_t length) {
        return "<Relationship xmlns:p='" + std::string(length, 'n') + "' Type='u' Target='b'/>";
    };
    for (const std::size_t length : {std::size_t{1024}, std::size_t{1025}, std::size_t{900000}}) {
        const auto handle = FIMakeTestHandle(FIRelationships(FIRelationship("t", "a") + declare(length) +
                                                             FIRelationship("v", "c") + FIRelationship("t", "d")));
        UTRelationships* const relationships = UTReadRelationships(FIFileOf(*handle));
        const bool passes = length <= 1024;
        EXPECT_EQ(PartOf(*relationships, "t"), "a");
        EXPECT_EQ(PartOf(*relationships, "u"), passes ? "b" : none);
        EXPECT_EQ(PartOf(*relationships, "v"), passes ? "c" : none);
        UTFreeRelationships(*relationships);
    }
}

TEST(Relationships, AreNotReadWhenMemoryIsExhausted) {
    const std::size_t blocks = FIHeapBlocks();
    const std::string long1(100, '1');  // longer than what a string holds without the heap
    const std::string long2(100, '2');
    const std::string document =
        FIRelationships(FIRelationship("t", "a") + FIRelationship(long1, long2) + FIRelationship(long2, "b"));
    for (std::uint32_t allocation = 0;; ++allocation) {
        ASSERT_LT(allocation, 1000U);
        const auto handle = FIMakeTestHandle(document);
        FIFailAllocationsFrom(allocation);
        UTRelationships* const relationships = UTReadRelationships(FIFileOf(*handle));
        FIHeapNeverFails();
        if (relationships == nullptr) {
            EXPECT_EQ(FIHeapBlocks(), blocks);
            continue;
        }
        EXPECT_EQ(PartOf(*relationships, "t"), "a");
        EXPECT_EQ(PartOf(*relationships, long1), long2);
        EXPECT_EQ(PartOf(*relationships, long2), "b");
        UTFreeRelationships(*relationships);
        EXPECT_EQ(FIHeapBlocks(), blocks);
        break;
    }
}

}  // namespace
