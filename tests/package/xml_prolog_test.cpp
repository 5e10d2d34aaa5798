// The prolog of an XML text: encodings, the declaration, comments, instructions, the DOCTYPE and the limit of 512
// bytes.
#include "package/xml_prolog.h"

#include <string>
#include <string_view>

#include "support/case_name.h"
#include "support/probe_case.h"
#include "support/utf16_text.h"

namespace {

using ::PrintTo;

using namespace std::string_literals;

constexpr FIID xmlText = 1150;
constexpr FIID wmlText = 1151;
constexpr FIID htmlText = 1182;

struct PrologCase {
    const char* name;
    std::string bytes;
    FIID answer;
};

class XmlProlog : public testing::TestWithParam<PrologCase> {};

TEST_P(XmlProlog, Answers) { EXPECT_EQ(FIAnswerOf(FIScanXmlProlog, GetParam().bytes), GetParam().answer); }

const std::string declaration = "<?xml version=\"1.0\"?>";
const std::string document = declaration + "<a>";
const std::string doctype = "<!DOCTYPE html>";

// The first four bytes decide the encoding. Behind those that are refused stands what would be an answer.
const PrologCase encodingCases[] = {
    // clang-format off
    {"Declared8Bit",                  document,                                              xmlText},
    {"Marked8Bit",                    mark8 + document,                                      xmlText},
    {"Marked8BitBlankInFront",        mark8 + " " + document,                                xmlText},
    {"Marked8BitWithoutDeclaration",  mark8 + doctype,                                       htmlText},
    {"MarkedLowFirst",                markLow + FILowFirst(document),                        xmlText},
    {"MarkedLowFirstBlankInFront",    markLow + FILowFirst(" \r\n\t" + document),            xmlText},
    {"MarkedLowFirstDoctype",         markLow + FILowFirst(doctype),                         htmlText},
    {"MarkedHighFirst",               markHigh + FIHighFirst(document),                      xmlText},
    {"MarkedHighFirstBlankInFront",   markHigh + FIHighFirst(" \r\n\t" + document),          xmlText},
    {"UnmarkedLowFirst",              FILowFirst(document),                                  xmlText},
    {"UnmarkedLowFirstDoctypeBehind", FILowFirst(declaration + doctype),                     htmlText},
    {"UnmarkedHighFirst",             FIHighFirst(document),                                 xmlText},
    {"Undeclared",                    doctype,                                               htmlText},
    {"BlankInFront",                  " " + document,                                        0},
    {"BlankInFrontDoctype",           " " + doctype,                                         htmlText},
    {"OneMarkByte",                   "\xEF" + document,                                     0},
    {"TwoMarkBytes",                  "\xEF\xBB" + document,                                 0},
    {"OtherMark",                     "\xEF\xBF\xBE" + document,                             0},
    {"MarkTwice",                     mark8 + mark8 + document,                              0},
    {"FourByteHighFirst",             "\0\0\0<"s + FIHighFirst(document),                    0},
    {"FourByteOrder2143",             "\0\0<\0"s + FIHighFirst(document),                    0},
    {"FourByteOrder3412",             "\0<\0\0"s + FIHighFirst(document),                    0},
    {"FourByteLowFirst",              "<\0\0\0"s + FILowFirst(document),                     0},
    {"TwoNulsAnythingElse",           "\0\0ab"s + document,                                  0},
    {"NulAnythingElse",               "\0a"s + document,                                     0},
    {"NulBeforeADeclaration",         "\0"s + document,                                      0},
    {"UnmarkedHighFirstDoctype",      FIHighFirst(doctype),                                  0},
    {"UnmarkedLowFirstDoctype",       FILowFirst(doctype),                                   0},
    {"UnmarkedLowFirstElement",       FILowFirst("<a>"),                                     0},
    {"UnmarkedLowFirstBlankInFront",  FILowFirst(" " + document),                            0},
    {"UnmarkedHighFirstComment",      FIHighFirst("<!--x-->" + document),                    0},
    {"UnmarkedLowFirstComment",       FILowFirst("<!--x-->" + document),                     0},
    {"UnmarkedLowFirstCommentDoctype", FILowFirst("<!--x-->" + doctype),                     0},
    {"WrongThirdMarkByte",            "\xEF\xBB\xBE" + document,                             0},
    {"WrongSecondMarkByte",           "\xEF\xBE\xBF" + document,                             0},
    {"WrongFirstMarkByte",            "\xEE\xBB\xBF" + document,                             0},
    {"WrongSecondMarkByteLowFirst",   "\xFF\xFF" + FILowFirst(document),                     0},
    {"WrongFirstMarkByteLowFirst",    "\xFE\xFE" + FILowFirst(document),                     0},
    {"WrongSecondMarkByteHighFirst",  "\xFE\xFE" + FIHighFirst(document),                    0},
    {"WrongFirstMarkByteHighFirst",   "\xFD\xFF" + FIHighFirst(document),                    0},
    {"FourByteMarkLowFirst",          markLow + "\0\0"s + "<\0\0\0?\0\0\0"s,                 0},
    {"UpperCaseXm",                   "<?XM?>" + doctype,                                    htmlText},
    {"AnotherTargetIsNoDeclaration",  "<?p?>" + document,                                    0},
    {"AnotherTargetXIsNoDeclaration", "<?xq?>" + document,                                   0},
    {"AnotherTargetPmIsNoDeclaration", "<?pm?>" + document,                                  0},
    {"XmOfAnotherTarget",             "<?xmq?>" + document,                                  xmlText},
    {"EmptyFile",                     "",                                                    0},
    {"OneByte",                       "<",                                                   0},
    {"OneNulByte",                    "\0"s,                                                 0},
    {"OnlyTheMark8Bit",               mark8,                                                 0},
    {"OnlyTheMarkLowFirst",           markLow,                                               0},
    {"OnlyTheMarkHighFirst",          markHigh,                                              0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Encoding, XmlProlog, testing::ValuesIn(encodingCases), FICaseName);

const PrologCase markupCases[] = {
    // clang-format off
    // White space and what ends the walk.
    {"WhiteSpaceBehindTheDeclaration",      declaration + " \r\n\t" + doctype,               htmlText},
    {"TextBehindTheDeclaration",            declaration + "x" + doctype,                     xmlText},
    {"NothingBehindTheDeclaration",         declaration,                                     xmlText},
    {"FormFeedIsNoWhiteSpace",              declaration + "\f" + doctype,                    xmlText},
    {"VerticalTabIsNoWhiteSpace",           declaration + "\v" + doctype,                    xmlText},
    {"NoBreakSpaceIsNoWhiteSpace",          declaration + "\xA0" + doctype,                  xmlText},
    {"HighByteOfALessThan",                 markLow + FILowFirst(declaration) + "<\1"s + FILowFirst(doctype.substr(1)), xmlText},
    {"HighByteOfABlank",                    markLow + FILowFirst(declaration) + " \1"s + FILowFirst(doctype), xmlText},
    {"ElementBehindTheDeclaration",         declaration + "<a>" + doctype,                   xmlText},
    {"ElementAtOnce",                       "<a>" + doctype,                                 0},
    {"TextAtOnce",                          "text" + doctype,                                0},
    {"ClosingTagAtOnce",                    "</a>" + doctype,                                0},
    // The declaration.
    {"DeclarationAlone",                    "<?xml ver",                                     xmlText},
    {"DeclarationOneByteShort",             "<?xml ve",                                      0},
    {"DeclarationWithoutItsEnd",            "<?xml version=\"1.0\"",                         xmlText},
    {"DeclarationWithATab",                 "<?xml\tversion=\"1.0\"?><a>",                   0},
    {"DeclarationWithTwoBlanks",            "<?xml  version=\"1.0\"?><a>",                   0},
    {"DeclarationWithEncodingFirst",        "<?xml encoding=\"x\" version=\"1.0\"?><a>",     0},
    {"DeclarationUpperCaseVersion",         "<?xml Version=\"1.0\"?><a>",                    0},
    {"DeclarationUpperCase",                "<?XML version=\"1.0\"?><a>",                    0},
    {"DeclarationOfAnotherTarget",          "<?xmlfoo?><a>",                                 0},
    {"DeclarationOfAnotherTargetDoctype",   "<?xmlfoo?>" + doctype,                          htmlText},
    {"DeclarationEndsAtItsFirstGreaterThan", "<?xml version=\"1.0>\"?>" + doctype,           xmlText},
    {"DeclarationEndsWithoutAQuestionMark", "<?xml version=\"1.0\">" + doctype,              htmlText},
    {"DeclarationTwice",                    declaration + document,                          xmlText},
    {"DeclarationBehindAnInstruction",      "<?xmlfoo?>" + document,                         xmlText},
    {"DeclarationBehindAComment",           "<!--x-->" + declaration + doctype,              0},
    {"DeclarationBehindAMarkAndAComment",   mark8 + "<!--x-->" + document,                   xmlText},
    // Comments and instructions.
    {"Comment",                             declaration + "<!--x-->" + doctype,              htmlText},
    {"CommentAlone",                        "<!--x-->" + doctype,                            htmlText},
    {"CommentEmpty",                        "<!---->" + doctype,                             htmlText},
    {"CommentTooShort",                     "<!-->" + doctype,                               0},
    {"CommentTooShortByOne",                "<!--->" + doctype,                              0},
    {"CommentOfTags",                       "<!-- <a> <?b?> -- > -> -->" + doctype,          htmlText},
    {"CommentWithThreeDashes",              "<!--x--->" + doctype,                           htmlText},
    {"CommentWithoutItsEnd",                declaration + "<!--x" + doctype,                 xmlText},
    {"CommentWithoutItsEndAlone",           "<!--x" + doctype,                               0},
    {"CommentWithOneDash",                  "<!-x-->" + doctype,                             0},
    {"TwoComments",                         "<!--x--><!--y-->" + doctype,                    htmlText},
    {"TextBehindAComment",                  "<!--x-->y" + doctype,                           0},
    {"CommentLowFirst",                     markLow + FILowFirst("<!--x-->" + doctype),      htmlText},
    {"CommentHighFirst",                    markHigh + FIHighFirst("<!--x-->" + document),   xmlText},
    {"CommentEndWithAHighByte",             markLow + FILowFirst("<!--x--") + ">\1"s + FILowFirst(doctype), 0},
    {"CommentEndBetweenCharactersLowFirst", markLow + FILowFirst("<!--") + "\0x\0-\0-x>"s + FILowFirst(doctype), 0},
    {"CommentEndBetweenCharactersHighFirst", markHigh + FIHighFirst("<!--") + "x\0-\0-\0>x"s + FIHighFirst(document), 0},
    {"Instruction",                         declaration + "<?php x?>" + doctype,             htmlText},
    {"InstructionAlone",                    "<?php x?>" + doctype,                           htmlText},
    {"InstructionEmpty",                    "<?\?>" + doctype,                                htmlText},
    {"InstructionTooShort",                 "<?>" + doctype,                                 0},
    {"InstructionOfTags",                   "<?p <a> <!-- ? > -->?>" + doctype,              htmlText},
    {"InstructionEndsInTwoQuestionMarks",   "<?p?\?>" + doctype,                              htmlText},
    {"InstructionWithoutItsEnd",            "<?p>" + doctype,                                0},
    {"InstructionLowFirst",                 markLow + FILowFirst("<?p?>" + doctype),         htmlText},
    {"ElementWithTheEndOfAnInstruction",    "<a?>" + doctype,                                0},
    {"ElementWithTheEndOfAnInstructionDeclared", declaration + "<a?>" + doctype,             xmlText},
    {"InstructionWithAHighByte",            FILowFirst(declaration + "<") + "?\1"s + FILowFirst("?>" + doctype), xmlText},
    {"InstructionHighFirst",                markHigh + FIHighFirst("<?p?>" + document),      xmlText},
    // The DOCTYPE.
    {"DoctypeHtml",                         "<!DOCTYPE html>",                               htmlText},
    {"DoctypeHtmlPublic",                   "<!DOCTYPE HTML PUBLIC \"x\">",                  htmlText},
    {"DoctypeHtmlDeclared",                 declaration + "<!DOCTYPE html PUBLIC \"x\">",    htmlText},
    {"DoctypeWml",                          "<!DOCTYPE wml PUBLIC \"x\">",                   wmlText},
    {"DoctypeWmlDeclared",                  declaration + "<!DOCTYPE wml PUBLIC \"x\">",     wmlText},
    {"DoctypeWmlUpperCase",                 "<!DOCTYPE WML>",                                wmlText},
    {"DoctypeWmlAsAPrefix",                 "<!DOCTYPE wmlx >",                              wmlText},
    {"DoctypeHtmlAsAPrefix",                "<!DOCTYPE html5>",                              htmlText},
    {"DoctypeHtmlMixedCase",                "<!DOCTYPE hTmL>",                               htmlText},
    {"DoctypeShorterThanHtml",              "<!DOCTYPE htm>",                                0},
    {"DoctypeShorterThanWml",               "<!DOCTYPE wm>",                                 0},
    {"DoctypeOfAnotherName",                "<!DOCTYPE svg>",                                0},
    {"DoctypeOfAnotherNameDeclared",        declaration + "<!DOCTYPE svg>",                  xmlText},
    {"DoctypeXhtml",                        "<!DOCTYPE xhtml>",                              0},
    {"DoctypeLowerCase",                    "<!doctype html>",                               0},
    {"DoctypeLowerCaseDeclared",            declaration + "<!doctype html>",                 xmlText},
    {"DoctypeMixedCase",                    "<!DOCTYPe html>",                               0},
    {"DoctypeTwoBlanks",                    "<!DOCTYPE  html>",                              0},
    {"DoctypeTwoBlanksDeclared",            declaration + "<!DOCTYPE  html>",                xmlText},
    {"DoctypeWithoutABlank",                "<!DOCTYPEhtml>",                                0},
    {"DoctypeWithoutABlankDeclared",        declaration + "<!DOCTYPEhtml>",                  0},
    {"DoctypeClosedAtOnceDeclared",         declaration + "<!DOCTYPE>",                      0},
    {"DoctypeWithABracketDeclared",         declaration + "<!DOCTYPE[",                      0},
    {"DoctypeAndTheEndDeclared",            declaration + "<!DOCTYPE",                       0},
    {"DoctypeBlankAndTheEndDeclared",       declaration + "<!DOCTYPE ",                      xmlText},
    {"DoctypeWithoutAName",                 declaration + "<!DOCTYPE >",                     xmlText},
    {"DoctypeBehindALineFeed",              "<!DOCTYPE\nhtml>",                              htmlText},
    {"DoctypeBehindACarriageReturn",        "<!DOCTYPE\rhtml>",                              htmlText},
    {"DoctypeBehindATab",                   "<!DOCTYPE\thtml>",                              htmlText},
    {"DoctypeBehindAFormFeed",              "<!DOCTYPE\fhtml>",                              0},
    {"DoctypeBehindCrLf",                   declaration + "<!DOCTYPE\r\nhtml>",              xmlText},
    {"NameEndsAtABlank",                    "<!DOCTYPE html x",                              htmlText},
    {"NameEndsAtALineFeed",                 "<!DOCTYPE html\nx",                             htmlText},
    {"NameEndsAtACarriageReturn",           "<!DOCTYPE html\rx",                             htmlText},
    {"NameEndsAtATab",                      "<!DOCTYPE html\tx",                             htmlText},
    {"NameEndsAtABracket",                  "<!DOCTYPE html[x",                              htmlText},
    {"NameEndsAtAGreaterThan",              "<!DOCTYPE html>x",                              htmlText},
    {"NameDoesNotEndAtALessThan",           "<!DOCTYPE html<x",                              0},
    {"NameDoesNotEndAtANul",                "<!DOCTYPE html\0x"s,                            0},
    {"NameDoesNotEndWithTheFile",           "<!DOCTYPE html",                                0},
    {"NameDoesNotEndWithTheFileDeclared",   declaration + "<!DOCTYPE html",                  xmlText},
    {"NameDoesNotEndWithTheFileWml",        "<!DOCTYPE wml",                                 0},
    {"NameGoesOnBehindALessThan",           "<!DOCTYPE html<x>",                             htmlText},
    {"DoctypeLowFirstWml",                  markLow + FILowFirst("<!DOCTYPE WML>"),            wmlText},
    {"DoctypeLowFirstDeclared",             FILowFirst(declaration + "<!DOCTYPE html\n"),    htmlText},
    {"DoctypeLowFirstWithoutABlank",        FILowFirst(declaration + "<!DOCTYPEhtml>"),      0},
    {"DoctypeHighFirst",                    markHigh + FIHighFirst(doctype),                 0},
    {"DoctypeHighFirstDeclared",            markHigh + FIHighFirst(declaration + doctype),   0},
    {"DoctypeHighFirstDeclaredUnmarked",    FIHighFirst(declaration + doctype),              0},
    {"DoctypeHighFirstDeclaredWml",         FIHighFirst(declaration + "<!DOCTYPE wml>"),     0},
    {"DoctypeHighFirstDeclaredOther",       FIHighFirst(declaration + "<!DOCTYPE svg>"),     0},
    {"ElementDeclaration",                  declaration + "<!ELEMENT a>" + doctype,          xmlText},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Markup, XmlProlog, testing::ValuesIn(markupCases), FICaseName);

// ---- Closing tokens at every place of a span ----------------------------------------------------------------------

// Ten characters are looked at together: the token may lie anywhere in them and across two of them, and what looks like
// its start in front of it must not hide it.
TEST(XmlPrologSpans, ACommentOfEveryLength) {
    for (const std::string& fill : {"x"s, "-x"s, "x-"s, "- -"s, "--x"s, ">"s, "->"s, "- "s}) {
        for (std::size_t size = 0; size <= 60; ++size) {
            std::string comment = "<!--";
            while (comment.size() < size + 4) comment += fill;
            comment = comment.substr(0, size + 4);
            comment += comment.back() == '-' && size > 0 ? "x-->" : "-->";
            EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(comment + doctype)), htmlText) << comment;
            EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(markLow + FILowFirst(comment + doctype))),
                      htmlText)
                << comment;
            EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(markHigh + FIHighFirst(comment + document))),
                      xmlText)
                << comment;
        }
    }
}

