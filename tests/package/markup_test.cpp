// HTML by its leading tags, and the verdict of the two scanners together.
#include "package/markup.h"

#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "package/html_tags.h"
#include "support/case_name.h"
#include "support/probe_case.h"
#include "support/utf16_text.h"

namespace {

using ::PrintTo;

using namespace std::string_literals;

constexpr FIID html8 = 1101;
constexpr FIID html16 = 1181;
constexpr FIID wordHtml = 1147;
constexpr FIID excelHtml = 1148;
constexpr FIID powerPointHtml = 1149;
constexpr FIID xmlText = 1150;
constexpr FIID wmlText = 1151;

const std::string otherMark8 = "\xEF\xBF\xBE";

std::string Low(std::string_view text) { return markLow + FILowFirst(text); }
std::string High(std::string_view text) { return markHigh + FIHighFirst(text); }

std::string Blanks(std::size_t count) { return std::string(count, ' '); }

const std::string word = "xmlns:w=\"urn:schemas-microsoft-com:office:word\"";
const std::string excel = "xmlns:x=\"urn:schemas-microsoft-com:office:excel\"";
const std::string powerPoint = "xmlns:p=\"urn:schemas-microsoft-com:office:powerpoint\"";

// Blanks and then the text, so that its last byte stands at the offset.
std::string EndingAt(std::size_t offset, const std::string& text) { return Blanks(offset + 1 - text.size()) + text; }

struct MarkupCase {
    const char* name;
    std::string bytes;
    FIID answer;
};

// ---- FIScanHtmlTags -----------------------------------------------------------------------------------------------

class HtmlTags : public testing::TestWithParam<MarkupCase> {};

TEST_P(HtmlTags, Answers) { EXPECT_EQ(FIAnswerOf(FIScanHtmlTags, GetParam().bytes), GetParam().answer); }

const MarkupCase tagCases[] = {
    // clang-format off
    // Tags that decide when they stand alone.
    {"Html",                          "<html>",                                              html8},
    {"Head",                          "<head>",                                              html8},
    {"Body",                          "<body>",                                              html8},
    {"Pre",                           "<pre>",                                               html8},
    {"Htmlplus",                      "<htmlplus>",                                          html8},
    {"HtmlUpperCase",                 "<HTML>",                                              html8},
    {"HeadMixedCase",                 "<hEaD>",                                              html8},
    {"HtmlLonger",                    "<htmls>",                                             0},
    {"HtmlShorter",                   "<htm>",                                               0},
    {"HeadWithABlank",                "<head >",                                             0},
    {"HeadWithAnAttribute",           "<head id=a>",                                         0},
    {"BodyWithAnAttribute",           "<body id=a>",                                         0},
    {"PreWithALineFeed",              "<pre\n>",                                             0},
    {"HtmlplusWithABlank",            "<htmlplus >",                                         0},
    {"ClosingHtml",                   "</html>",                                             0},
    {"BlankBeforeTheName",            "< html>",                                             0},
    {"HtmlWithASlash",                "<html/>",                                             0},
    {"EmptyTag",                      "<>",                                                  0},
    {"EmptyTagThenHtml",              "<><html>",                                            html8},
    {"OtherTag",                      "<p>",                                                 0},
    // An html tag with attributes.
    {"HtmlBlank",                     "<html >",                                             html8},
    {"HtmlTab",                       "<html\t>",                                            html8},
    {"HtmlLineFeed",                  "<html\n>",                                            html8},
    {"HtmlCarriageReturn",            "<html\r>",                                            html8},
    {"HtmlFormFeed",                  "<html\f>",                                            0},
    {"HtmlVerticalTab",               "<html\v>",                                            0},
    {"HtmlShortAttribute",            "<html lang=en>",                                      html8},
    {"HtmlTagOf40Characters",         "<html " + std::string(35, 'x') + ">",                 html8},
    {"HtmlTagOf41Characters",         "<html " + std::string(36, 'x') + ">",                 html8},
    {"LongerNameThenHtml",            "<htmls><html>",                                       html8},
    // The document type.
    {"DoctypeHtmlBlank",              "<!doctype html >",                                    html8},
    {"DoctypeHtmlPublic",             "<!DOCTYPE HTML PUBLIC \"x\">",                        html8},
    {"DoctypeHtmlPublicThenText",     "<!DOCTYPE html PUBLIC \"x\">text",                    html8},
    {"DoctypeHtmlAlone",              "<!DOCTYPE html>",                                     0},
    {"DoctypeHtmlAloneThenHtml",      "<!DOCTYPE html><html>",                               html8},
    {"DoctypeHtmlAloneThenText",      "<!DOCTYPE html>text<html>",                           0},
    {"DoctypeHtmlTab",                "<!doctype html\t>",                                   0},
    {"DoctypeHtmlLineFeed",           "<!doctype html\n>",                                   0},
    {"DoctypeTwoBlanks",              "<!doctype  html >",                                   0},
    {"DoctypeOther",                  "<!doctype svg >",                                     0},
    {"DoctypeOtherThenHtml",          "<!doctype svg ><html>",                               html8},
    // Between tags only white space may stand.
    {"WhiteSpaceInFront",             " \r\n\t <HTML>",                                      html8},
    {"WhiteSpaceBetweenTags",         "<p> \r\n\t<html>",                                    html8},
    {"TagsInFront",                   "<a><b/></c><?d?><!-- e --><html>",                    html8},
    {"TextInFront",                   "x<html>",                                             0},
    {"TextBetweenTags",               "<p>word<html>",                                       0},
    {"TitleWithText",                 "<title>x</title><html>",                              0},
    {"TitleWithoutText",              "<title></title><html>",                               html8},
    {"GreaterThanBetweenTags",        "<p>><html>",                                          0},
    {"CommentWithAGreaterThan",       "<!-- a > b --><html>",                                0},
    {"FormFeedBetweenTags",           "<p>\f<html>",                                         0},
    {"NulBetweenTags",                "<p>\0<html>"s,                                        0},
    {"NoBreakSpaceBetweenTags",       "<p>\xA0<html>",                                       0},
    {"LessThanInATag",                "<p <html>",                                           0},
    {"EmptyFile",                     "",                                                    0},
    {"OnlyWhiteSpace",                " \r\n\t",                                             0},
    {"OnlyALessThan",                 "<",                                                   0},
    // A NUL ends a tag for the comparisons.
    {"NulBehindHtml",                 "<html\0x>"s,                                          html8},
    {"NulInHtml",                     "<htm\0l><html>"s,                                     html8},
    {"NulInHtmlAlone",                "<htm\0l>"s,                                           0},
    {"NulBehindHead",                 "<head\0 id=a>"s,                                      html8},
    {"NulBehindDoctypeHtmlBlank",     "<!doctype html \0>"s,                                 html8},
    // A tag that is not closed.
    {"HtmlNotClosed",                 "<html",                                               0},
    {"HtmlBlankNotClosed",            "<html ",                                              html8},
    {"HtmlAttributeNotClosed",        "<HTML lang=en",                                       html8},
    {"HtmlTabNotClosed",              "<html\tlang=en",                                      0},
    {"HtmlLineFeedNotClosed",         "<html\nlang=en",                                      0},
    {"HeadNotClosed",                 "<head",                                               0},
    {"DoctypeNotClosed",              "<!doctype html public",                               0},
    {"HtmlBlankNotClosedLong",        "<html " + std::string(1000, 'x'),                     html8},
    {"OtherNotClosedLong",            "<html5 " + std::string(1000, 'x'),                    0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Tags, HtmlTags, testing::ValuesIn(tagCases), FICaseName);

const MarkupCase officeCases[] = {
    // clang-format off
    {"Word",                          "<html " + word + ">",                                 wordHtml},
    {"Excel",                         "<html " + excel + ">",                                excelHtml},
    {"PowerPoint",                    "<html " + powerPoint + ">",                           powerPointHtml},
    {"WordBehindATab",                "<html\t" + word + ">",                                wordHtml},
    {"WordBehindALineFeed",           "<html\n" + word + ">",                                wordHtml},
    {"WordBehindACarriageReturn",     "<html\r\n" + word + ">",                              wordHtml},
    {"WordUpperCase",                 "<HTML XMLNS:W=\"URN:SCHEMAS-MICROSOFT-COM:OFFICE:WORD\">", wordHtml},
    {"WordBehindOthers",              "<html xmlns:v=\"urn:schemas-microsoft-com:vml\" " + word + " xmlns=\"x\">", wordHtml},
    {"WordGlued",                     "<html a" + word + "b>",                               wordHtml},
    {"WordBehindAnotherTag",          "<p>\n<html " + word + ">",                            wordHtml},
    {"WordAndExcel",                  "<html " + word + " " + excel + ">",                   wordHtml},
    {"ExcelAndWord",                  "<html " + excel + " " + word + ">",                   wordHtml},
    {"ExcelAndPowerPoint",            "<html " + excel + " " + powerPoint + ">",             excelHtml},
    {"PowerPointAndExcel",            "<html " + powerPoint + " " + excel + ">",             excelHtml},
    {"PowerPointAndWord",             "<html " + powerPoint + " " + word + ">",              wordHtml},
    {"WordInApostrophes",             "<html xmlns:w='urn:schemas-microsoft-com:office:word'>", html8},
    {"WordWithoutItsQuote",           "<html " + word.substr(0, word.size() - 1) + ">",      html8},
    {"WordWithMoreInIt",              "<html xmlns:w=\"urn:schemas-microsoft-com:office:word2\">", html8},
    {"WordWithABlank",                "<html xmlns:w =\"urn:schemas-microsoft-com:office:word\">", html8},
    {"WordWithAnotherPrefix",         "<html xmlns:x=\"urn:schemas-microsoft-com:office:word\">", html8},
    {"WordInTheHead",                 "<head " + word + "><html>",                           html8},
    {"WordInHtmlplus",                "<htmlplus " + word + ">",                             0},
    {"WordTagEndsAt255",              EndingAt(255, "<html " + word + ">"),                  wordHtml},
    {"WordTagEndsAt256",              EndingAt(256, "<html " + word + ">"),                  html8},
    {"WordTagOf254Characters",        "<html " + Blanks(254 - 5 - word.size()) + word + ">", wordHtml},
    {"WordTagOf255Characters",        "<html " + Blanks(255 - 5 - word.size()) + word + ">", html8},
    {"WordTagNotClosed",              "<html " + word,                                       html8},
    {"WordLowFirst",                  Low("<html " + word + ">"),                            wordHtml},
    {"WordHighFirst",                 High("<html " + word + ">"),                           wordHtml},
    {"ExcelLowFirst",                 Low("<html " + excel + ">"),                           excelHtml},
    {"PowerPointHighFirst",           High("<html " + powerPoint + ">"),                     powerPointHtml},
    {"NoneLowFirst",                  Low("<html " + std::string(60, 'x') + ">"),            html16},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Office, HtmlTags, testing::ValuesIn(officeCases), FICaseName);

const MarkupCase markCases[] = {
    // clang-format off
    {"Mark8",                         mark8 + "<html>",                                      html8},
    {"OtherMark8",                    otherMark8 + "<html>",                                 html8},
    {"BothMarks8",                    mark8 + otherMark8 + mark8 + "<html>",                 html8},
    {"Mark8AndWhiteSpace",            mark8 + "\r\n<html>",                                  html8},
    {"Mark8BehindWhiteSpace",         "\n" + mark8 + "<html>",                               0},
    {"HalfAMark8",                    "\xEF\xBB<html>",                                      0},
    {"WrongMark8",                    "\xEF\xBB\xBE<html>",                                  0},
    {"Mark8ThenAWrongOne",            mark8 + "\xEF\xBF\xBF<html>",                          0},
    {"Marks8To240",                   FIRepeat(mark8, 80) + "<html>",                           html8},
    {"Marks8To249",                   FIRepeat(mark8, 83) + "<html>",                           html8},
    {"Marks8To252",                   FIRepeat(mark8, 84) + "<pre>",                            0},
    {"Marks8To255",                   FIRepeat(mark8, 85) + "<html>",                           0},
    {"Marks8To258",                   FIRepeat(mark8, 86) + "<html>",                           0},
    {"OnlyMark8",                     mark8,                                                 0},
    {"Mark8AndMarkLow",               mark8 + Low("<html>"),                                 html16},
    {"LowFirst",                      Low("<html>"),                                         html16},
    {"LowFirstUpperCase",             Low("<HTML>"),                                         html16},
    {"LowFirstHead",                  Low("<head>"),                                         html16},
    {"LowFirstPre",                   Low(" \r\n\t<pre>"),                                   html16},
    {"LowFirstDoctype",               Low("<!DOCTYPE html PUBLIC>"),                         html16},
    {"LowFirstHtmlBlank",             Low("<html lang=en>"),                                 html16},
    {"LowFirstNotClosed",             Low("<html lang=en"),                                  html16},
    {"LowFirstText",                  Low("text<html>"),                                     0},
    {"LowFirstDropsTheHighBytes",     markLow + "<\5h\7t\7m\7l\7>\7"s,                       html16},
    {"LowFirstUnmarked",              FILowFirst("<html>"),                                  0},
    {"LowFirstMarkBehindWhiteSpace",  " \n" + Low("<html>"),                                 html16},
    {"LowFirstMarkBehindATag",        "<p>" + Low("<html>"),                                 html16},
    {"LowFirstMarkTwice",             markLow + Low("<html>"),                               0},
    {"HighFirst",                     High("<html>"),                                        html16},
    {"HighFirstUpperCase",            High("<HTML>"),                                        html16},
    {"HighFirstBody",                 High("<body>"),                                        html16},
    {"HighFirstHtmlplus",             High(" \r\n\t<htmlplus>"),                             html16},
    {"HighFirstDoctype",              High("<!DOCTYPE html PUBLIC>"),                        html16},
    {"HighFirstNotClosed",            High("<html lang=en"),                                 html16},
    {"HighFirstText",                 High("text<html>"),                                    0},
    {"HighFirstDropsTheHighBytes",    markHigh + "\5<\7h\7t\7m\7l\7>"s,                      html16},
    {"HighFirstUnmarked",             FIHighFirst("<html>"),                                 0},
    {"HighFirstMarkBehindWhiteSpace", "\t" + High("<html>"),                                 html16},
    {"HighFirstMarkBehindATag",       "<p>" + High("<html>"),                                html16},
    {"HighFirstMarkTwice",            markHigh + High("<html>"),                             0},
    {"HighFirstThenLowFirst",         markHigh + "\0"s + Low("<html>"),                      html16},
    {"HalfAMarkLow",                  "\xFF<html>",                                          0},
    {"HalfAMarkHigh",                 "\xFE<html>",                                          0},
    {"OnlyMarkLow",                   markLow,                                               0},
    {"OnlyMarkHigh",                  markHigh,                                              0},
    {"OnlyHalfAMarkLow",              "\xFF",                                                0},
    {"OnlyHalfAMarkHigh",             "\xFE",                                                0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Marks, HtmlTags, testing::ValuesIn(markCases), FICaseName);

// 256 bytes are read. A tag that is closed by the 256th byte is judged; an html tag with a blank need not be closed.
const MarkupCase limitCases[] = {
    // clang-format off
    {"HtmlEndsAt254",                 EndingAt(254, "<html>"),                               html8},
    {"HtmlEndsAt255",                 EndingAt(255, "<html>"),                               html8},
    {"HtmlEndsAt256",                 EndingAt(256, "<html>"),                               0},
    {"HtmlBlankEndsAt256",            EndingAt(256, "<html >"),                              html8},
    {"HtmlBlankEndsAt257",            EndingAt(257, "<html x>"),                             html8},
    {"HtmlBlankAt255",                EndingAt(255, "<html ") + "lang=en>",                  html8},
    {"HtmlBlankAt256",                EndingAt(256, "<html ") + "lang=en>",                  0},
    {"PreEndsAt255",                  EndingAt(255, "<pre>"),                                html8},
    {"PreEndsAt256",                  EndingAt(256, "<pre>"),                                0},
    {"DoctypeEndsAt255",              EndingAt(255, "<!doctype html x>"),                    html8},
    {"DoctypeEndsAt256",              EndingAt(256, "<!doctype html x>"),                    0},
    {"OtherTagEndsAt249",             EndingAt(249, "<p>") + "<html>",                       html8},
    {"OtherTagEndsAt250",             EndingAt(250, "<p>") + "<html>",                       0},
    {"OtherTagEndsAt255",             EndingAt(255, "<p>") + "<html>",                       0},
    {"OtherTagIsLong",                "<p " + std::string(300, 'x') + "><html>",             0},
    {"LessThanAt255",                 Blanks(255) + "<html>",                                0},
    {"BlanksUpToTheLimit",            Blanks(256) + "<html>",                                0},
    {"LowFirstEndsAt255",             Low(EndingAt(126, "<html>")),                          html16},
    {"LowFirstEndsAt257",             Low(EndingAt(127, "<html>")),                          0},
    {"LowFirstBlankEndsAt257",        Low(EndingAt(127, "<html >")),                         html16},
    {"HighFirstEndsAt255",            High(EndingAt(126, "<html>")),                         html16},
    {"HighFirstEndsAt257",            High(EndingAt(127, "<html>")),                         0},
    {"LowFirstAtAnOddOffsetEndsAt256", " " + Low(EndingAt(126, "<html>")),                   html16},
    {"LowFirstAtAnOddOffsetEndsAt258", " " + Low(EndingAt(127, "<html>")),                   0},
    {"Mark8EndsAt255",                mark8 + EndingAt(252, "<html>"),                       html8},
    {"Mark8EndsAt256",                mark8 + EndingAt(253, "<html>"),                       0},
    {"WordLowFirstEndsAt255",         Low(EndingAt(126, "<html " + word + ">")),             wordHtml},
    {"WordLowFirstEndsAt257",         Low(EndingAt(127, "<html " + word + ">")),             html16},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Limits, HtmlTags, testing::ValuesIn(limitCases), FICaseName);

TEST(HtmlTagsFailure, FailingSeekIsNoAnswer) {
    const auto handle = FIMakeTestHandle("<html>");
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIScanHtmlTags, *handle), 0);
    EXPECT_EQ(handle->reads, 0U);
}

// With one byte per read a seek that leaves the byte read last moves the handle.
TEST(HtmlTagsFailure, AnyFailingSeekIsNoAnswer) {
    for (const std::string& bytes : {"<html>"s, mark8 + "<html>"}) {
        for (std::uint32_t failing = 0; failing < 6; ++failing) {
            const auto handle = FIMakeTestHandle(bytes);
            handle->bytesPerRead = 1;
            handle->failSeeksFrom = failing;
            const FIID answer = FIAnswerOver(FIScanHtmlTags, *handle);
            EXPECT_EQ(answer, handle->seeks > failing ? FIID{0} : html8) << failing;
        }
    }
}

TEST(HtmlTagsFailure, UnreadableFile) {
    const auto handle = FIMakeTestHandle("<html>");
    handle->failReadsFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIScanHtmlTags, *handle), 0);
}

