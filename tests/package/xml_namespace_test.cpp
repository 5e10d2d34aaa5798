// The scan for the XML namespace, and the rows that compare it.
#include "package/xml_namespace.h"

#include <array>
#include <iterator>
#include <random>
#include <string>

#include "core/interpreter.h"
#include "reader/reader.h"
#include "signatures/namespace_hosts.h"
#include "support/case_name.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

using namespace std::string_literals;

using Units = std::array<std::uint16_t, xmlNamespaceUnits>;

Units Scan(TestHandle& handle, std::uint32_t start = 0) {
    Units units;
    units.fill(0x5555);
    units[0] = xmlNamespaceNotScanned;
    FIReader reader;
    FIReaderStart(reader, FIFileOf(handle));
    if (start > 0) static_cast<void>(FIReaderSeek(reader, start));
    FIScanXmlNamespace(reader, units.data());
    return units;
}

const std::string none = "no namespace";

// The value as bytes, ended by its 0 unit; none when there is none.
std::string ValueOf(const Units& units) {
    if (units[0] == xmlNamespaceNotFound) return none;
    std::string value;
    for (const std::uint16_t unit : units) {
        if (unit == 0) return value;
        if (unit > 0xFF) return "a unit that no byte makes";
        value += static_cast<char>(unit);
    }
    return "no 0 unit";
}

std::string NamespaceOf(const std::string& bytes) {
    const auto whole = FIMakeTestHandle(bytes);
    const std::string value = ValueOf(Scan(*whole));
    const auto slow = FIMakeTestHandle(bytes);
    slow->bytesPerRead = 1;
    EXPECT_EQ(ValueOf(Scan(*slow)), value) << "another answer when reads deliver one byte each";
    return value;
}

struct NamespaceCase {
    const char* name;
    std::string bytes;
    std::string value;
};

class XmlNamespace : public testing::TestWithParam<NamespaceCase> {};

TEST_P(XmlNamespace, Value) { EXPECT_EQ(NamespaceOf(GetParam().bytes), GetParam().value); }

const std::string declaration = "<?xml version=\"1.0\"?>";

// A file whose attribute's "=" stands at the offset.
std::string EqualSignAt(std::size_t offset) { return "<?xml" + std::string(offset - 10, ' ') + "xmlns=\"v\""; }

// A word of so many letters in front of the attribute's name, without anything between them.
std::string BehindAWordOf(std::size_t size) { return "<?xml " + std::string(size, 'a') + "xmlns=\"v\">"; }

std::string ValueOfSize(std::size_t size) { return declaration + "<a xmlns=\"" + std::string(size, 'v') + "\">"; }