TEST(XmlPrologSpans, DashesOfEveryNumber) {
    for (std::size_t size = 4; size <= 60; ++size) {
        const std::string comment = "<!" + std::string(size, '-') + ">";
        EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(comment + doctype)), htmlText) << size;
        EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(markLow + FILowFirst(comment + doctype))), htmlText)
            << size;
        EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(markHigh + FIHighFirst(comment + document))), xmlText)
            << size;
    }
}

TEST(XmlPrologSpans, AnInstructionOfEveryLength) {
    for (const std::string& fill : {"x"s, "?x"s, "x?"s, "? "s, "??x"s}) {
        for (std::size_t size = 0; size <= 60; ++size) {
            std::string instruction = "<?p";
            while (instruction.size() < size + 3) instruction += fill;
            instruction = instruction.substr(0, size + 3) + "?>";
            EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(instruction + doctype)), htmlText) << instruction;
            EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(markLow + FILowFirst(instruction + doctype))),
                      htmlText)
                << instruction;
            EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(markHigh + FIHighFirst(instruction + document))),
                      xmlText)
                << instruction;
        }
    }
}

TEST(XmlPrologSpans, ADeclarationOfEveryLength) {
    for (std::size_t size = 0; size <= 60; ++size) {
        const std::string prolog = "<?xml ver" + std::string(size, 'x') + ">" + doctype;
        EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(prolog)), htmlText) << size;
        EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(FILowFirst(prolog))), htmlText) << size;
    }
}