TEST(HtmlTagsTruncated, EveryLength) {
    const std::string bytes = "\n<p><html lang=en><head>";
    const std::size_t blank = bytes.find(' ') + 1;
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const auto handle = FIMakeTestHandle(bytes.substr(0, size));
        EXPECT_EQ(FIAnswerOver(FIScanHtmlTags, *handle), size < blank ? FIID{0} : html8) << size << " bytes";
    }
}

// What is buffered of a tag is taken at once; a read of one byte buffers nothing.
TEST(HtmlTagsBuffer, IsTakenAsByteByByte) {
    const std::string pieces[] = {"<",
                                  ">",
                                  "HTML",
                                  "<body",
                                  "html ",
                                  "<!DOCTYPE html ",
                                  " ",
                                  "\r\n",
                                  "\xFF\xFE",
                                  "\xFE\xFF",
                                  "x",
                                  "<!--",
                                  "-->",
                                  std::string(1, '\0'),
                                  std::string(30, 'a'),
                                  std::string(100, ' '),
                                  "xmlns:w=\"urn:schemas-microsoft-com:office:word\""};
    std::mt19937 engine(12);
    for (std::uint32_t round = 0; round < 3000; ++round) {
        std::string bytes = engine() % 3 == 0 ? "" : "<";
        while (bytes.size() < 4 + engine() % 300) bytes += pieces[engine() % std::size(pieces)];
        static_cast<void>(FIAnswerOf(FIScanHtmlTags, bytes));
    }
}

