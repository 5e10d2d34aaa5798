// The bounds of the XML parser: both sides of each, and documents that are made to cost much. Most run with limits much
// smaller than those that hold by default, and so with small documents.
#include "platform/xml/xml_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

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

// The rest, from a position on, of the part of the document that it lies in.
std::string_view RestAt(const LongDocument& document, std::uint64_t position) {
    if (position < document.head.size()) return std::string_view(document.head).substr(position);
    position -= document.head.size();
    const std::uint64_t middle = document.piece.size() * document.pieces;
    if (position < middle) return std::string_view(document.piece).substr(position % document.piece.size());
    return std::string_view(document.tail).substr(position - middle);
}

std::int32_t Read(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    LongDocument& document = *reinterpret_cast<LongDocument*>(file);
    auto* const bytes = static_cast<char*>(destination);
    *count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, Size(document) - document.position));
    for (std::uint64_t done = 0; done < *count;) {
        const std::string_view rest = RestAt(document, document.position).substr(0, *count - done);
        std::ranges::copy(rest, bytes + done);
        done += rest.size();
        document.position += rest.size();
    }
    document.delivered += *count;
    return 0;
}

struct Counts {
    std::uint64_t starts = 0;
    std::uint64_t ends = 0;
    std::uint64_t attributes = 0;
    std::string lastStart;
    std::uint64_t work = 0;
};

void CountStart(void* context, const char* name, const char** attributes) {
    Counts& counts = *static_cast<Counts*>(context);
    ++counts.starts;
    counts.lastStart = name;
    for (; *attributes != nullptr; attributes += 2) ++counts.attributes;
}

void CountEnd(void* context, const char*) { ++static_cast<Counts*>(context)->ends; }

// Runs the parser over a document to the end that it finds.
Counts CountsOf(std::string head, std::string piece, std::uint64_t pieces, std::string tail,
                const UTXmlLimits& limits = {}) {
    LongDocument document = {{}, std::move(head), std::move(piece), pieces, std::move(tail)};
    const std::size_t blocks = FIHeapBlocks();
    document.file.operations.IORead = Read;
    Counts counts;
    UTXmlParser* const parser = UTXmlNewParser(&document.file, {CountStart, CountEnd}, &counts, limits);
    if (parser == nullptr) return counts;
    EXPECT_FALSE(UTXmlGoOn(*parser));
    EXPECT_FALSE(UTXmlGoOn(*parser));
    counts.work = UTXmlWorkOf(*parser);
    UTXmlFreeParser(*parser);
    EXPECT_EQ(FIHeapBlocks(), blocks);
    EXPECT_LE(document.delivered, limits.text);
    return counts;
}

// ---- Limits --------------------------------------------------------------------------------------------------------

constexpr UTXmlLimits defaults;

TEST(XmlParser, LimitsByDefault) {
    EXPECT_EQ(defaults.text, 67108864U);
    EXPECT_EQ(defaults.token, 1048576U);
    EXPECT_EQ(defaults.memory, 16777216U);
    EXPECT_EQ(defaults.tags, 4000000U);
    EXPECT_EQ(defaults.declarations, 1000U);
    EXPECT_EQ(defaults.address, 1024U);
    EXPECT_EQ(defaults.work, 402653184U);
    EXPECT_EQ(defaults.expansion, 8388608U);
}

TEST(XmlParser, TextCountsToTheLimit) {
    const std::string head = "<a>";
    const std::string last = "<b/>";
    // Below the smallest portion, of two whole ones, and in the middle of the third.
    for (const std::uint64_t text : {100U, 4095U, 4096U, 4097U, 8192U, 10000U}) {
        const UTXmlLimits limits = {.text = text};
        const std::uint64_t blanks = text - head.size() - last.size();
        EXPECT_EQ(CountsOf(head, " ", blanks, last, limits).lastStart, "b") << text;
        EXPECT_EQ(CountsOf(head, " ", blanks, last + "</a>", limits).lastStart, "b") << text;
        EXPECT_EQ(CountsOf(head, " ", blanks + 1, last + "</a>", limits).lastStart, "a") << text;
    }
    EXPECT_EQ(CountsOf("", "<a/>", 1, "", {.text = 0}).starts, 0U);
}

