// The bounds of the XML parser: both sides of each, and documents that are made to cost much.
#include "platform/xml/xml_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "support/process_heap.h"
#include "support/test_handle.h"

namespace {

// A document with a middle of any length, made as it is read: one piece again and again.
struct LongDocument {
    IOFile file;  // first
    std::string head;
    std::string piece;
    std::uint64_t pieces;
    std::string tail;
    std::uint64_t position = 0;
    std::uint64_t delivered = 0;
};

std::uint64_t Size(const LongDocument& document) {
    return document.head.size() + document.piece.size() * document.pieces + document.tail.size();
}

char ByteAt(const LongDocument& document, std::uint64_t position) {
    if (position < document.head.size()) return document.head[position];
    position -= document.head.size();
    if (position < document.piece.size() * document.pieces) return document.piece[position % document.piece.size()];
    return document.tail[position - document.piece.size() * document.pieces];
}

std::int32_t Read(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    LongDocument& document = *reinterpret_cast<LongDocument*>(file);
    auto* const bytes = static_cast<char*>(destination);
    *count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, Size(document) - document.position));
    for (std::uint32_t index = 0; index < *count; ++index) bytes[index] = ByteAt(document, document.position++);
    document.delivered += *count;
    return 0;
}

struct Counts {
    std::uint64_t starts = 0;
    std::uint64_t ends = 0;
    std::uint64_t attributes = 0;
    std::string lastStart;
};

void CountStart(void* context, const char* name, const char** attributes) {
    Counts& counts = *static_cast<Counts*>(context);
    ++counts.starts;
    counts.lastStart = name;
    for (; *attributes != nullptr; attributes += 2) ++counts.attributes;
}

void CountEnd(void* context, const char*) { ++static_cast<Counts*>(context)->ends; }

// Runs the parser over a document to the end that it finds.
Counts CountsOf(std::string head, std::string piece, std::uint64_t pieces, std::string tail) {
    LongDocument document = {{}, std::move(head), std::move(piece), pieces, std::move(tail)};
    const std::size_t blocks = FIHeapBlocks();
    document.file.operations.IORead = Read;
    Counts counts;
    UTXmlParser* const parser = UTXmlNewParser(&document.file, {CountStart, CountEnd}, &counts);
    EXPECT_FALSE(UTXmlGoOn(*parser));
    EXPECT_FALSE(UTXmlGoOn(*parser));
    UTXmlFreeParser(*parser);
    EXPECT_EQ(FIHeapBlocks(), blocks);
    EXPECT_LE(document.delivered, xmlTextLimit);
    return counts;
}

// ---- Limits --------------------------------------------------------------------------------------------------------

TEST(XmlParser, TextCountsToTheLimit) {
    const std::string head = "<a>";
    const std::string last = "<b/>";
    const std::uint64_t blanks = xmlTextLimit - head.size() - last.size();
    EXPECT_EQ(CountsOf(head, " ", blanks, last + "</a>").lastStart, "b");
    EXPECT_EQ(CountsOf(head, " ", blanks + 1, last + "</a>").lastStart, "a");
}

TEST(XmlParser, ATokenOfTheLimitPassesAndOneOfTwiceTheLimitDoesNot) {
    const std::string head = "<a><b x='";
    const std::string tail = "'/></a>";
    const std::uint64_t rest = std::strlen("<b x=''/>");
    EXPECT_EQ(CountsOf(head, "v", xmlTokenLimit - rest, tail).starts, 2U);
    EXPECT_EQ(CountsOf(std::string(5000, ' ') + head, "v", xmlTokenLimit - rest, tail).starts, 2U);
    EXPECT_EQ(CountsOf(head, "v", xmlTokenLimit * 2, tail).starts, 1U);
    EXPECT_EQ(CountsOf("<a><!-- ", "c", xmlTokenLimit * 2, "--><b/></a>").starts, 1U);
    EXPECT_EQ(CountsOf("<a><", "n", xmlTokenLimit * 2, "/></a>").starts, 1U);
}