TEST(HtmlTagsStart, RewindsTheReader) {
    EXPECT_EQ(FIAnswerOver(FIScanHtmlTags, *FIMakeTestHandle("<html>text"), 6), html8);
}

// ---- FIProbeMarkup ------------------------------------------------------------------------------------------------

class ProbeMarkup : public testing::TestWithParam<MarkupCase> {};

TEST_P(ProbeMarkup, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeMarkup, GetParam().bytes), GetParam().answer); }

// The first row that matches is 111 when there is an answer. Without one the file is text to the rows behind.
TEST_P(ProbeMarkup, AnswersThroughTheWholeSystem) {
    constexpr std::uint16_t markupRow = 111_row;
    std::uint16_t row = 0;
    const FIID answer = FIIdentifyBytes(GetParam().bytes, "a.txt", FIFlagExtendedText, &row);
    if (GetParam().answer != 0) {
        EXPECT_EQ(answer, GetParam().answer);
        EXPECT_EQ(row, markupRow);
    } else {
        EXPECT_NE(row, markupRow);
    }
}

const std::string declaration = "<?xml version=\"1.0\"?>";

const MarkupCase verdictCases[] = {
    // clang-format off
    // Neither a declaration nor a DOCTYPE that the prolog scanner knows: the tags decide.
    {"EmptyFile",                     "",                                                    0},
    {"Html",                          "<html>",                                              html8},
    {"HtmlUpperCase",                 " \r\n<HTML>",                                         html8},
    {"HtmlLowFirst",                  Low("<html>"),                                         html16},
    {"HtmlHighFirst",                 High("<html>"),                                        html16},
    {"HtmlMark8",                     mark8 + "<html>",                                      html8},
    {"HtmlShortAttribute",            "<html lang=\"en\">",                                  html8},
    {"Word",                          "<html " + word + ">",                                 wordHtml},
    {"WordUpperCase",                 "<HTML XMLNS:W=\"URN:SCHEMAS-MICROSOFT-COM:OFFICE:WORD\">", wordHtml},
    {"WordInApostrophes",             "<html xmlns:w='urn:schemas-microsoft-com:office:word'>", html8},
    {"WordAndExcel",                  "<html " + excel + "\n" + word + ">",                  wordHtml},
    {"Excel",                         "<html " + excel + ">",                                excelHtml},
    {"PowerPoint",                    "<html " + powerPoint + ">",                           powerPointHtml},
    {"WordTagNotClosed",              "<html " + word + std::string(300, ' '),               html8},
    {"OtherTag",                      "<p>",                                                 0},
    {"TextBetweenTags",               "<p>word<html>",                                       0},
    {"TitleWithText",                 "<title>x</title><html>",                              0},
    {"DoctypeLowerCase",              "<!doctype html public \"x\">",                        html8},
    {"DoctypeLowerCaseThenHtml",      "<!doctype html><html>",                               html8},
    {"DoctypeLowerCaseAlone",         "<!doctype html>",                                     0},
    {"DoctypeSvg",                    "<!DOCTYPE svg><svg>",                                 0},
    {"InstructionThenHtml",           "<?xmlfoo?><html>",                                    html8},
    // A declaration: XML unless the tags say HTML.
    {"DeclaredElement",               declaration + "<a>text</a>",                           xmlText},
    {"DeclaredAlone",                 declaration,                                           xmlText},
    {"DeclaredHtml",                  declaration + "<html>",                                html8},
    {"DeclaredHtmlWithAttributes",    declaration + "\n<html xmlns=\"http://www.w3.org/1999/xhtml\">", html8},
    {"DeclaredHead",                  declaration + "<head>",                                html8},
    {"DeclaredWord",                  declaration + "<html " + word + ">",                   wordHtml},
    {"DeclaredExcel",                 declaration + "<html " + excel + ">",                  excelHtml},
    {"DeclaredPowerPoint",            declaration + "<html " + powerPoint + ">",             powerPointHtml},
    {"DeclaredTagsThenHtml",          declaration + "<a><b><html>",                          html8},
    {"DeclaredTextThenHtml",          declaration + "<a>text<html>",                         xmlText},
    {"DeclaredHtmlTooLate",           declaration + Blanks(230) + "<html>",                  xmlText},
    {"DeclaredMark8",                 mark8 + declaration + "<a>",                           xmlText},
    {"DeclaredMark8Html",             mark8 + declaration + "<html>",                        html8},
    {"DeclaredLowFirst",              Low(declaration + "<a>"),                              xmlText},
    {"DeclaredLowFirstHtml",          Low(declaration + "<html>"),                           html16},
    {"DeclaredLowFirstWord",          Low(declaration + "<html " + word + ">"),              wordHtml},
    {"DeclaredHighFirst",             High(declaration + "<a>"),                             xmlText},
    {"DeclaredHighFirstHtml",         High(declaration + "<html>"),                          html16},
    {"DeclaredLowFirstUnmarked",      FILowFirst(declaration + "<html>"),                    xmlText},
    {"DeclaredHighFirstUnmarked",     FIHighFirst(declaration + "<html>"),                   xmlText},
    {"DeclaredDoctypeSvg",            declaration + "<!DOCTYPE svg><svg>",                   xmlText},
    {"DeclaredDoctypeLowerCase",      declaration + "<!doctype html >",                      html8},
    // A DOCTYPE of html: the tags decide alone.
    {"DoctypeHtmlPublic",             "<!DOCTYPE html PUBLIC \"x\">",                        html8},
    {"DoctypeHtmlThenHtml",           "<!DOCTYPE html><html>",                               html8},
    {"DoctypeHtmlThenTitle",          "<!DOCTYPE html><title>x</title>",                     0},
    {"DoctypeHtmlAlone",              "<!DOCTYPE html>",                                     0},
    {"DoctypeHtmlDeclared",           declaration + "<!DOCTYPE html PUBLIC \"x\"><html>",    html8},
    {"DoctypeHtmlDeclaredThenTitle",  declaration + "<!DOCTYPE html><title>x</title>",       0},
    {"DoctypeHtmlThenWord",           "<!DOCTYPE html><html " + word + ">",                  wordHtml},
    {"DoctypeHtmlLowFirst",           Low("<!DOCTYPE html><html>"),                          html16},
    {"DoctypeHtmlBehindAComment",     "<!--x-->\n<!DOCTYPE html>\n<html>",                   html8},
    {"DoctypeHtmlBehindALongComment", "<!--" + std::string(200, 'x') + "-->" + Blanks(100) + "<!DOCTYPE html><html>", 0},
    // A DOCTYPE of WML wins over the tags.
    {"DoctypeWml",                    "<!DOCTYPE wml PUBLIC \"x\"><wml>",                    wmlText},
    {"DoctypeWmlThenHtml",            "<!DOCTYPE wml><html>",                                wmlText},
    {"DoctypeWmlDeclared",            declaration + "<!DOCTYPE wml PUBLIC \"x\">",           wmlText},
    {"DoctypeWmlLowFirst",            Low("<!DOCTYPE wml><html>"),                           wmlText},
    // The high byte first: no DOCTYPE is read, the tags decide.
    {"DoctypeHtmlHighFirstDeclared",  High(declaration + "<!DOCTYPE html PUBLIC>"),          html16},
    {"DoctypeHtmlHighFirst",          High("<!DOCTYPE html><html>"),                         html16},
    {"DoctypeWmlHighFirstDeclared",   High(declaration + "<!DOCTYPE wml><html>"),            html16},
    {"DoctypeOtherHighFirstDeclared", High(declaration + "<!DOCTYPE svg><svg>"),             0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Verdict, ProbeMarkup, testing::ValuesIn(verdictCases), FICaseName);

// What is left to the characters when no tag decides.
TEST(IdentifyMarkup, TextWithoutADecidingTag) {
    for (const char* bytes :
         {"<p>word<html>", "<title>x</title><html>", "<!DOCTYPE html><title>x</title>", "<!doctype html>"}) {
        std::uint16_t row = 1;
        EXPECT_EQ(FIIdentifyBytes(bytes, "a.txt", FIFlagExtendedText, &row), 4022) << bytes;
        EXPECT_EQ(row, 0) << bytes;
    }
}

TEST(ProbeMarkupFailure, UnreadableFileIsNoAnswer) {
    const auto handle = FIMakeTestHandle(declaration + "<html>");
    handle->failReadsFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeMarkup, *handle), 0);
    const auto noSeek = FIMakeTestHandle(declaration + "<html>");
    noSeek->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeMarkup, *noSeek), 0);
}

TEST(ProbeMarkupStart, RewindsTheReaderForBothScanners) {
    EXPECT_EQ(FIAnswerOver(FIProbeMarkup, *FIMakeTestHandle(declaration + "<html>"), 7), html8);
    EXPECT_EQ(FIAnswerOver(FIProbeMarkup, *FIMakeTestHandle(declaration + "<a>"), 5000), xmlText);
}

}  // namespace