TEST(XmlParser, ATokenOfTheLimitPassesAndOneOfTwiceTheLimitDoesNot) {
    const std::string head = "<a><b x='";
    const std::string tail = "'/></a>";
    const std::uint64_t rest = std::strlen("<b x=''/>");
    for (const std::uint64_t token : {1000U, 4096U, 10000U}) {
        const UTXmlLimits limits = {.token = token};
        for (const std::size_t blanks : {0U, 1U, 1000U, 3000U, 4080U, 4090U, 5000U, 9000U}) {
            const std::string front(blanks, ' ');
            SCOPED_TRACE(std::to_string(token) + " behind " + std::to_string(blanks));
            EXPECT_EQ(CountsOf(front + head, "v", token - rest, tail, limits).starts, 2U);
            EXPECT_EQ(CountsOf(front + head, "v", 2 * token - rest, tail, limits).starts, 1U);
            EXPECT_EQ(CountsOf(front + "<a><!-- ", "c", token * 2, "--><b/></a>", limits).starts, 1U);
            EXPECT_EQ(CountsOf(front + "<a><", "n", token * 2, "/></a>", limits).starts, 1U);
        }
    }
}

TEST(XmlParser, TextBetweenTagsIsNoToken) {
    const UTXmlLimits limits = {.token = 5000};
    EXPECT_EQ(CountsOf("<a>", "text", limits.token, "<b/></a>", limits).starts, 2U);
    EXPECT_EQ(CountsOf("<a><![CDATA[", "text", limits.token, "]]><b/></a>", limits).starts, 2U);
}

TEST(XmlParser, MemoryCountsToTheLimit) {
    const auto passes = [](std::uint64_t elements, std::uint64_t memory) {
        return CountsOf("", "<a>", elements, "", {.memory = memory}).starts == elements;
    };
    std::uint64_t least[2] = {};  // for 1,000 open elements and for 2,000
    for (const std::uint64_t elements : {1000U, 2000U}) {
        std::uint64_t tooLittle = 0;
        std::uint64_t enough = defaults.memory;
        while (enough - tooLittle > 1) {
            const std::uint64_t middle = tooLittle + (enough - tooLittle) / 2;
            (passes(elements, middle) ? enough : tooLittle) = middle;
        }
        EXPECT_TRUE(passes(elements, enough));
        EXPECT_FALSE(passes(elements, enough - 1));
        least[elements / 1000 - 1] = enough;
    }
    EXPECT_GT(least[1] - least[0], 1000U * 32);
    EXPECT_LT(least[1] - least[0], 1000U * 512);
}

TEST(XmlParser, TagsCountToTheLimit) {
    const UTXmlLimits limits = {.tags = 3000};
    EXPECT_EQ(CountsOf("<a>", "<b/>", limits.tags - 1, "</a>", limits).ends, limits.tags);
    EXPECT_EQ(CountsOf("<a>", "<b/>", limits.tags, "</a>", limits).starts, limits.tags);
    // An element with an attribute counts for two.
    EXPECT_EQ(CountsOf("<a>", "<b c=''/>", limits.tags, "</a>", limits).starts, 1 + (limits.tags - 1) / 2);
    EXPECT_EQ(CountsOf("<a/>", "", 0, "", {.tags = 0}).starts, 0U);
}

TEST(XmlParser, DefaultedAttributesCountAsTags) {
    std::string head = "<!DOCTYPE a [<!ATTLIST b";
    for (int index = 0; index < 999; ++index) head += " x" + std::to_string(index) + " CDATA ''";
    const UTXmlLimits limits = {.tags = 50000};
    const Counts counts = CountsOf(head + ">]><a>", "<b/>", 1000, "</a>", limits);
    EXPECT_EQ(counts.starts, 1 + (limits.tags - 1) / 1000);
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
    EXPECT_EQ(CountsOf(declare(defaults.declarations, 0), "", 0, "<a/>").starts, 1U);
    EXPECT_EQ(CountsOf(declare(defaults.declarations + 1, 0), "", 0, "<a/>").starts, 0U);
    EXPECT_EQ(CountsOf(declare(400, defaults.declarations - 400), "", 0, "<a/>").starts, 1U);
    EXPECT_EQ(CountsOf(declare(400, defaults.declarations - 399), "", 0, "<a/>").starts, 0U);
}