// ---- The limit of 512 bytes ---------------------------------------------------------------------------------------

// A DOCTYPE behind blanks, its ">" at the file offset.
std::string DoctypeEndingAt(std::size_t offset) { return std::string(offset + 1 - doctype.size(), ' ') + doctype; }

const std::string comment600 = "<!--" + std::string(600, 'x') + "-->";

const PrologCase limitCases[] = {
    // clang-format off
    {"NameEndsAt510",                 DoctypeEndingAt(510),                                  htmlText},
    {"NameEndsAt511",                 DoctypeEndingAt(511),                                  htmlText},
    {"NameEndsAt512",                 DoctypeEndingAt(512),                                  0},
    {"NameEndsAt511BehindAComment",   "<!--" + std::string(490, 'x') + "-->" + doctype,      htmlText},
    {"NameEndsAt512BehindAComment",   "<!--" + std::string(491, 'x') + "-->" + doctype,      0},
    {"NameEndsAt511BehindDashes",     "<!" + std::string(494, '-') + ">" + doctype,          htmlText},
    {"NameEndsAt512BehindDashes",     "<!" + std::string(495, '-') + ">" + doctype,          0},
    {"NameEndsAt511Marked",           mark8 + DoctypeEndingAt(508),                          htmlText},
    {"NameEndsAt512Marked",           mark8 + DoctypeEndingAt(509),                          0},
    {"NameEndsAt511LowFirst",         markLow + FILowFirst(DoctypeEndingAt(254)),            htmlText},
    {"NameEndsAt513LowFirst",         markLow + FILowFirst(DoctypeEndingAt(255)),            0},
    {"DoctypeEndsAt511",              std::string(503, ' ') + "<!DOCTYPE html>",             0},
    {"DeclarationUpToTheLimit",       "<?xml ver" + std::string(600, 'x'),                   xmlText},
    {"DeclarationReadUpTo511",        mark8 + std::string(500, ' ') + document,              xmlText},
    {"DeclarationReadUpTo512",        mark8 + std::string(501, ' ') + document,              xmlText},
    {"DeclarationReadUpTo513",        mark8 + std::string(502, ' ') + document,              xmlText},
    {"DeclarationAt510",              mark8 + std::string(507, ' ') + document,              xmlText},
    {"DeclarationAt511",              mark8 + std::string(508, ' ') + document,              0},
    {"DeclarationAt512",              mark8 + std::string(509, ' ') + document,              0},
    {"CommentOf600Bytes",             comment600 + doctype,                                  0},
    {"CommentOf600BytesDeclared",     declaration + comment600 + doctype,                    xmlText},
    {"InstructionOf600BytesDeclared", declaration + "<?" + std::string(600, 'x') + "?>" + doctype, xmlText},
    {"NameOf600Bytes",                "<!DOCTYPE html" + std::string(600, 'x') + ">",        0},
    {"NameOf600BytesDeclared",        declaration + "<!DOCTYPE html" + std::string(600, 'x') + ">", xmlText},
    {"BlanksUpToTheLimit",            declaration + std::string(600, ' ') + doctype,         xmlText},
    {"OnlyBlanks",                    std::string(600, ' '),                                 0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Limit, XmlProlog, testing::ValuesIn(limitCases), FICaseName);

// ---- Failures and position ----------------------------------------------------------------------------------------

// With one byte per read every step back is a seek of the handle.
TEST(XmlPrologFailure, AnyFailingSeekGives0WhateverWasSeen) {
    for (const std::string& bytes : {document, "<!--x-->" + doctype, declaration + "<!--x--><?y?>" + doctype,
                                     "<!--xxxxxxxx-x-->" + doctype, "<?xxxxxxxxx?x?>" + doctype}) {
        const FIID whole = FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(bytes));
        EXPECT_NE(whole, 0);
        for (std::uint32_t failing = 0; failing < 40; ++failing) {
            const auto handle = FIMakeTestHandle(bytes);
            handle->bytesPerRead = 1;
            handle->failSeeksFrom = failing;
            const FIID answer = FIAnswerOver(FIScanXmlProlog, *handle);
            EXPECT_EQ(answer, handle->seeks > failing ? FIID{0} : whole) << bytes << " failing from seek " << failing;
        }
    }
}

TEST(XmlPrologFailure, UnreadableFile) {
    const auto handle = FIMakeTestHandle(document);
    handle->failReadsFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *handle), 0);
}

TEST(XmlPrologStart, RewindsTheReader) {
    for (const std::uint32_t start : {1U, 10U, 5000U}) {
        EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *FIMakeTestHandle(document), start), xmlText) << start;
    }
}

TEST(XmlPrologCost, ReadsOneBlockOfALongFile) {
    const auto handle = FIMakeTestHandle(declaration + "<!--" + std::string(100000, '-'));
    EXPECT_EQ(FIAnswerOver(FIScanXmlProlog, *handle), xmlText);
    EXPECT_EQ(handle->bytesDelivered, 2048U);
}

}  // namespace