const NamespaceCase namespaceCases[] = {
    // clang-format off
    {"DoubleQuotes",                      declaration + "<a xmlns=\"urn:x\">",                    "urn:x"},
    {"Apostrophes",                       declaration + "<a xmlns='urn:x'>",                      "urn:x"},
    {"ApostropheInsideDoubleQuotes",      declaration + "<a xmlns=\"it's\">",                     "it's"},
    {"DoubleQuoteInsideApostrophes",      declaration + "<a xmlns='a\"b'>",                       "a\"b"},
    {"InTheDeclarationItself",            "<?xml xmlns=\"v\"?>",                                  "v"},
    {"DirectlyBehindTheFiveBytes",        "<?xmlxmlns=\"v\"",                                     "v"},
    {"NoMoreThanThat",                    "<?xml xmlns=''",                                       ""},
    {"EmptyFile",                         "",                                                     none},
    {"OnlyTheFiveBytes",                  "<?xml",                                                none},
    {"OnlyFourBytes",                     "<?xm",                                                 none},
    {"NoDeclaration",                     "<a xmlns=\"v\">",                                      none},
    {"ByteOrderMark",                     "\xEF\xBB\xBF" + declaration + "<a xmlns=\"v\">",       none},
    {"BlankInFront",                      " " + declaration + "<a xmlns=\"v\">",                  none},
    {"UpperCaseDeclaration",              "<?XML version=\"1.0\"?><a xmlns=\"v\">",               none},
    {"MixedCaseDeclaration",              "<?xmL version=\"1.0\"?><a xmlns=\"v\">",               none},
    {"FirstByteDiffers",                  "[?xml xmlns=\"v\"",                                    none},
    {"SecondByteDiffers",                 "<!xml xmlns=\"v\"",                                    none},
    {"ThirdByteDiffers",                  "<?yml xmlns=\"v\"",                                    none},
    {"FourthByteDiffers",                 "<?xnl xmlns=\"v\"",                                    none},
    {"FifthByteDiffers",                  "<?xmk xmlns=\"v\"",                                    none},
    {"Utf16LowByteFirst",                 "<\0?\0x\0m\0l\0 \0x\0m\0l\0n\0s\0=\0\"\0v\0\"\0"s,     none},
    {"Utf16HighByteFirst",                "\0<\0?\0x\0m\0l\0 \0x\0m\0l\0n\0s\0=\0\"\0v\0\""s,     none},
    {"NoAttribute",                       declaration + "<a>text</a>",                            none},
    {"BlankBeforeTheEqualSign",           declaration + "<a xmlns =\"v\">",                       none},
    {"BlankBehindTheEqualSign",           declaration + "<a xmlns= \"v\" xmlns=\"w\">",           none},
    {"NoQuote",                           declaration + "<a xmlns=v xmlns=\"w\">",                none},
    {"TwoEqualSigns",                     declaration + "<a xmlns==\"v\" xmlns=\"w\">",           none},
    {"Prefixed",                          declaration + "<a xmlns:w=\"v\">",                      none},
    {"PrefixedThenPlain",                 declaration + "<a xmlns:a=\"v\" xmlns=\"w\">",          "w"},
    {"UpperCase",                         declaration + "<a XMLNS=\"v\">",                        none},
    {"MixedCase",                         declaration + "<a xmlnS=\"v\">",                        none},
    {"Longer",                            declaration + "<a xmlnsx=\"v\">",                       none},
    {"Shorter",                           declaration + "<a xmln=\"v\">",                         none},
    {"LongerInFront",                     declaration + "<a axmlns=\"v\">",                       none},
    {"BehindAnotherEqualSign",            declaration + "<a b=xmlns=\"v\">",                      "v"},
    {"BehindALoneEqualSign",              declaration + "<a =xmlns=\"v\">",                       "v"},
    {"BehindAQuote",                      declaration + "<a b='xmlns=\"v\"'>",                    "v"},
    {"InAComment",                        declaration + "<!-- xmlns=\"x\" --><a xmlns=\"v\">",    "x"},
    {"InAnInstruction",                   declaration + "<?p xmlns='x'?><a xmlns=\"v\">",         "x"},
    {"InText",                            declaration + "<a>xmlns='x'</a>",                       "x"},
    {"FirstOfTwo",                        declaration + "<a xmlns=\"v\"><b xmlns=\"w\">",         "v"},
    {"EmptyValue",                        declaration + "<a xmlns=\"\">",                         ""},
    {"EmptyValueThenAnother",             declaration + "<a xmlns=\"\"><b xmlns=\"w\">",          ""},
    {"EndBehindTheEqualSign",             declaration + "<a xmlns=",                              none},
    {"EndBehindTheQuote",                 declaration + "<a xmlns=\"",                            none},
    {"EndInTheValue",                     declaration + "<a xmlns=\"v",                           none},
    {"OtherQuoteDoesNotClose",            declaration + "<a xmlns=\"v'",                          none},
    {"EndInTheName",                      declaration + "<a xmlns",                               none},
    {"LineEndsInTheValue",                declaration + "<a xmlns=\"a\r\nb\">",                   "a\r\nb"},
    {"MarkupInTheValue",                  declaration + "<a xmlns=\"<>=&amp;\">",                 "<>=&amp;"},
    {"HighBytesInTheValue",               declaration + "<a xmlns=\"\xFF\x80\xFE\">",             "\xFF\x80\xFE"},
    {"ValueEndsAtANulForTheReader",       declaration + "<a xmlns=\"a\0b\">"s,                    "a"},
    {"ValueOf254Bytes",                   ValueOfSize(254),                                       std::string(254, 'v')},
    {"ValueOf255Bytes",                   ValueOfSize(255),                                       std::string(255, 'v')},
    {"ValueOf256Bytes",                   ValueOfSize(256),                                       none},
    {"ValueOf255BytesWithoutItsQuote",    declaration + "<a xmlns=\"" + std::string(255, 'v'),    none},
    {"EqualSignAt1022",                   EqualSignAt(1022),                                      "v"},
    {"EqualSignAt1023",                   EqualSignAt(1023),                                      "v"},
    {"EqualSignAt1024",                   EqualSignAt(1024),                                      none},
    {"ValueOf255BytesBehind1023",         "<?xml" + std::string(1013, ' ') + "xmlns=\"" + std::string(255, 'v') + "\"", std::string(255, 'v')},
    {"NotAt1024AlsoWithMoreBehind",       EqualSignAt(1024) + " xmlns=\"w\"",                     none},
    {"BehindAWordOf1",                    BehindAWordOf(1),                                       none},
    {"BehindAWordOf249",                  BehindAWordOf(249),                                     none},
    {"BehindAWordOf250",                  BehindAWordOf(250),                                     none},
    {"BehindAWordOf254",                  BehindAWordOf(254),                                     none},
    {"BehindAWordOf255",                  BehindAWordOf(255),                                     "v"},
    {"BehindAWordOf256",                  BehindAWordOf(256),                                     none},
    {"BehindAWordOf509",                  BehindAWordOf(509),                                     none},
    {"BehindAWordOf510",                  BehindAWordOf(510),                                     "v"},
    {"BehindAWordOf511",                  BehindAWordOf(511),                                     none},
    {"WordOf255AndAnEqualSign",           "<?xml " + std::string(255, 'a') + "=xmlns='v'",        "v"},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Xml, XmlNamespace, testing::ValuesIn(namespaceCases), FICaseName);

