// Plain documents: what is told of them without the parser, and that the parser tells the same.
#include "platform/xml/plain_tags.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>

#include "platform/xml/relationships.h"
#include "platform/xml/xml_parser.h"
#include "support/case_name.h"
#include "support/relationships.h"
#include "support/test_handle.h"

namespace {

// ---- The first element ---------------------------------------------------------------------------------------------

const std::string notPlain = "not plain";

std::string PlainFirst(std::string_view document) {
    const std::optional<UTPlainElement> first = UTPlainFirstElement(document);
    if (!first) return notPlain;
    return std::string(first->namespaceUri) + "|" + std::string(first->localName);
}

struct FirstCase {
    const char* name;
    std::string document;
    std::string first;
};

using ::PrintTo;

std::string Address(std::size_t length) { return "<p:a xmlns:p='" + std::string(length, 'n') + "'/>"; }

std::string Attributes(int count) {
    std::string tag = "<a";
    for (int number = 0; number < count; ++number) tag += " a" + std::to_string(number) + "=''";
    return tag + "/>";
}

const FirstCase firstCases[] = {
    // clang-format off
    {"NoNamespace",            "<a>",                                                                "|a"},
    {"Empty",                  "<a/>",                                                               "|a"},
    {"DefaultNamespace",       "<a xmlns='n'>",                                                      "n|a"},
    {"Prefix",                 "<p:a xmlns:p=\"n\" p:x='1' x='2'>",                                  "n|a"},
    {"PrefixDeclaredLast",     "<p:a q:Ignorable='q' xmlns:q='m' xmlns:p='n'>",                      "n|a"},
    {"Declaration",            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<a>", "|a"},
    {"DeclarationOfVersion",   "<?xml version='1.0'?><a>",                                           "|a"},
    {"DeclarationWithSpaces",  "<?xml\tversion = '1.0'  standalone\n= 'no' ?>  <a >",                "|a"},
    {"LowerCaseEncoding",      "<?xml version='1.0' encoding='utf-8'?><a>",                          "|a"},
    {"ByteOrderMark",          "\xEF\xBB\xBF<a>",                                                    "|a"},
    {"SpaceInFront",           " \r\n\t<a>",                                                         "|a"},
    {"GreaterInValue",         "<a x='1>2'>",                                                        "|a"},
    {"OtherQuoteInValue",      "<a x='\"' y=\"'\">",                                                 "|a"},
    {"NameCharacters",         "<_A-z.9 Z_-.0=''>",                                                  "|_A-z.9"},
    {"OneNameInTwoNamespaces", "<a x='' p:x='' xmlns:p='n'>",                                        "|a"},
    {"LongestAddress",         Address(1024),                                       std::string(1024, 'n') + "|a"},
    {"MostAttributes",         Attributes(64),                                                       "|a"},

    {"Nothing",                "",                                                                   notPlain},
    {"CutInTheTag",            "<a x='1'",                                                           notPlain},
    {"CutInTheDeclaration",    "<?xml version='1.0'?",                                               notPlain},
    {"TooManyAttributes",      Attributes(65),                                                       notPlain},
    {"TooLongAddress",         Address(1025),                                                        notPlain},
    {"EmptyAddress",           Address(0),                                                           notPlain},
    {"EmptyDefault",           "<a xmlns=''>",                                                       notPlain},
    {"SpaceBeforeDeclaration", " <?xml version='1.0'?><a>",                                          notPlain},
    {"OtherVersion",           "<?xml version='1.1'?><a>",                                           notPlain},
    {"OtherEncoding",          "<?xml version='1.0' encoding='ISO-8859-1'?><a>",                     notPlain},
    {"NoSpaceInDeclaration",   "<?xml version='1.0'encoding='UTF-8'?><a>",                           notPlain},
    {"OtherOrder",             "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a>",         notPlain},
    {"WrongStandalone",        "<?xml version='1.0' standalone='maybe'?><a>",                        notPlain},
    {"Comment",                "<!--c--><a>",                                                        notPlain},
    {"Doctype",                "<!DOCTYPE a><a>",                                                    notPlain},
    {"Text",                   "x<a>",                                                               notPlain},
    {"LessInValue",            "<a x='<'>",                                                          notPlain},
    {"Reference",              "<a x='&lt;'>",                                                       notPlain},
    {"LineEndInValue",         "<a x='\n'>",                                                         notPlain},
    {"HighByte",               "<a x='\xC3\xA4'>",                                                   notPlain},
    {"HighByteInName",         "<\xC3\xA4>",                                                         notPlain},
    {"DigitFirst",             "<1a>",                                                               notPlain},
    {"TwoColons",              "<p:q:a xmlns:p='n'>",                                                notPlain},
    {"ColonFirst",             "<:a>",                                                               notPlain},
    {"ColonLast",              "<p: xmlns:p='n'>",                                                   notPlain},
    {"AttributeTwice",         "<a x='' x=''>",                                                      notPlain},
    {"DefaultTwice",           "<a xmlns='n' xmlns='n'>",                                            notPlain},
    {"DeclaredTwice",          "<a xmlns:p='n' xmlns:p='m'>",                                        notPlain},
    {"SameNameByTwoPrefixes",  "<a p:x='' q:x='' xmlns:p='n' xmlns:q='n'>",                          notPlain},
    {"UndeclaredPrefix",       "<p:a>",                                                              notPlain},
    {"UndeclaredInAttribute",  "<a p:x=''>",                                                         notPlain},
    {"PrefixXml",              "<a xml:space='preserve'>",                                           notPlain},
    {"DeclaresXml",            "<a xmlns:xml='n'>",                                                  notPlain},
    {"DeclaresXmlns",          "<a xmlns:xmlns='n'>",                                                notPlain},
    {"ReservedAddress",        "<a xmlns:p='http://www.w3.org/2000/xmlns/'>",                        notPlain},
    {"NoSpaceBetween",         "<a x=''y=''>",                                                       notPlain},
    {"NoValue",                "<a x>",                                                              notPlain},
    {"NoQuotes",               "<a x=1>",                                                            notPlain},
    {"SlashAlone",             "<a / >",                                                             notPlain},
    // clang-format on
};

class PlainFirstElement : public testing::TestWithParam<FirstCase> {};

TEST_P(PlainFirstElement, IsToldOrLeftToTheParser) { EXPECT_EQ(PlainFirst(GetParam().document), GetParam().first); }

INSTANTIATE_TEST_SUITE_P(Documents, PlainFirstElement, testing::ValuesIn(firstCases), FICaseName);

// ---- Relationships -------------------------------------------------------------------------------------------------

std::string PlainTarget(std::string_view document, std::string_view type = "t") {
    std::string_view target;
    switch (UTPlainFindRelationship(document, type, target)) {
        case UTPlainFind::Found:
            return std::string(target);
        case UTPlainFind::NoTarget:
            return "no target";
        case UTPlainFind::Absent:
            return "absent";
        case UTPlainFind::NotPlain:
            break;
    }
    return notPlain;
}

TEST(PlainRelationships, AreTold) {
    const std::string text =
        FIRelationships(FIRelationship("t", "a") + " \n" + FIRelationship("u", "/b") + "<x/><Relationship Type='w'/>" +
                        "<Relationship Type='v' TargetMode='External' Target='c'/>" + FIRelationship("v", "d"));
    EXPECT_EQ(PlainTarget(text), "a");
    EXPECT_EQ(PlainTarget(text, "u"), "/b");
    EXPECT_EQ(PlainTarget(text, "v"), "d");
    EXPECT_EQ(PlainTarget(text, "w"), "no target");
    EXPECT_EQ(PlainTarget(text, "T"), "absent");
    EXPECT_EQ(PlainTarget(text.substr(0, text.find("<x/>")), "u"), "/b");
    EXPECT_EQ(PlainTarget(text.substr(0, text.find("<x/>")), "w"), notPlain);
    EXPECT_EQ(PlainTarget("<Relationships/>"), notPlain);
    EXPECT_EQ(PlainTarget("<Relationships></Rel", "t"), "absent");
    EXPECT_EQ(PlainTarget("<r xmlns:p='http://schemas.microsoft.com/package/2005/06/relationships'>"
                          "<Relationship Type='t' Target='a'/><p:Relationship Type='t' Target='b'/>"),
              "b");
}

TEST(PlainRelationships, AreLeftToTheParser) {
    const std::string found = FIRelationship("t", "a");
    for (const char* const other :
         {"<x></x>", "text", "<!-- -->", "<x xmlns='n'/>", "<x xmlns:p='n'/>", "<p:x/>", "<x y='&amp;'/>", "&amp;",
          "<Relationship Type='&#116;' Target='b'/>", "<Relationship Type='t' Target='b'>", "<![CDATA[]]>", "<?x?>"}) {
        EXPECT_EQ(PlainTarget(FIRelationships(other + found)), notPlain) << other;
        EXPECT_EQ(PlainTarget(FIRelationships(found + other)), "a") << other;
    }
}

// ---- The same as the parser ----------------------------------------------------------------------------------------

struct FirstTag {
    std::string name = notPlain;
    UTXmlParser* parser = nullptr;
};

// The first element as the parser tells it, in the same form.
std::string ParsedFirst(const std::string& document) {
    const auto handle = FIMakeTestHandle(document);
    FirstTag first;
    const auto onStart = [](void* context, const char* name, const char**) {
        FirstTag& tag = *static_cast<FirstTag*>(context);
        tag.name = name;
        UTXmlStop(*tag.parser);
    };
    first.parser = UTXmlNewParser(FIFileOf(*handle), {onStart, nullptr}, &first);
    static_cast<void>(UTXmlGoOn(*first.parser));
    UTXmlFreeParser(*first.parser);
    if (first.name == notPlain) return notPlain;
    const std::size_t end = first.name.find(xmlNamespaceEnd);
    return end == std::string::npos ? "|" + first.name : first.name.replace(end, 1, "|");
}

std::string Resolved(std::string target) {
    target.resize(UTResolveTarget(target.data(), target.size()));
    return target;
}

const std::string mainParts[] = {
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<w:document xmlns:mc=\"http://m/2006\" "
    "xmlns:w=\"http://w/main\" mc:Ignorable=\"w14 w15\"><w:body><w:p/></w:body></w:document>",
    "<?xml version='1.0'?><workbook xmlns='http://s/main' xmlns:r='http://r'><a r:id='1'/></workbook>",
    "\xEF\xBB\xBF<p:presentation xmlns:a=\"A\" xmlns:r=\"R\" xmlns:p=\"P\" saveSubsetFonts=\"1\" p:x='' r:y=''/>",
};

const std::string relationshipParts[] = {
    FIRelationships(FIRelationship("t", "a") + FIRelationship("u", "/b/../c") +
                    "<Relationship Type='v' TargetMode='External' Target='c'/>" + FIRelationship("v", "%41")),
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r:Relationships "
    "xmlns:r='http://schemas.openxmlformats.org/package/2006/relationships'>"
    "<r:Relationship Type='u'/><r:Relationship Target='e' Type='t'/> <r:Relationship Type='t' Target='f'/>"
    "</r:Relationships>",
};

// Documents with random mistakes and twists in them.
class Twister {
 public:
    std::uint32_t Random(std::uint32_t bound) {
        state_ = state_ * 1664525 + 1013904223;
        return (state_ >> 8) % bound;
    }

    std::string Twist(std::string document) {
        for (std::uint32_t changes = Random(4); changes > 0; --changes) {
            const std::size_t place = Random(static_cast<std::uint32_t>(document.size()) + 1);
            const std::size_t length = Random(3) == 0 ? Random(12) : Random(2);
            document.replace(place, length, pieces_[Random(static_cast<std::uint32_t>(pieces_.size()))]);
        }
        return document;
    }

 private:
    static constexpr std::array<const char*, 44> pieces_ = {
        "",         " ",     "<",        ">",          "/",       "'",       "\"",       "=",        ":",
        "&",        "&lt;",  "\n",       "x",          "a:",      "w:",      "xml:",     "xmlns:",   "xmlns='n'",
        "xmlns=''", "x='1'", " y='",     "p:x='",      " w:z=''", " a:z=''", "<!--c-->", "<?i d?>",  "<a/>",
        "<a>",      "</a>",  "]]>",      "1",          "-",       ".",       "_",        "\xC3\xA4", "\xFF",
        "\x01",     "\t",    "External", "TargetMode", "t",       "Type=",   "Target=",  "<![CDATA["};
    std::uint32_t state_ = 1;
};

TEST(PlainTags, AreThoseOfTheParser) {
    Twister twister;
    std::uint32_t told = 0;
    for (std::uint32_t round = 0; round < 15000; ++round) {
        const std::string document = twister.Twist(mainParts[round % 3]);
        const std::string_view start = std::string_view(document).substr(0, 20 + twister.Random(400));
        const std::string plain = PlainFirst(start);
        if (plain == notPlain) continue;
        ++told;
        ASSERT_EQ(plain, ParsedFirst(document)) << document;
    }
    EXPECT_GT(told, 2500U);
}

TEST(PlainTags, TellTheRelationshipsOfTheParser) {
    Twister twister;
    std::uint32_t told = 0;
    for (std::uint32_t round = 0; round < 15000; ++round) {
        const std::string document = twister.Twist(relationshipParts[round % 2]);
        const std::string_view start = std::string_view(document).substr(0, 100 + twister.Random(500));
        for (const std::string_view type : {"t", "u", "v", "w"}) {
            std::string_view target;
            const UTPlainFind found = UTPlainFindRelationship(start, type, target);
            if (found == UTPlainFind::NotPlain) continue;
            ++told;
            const auto handle = FIMakeTestHandle(document);
            UTRelationships* const relationships = UTReadRelationships(FIFileOf(*handle));
            const std::optional<std::string_view> parsed = UTFindTarget(*relationships, type);
            ASSERT_EQ(parsed.has_value(), found == UTPlainFind::Found) << document;
            if (parsed) {
                ASSERT_EQ(Resolved(std::string(target)), *parsed) << document;
            }
            UTFreeRelationships(*relationships);
        }
    }
    EXPECT_GT(told, 2500U);
}

// ---- All tags ------------------------------------------------------------------------------------------------------

// Names and attributes of tags, without prefixes and declarations.
struct Tags {
    std::string text;
    std::size_t left = SIZE_MAX;  // the walk is stopped behind so many
};

bool KeepPlainTag(void* context, const UTPlainTag& tag) {
    auto& tags = *static_cast<Tags*>(context);
    tags.text += std::string(tag.name.local) + "(";
    for (std::size_t index = 0; index < tag.attributeCount; ++index) {
        const UTPlainAttribute& attribute = tag.attributes[index];
        if (attribute.name.prefix == "xmlns" || (attribute.name.prefix.empty() && attribute.name.local == "xmlns"))
            continue;
        tags.text += std::string(attribute.name.local) + "=" + std::string(attribute.value) + ",";
    }
    tags.text += ")";
    return --tags.left > 0;
}

UTPlainWalk Visit(std::string_view document, Tags& tags) { return UTPlainVisitTags(document, KeepPlainTag, &tags); }

std::string PlainTags(std::string_view document) {
    Tags tags;
    return Visit(document, tags) == UTPlainWalk::NotPlain ? notPlain : tags.text;
}

TEST(PlainVisit, TellsTheFirstElementAndThoseInIt) {
    EXPECT_EQ(PlainTags("<a/>"), "a()");
    EXPECT_EQ(PlainTags("<a/>wrong"), "a()");
    EXPECT_EQ(PlainTags("<a></a>"), "a()");
    EXPECT_EQ(PlainTags("<?xml version='1.0'?><a x='1'> <b y='2' z=''/>\n<c/></wrong"), "a(x=1,)b(y=2,z=,)c()");
    EXPECT_EQ(PlainTags("<p:a xmlns:p='n' xmlns='m' p:x='1'><p:b p:y='2'/></p:a>"), "a(x=1,)b(y=2,)");
    for (const char* const document : {"", "a", "<a>", "<a><b/>", "<a><b></b></a>", "<a>text</a>", "<a><!----></a>",
                                       "<a><b x='1' x='2'/></a>", "<a><p:b/></a>", "<a><b p:x=''/></a>",
                                       "<a><b xmlns='n'/></a>", "<a><b x='&lt;'/></a>", "<a><b/", "<a><b/><"}) {
        EXPECT_EQ(PlainTags(document), notPlain) << document;
    }
}

TEST(PlainVisit, StopsWhereItIsTold) {
    for (std::size_t most = 1; most < 4; ++most) {
        Tags tags = {"", most};
        EXPECT_EQ(Visit("<a><b/><c/>wrong", tags), UTPlainWalk::Stopped);
        EXPECT_EQ(tags.text, std::string("a()b()c()").substr(0, 3 * most));
    }
    Tags tags = {"", 4};
    EXPECT_EQ(Visit("<a><b/><c/>wrong", tags), UTPlainWalk::NotPlain);
}

TEST(PlainVisit, FindsAttributesWhateverTheirPrefix) {
    const auto check = [](void*, const UTPlainTag& tag) {
        EXPECT_EQ(UTPlainFindAttribute(tag, "x"), "1");
        EXPECT_EQ(UTPlainFindAttribute(tag, "y"), "2");
        EXPECT_EQ(UTPlainFindAttribute(tag, "p"), std::nullopt);
        EXPECT_EQ(UTPlainFindAttribute(tag, "xmlns"), std::nullopt);
        return true;
    };
    EXPECT_EQ(UTPlainVisitTags("<a xmlns='m' xmlns:p='n' xmlns:x='o' p:x='1' x='3' y='2'/>", check, nullptr),
              UTPlainWalk::Ended);
}

void KeepParsedTag(void* context, const char* name, const char** attributes) {
    const auto local = [](std::string_view whole) {
        return std::string(whole.substr(whole.find(xmlNamespaceEnd) + 1));
    };
    auto& tags = *static_cast<Tags*>(context);
    tags.text += local(name) + "(";
    for (; *attributes != nullptr; attributes += 2) tags.text += local(attributes[0]) + "=" + attributes[1] + ",";
    tags.text += ")";
}

TEST(PlainVisit, TellsTheTagsOfTheParser) {
    Twister twister;
    std::uint32_t told = 0;
    for (std::uint32_t round = 0; round < 6000; ++round) {
        const std::string document = twister.Twist(relationshipParts[round % 2]);
        Tags tags = {"", 1 + twister.Random(10)};
        const UTPlainWalk walk = Visit(std::string_view(document).substr(0, 100 + twister.Random(500)), tags);
        if (walk == UTPlainWalk::NotPlain) continue;
        ++told;
        const auto handle = FIMakeTestHandle(document);
        Tags parsed;
        UTXmlParser* const parser = UTXmlNewParser(FIFileOf(*handle), {KeepParsedTag, nullptr}, &parsed);
        static_cast<void>(UTXmlGoOn(*parser));
        UTXmlFreeParser(*parser);
        if (walk == UTPlainWalk::Stopped) parsed.text.resize(std::min(parsed.text.size(), tags.text.size()));
        ASSERT_EQ(tags.text, parsed.text) << document;
    }
    EXPECT_GT(told, 1000U);
}

}  // namespace