TEST(XmlParser, AnAddressCountsToTheLimit) {
    const std::string address(defaults.address, 'n');
    EXPECT_EQ(CountsOf("<a><b xmlns='" + address + "'/>", "<c/>", 1, "</a>").starts, 3U);
    EXPECT_EQ(CountsOf("<a><b xmlns='" + address + "n'/>", "<c/>", 1, "</a>").starts, 1U);
    EXPECT_EQ(CountsOf("<a><b xmlns:p='" + address + "'/>", "<c/>", 1, "</a>").starts, 3U);
    EXPECT_EQ(CountsOf("<a><b xmlns:p='" + address + "n'/>", "<c/>", 1, "</a>").starts, 1U);
    EXPECT_EQ(CountsOf("<a xmlns:p='" + address + "n'>", "<c/>", 1, "</a>").starts, 0U);
    EXPECT_EQ(CountsOf("<a xmlns=''>", "<c/>", 1, "</a>").starts, 2U) << "no namespace";
    const std::string declared = "<!DOCTYPE a [<!ENTITY e '" + address + "'><!ATTLIST b xmlns CDATA '&e;";
    EXPECT_EQ(CountsOf(declared + "'>]><a>", "<b/>", 1, "</a>").starts, 2U);
    EXPECT_EQ(CountsOf(declared + "n'>]><a>", "<b/>", 1, "</a>").starts, 1U);
}

TEST(XmlParser, AnAddressIsMeasuredInBytesOfUtf8) {
    const auto declare = [](std::size_t letters) {
        std::string address;
        for (std::size_t index = 0; index < letters; ++index) address += "\xC3\xA4";
        return "<b xmlns:p='" + address + "'/>";
    };
    EXPECT_EQ(CountsOf("<a>" + declare(defaults.address / 2), "", 0, "</a>").starts, 2U);
    EXPECT_EQ(CountsOf("<a>" + declare(defaults.address / 2 + 1), "", 0, "</a>").starts, 1U);
}

// ---- Work ----------------------------------------------------------------------------------------------------------

// The work of one document beyond its text, which a single portion holds.
std::uint64_t WorkBeyondText(const std::string& document) {
    return CountsOf(document, "", 0, "").work - document.size();
}

TEST(XmlParser, WorkIsCounted) {
    EXPECT_EQ(WorkBeyondText("<abc></abc>"), 6U);
    EXPECT_EQ(WorkBeyondText("<abc/>"), 6U);
    EXPECT_EQ(WorkBeyondText("<abc x='12' y=''/>"), 6U + 4);
    EXPECT_EQ(WorkBeyondText("<abc>text<!-- c --><?pi?><![CDATA[text]]></abc>"), 6U);
    EXPECT_EQ(WorkBeyondText("<!DOCTYPE a [<!ENTITY e '12345'>]><a>&e;</a>"), 6U + 2);
    EXPECT_EQ(WorkBeyondText("<!DOCTYPE a [<!ATTLIST b xy CDATA '12'>]><a/>"),
              1U + 5 + 4 + 2 + 4 + xmlStepWork);  // element, type, name and value; the tag: all but the first once more
    EXPECT_EQ(WorkBeyondText("<!DOCTYPE a [<!ATTLIST b xy CDATA '12'>]><a x='' y='' xmlns:p='n'/>"),
              1U + 5 + 4 + 2 + 2 + 2 + 4 + 4 * xmlStepWork);
}

TEST(XmlParser, WorkCountsTheAddressForEachAttribute) {
    const std::string declared = "<a xmlns:p='1234567'>";  // prefix, address, two names; a new address may have moved
    EXPECT_EQ(WorkBeyondText(declared + "</a>"), 10U);
    const std::uint64_t plain = std::strlen("b1b");
    EXPECT_EQ(WorkBeyondText(declared + "<b p:c='1'/></a>"), 10U + plain + std::strlen("1234567+c"));
    EXPECT_EQ(WorkBeyondText(declared + "<b p:c='1' p:d='1'/></a>"), 10U + plain + 1 + 2 * std::strlen("1234567+c"));
    EXPECT_EQ(WorkBeyondText(declared + "<p:b/></a>"), 12U);
}