// Letters, digits and . - _ : belong to a word; any other byte in front of the name leaves the name whole.
TEST(XmlNamespaceBytes, WordCharacters) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
        const bool digit = byte >= '0' && byte <= '9';
        const bool belongs = letter || digit || byte == '.' || byte == '-' || byte == '_' || byte == ':';
        const std::string before = "<?xml "s + static_cast<char>(byte);
        EXPECT_EQ(NamespaceOf(before + "xmlns='v'"), belongs ? none : "v") << byte;
        EXPECT_EQ(NamespaceOf("<?xml xmlns"s + static_cast<char>(byte) + "='v'"), none) << byte << " behind the name";
    }
}

TEST(XmlNamespaceBytes, EveryByteOfAValueButItsQuoteIsStored) {
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        if (byte == '"') continue;
        const std::string value = "a"s + static_cast<char>(byte) + "b";
        EXPECT_EQ(NamespaceOf("<?xml xmlns=\"" + value + "\""), value) << byte;
    }
}

TEST(XmlNamespaceBytes, ANulInAValueIsStored) {
    const Units units = Scan(*FIMakeTestHandle("<?xml xmlns=\"a\0b\""s));
    EXPECT_EQ(units[0], 'a');
    EXPECT_EQ(units[1], 0);
    EXPECT_EQ(units[2], 'b');
    EXPECT_EQ(units[3], 0);
}

TEST(XmlNamespaceBytes, OnlyTheBytesThemselvesMakeUnits) {
    const Units units = Scan(*FIMakeTestHandle("<?xml xmlns=\"\xFF\xC3\xA4\""));
    EXPECT_EQ(units[0], 0x00FF) << "not the state of a scan that was not made";
    EXPECT_EQ(units[1], 0x00C3);
    EXPECT_EQ(units[2], 0x00A4);
    EXPECT_EQ(units[3], 0);
}