TEST(XmlParser, TextBetweenTagsIsNoToken) {
    EXPECT_EQ(CountsOf("<a>", "text", xmlTokenLimit, "<b/></a>").starts, 2U);
    EXPECT_EQ(CountsOf("<a><![CDATA[", "text", xmlTokenLimit, "]]><b/></a>").starts, 2U);
}

TEST(XmlParser, TagsCountToTheLimit) {
    EXPECT_EQ(CountsOf("<a>", "<b/>", xmlTagLimit - 1, "</a>").ends, xmlTagLimit);
    EXPECT_EQ(CountsOf("<a>", "<b/>", xmlTagLimit, "</a>").starts, xmlTagLimit);
    // An element with an attribute counts for two.
    EXPECT_EQ(CountsOf("<a>", "<b c=''/>", xmlTagLimit, "</a>").starts, 1 + (xmlTagLimit - 1) / 2);
}

TEST(XmlParser, DefaultedAttributesCountAsTags) {
    std::string head = "<!DOCTYPE a [<!ATTLIST b";
    for (int index = 0; index < 999; ++index) head += " x" + std::to_string(index) + " CDATA ''";
    const Counts counts = CountsOf(head + ">]><a>", "<b/>", 1000000, "</a>");
    EXPECT_EQ(counts.starts, 1 + (xmlTagLimit - 1) / 1000);
    EXPECT_EQ(counts.attributes, 999 * (counts.starts - 1));
}

TEST(XmlParser, DeclarationsCountToTheLimit) {
    const auto declare = [](std::uint32_t entities, std::uint32_t attributes) {
        std::string head = "<!DOCTYPE a [";
        for (std::uint32_t index = 0; index < entities; ++index) head += "<!ENTITY e" + std::to_string(index) + " ''>";
        for (std::uint32_t index = 0; index < attributes; ++index) {
            head += "<!ATTLIST b x" + std::to_string(index) + " CDATA #IMPLIED>";
        }
        return head + "]>";
    };
    EXPECT_EQ(CountsOf(declare(xmlDeclarationLimit, 0), "", 0, "<a/>").starts, 1U);
    EXPECT_EQ(CountsOf(declare(xmlDeclarationLimit + 1, 0), "", 0, "<a/>").starts, 0U);
    EXPECT_EQ(CountsOf(declare(400, xmlDeclarationLimit - 400), "", 0, "<a/>").starts, 1U);
    EXPECT_EQ(CountsOf(declare(400, xmlDeclarationLimit - 399), "", 0, "<a/>").starts, 0U);
}

// ---- Documents that are made to cost much
// ----------------------------------------------------------------------------

TEST(XmlParser, ElementsThatAllStayOpenEndWithTheMemory) {
    const Counts counts = CountsOf("", "<a>", xmlTextLimit / 3, "");
    EXPECT_GT(counts.starts, 10000U);
    EXPECT_LT(counts.starts, xmlMemoryLimit / 32);
}

TEST(XmlParser, NamesThatAllDifferEndWithTheMemory) {
    std::string names;
    for (std::uint32_t index = 0; index < 300000; ++index) names += "<n" + std::to_string(index) + "/>";
    const Counts counts = CountsOf("<a>" + names, "", 0, "</a>");
    EXPECT_GT(counts.starts, 10000U);
    EXPECT_LT(counts.starts, xmlMemoryLimit / 32);
}

TEST(XmlParser, EntitiesThatMultiplyEnd) {
    std::string head = "<!DOCTYPE a [<!ENTITY e0 'laugh'>";
    for (int index = 1; index < 40; ++index) {
        const std::string inner = "&e" + std::to_string(index - 1) + ";";
        head += "<!ENTITY e" + std::to_string(index) + " '" + inner + inner + inner + inner + "'>";
    }
    EXPECT_EQ(CountsOf(head + "]><a>&e39;", "", 0, "<b/></a>").starts, 1U);
    EXPECT_EQ(CountsOf(head + "]><a x='&e39;'>", "", 0, "<b/></a>").starts, 0U);
}