TEST(XmlParser, WorkCountsToTheLimit) {
    const std::string document = "<abc><d x='1'/></abc>";
    const std::uint64_t work = document.size() + 3 + 3 + 1 + 3;
    EXPECT_EQ(CountsOf(document, "", 0, "").work, work);
    const auto tags = [&](std::uint64_t limit) {
        const Counts counts = CountsOf(document, "", 0, "", {.work = limit});
        return std::to_string(counts.starts) + "+" + std::to_string(counts.ends);
    };
    const std::uint64_t portion = 4096;  // room for the first one is wanted, whatever comes
    EXPECT_EQ(tags(portion - 1), "0+0");
    EXPECT_EQ(tags(portion), "2+2");
    const std::string blanks(portion - document.size(), ' ');
    const auto tagsInAPortion = [&](std::uint64_t beyond) {
        const Counts counts = CountsOf(blanks + document, "", 0, "", {.work = portion + beyond});
        return std::to_string(counts.starts) + "+" + std::to_string(counts.ends);
    };
    EXPECT_EQ(tagsInAPortion(2), "0+0");
    EXPECT_EQ(tagsInAPortion(3), "1+0");
    EXPECT_EQ(tagsInAPortion(5), "1+0");
    EXPECT_EQ(tagsInAPortion(6), "2+0");
    EXPECT_EQ(tagsInAPortion(7), "2+1");
    EXPECT_EQ(tagsInAPortion(9), "2+1");
    EXPECT_EQ(tagsInAPortion(10), "2+2");
}

// A hundredth of the limits that grow with the text.
constexpr UTXmlLimits hundredth = {
    .text = defaults.text / 100, .tags = defaults.tags / 100, .work = defaults.work / 100};

TEST(XmlParser, OrdinaryTextPassesToItsLimit) {
    const std::string relationship =
        "<Relationship Id='rId1' Target='word/document.xml' "
        "Type='http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument'/>\n";
    const std::string relationships = "<r xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>";
    std::uint64_t pieces = (hundredth.text - relationships.size()) / relationship.size();
    EXPECT_GT(pieces, 4000U);
    EXPECT_EQ(CountsOf(relationships, relationship, pieces, "", hundredth).ends, pieces);
    const std::string paragraph =
        "<w:p w:rsidR='00A77427' w:rsidRDefault='007F1D13'><w:r><w:t>a little text</w:t></w:r></w:p>";
    const std::string body = "<w:body xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main'>";
    pieces = (hundredth.text - body.size()) / paragraph.size();
    EXPECT_EQ(CountsOf(body, paragraph, pieces, "", hundredth).ends, 3 * pieces);
}

// ---- Documents that are made to cost much --------------------------------------------------------------------------

std::string ManyPrefixedAttributes(std::size_t addressLength) {
    return "<a xmlns:p='" + std::string(addressLength, 'n') + "'>";
}

constexpr const char prefixedTag[] = "<x p:a='' p:b='' p:c='' p:d='' p:e='' p:f=''/>";

TEST(XmlParser, ALongAddressCostsNoMoreThanItsText) {
    for (const std::uint64_t tags : {2000U, 600000U}) {
        const Counts counts = CountsOf(ManyPrefixedAttributes(900000), prefixedTag, tags, "</a>");
        EXPECT_EQ(counts.starts, 0U);
        EXPECT_LT(counts.work, 4U * 900000);
    }
}

TEST(XmlParser, ManyAttributesWithTheLongestAddressEndWithTheWork) {
    const Counts counts = CountsOf(ManyPrefixedAttributes(defaults.address), prefixedTag, 6000, "</a>", hundredth);
    const std::uint64_t each = 6 * (defaults.address + 2);
    EXPECT_LE(counts.starts, 1 + hundredth.work / each);
    EXPECT_GT(counts.starts, hundredth.work / (each + 100));
    EXPECT_LT(counts.work, hundredth.work + each + 100);
}

TEST(XmlParser, AddressesThatMoveBelowManyElementsEndWithTheWork) {
    // Every prefix is new, and every name too long for the room behind its address.
    const std::string longName = std::string(30, 'a');
    const Counts counts = CountsOf("", "<p:" + longName + " xmlns:p='u'>", 6000, "", hundredth);
    EXPECT_LT(counts.starts * counts.starts / 2 * xmlStepWork, hundredth.work + hundredth.work / 100);
    EXPECT_GT(counts.starts, 300U);
    // The same address moves once.
    EXPECT_EQ(CountsOf("<p:a xmlns:p='u'>", "<p:" + longName + ">", 5000, "", hundredth).starts, 5001U);
}