TEST(XmlNamespaceBytes, AValueOf255BytesFillsTheArray) {
    const Units units = Scan(*FIMakeTestHandle(ValueOfSize(255)));
    EXPECT_EQ(units[254], 'v');
    EXPECT_EQ(units[255], 0);
}

// What is buffered is looked through by its equals signs; a read of one byte buffers nothing.
TEST(XmlNamespaceBuffer, IsLookedThroughAsByteByByte) {
    const std::string pieces[] = {"xmlns",
                                  "=",
                                  "xmlns=",
                                  "\"",
                                  "'",
                                  " ",
                                  ":",
                                  "a",
                                  "xmlns='u'",
                                  "<!--",
                                  "=xmlns=",
                                  std::string(250, 'w'),
                                  std::string(255, 'v'),
                                  std::string(300, ' ')};
    std::mt19937 engine(12);
    for (std::uint32_t round = 0; round < 3000; ++round) {
        std::string bytes = "<?xml";
        while (bytes.size() < 40 + engine() % 1200) bytes += pieces[engine() % std::size(pieces)];
        static_cast<void>(NamespaceOf(bytes));
    }
}

TEST(XmlNamespaceStart, RewindsTheReader) {
    const std::string bytes = declaration + "<a xmlns='v'>";
    for (const std::uint32_t start : {1U, 10U, 5000U}) {
        EXPECT_EQ(ValueOf(Scan(*FIMakeTestHandle(bytes), start)), "v") << start;
    }
}

TEST(XmlNamespaceFailure, FailingSeekEndsTheScan) {
    const auto handle = FIMakeTestHandle(declaration + "<a xmlns='v'>");
    handle->failSeeksFrom = 0;
    EXPECT_EQ(ValueOf(Scan(*handle)), none);
    EXPECT_EQ(handle->reads, 0U);
}

TEST(XmlNamespaceFailure, FailingReadsEndTheScan) {
    const std::string bytes = declaration + "<a xmlns='v'>";
    for (std::uint32_t failing = 0; failing < bytes.size() - 1; ++failing) {
        const auto handle = FIMakeTestHandle(bytes);
        handle->bytesPerRead = 1;
        handle->failReadsFrom = failing;
        EXPECT_EQ(ValueOf(Scan(*handle)), none) << failing;
    }
}

TEST(XmlNamespaceFailure, EveryTruncatedFile) {
    const std::string bytes = declaration + "<a xmlns='v'>";
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        EXPECT_EQ(NamespaceOf(bytes.substr(0, size)), size + 1 < bytes.size() ? none : "v") << size << " bytes";
    }
}

TEST(XmlNamespaceCost, WalksNoMoreThan1024Bytes) {
    const auto handle = FIMakeTestHandle("<?xml" + std::string(10000, ' '));
    handle->bytesPerRead = 1;
    EXPECT_EQ(ValueOf(Scan(*handle)), none);
    EXPECT_EQ(handle->bytesDelivered, 1024U);
}

TEST(XmlNamespaceCost, ReadsNoMoreThan257BytesOfAValue) {
    const auto handle = FIMakeTestHandle("<?xml" + std::string(1013, ' ') + "xmlns=\"" + std::string(10000, 'v'));
    handle->bytesPerRead = 1;
    EXPECT_EQ(ValueOf(Scan(*handle)), none);
    EXPECT_EQ(handle->bytesDelivered, 1024U + 257U);
}

// ---- Through the whole system: rows 103 to 110 compare the namespace, row 111 is the markup probe -----------------

std::string DocumentOf(const std::string& value) { return declaration + "\n<doc xmlns=\"" + value + "\">\n</doc>\n"; }

const std::string h1(namespaceHosts[0]);
const std::string h2(namespaceHosts[1]);
const std::string h3(namespaceHosts[2]);

struct DocumentCase {
    const char* name;
    std::string bytes;
    FIID answer;
    std::uint16_t row;
};

class IdentifyNamespace : public testing::TestWithParam<DocumentCase> {};

