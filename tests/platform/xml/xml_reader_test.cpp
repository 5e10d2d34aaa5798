// The XML reader: tags in document order, and the identifiers that the tag maps give them.
#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "platform/base_utility.h"
#include "support/case_name.h"
#include "support/open_file.h"
#include "support/process_heap.h"
#include "support/test_handle.h"
#include "support/utf16_text.h"

namespace {

using ::PrintTo;

constexpr UTXmlTagPair lettersMap[] = {{1, "a"}, {2, "b"}, {3, "a"}};
constexpr UTXmlTagPair otherMap[] = {{11, "a"}, {12, "c"}};
constexpr UTXmlTagPair plainMap[] = {{21, "a"}};

// Registers what all tests use: two maps of namespace "n", one of "m", one of no namespace.
void Register(HUTXML& xml) {
    EXPECT_EQ(UTXMLAddTagMap(&xml, "n", 100, 0, lettersMap, std::size(lettersMap)), 0);
    EXPECT_EQ(UTXMLAddTagMap(&xml, "m", 200, 0, otherMap, std::size(otherMap)), 0);
    EXPECT_EQ(UTXMLAddTagMap(&xml, "n", 300, 0, otherMap, std::size(otherMap)), 0);
    EXPECT_EQ(UTXMLAddTagMap(&xml, "", 400, 0, plainMap, std::size(plainMap)), 0);
}

std::string TellTag(const UTXmlTag& tag) {
    EXPECT_EQ(tag.flags & ~UTXmlFlagEndTag, 0);
    const std::string name = tag.tagId == UTXmlUnknownTag
                                 ? "?" + (tag.namespaceId != 0 ? std::to_string(tag.namespaceId) : "")
                                 : std::to_string(tag.namespaceId) + ":" + std::to_string(tag.tagId);
    return ((tag.flags & UTXmlFlagEndTag) != 0 ? "/" : "") + name;
}

// The tags that the handle's document delivers: "100:1" for a known one, "?" for an unknown one, a '/' in front of an
// end.
std::string TagsOf(HIOFILE file) {
    const std::size_t blocks = FIHeapBlocks();
    HUTXML xml = nullptr;
    EXPECT_EQ(UTXMLInit(&xml, file), 0);
    Register(xml);
    std::string tags;
    UTXmlTag tag = {};
    std::uint32_t other = 0;
    while (UTXMLReadNextTag(&xml, &tag, &other) == 0) tags += (tags.empty() ? "" : " ") + TellTag(tag);
    EXPECT_NE(UTXMLReadNextTag(&xml, &tag, nullptr), 0) << "the end is for good";
    UTXMLDeInit(&xml);
    EXPECT_EQ(xml, nullptr);
    EXPECT_EQ(FIHeapBlocks(), blocks);
    return tags;
}

std::string TagsOf(TestHandle& handle) { return TagsOf(FIFileOf(handle)); }

struct XmlCase {
    const char* name;
    std::string document;
    const char* tags;
};

const XmlCase xmlCases[] = {
    // clang-format off
    {"OneElement", "<x></x>", "? /?"},
    {"AnEmptyElementIsAStartAndAnEnd", "<x/>", "? /?"},
    {"TagsComeInDocumentOrder", R"(<a xmlns="n"><b/><c><b></b></c></a>)", "100:1 100:2 /100:2 300:12 100:2 /100:2 /300:12 /100:1"},
    {"APrefixIsNoPartOfTheName", R"(<p:a xmlns:p="n" xmlns:a="m"><a:c/></p:a>)", "100:1 200:12 /200:12 /100:1"},
    {"OfEqualPairsTheFirstOfTheMapCounts", R"(<a xmlns="n"/>)", "100:1 /100:1"},
    {"OfEqualPairsTheFirstMapCounts", R"(<x xmlns:n="n"><n:a/><n:c/></x>)", "? 100:1 /100:1 300:12 /300:12 /?"},
    {"AnElementInNoNamespaceHasAnEmptyOne", R"(<a><b/></a>)", "400:21 ? /? /400:21"},
    {"ADefaultNamespaceCanBeTakenBack", R"(<a xmlns="n"><a xmlns=""/></a>)", "100:1 400:21 /400:21 /100:1"},
    {"TheNamespaceMustBeEqual", R"(<x><a xmlns="N"/><a xmlns="n "/><a xmlns="nn"/></x>)", "? ? /? ? /? ? /? /?"},
    {"TheLocalNameMustBeEqual", R"(<x xmlns="n"><A/><aa/><b/></x>)", "? ? /? ? /? 100:2 /100:2 /?"},
    {"OtherMarkupIsPassedOver", R"(<?xml version="1.0"?><!-- <a/> --><?pi <a/>?><x>t<![CDATA[<a/>]]>u<!-- b --></x><!-- c -->)", "? /?"},
    {"AttributesArePassedOver", R"(<a xmlns="n" b="1" xmlns:q="r" q:c='<'/>)", ""},  // the '<' is an error
    {"AttributesOfAnyNumber", R"(<a xmlns="n" b="1" xmlns:q="r" q:c='&lt;'/>)", "100:1 /100:1"},
    {"AnEmptyDocument", "", ""},
    {"BlanksAlone", "  \n", ""},
    {"NoXmlAtAll", "\x83\x01\x01\x80\x01", ""},
    {"TagsInFrontOfAnErrorCount", R"(<a xmlns="n"><b/><)", "100:1 100:2 /100:2"},
    {"AWrongEndTagEnds", R"(<a xmlns="n"><b/></b><b/>)", "100:1 100:2 /100:2"},
    {"ATagIsWholeOrNotThere", R"(<a xmlns="n"><b x="1)", "100:1"},
    {"AnUnboundPrefixEnds", R"(<a xmlns="n"><p:b/></a>)", "100:1"},
    {"AnAttributeTwiceEnds", R"(<a xmlns="n"><b x="1" x="2"/></a>)", "100:1"},
    {"ASecondRootEnds", R"(<a xmlns="n"/><b/>)", "100:1 /100:1"},
    {"ACutDocumentEnds", R"(<a xmlns="n">text)", "100:1"},
    {"LittleEndianUtf16", markLow + FILowFirst(R"(<a xmlns="n"><b/></a>)"), "100:1 100:2 /100:2 /100:1"},
    {"BigEndianUtf16", markHigh + FIHighFirst(R"(<a xmlns="n"><b/></a>)"), "100:1 100:2 /100:2 /100:1"},
    {"Utf8WithItsMark", "\xEF\xBB\xBF<a xmlns='n'/>", "100:1 /100:1"},
    {"Latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><a xmlns='n'>\xE4</a>", "100:1 /100:1"},
    {"ByteThatIsNoUtf8", "<a xmlns='n'>\xE4</a>", "100:1"},
    {"AnEncodingThatIsNotKnown", "<?xml version='1.0' encoding='x-unknown'?><a xmlns='n'/>", ""},
    {"AnInternalEntityIsExpanded", R"(<!DOCTYPE a [<!ENTITY e "<b/><b/>">]><a xmlns="n">&e;<c/></a>)", "100:1 100:2 /100:2 100:2 /100:2 300:12 /300:12 /100:1"},
    {"AnEntityThatEndsWithATagIsFollowedByTheNext", R"(<!DOCTYPE a [<!ENTITY e "<b/>">]><a xmlns="n">&e;&e;<c/><b></b></a>)", "100:1 100:2 /100:2 100:2 /100:2 300:12 /300:12 100:2 /100:2 /100:1"},
    {"AnEntityThatIsNotDeclaredEnds", R"(<a xmlns="n"><b/>&e;<b/></a>)", "100:1 100:2 /100:2"},
    {"AnExternalEntityIsNotLoaded", R"(<!DOCTYPE a [<!ENTITY e SYSTEM "file:///etc/hostname">]><a xmlns="n">&e;<b/></a>)", "100:1 100:2 /100:2 /100:1"},
    {"AnExternalDtdIsNotLoaded", R"(<!DOCTYPE a SYSTEM "file:///etc/hostname"><a xmlns="n">&e;<b/></a>)", "100:1 100:2 /100:2 /100:1"},
    {"AParameterEntityIsNotLoaded", R"(<!DOCTYPE a [<!ENTITY % p SYSTEM "file:///etc/hostname"> %p;]><a xmlns="n"/>)", "100:1 /100:1"},
    {"AnEntityThatHoldsItselfEnds", R"(<!DOCTYPE a [<!ENTITY e "&e;">]><a xmlns="n">&e;<b/></a>)", "100:1"},
    {"ADefaultedNamespaceCounts", R"(<!DOCTYPE a [<!ATTLIST a xmlns CDATA "n">]><a/>)", "100:1 /100:1"},
    // clang-format on
};

class ReadTags : public testing::TestWithParam<XmlCase> {};

TEST_P(ReadTags, Answers) {
    EXPECT_EQ(TagsOf(*FIMakeTestHandle(GetParam().document)), GetParam().tags);
    const auto slow = FIMakeTestHandle(GetParam().document);
    slow->bytesPerRead = 1;
    EXPECT_EQ(TagsOf(*slow), GetParam().tags) << "one byte per read";
    EXPECT_EQ(TagsOf(OpenFile(GetParam().document).File()), GetParam().tags) << "where nobody sees the reads";
}

INSTANTIATE_TEST_SUITE_P(Xml, ReadTags, testing::ValuesIn(xmlCases), FICaseName);

TEST(XmlReader, ReadsFromWhereTheHandleStands) {
    const auto handle = FIMakeTestHandle("no XML<x/>");
    handle->position = 6;
    EXPECT_EQ(TagsOf(*handle), "? /?");
}

TEST(XmlReader, TellsTheFirstTagOfAPlainDocumentWithoutAParser) {
    // One that begins where the handle stands, and whose first tag is longer than the first look.
    const OpenFile file("no XML<a xmlns='n' x='" + std::string(2000, 'x') + "'><b/></a>");
    EXPECT_EQ(file.File()->operations.IOSeek(file.File(), IOOriginStart, 6), 0);
    const std::size_t blocks = FIHeapBlocks();
    HUTXML xml = nullptr;
    ASSERT_EQ(UTXMLInit(&xml, file.File()), 0);
    EXPECT_EQ(UTXMLAddTagMap(&xml, "n", 100, 0, lettersMap, std::size(lettersMap)), 0);
    FIFailAllocationsFrom(0);
    UTXmlTag tag = {};
    EXPECT_EQ(UTXMLReadNextTag(&xml, &tag, nullptr), 0);
    EXPECT_EQ(TellTag(tag), "100:1");
    EXPECT_NE(UTXMLReadNextTag(&xml, &tag, nullptr), 0) << "the next one takes the parser";
    FIHeapNeverFails();
    EXPECT_EQ(UTXMLReadNextTag(&xml, &tag, nullptr), 0);
    EXPECT_EQ(TellTag(tag), "100:2");
    UTXMLDeInit(&xml);
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(XmlReader, AFailingReadEndsTheTagsBehindThoseInFrontOfIt) {
    const auto handle = FIMakeTestHandle("<x><x/><x/></x>");
    handle->bytesPerRead = 8;
    handle->failReadsFrom = 1;
    EXPECT_EQ(TagsOf(*handle), "? ? /?");
    handle->position = 0;
    handle->reads = 0;
    handle->failReadsFrom = 0;
    EXPECT_EQ(TagsOf(*handle), "");
}

TEST(XmlReader, ReadsNoFurtherThanTheTagsAskedFor) {
    const auto handle = FIMakeTestHandle("<x>" + std::string(1000000, ' ') + "</x>");
    HUTXML xml = nullptr;
    ASSERT_EQ(UTXMLInit(&xml, FIFileOf(*handle)), 0);
    UTXmlTag tag = {};
    EXPECT_EQ(UTXMLReadNextTag(&xml, &tag, nullptr), 0);
    EXPECT_LE(handle->bytesDelivered, 4096U);
    UTXMLDeInit(&xml);
}

TEST(XmlReader, LongDocumentsComeWhole) {
    std::string document = "<x xmlns='n'>";
    std::string tags = "?";
    for (int index = 0; index < 20000; ++index) {
        document += index % 2 == 0 ? "<b>text</b>" : "<a x='1'/>";
        tags += index % 2 == 0 ? " 100:2 /100:2" : " 100:1 /100:1";
    }
    EXPECT_EQ(TagsOf(*FIMakeTestHandle(document + "</x>")), tags + " /?");
}

TEST(XmlReader, WithoutMapsEveryElementIsUnknown) {
    const auto handle = FIMakeTestHandle("<a xmlns='n'/>");
    HUTXML xml = nullptr;
    ASSERT_EQ(UTXMLInit(&xml, FIFileOf(*handle)), 0);
    UTXmlTag tag = {};
    EXPECT_EQ(UTXMLReadNextTag(&xml, &tag, nullptr), 0);
    EXPECT_EQ(tag.tagId, 0xFFFFU);
    EXPECT_EQ(tag.namespaceId, 0U);
    UTXMLDeInit(&xml);
}

TEST(XmlReader, TakesAnyNumberOfMaps) {
    for (std::size_t count = 0; count < 30; ++count) {
        const std::size_t blocks = FIHeapBlocks();
        const auto handle = FIMakeTestHandle("<a xmlns='n'/>");
        HUTXML xml = nullptr;
        ASSERT_EQ(UTXMLInit(&xml, FIFileOf(*handle)), 0);
        for (std::size_t other = 0; other < count; ++other) {
            EXPECT_EQ(UTXMLAddTagMap(&xml, "other", 200, 0, otherMap, std::size(otherMap)), 0);
        }
        EXPECT_EQ(UTXMLAddTagMap(&xml, "n", 100, 0, lettersMap, std::size(lettersMap)), 0);
        UTXmlTag tag = {};
        EXPECT_EQ(UTXMLReadNextTag(&xml, &tag, nullptr), 0);
        EXPECT_EQ(TellTag(tag), "100:1") << count;
        UTXMLDeInit(&xml);
        EXPECT_EQ(FIHeapBlocks(), blocks);
    }
}

TEST(XmlReader, EndsWithoutAReaderToo) {
    HUTXML xml = nullptr;
    UTXMLDeInit(&xml);
    EXPECT_EQ(UTXMLInit(&xml, nullptr), -1);
    EXPECT_EQ(xml, nullptr);
}

TEST(XmlReader, FailsWhenMemoryIsExhaustedAndLosesNone) {
    const std::size_t blocks = FIHeapBlocks();
    const std::string document = "<!DOCTYPE a [<!ENTITY e '<b/>'>]><a xmlns='n' x='1'>&e;<b/></a>";
    bool whole = false;
    for (std::uint32_t allocation = 0; !whole; ++allocation) {
        ASSERT_LT(allocation, 1000U);
        const auto handle = FIMakeTestHandle(document);
        HUTXML xml = nullptr;
        FIFailAllocationsFrom(allocation);
        if (UTXMLInit(&xml, FIFileOf(*handle)) == 0) {
            const std::int16_t added = UTXMLAddTagMap(&xml, "n", 100, 0, lettersMap, std::size(lettersMap));
            UTXmlTag tag = {};
            std::uint32_t tags = 0;
            while (UTXMLReadNextTag(&xml, &tag, nullptr) == 0) ++tags;
            EXPECT_LE(tags, 6U);
            whole = added == 0 && tags == 6;
        } else {
            EXPECT_EQ(xml, nullptr);
        }
        UTXMLDeInit(&xml);
        FIHeapNeverFails();
        EXPECT_EQ(FIHeapBlocks(), blocks);
    }
}

}  // namespace
