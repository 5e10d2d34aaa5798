// Relationships parts: which relationship is meant, and where its target leads.
#include "platform/xml/relationships.h"

#include <gtest/gtest.h>

#include <string>

#include "support/process_heap.h"
#include "support/test_handle.h"

namespace {

// ---- Targets -------------------------------------------------------------------------------------------------------

struct TargetCase {
    const char* name;
    const char* target;
    const char* part;
};

void PrintTo(const TargetCase& targetCase, std::ostream* out) { *out << targetCase.name; }

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

std::string TargetName(const testing::TestParamInfo<TargetCase>& caseInfo) { return caseInfo.param.name; }

INSTANTIATE_TEST_SUITE_P(Targets, ResolveTarget, testing::ValuesIn(targetCases), TargetName);

// ---- Relationships -------------------------------------------------------------------------------------------------

constexpr const char none[] = "(none)";

// The part to which type "t" leads in a relationships part.
std::string PartOf(TestHandle& handle, const char* type = "t") {
    const std::size_t blocks = FIHeapBlocks();
    const UTPartName name = UTFindRelationshipTarget(FIFileOf(handle), type);
    const std::string part = name.text != nullptr ? std::string(name.text, name.length) : none;
    UTFreePartName(name);
    EXPECT_EQ(FIHeapBlocks(), blocks);
    return part;
}

struct RelationshipCase {
    const char* name;
    std::string document;
    const char* part;
};

void PrintTo(const RelationshipCase& relationshipCase, std::ostream* out) { *out << relationshipCase.name; }

std::string Root(const std::string& content) {
    return "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>" + content +
           "</Relationships>";
}

std::string Utf16(const std::string& text) {
    std::string units = "\xFF\xFE";
    for (const char character : text) units += std::string{character, '\0'};
    return units;
}

const RelationshipCase relationshipCases[] = {
    // clang-format off
    {"TheOneRelationship", Root("<Relationship Id='1' Type='t' Target='a'/>"), "a"},
    {"TheTypeMustBeEqual", Root("<Relationship Type='T' Target='a'/><Relationship Type='tt' Target='b'/><Relationship Type='' Target='c'/>"), none},
    {"TheTypeMayHoldEntities", Root("<Relationship Type='&#x74;' Target='&lt;a&amp;'/>"), "<a&"},
    {"TheFirstCounts", Root("<Relationship Type='u' Target='z'/><Relationship Type='t' Target='a'/><Relationship Type='t' Target='b'/>"), "a"},
    {"AnExternalOneIsPassedOver", Root("<Relationship Type='t' TargetMode='External' Target='a'/><Relationship Type='t' Target='b'/>"), "b"},
    {"AnInternalOneCounts", Root("<Relationship Type='t' TargetMode='Internal' Target='a'/>"), "a"},
    {"ExternalIsTheExactWord", Root("<Relationship Type='t' TargetMode='external' Target='a'/>"), "a"},
    {"AtAnyDepth", Root("<x><Relationship Type='u'><y><Relationship Type='t' Target='a'/></y></Relationship></x>"), "a"},
    {"AsTheRoot", "<Relationship xmlns='http://schemas.openxmlformats.org/package/2006/relationships' Type='t' Target='a'/>", "a"},
    {"InTheDraftsNamespace", "<r:R xmlns:r='http://schemas.microsoft.com/package/2005/06/relationships'><r:Relationship Type='t' Target='a'/></r:R>", "a"},
    {"InAMixOfBoth", Root("<Relationship xmlns='http://schemas.microsoft.com/package/2005/06/relationships' Type='t' Target='a'/>"), "a"},
    {"InNoNamespace", "<Relationships><Relationship Type='t' Target='a'/></Relationships>", none},
    {"InAnotherNamespace", "<R xmlns='http://schemas.openxmlformats.org/package/2005/06/relationships'><Relationship Type='t' Target='a'/></R>", none},
    {"InTheOtherHostsNamespace", "<R xmlns='http://schemas.microsoft.com/package/2006/relationships'><Relationship Type='t' Target='a'/></R>", none},
    {"OfAnotherName", Root("<relationship Type='t' Target='a'/><Relationships Type='t' Target='b'/>"), none},
    {"AttributesInANamespaceAreOthers", Root("<Relationship xmlns:p='p' p:Type='t' Target='a'/><Relationship xmlns:p='p' Type='t' p:TargetMode='External' p:Target='b' Target='c'/>"), "c"},
    {"WithoutATarget", Root("<Relationship Type='t'/><Relationship Type='t' Target='b'/>"), none},
    {"WithoutAType", Root("<Relationship Target='a'/>"), none},
    {"WithAnEmptyTarget", Root("<Relationship Type='t' Target=''/>"), ""},
    {"TargetsAreResolved", Root("<Relationship Type='t' Target='/x/../a%20b'/>"), "a b"},
    {"InFrontOfAnError", Root("<Relationship Type='t' Target='a'/><"), "a"},
    {"InFrontOfARelationshipThatIsWrong", Root("<Relationship Type='t' Target='a'/><Relationship Type='t' Target='b' Target='c'/>"), "a"},
    {"BehindAnError", Root("<x></y><Relationship Type='t' Target='a'/>"), none},
    {"ThatIsWrongItself", Root("<Relationship Type='t' Target='a'"), none},
    {"InUtf16", Utf16(Root("<Relationship Type='t' Target='a'/>")), "a"},
    {"InAnEntity", "<!DOCTYPE R [<!ENTITY e \"<Relationship Type='t' Target='a'/>\">]>" + Root("&e;"), "a"},
    {"WithADefaultedTarget", "<!DOCTYPE R [<!ATTLIST Relationship Target CDATA 'a'>]>" + Root("<Relationship Type='t'/>"), "a"},
    {"NotInAComment", Root("<!--<Relationship Type='t' Target='a'/>-->"), none},
    {"NotInText", Root("<![CDATA[<Relationship Type='t' Target='a'/>]]>"), none},
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

std::string RelationshipName(const testing::TestParamInfo<RelationshipCase>& caseInfo) { return caseInfo.param.name; }

INSTANTIATE_TEST_SUITE_P(Relationships, FindTarget, testing::ValuesIn(relationshipCases), RelationshipName);

TEST(Relationships, InFrontOfDamageCount) {
    const auto handle =
        FIMakeTestHandle(Root("<Relationship Type='t' Target='a'/><Relationship Type='u' Target='b'/>"));
    handle->bytesPerRead = 130;
    handle->failReadsFrom = 1;
    EXPECT_EQ(PartOf(*handle), "a");
    handle->position = 0;
    handle->reads = 0;
    EXPECT_EQ(PartOf(*handle, "u"), none);
}

TEST(Relationships, LieWithinTheFirst64Mebibytes) {
    const std::string relationship = "<Relationship Type='t' Target='a'/>";
    const std::string open = Root("").substr(0, Root("").size() - std::string("</Relationships>").size());
    const std::size_t limit = std::size_t{64} << 20;
    const std::size_t blanks = limit - open.size() - relationship.size();
    EXPECT_EQ(PartOf(*FIMakeTestHandle(open + std::string(blanks, ' ') + relationship + "</Relationships>")), "a");
    EXPECT_EQ(PartOf(*FIMakeTestHandle(open + std::string(blanks + 1, ' ') + relationship + "</Relationships>")), none);
}

TEST(Relationships, GiveNoneWhenMemoryIsExhausted) {
    const std::size_t blocks = FIHeapBlocks();
    const std::string document = Root("<Relationship Type='t' Target='a'/>");
    for (std::uint32_t allocation = 0;; ++allocation) {
        ASSERT_LT(allocation, 1000U);
        const auto handle = FIMakeTestHandle(document);
        FIFailAllocationsFrom(allocation);
        const UTPartName name = UTFindRelationshipTarget(FIFileOf(*handle), "t");
        FIHeapNeverFails();
        const bool found = name.text != nullptr;
        UTFreePartName(name);
        EXPECT_EQ(FIHeapBlocks(), blocks);
        if (found) break;
    }
}

}  // namespace