TEST_P(IdentifyNamespace, Answers) {
    std::uint16_t row = 1;
    EXPECT_EQ(FIIdentifyBytes(GetParam().bytes, "a.xml", FIFlagExtendedText, &row), GetParam().answer);
    EXPECT_EQ(row, GetParam().row);
}

const DocumentCase documentCases[] = {
    // clang-format off
    {"Veloxine51",          DocumentOf(h1 + "/xmlns/veloxine5_1"),                                2006, 103_row},
    {"Veloxine5",           DocumentOf(h1 + "/xmlns/veloxine5"),                                  2005, 104_row},
    {"Veloxine4",           DocumentOf(h2 + "/xmlns/veloxine4"),                                  2004, 105_row},
    {"Veloxine3",           DocumentOf(h2 + "/xmlns/veloxine3"),                                  2003, 106_row},
    {"Veloxine2",           DocumentOf(h2 + "/xmlns/veloxine2"),                                  2002, 107_row},
    {"Veloxine",            DocumentOf(h2 + "/xmlns/veloxine"),                                   2001, 108_row},
    {"Fields",              DocumentOf(h1 + "/xmlns/pst_fields"),                                 1301, 109_row},
    {"Dxl",                 DocumentOf(h3 + "/dxl"),                                              2007, 110_row},
    {"DxlInApostrophes",    declaration + "<document xmlns='" + h3 + "/dxl'>",                    2007, 110_row},
    {"DxlInAComment",       declaration + "<!-- xmlns='" + h3 + "/dxl' --><a/>",                  2007, 110_row},
    {"DxlWithAPrefixFirst", declaration + "<a xmlns:b=\"x\" xmlns=\"" + h3 + "/dxl\">",           2007, 110_row},
    {"DxlWithANulBehind",   declaration + "<a xmlns=\"" + h3 + "/dxl\0more\">"s,                  2007, 110_row},
    {"DxlLonger",           DocumentOf(h3 + "/dxl2"),                                             1150, 111_row},
    {"DxlShorter",          DocumentOf(h3 + "/dx"),                                               1150, 111_row},
    {"DxlUpperCase",        DocumentOf(h3 + "/DXL"),                                              1150, 111_row},
    {"OtherHost",           DocumentOf(h2 + "/xmlns/veloxine5"),                                  1150, 111_row},
    {"AnotherNamespace",    DocumentOf("urn:x"),                                                  1150, 111_row},
    {"EmptyNamespace",      DocumentOf(""),                                                       1150, 111_row},
    {"AnotherNamespaceFirst", declaration + "<a xmlns=\"urn:x\"><b xmlns=\"" + h3 + "/dxl\">",    1150, 111_row},
    {"ByteOrderMark",       "\xEF\xBB\xBF" + DocumentOf(h3 + "/dxl"),                             1150, 111_row},
    {"EqualSignAt1023",     "<?xml version='1.0'?>" + std::string(997, ' ') + "xmlns='" + h3 + "/dxl'", 2007, 110_row},
    {"EqualSignAt1024",     "<?xml version='1.0'?>" + std::string(998, ' ') + "xmlns='" + h3 + "/dxl'", 1150, 111_row},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Xml, IdentifyNamespace, testing::ValuesIn(documentCases), FICaseName);

TEST(IdentifyNamespaceCost, OneScanServesAllRows) {
    const std::string bytes = DocumentOf("urn:x");
    FIRequest request = {};
    request.xmlNamespace[0] = xmlNamespaceNotScanned;
    const auto handle = FIMakeTestHandle(bytes);
    handle->bytesPerRead = 1;
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    const std::uint8_t row[] = {0xFF, 0x11, 'u', 'r', 'n', ':', 'y', 0, 0xFF, 0x08, 0x01, 0x10, 0xFF, 0xE0};
    EXPECT_EQ(FIRunSignature(row, reader, request), 0);
    const std::uint32_t reads = handle->reads;
    EXPECT_GT(reads, 0U);
    EXPECT_EQ(FIRunSignature(row, reader, request), 0);
    EXPECT_EQ(handle->reads, reads);
}

}  // namespace