TEST(XmlParser, PassedDeclarationsEndWithTheWork) {
    std::string head = "<!DOCTYPE a [<!ATTLIST b";
    for (int index = 0; index < 1000; ++index) head += " x" + std::to_string(index) + " NMTOKEN #IMPLIED";
    const Counts counts = CountsOf(head + ">]><a>", "<b/>", 10000, "</a>", hundredth);
    EXPECT_LT(counts.starts, hundredth.work / (1000 * xmlStepWork) + 2);
    EXPECT_GT(counts.starts, hundredth.work / (1000 * xmlStepWork + 5000));
    const std::string several = "<b x1=' 1 ' x2=' 2 ' x3=' 3 '/>";
    EXPECT_LT(CountsOf(head + ">]><a>", several, 10000, "</a>", hundredth).starts, counts.starts / 3);
}

TEST(XmlParser, LongNamesOfDefaultedAttributesEndWithTheWork) {
    // The name has a long prefix, of which the expanded name tells nothing.
    const std::string prefix(100000, 'p');
    const Counts counts = CountsOf("<!DOCTYPE a [<!ATTLIST b " + prefix + ":x CDATA ''>]><a xmlns:" + prefix + "='n'>",
                                   "<b/>", 10000, "</a>", hundredth);
    EXPECT_GT(counts.starts, 1U);
    EXPECT_LT(counts.starts, hundredth.work / prefix.size() + 2);
}

TEST(XmlParser, LongDefaultValuesEndWithTheWork) {
    const std::string value(100000, 'v');
    const std::string head = "<!DOCTYPE a [<!ATTLIST b x CDATA '" + value + "'>]><a>";
    const Counts counts = CountsOf(head, "<b/>", 10000, "</a>", hundredth);
    EXPECT_GT(counts.starts, 1U);
    EXPECT_LT(counts.starts, hundredth.work / value.size() / 2 + 2);
    const Counts twice = CountsOf("<!DOCTYPE a [<!ATTLIST b xmlns CDATA 'nnnnnnn'>]><a>", "<b/>", 1000, "</a>");
    EXPECT_EQ(twice.starts, 1001U);
}

TEST(XmlParser, AHandleThatDeliversLittleAtATimeCostsNoMore) {
    const std::string document = "<a><b x='" + std::string(500000, 'v') + "'/></a>";
    std::uint64_t work[2] = {};
    for (const std::uint32_t bytesPerRead : {testNever, 100U}) {
        const auto handle = FIMakeTestHandle(document);
        handle->bytesPerRead = bytesPerRead;
        Counts counts;
        UTXmlParser* const parser = UTXmlNewParser(FIFileOf(*handle), {CountStart, CountEnd}, &counts);
        EXPECT_FALSE(UTXmlGoOn(*parser));
        work[bytesPerRead == testNever ? 0 : 1] = UTXmlWorkOf(*parser);
        EXPECT_EQ(counts.starts, 2U);
        UTXmlFreeParser(*parser);
    }
    EXPECT_EQ(work[0], work[1]);
    EXPECT_LT(work[0], 4 * document.size()) << "the value, and its text once and again in portions that grow";
}

TEST(XmlParser, ElementsThatAllStayOpenEndWithTheMemory) {
    const UTXmlLimits limits = {.memory = defaults.memory / 16};
    const Counts counts = CountsOf("", "<a>", limits.memory / 32, "", limits);
    EXPECT_GT(counts.starts, 10000U / 16);
    EXPECT_LT(counts.starts, limits.memory / 32);
}

TEST(XmlParser, NamesThatAllDifferEndWithTheMemory) {
    const UTXmlLimits limits = {.memory = defaults.memory / 16};
    std::string names;
    for (std::uint32_t index = 0; index < limits.memory / 32; ++index) names += "<n" + std::to_string(index) + "/>";
    const Counts counts = CountsOf("<a>" + names, "", 0, "</a>", limits);
    EXPECT_GT(counts.starts, 10000U / 16);
    EXPECT_LT(counts.starts, limits.memory / 32);
}

TEST(XmlParser, EntitiesThatMultiplyEnd) {
    const UTXmlLimits limits = {.expansion = defaults.expansion / 16};
    std::string head = "<!DOCTYPE a [<!ENTITY e0 'laugh'>";
    for (int index = 1; index < 40; ++index) {
        const std::string inner = "&e" + std::to_string(index - 1) + ";";
        head += "<!ENTITY e" + std::to_string(index) + " '" + inner + inner + inner + inner + "'>";
    }
    EXPECT_EQ(CountsOf(head + "]><a>&e39;", "", 0, "<b/></a>", limits).starts, 1U);
    EXPECT_EQ(CountsOf(head + "]><a x='&e39;'>", "", 0, "<b/></a>", limits).starts, 0U);
    EXPECT_EQ(CountsOf(head + "]><a>&e5;", "", 0, "<b/></a>", limits).starts, 2U);
}