TEST(XmlParser, TagsInEntitiesThatMultiplyEndWithTheTags) {
    std::string tags;
    for (int index = 0; index < 1000; ++index) tags += "<b/>";
    const Counts counts = CountsOf("<!DOCTYPE a [<!ENTITY e '" + tags + "'>]><a>", "&e;", 1000000, "</a>");
    EXPECT_GT(counts.starts, 1000000U);
    EXPECT_LE(counts.starts, xmlTagLimit);
}

TEST(XmlParser, AChainOfEntitiesComesBack) {
    std::string head = "<!DOCTYPE a [<!ENTITY e0 '<b/>'>";
    for (std::uint32_t index = 1; index < xmlDeclarationLimit; ++index) {
        head += "<!ENTITY e" + std::to_string(index) + " '&e" + std::to_string(index - 1) + ";'>";
    }
    const std::string last = "&e" + std::to_string(xmlDeclarationLimit - 1) + ";";
    EXPECT_EQ(CountsOf(head + "]><a>" + last, "", 0, "</a>").starts, 2U);
    EXPECT_EQ(CountsOf(head + "]><a x='" + last + "'>", "", 0, "</a>").starts, 0U);  // no tag may stand in a value
}

TEST(XmlParser, AttributesWithoutEndAreATokenWithoutEnd) {
    EXPECT_EQ(CountsOf("<a ", "x='' ", 1000000, "/>").starts, 0U);
    EXPECT_EQ(CountsOf("<!DOCTYPE a [<!ELEMENT a ", "(", 1000000, ">]><a/>").starts, 0U);
}

// ---- Pausing -------------------------------------------------------------------------------------------------------

struct Pausing {
    UTXmlParser* parser;
    std::string events;
    bool stopAtB;
};

void PauseAtStart(void* context, const char* name, const char**) {
    Pausing& pausing = *static_cast<Pausing*>(context);
    pausing.events += name;
    if (pausing.stopAtB && std::strcmp(name, "b") == 0) {
        UTXmlStop(*pausing.parser);
    } else {
        UTXmlPause(*pausing.parser);
    }
}

void PauseAtEnd(void* context, const char*) {
    Pausing& pausing = *static_cast<Pausing*>(context);
    pausing.events += '/';
    UTXmlPause(*pausing.parser);
}

std::string EventsOf(const char* document, bool stopAtB) {
    const auto handle = FIMakeTestHandle(document);
    Pausing pausing = {nullptr, "", stopAtB};
    pausing.parser = UTXmlNewParser(FIFileOf(*handle), {PauseAtStart, PauseAtEnd}, &pausing);
    while (UTXmlGoOn(*pausing.parser)) pausing.events += ' ';
    UTXmlFreeParser(*pausing.parser);
    return pausing.events;
}

TEST(XmlParser, PausesBehindEachTagAndBehindBothOfAnEmptyElement) {
    EXPECT_EQ(EventsOf("<a>x<b/>y<c>z</c></a>", false), "a b/ c / / ");
    EXPECT_EQ(EventsOf("<a><b>", false), "a b ");
    EXPECT_EQ(EventsOf("<!DOCTYPE a [<!ENTITY e '<b/><c></c>'>]><a>&e;&e;</a>", false), "a b/ c / b/ c / / ");
}

TEST(XmlParser, StopsForGood) {
    EXPECT_EQ(EventsOf("<a><b/><c/></a>", true), "a b");
    EXPECT_EQ(EventsOf("<b><c/></b>", true), "b");
}

TEST(XmlParser, MemoryThatIsExhaustedGivesNoParser) {
    const std::size_t blocks = FIHeapBlocks();
    const auto handle = FIMakeTestHandle("<a/>");
    Counts counts;
    for (std::uint32_t allocation = 0; allocation < 3; ++allocation) {
        FIFailAllocationsFrom(allocation);
        EXPECT_EQ(UTXmlNewParser(FIFileOf(*handle), {CountStart, CountEnd}, &counts), nullptr);
        FIHeapNeverFails();
        EXPECT_EQ(FIHeapBlocks(), blocks);
    }
}

}  // namespace