TEST(XmlParser, EntitiesMayMultiplyToTheLimitOfExpansion) {
    // Text of 2,100 bytes becomes one of more than 20,000.
    const std::string head = "<!DOCTYPE a [<!ENTITY e '" + std::string(1000, 'e') + "'>]><a>";
    const auto starts = [&](std::uint64_t expansion) {
        return CountsOf(head + std::string(1000, ' '), "&e;", 20, "<b/></a>", {.expansion = expansion}).starts;
    };
    EXPECT_EQ(starts(20000), 1U);
    EXPECT_EQ(starts(25000), 2U);
    // Text that becomes no more than three times as long may go beyond it.
    EXPECT_EQ(CountsOf(head + std::string(10000, ' '), "&e;", 20, "<b/></a>", {.expansion = 100}).starts, 2U);
}

TEST(XmlParser, TagsInEntitiesThatMultiplyEndWithTheTags) {
    std::string tags;
    for (int index = 0; index < 1000; ++index) tags += "<b/>";
    const std::string head = "<!DOCTYPE a [<!ENTITY e '" + tags + "'>]><a>";
    EXPECT_EQ(CountsOf(head, "&e;", 19, "</a>", {.tags = 20000}).starts, 19001U);
    EXPECT_EQ(CountsOf(head, "&e;", 10000, "</a>", {.tags = 20000}).starts, 20000U);
}

TEST(XmlParser, AChainOfEntitiesComesBack) {
    std::string head = "<!DOCTYPE a [<!ENTITY e0 '<b/>'>";
    for (std::uint32_t index = 1; index < defaults.declarations; ++index) {
        head += "<!ENTITY e" + std::to_string(index) + " '&e" + std::to_string(index - 1) + ";'>";
    }
    const std::string last = "&e" + std::to_string(defaults.declarations - 1) + ";";
    EXPECT_EQ(CountsOf(head + "]><a>" + last, "", 0, "</a>").starts, 2U);
    EXPECT_EQ(CountsOf(head + "]><a x='" + last + "'>", "", 0, "</a>").starts, 0U);  // no tag may stand in a value
}

TEST(XmlParser, AttributesWithoutEndAreATokenWithoutEnd) {
    const UTXmlLimits limits = {.token = 10000};
    EXPECT_EQ(CountsOf("<a ", "x='' ", 10000, "/>", limits).starts, 0U);
    EXPECT_EQ(CountsOf("<!DOCTYPE a [<!ELEMENT a ", "(", 10000, ">]><a/>", limits).starts, 0U);
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
    // Behind an entity, some releases of expat go on for a tag more.
    std::string events = EventsOf("<!DOCTYPE a [<!ENTITY e '<b/><c></c>'>]><a>&e;&e;</a>", false);
    std::erase(events, ' ');
    EXPECT_EQ(events, "ab/c/b/c//");
}

TEST(XmlParser, StopsForGood) {
    EXPECT_EQ(EventsOf("<a><b/><c/></a>", true), "a b");
    EXPECT_EQ(EventsOf("<b><c/></b>", true), "b");
}

TEST(XmlParser, TellsWhetherTheHeapHadNoBlock) {
    for (const std::uint32_t allocations : {0U, testNever}) {
        const auto handle = FIMakeTestHandle("<a><b/></a>");
        Counts counts;
        UTXmlParser* const parser = UTXmlNewParser(FIFileOf(*handle), {CountStart, nullptr}, &counts);
        FIFailAllocationsFrom(allocations);
        EXPECT_FALSE(UTXmlGoOn(*parser));
        FIHeapNeverFails();
        EXPECT_EQ(UTXmlRanOutOfMemory(*parser), allocations == 0);
        EXPECT_EQ(counts.starts, allocations == 0 ? 0U : 2U);
        UTXmlFreeParser(*parser);
    }
    // The parser's own bound is no such thing.
    const auto handle = FIMakeTestHandle("<a " + std::string(defaults.token * 2, 'x'));
    Counts counts;
    UTXmlParser* const parser = UTXmlNewParser(FIFileOf(*handle), {CountStart, nullptr}, &counts);
    EXPECT_FALSE(UTXmlGoOn(*parser));
    EXPECT_FALSE(UTXmlRanOutOfMemory(*parser));
    UTXmlFreeParser(*parser);
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
