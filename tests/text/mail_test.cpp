// Mail and news: the header table, normalising, folded lines, the limits of the scan, and the order of the decision.
#include "text/mail.h"

#include <string>

#include "support/case_name.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

using namespace std::string_literals;

struct MailCase {
    const char* name;
    std::string bytes;
    FIID answer;
    const char* extension = "";
};

class ProbeMail : public testing::TestWithParam<MailCase> {};

TEST_P(ProbeMail, Answers) {
    EXPECT_EQ(FIAnswerOf(FIProbeMail, GetParam().bytes, GetParam().extension), GetParam().answer);
}

// Which result for which score. MIME points: mime-version 2, content headers 1. Addressing points: from, to,
// message-id 1.
const MailCase decisionCases[] = {
    // clang-format off
    {"EmptyFile",                              "",                                                           0},
    {"NothingScored",                          "Subject: x\nDate: y\n",                                      0},
    {"OneAddressingPoint",                     "To: b\n",                                                    0},
    {"TwoAddressingPoints",                    "From: a\nTo: b\n",                                        1132},
    {"ThreeAddressingPoints",                  "From: a\nTo: b\nMessage-ID: c\n",                         1132},
    {"TwoAddressingPointsEnvelope",            "From x\nFrom: a\nTo: b\n",                                1817},
    {"OneAddressingPointEnvelope",             "From x\nTo: b\n",                                            0},
    {"OnlyAnEnvelope",                         "From x\nSubject: b\n",                                       0},
    {"TwoAddressingPointsEml",                 "From: a\nTo: b\n",                                        1132, "EML"},
    {"TwoAddressingPointsMht",                 "From: a\nTo: b\n",                                        1132, "MHT"},
    {"TwoAddressingPointsNws",                 "From: a\nTo: b\n",                                        1132, "NWS"},
    {"OneMimePoint",                           "Content-Type: text/plain\n",                                 0},
    {"OneMimePointMht",                        "Content-Type: text/plain\n",                                 0, "MHT"},
    {"OneMimePointTwoAddressingPoints",        "Content-Type: text/html\nFrom: a\nTo: b\n",               1132},
    {"OneMimePointOneAddressingPoint",         "Message-ID: a\n",                                            0},
    {"OneMimePointEnvelopeOneAddressingPoint", "From x\nMessage-ID: a\n",                                    0},
    {"NewsWithOneMimePoint",                   "Newsgroups: a\n",                                            0},
    {"NewsWithOneMimePointNws",                "Newsgroups: a\n",                                            0, "NWS"},
    {"NewsWithOneMimePointIsLooseText",        "Newsgroups: a\nFrom: b\nTo: c\n",                         1132},
    {"News",                                   "Newsgroups: a\nMessage-ID: b\n",                          1193},
    {"NewsNws",                                "Newsgroups: a\nMessage-ID: b\n",                          1194, "NWS"},
    {"NewsNwsx",                               "Newsgroups: a\nMessage-ID: b\n",                          1194, "NWSX"},
    {"NewsNw",                                 "Newsgroups: a\nMessage-ID: b\n",                          1193, "NW"},
    {"NewsXnws",                               "Newsgroups: a\nMessage-ID: b\n",                          1193, "XNWS"},
    {"NewsEml",                                "Newsgroups: a\nMIME-Version: 1.0\nFrom: a\nTo: b\n",      1193, "EML"},
    {"NewsMht",                                "Newsgroups: a\nMIME-Version: 1.0\n",                      1193, "MHT"},
    {"NewsEnvelope",                           "From x\nNewsgroups: a\nMessage-ID: b\nTo: c\n",           1193},
    {"NewsEnvelopeNws",                        "From x\nNewsgroups: a\nMessage-ID: b\nTo: c\n",           1194, "NWS"},
    {"NewsHtml",                               "Newsgroups: a\nContent-Type: text/html\n",                1193},
    {"Mail",                                   "MIME-Version: 1.0\nFrom: a\nTo: b\n",                     1192},
    {"MailEml",                                "MIME-Version: 1.0\nFrom: a\nTo: b\n",                     1195, "EML"},
    {"MailEmlx",                               "MIME-Version: 1.0\nFrom: a\nTo: b\n",                     1195, "EMLX"},
    {"MailEm",                                 "MIME-Version: 1.0\nFrom: a\nTo: b\n",                     1192, "EM"},
    {"MailMht",                                "MIME-Version: 1.0\nFrom: a\nTo: b\n",                     1192, "MHT"},
    {"MailNws",                                "MIME-Version: 1.0\nFrom: a\nTo: b\n",                     1192, "NWS"},
    {"MailHtml",                               "MIME-Version: 1.0\nFrom: a\nTo: b\nContent-Type: text/html\n", 1192},
    {"MailEnvelope",                           "From x\nMIME-Version: 1.0\nFrom: a\nTo: b\n",             1817},
    {"MailEnvelopeEml",                        "From x\nMIME-Version: 1.0\nFrom: a\nTo: b\n",             1195, "EML"},
    {"MailEnvelopeMht",                        "From x\nMIME-Version: 1.0\nFrom: a\nTo: b\n",             1817, "MHT"},
    {"Mime",                                   "MIME-Version: 1.0\nSubject: x\n",                         1187},
    {"MimeOneAddressingPoint",                 "Message-ID: x\nContent-Type: text/plain\n",               1187},
    {"MimeOneAddressingPointMht",              "Message-ID: x\nContent-Type: text/plain\n",               1198, "MHT"},
    {"MimeEml",                                "MIME-Version: 1.0\nTo: b\n",                              1187, "EML"},
    {"MimeNws",                                "MIME-Version: 1.0\nTo: b\n",                              1187, "NWS"},
    {"MimeMht",                                "MIME-Version: 1.0\n",                                     1198, "MHT"},
    {"MimeMhtm",                               "MIME-Version: 1.0\n",                                     1198, "MHTM"},
    {"MimeMh",                                 "MIME-Version: 1.0\n",                                     1187, "MH"},
    {"MimeEnvelope",                           "From x\nMIME-Version: 1.0\nTo: b\n",                      1817},
    {"MimeEnvelopeMht",                        "From x\nMIME-Version: 1.0\nTo: b\n",                      1198, "MHT"},
    {"MimeEnvelopeEml",                        "From x\nMIME-Version: 1.0\nTo: b\n",                      1817, "EML"},
    {"MimeEnvelopeHtml",                       "From x\nMIME-Version: 1.0\nContent-Type: text/html\n",    1817},
    {"MimeHtml",                               "MIME-Version: 1.0\nContent-Type: text/html\n",            1198},
    {"MimeHtmlEml",                            "MIME-Version: 1.0\nContent-Type: text/html\n",            1198, "EML"},
    {"MimeHtmlOneAddressingPoint",             "MIME-Version: 1.0\nContent-Type: text/html\nTo: b\n",     1198},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Decision, ProbeMail, testing::ValuesIn(decisionCases), FICaseName);

// The rows of the header table: the points, what is needed, and that each class scores once.
const MailCase headerCases[] = {
    // clang-format off
    {"MimeVersionScores2",                    "MIME-Version: 1.0\n",                                         1187},
    {"MimeVersionBlanks",                     "MIME-Version   :    1.0\n",                                   1187},
    {"MimeVersion11",                         "MIME-Version: 1.1\nContent-Type: a\n",                           0},
    {"MimeVersionNoColon",                    "MIME-Version 1.0\nContent-Type: a\n",                            0},
    {"MimeVersionNumberBeforeColon",          "MIME-Version 1.0:\nContent-Type: a\n",                           0},
    {"MimeVersionNumberAnywhereBehindColon",  "MIME-Version: x 11.05\n",                                     1187},
    {"MimeVersionNumberInBrackets",           "MIME-Version: (1.0) 2\nContent-Type: a\n",                       0},
    {"MimeVersionBracketsBehind",             "MIME-Version: 1.0 (Mac)\n",                                   1187},
    {"MimeVersionStaysOpen",                  "MIME-Version: 1.1\nMIME-Version: 1.0\n",                      1187},
    {"MimeVersionAgainHasNoEffect",           "MIME-Version: 1.0\nMIME-Version: 1.0\nTo: b\n",               1187},
    {"MimeVersionAsAPrefix",                  "MIME-Versions: 1.0\n",                                        1187},
    {"MimeVersionIndented",                   " MIME-Version: 1.0\n",                                           0},
    {"ContentTypeScores1",                    "Content-Type: a\nContent-Description: b\n",                   1187},
    {"ContentTypeScoresOnce",                 "Content-Type: a\nContent-Type: b\n",                             0},
    {"ContentTypeNoColon",                    "Content-Type a\nContent-Description: b\n",                       0},
    {"ContentTypeNoColonStaysOpen",           "Content-Type a\nContent-Type: a\nContent-Description: b\n",   1187},
    {"ContentTypeHtml",                       "Content-Type: text/html; charset=x\nContent-Description: b\n", 1198},
    {"ContentTypeHtmlUpperCase",              "CONTENT-TYPE: TEXT/HTML\nContent-Description: b\n",           1198},
    {"ContentTypeHtmlBeforeColon",            "Content-Type text/html: x\nContent-Description: b\n",         1187},
    {"ContentTypeHtmlInBrackets",             "Content-Type: x (text/html)\nContent-Description: b\n",       1187},
    {"ContentTypeHtmlTheSecondTime",          "Content-Type: a\nContent-Type: text/html\nContent-Description: b\n", 1187},
    {"ContentTypeHtmlNoColon",                "Content-Type text/html\nContent-Description: b\nContent-Transfer-Encoding: c\n", 1187},
    {"HtmlOfAnotherHeader",                   "Content-Type: a\nContent-Description: text/html\n",           1187},
    {"ContentDescriptionScores1",             "Content-Description: a\nContent-Type: b\n",                   1187},
    {"ContentDescriptionScoresOnce",          "Content-Description: a\nContent-Description: b\n",               0},
    {"ContentDescriptionNoColon",             "Content-Description a\nContent-Type: b\n",                       0},
    {"TransferEncodingScores1",               "Content-Transfer-Encoding: a\nContent-Type: b\n",             1187},
    {"TransferEncodingScoresOnce",            "Content-Transfer-Encoding: a\nContent-Transfer-Encoding: b\n",   0},
    {"TransferEncodingNoColon",               "Content-Transfer-Encoding a\nContent-Type: b\n",                 0},
    {"NewsgroupsScores1",                     "Newsgroups: a\nContent-Type: b\n",                            1193},
    {"NewsgroupsScoresOnce",                  "Newsgroups: a\nNewsgroups: b\n",                                 0},
    {"NewsgroupsNoColon",                     "Newsgroups a\nMessage-ID: b\nContent-Type: c\n",              1187},
    {"MessageIdScores1And1",                  "Message-ID: a\nContent-Type: b\nTo: c\n",                     1192},
    {"MessageIdMimePoint",                    "Message-ID: a\nContent-Type: b\n",                            1187},
    {"MessageIdAddressingPoint",              "Message-ID: a\nTo: b\n",                                      1132},
    {"MessageIdScoresOnce",                   "Message-ID: a\nMessage-ID: b\n",                                 0},
    {"MessageIdNoColon",                      "Message-ID a\nContent-Type: b\nTo: c\n",                         0},
    {"ArticleIdScores1",                      "Article-I.D.: a\nContent-Type: b\n",                          1187},
    {"ArticleIdNoAddressingPoint",            "Article-I.D.: a\nContent-Type: b\nTo: c\n",                   1187},
    {"ArticleIdScoresOnce",                   "Article-I.D.: a\nArticle-I.D.: b\n",                             0},
    {"ArticleIdNoColon",                      "Article-I.D. a\nContent-Type: b\n",                              0},
    {"ArticleIdSharesTheClassOfMessageId",    "Message-ID: a\nArticle-I.D.: b\n",                               0},
    {"MessageIdSharesTheClassOfArticleId",    "Article-I.D.: a\nMessage-ID: b\nTo: c\n",                        0},
    {"DispositionNeverScores",                "Content-Disposition: attachment\nTo: b\n",                       0},
    {"DispositionNeverScoresMime",            "Content-Disposition: attachment\nContent-Type: b\n",             0},
    {"DispositionNeverMakesMail",             "MIME-Version: 1.0\nTo: b\nContent-Disposition: attachment\n", 1187},
    {"DispositionLowerCase",                  "content-disposition: attachment\nTo: b\n",                       0},
    {"FromScores1",                           "From: a\nMessage-ID: b\n",                                    1132},
    {"FromScoresOnce",                        "From: a\nFrom: b\n",                                             0},
    {"FromNoColon",                           "Subject: x\nFrom a\nTo: b\n",                                    0},
    {"FromNoMimePoint",                       "From: a\nContent-Type: b\n",                                     0},
    {"ToScores1",                             "To: a\nFrom: b\n",                                            1132},
    {"ToScoresOnce",                          "To: a\nTo: b\n",                                                 0},
    {"ToNoColon",                             "To a\nFrom: b\n",                                                0},
    {"ToNoColonStaysOpen",                    "To a\nTo: b\nFrom: b\n",                                      1132},
    {"ToNoMimePoint",                         "To: a\nContent-Type: b\n",                                       0},
    {"TotalIsATo",                            "total: 5\nFrom: a\n",                                         1132},
    {"TomorrowIsATo",                         "tomorrow: 1\nFrom: a\n",                                      1132},
    {"FromTheDeskIsAFrom",                    "from the desk: x\ntomorrow: 1\n",                             1817},
    {"FromTheDeskOnLine1IsAFrom",             "tomorrow: 1\nfrom the desk: x\n",                             1132},
    {"ReplyToIsNoTo",                         "Reply-To: a\nFrom: b\n",                                         0},
    {"IndentedToIsNoTo",                      " To: a\nFrom: b\n",                                              0},
    {"AllUpperCase",                          "TO: A\nFROM: B\n",                                            1132},
    {"AllLowerCase",                          "to: a\nfrom: b\n",                                            1132},
    {"HighBytesAreLeftAlone",                 "\xD4o: a\nFrom: b\nT\xCF: c\n",                                  0},
    {"HighBytesInAValue",                     "To: \xE4\xFF\xC1\nFrom: \xD6\n",                              1132},
    {"ControlBytesInAValue",                  "To: \x01\x1A\nFrom: \x7F\n",                                  1132},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Headers, ProbeMail, testing::ValuesIn(headerCases), FICaseName);

// Brackets, NUL bytes, the envelope line and folded lines.
const MailCase normalisingCases[] = {
    // clang-format off
    {"BracketsInsideAKeyword",           "T(x)o: b\nFrom: a\n",                                              1132},
    {"BracketsInFront",                  "(c)To: b\nFrom: a\n",                                              1132},
    {"ColonInBrackets",                  "To(:) b\nFrom: a\n",                                                  0},
    {"UnclosedBracketDropsTheRest",      "To( : b\nFrom: a\n",                                                  0},
    {"UnclosedBracketInFront",           "(To: b\nFrom: a\n",                                                   0},
    {"UnclosedBracketEndsWithItsLine",   "(x\nTo: b\nFrom: a\n",                                             1132},
    {"BracketsDoNotNest",                "((a)To: b\nFrom: a\n",                                             1132},
    {"ClosingBracketOutsideIsCopied",    "(a))To: b\nFrom: a\n",                                                0},
    {"TwoPairsOfBrackets",               "(a)T(b)o: b\nFrom: a\n",                                           1132},
    {"LineOfBracketsAloneIsNoEmptyLine", "To: b\n(x)\nFrom: a\n",                                            1132},
    {"NulInLine0",                       "To: b\0\nFrom: a\nMessage-ID: c\n"s,                                  0},
    {"NulInLine1DecidesOnLine0",         "MIME-Version: 1.0\nx\0\nFrom: a\nTo: b\n"s,                        1187},
    {"NulLineItselfIsIgnored",           "To: b\nFrom: a\0\n"s,                                                 0},
    {"NulAtTheLineStart",                "To: b\nFrom: a\n\0MIME-Version: 1.0\n"s,                           1132},
    {"NulInBrackets",                    "To: b\nFrom: a\n(\0)\nMIME-Version: 1.0\n"s,                       1132},
    {"NulBehindAnUnclosedBracket",       "To: b\nFrom: a\n(\0\nMIME-Version: 1.0\n"s,                        1132},
    {"NulInTheEnvelopeLine",             "From x\0\nFrom: a\nTo: b\nMIME-Version: 1.0\n"s,                      0},
    {"EnvelopeCountsAsFromWithAColon",   "From someone Sat 10:00\nTo: b\n",                                  1817},
    {"EnvelopeAndFromScoreOnce",         "From someone Sat 10:00\nFrom: b\n",                                   0},
    {"EnvelopeUpperCase",                "FROM X\nFrom: a\nTo: b\n",                                         1817},
    {"EnvelopeNeedsTheBlank",            "From: a\nTo: b\nContent-Type: c\n",                                1132},
    {"EnvelopeTabIsNoBlank",             "From\tx\nFrom: a\nTo: b\n",                                        1132},
    {"EnvelopeBehindBrackets",           "(c)From x\nFrom: a\nTo: b\n",                                      1817},
    {"EnvelopeBracketsBeforeTheBlank",   "From(c) x\nFrom: a\nTo: b\n",                                      1817},
    {"EnvelopeOnLine1IsNone",            "Subject: x\nFrom x\nFrom: a\nTo: b\n",                             1132},
    {"EnvelopeIndentedIsNone",           " From x\nFrom: a\nTo: b\n",                                        1132},
    {"RelatedFoldedWithATab",            "Content-Type: multipart/related;\n\ttype=\"text/html\"\nContent-Description: b\n", 1198},
    {"RelatedFoldedWithABlank",          "Content-Type: multipart/related;\n type=\"TEXT/HTML\"\nContent-Description: b\n", 1198},
    {"RelatedFoldedTwice",               "Content-Type: multipart/related;\n\tboundary=x;\n\ttype=text/html\nContent-Description: b\n", 1198},
    {"RelatedOnTheSameLineIsHtml",       "Content-Type: multipart/related; type=text/html\nContent-Description: b\n", 1198},
    {"RelatedWithoutHtml",               "Content-Type: multipart/related;\n\ttype=text/plain\nContent-Description: b\n", 1187},
    {"RelatedEndedByAHeader",            "Content-Type: multipart/related;\nContent-Description: b\n\ttype=text/html\n", 1187},
    {"RelatedEndedByABracketLine",       "Content-Type: multipart/related;\n(x)\n\ttype=text/html\nContent-Description: b\n", 1187},
    {"RelatedFoldedBehindBrackets",      "Content-Type: multipart/related;\n(x)\ttype=text/html\nContent-Description: b\n", 1198},
    {"RelatedFoldedHtmlInBrackets",      "Content-Type: multipart/related;\n\t(text/html)\nContent-Description: b\n", 1187},
    {"RelatedHtmlOnAnUnfoldedLine",      "Content-Type: multipart/related;\ntext/html\nContent-Description: b\n", 1187},
    {"RelatedBeforeTheColon",            "Content-Type multipart/related: x\n\ttext/html\nContent-Description: b\n", 1187},
    {"RelatedTheSecondTime",             "Content-Type: a\nContent-Type: multipart/related;\n\ttext/html\nContent-Description: b\n", 1187},
    {"RelatedMht",                       "Content-Type: multipart/related;\nContent-Description: b\n",       1198, "MHT"},
    {"RelatedEnvelope",                  "From x\nContent-Type: multipart/related;\n\ttext/html\nContent-Description: b\n", 1817},
    {"RelatedWithoutTheSecondPoint",     "Content-Type: multipart/related;\n\ttext/html\n",                     0},
    {"MixedFoldedHtml",                  "Content-Type: multipart/mixed;\n\ttype=text/html\nContent-Description: b\n", 1187},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Normalising, ProbeMail, testing::ValuesIn(normalisingCases), FICaseName);

// A long line between a "to" and a "from" header.
std::string LongLineOf(std::size_t size) { return "To: a\n" + std::string(size, 'x') + "\nFrom: b\n"; }

// Where the scan ends: empty lines, the 300 lines, and the 1,022 bytes of a line.
const MailCase limitCases[] = {
    // clang-format off
    {"LineFeeds",                         "To: b\nFrom: a\n",                                          1132},
    {"CarriageReturns",                   "To: b\rFrom: a\r",                                          1132},
    {"CarriageReturnLineFeeds",           "To: b\r\nFrom: a\r\n",                                      1132},
    {"LineFeedCarriageReturns",           "To: b\n\rFrom: a\n\r",                                      1132},
    {"NoLineEndAtTheEnd",                 "To: b\nFrom:",                                              1132},
    {"EndOfFileInAKeyword",               "To: b\nFrom",                                                  0},
    {"StartsWithAnEmptyLine",             "\nFrom: a\nTo: b\nMIME-Version: 1.0\n",                        0},
    {"StartsWithAnEmptyCrLfLine",         "\r\nFrom: a\r\nTo: b\r\n",                                     0},
    {"EmptyLineEndsTheHeader",            "To: b\n\nFrom: a\n",                                           0},
    {"EmptyCrLineEndsTheHeader",          "To: b\r\rFrom: a\r",                                           0},
    {"EmptyCrLfLineEndsTheHeader",        "To: b\r\n\r\nFrom: a\r\n",                                     0},
    {"EmptyLfCrLineEndsTheHeader",        "To: b\n\r\n\rFrom: a\n\r",                                     0},
    {"BlankLineIsNoEmptyLine",            "To: b\n \nFrom: a\n",                                       1132},
    {"HeaderBehindTheEmptyLineCountsNot", "MIME-Version: 1.0\n\nFrom: a\nTo: b\n",                     1187},
    {"The299thLineCounts",                FIRepeat("X: y\n", 297) + "To: a\nFrom: b\n",                1132},
    {"The300thLineCounts",                FIRepeat("X: y\n", 298) + "To: a\nFrom: b\n",                1132},
    {"The301stLineDoesNot",               FIRepeat("X: y\n", 299) + "To: a\nFrom: b\n",                   0},
    {"LineOf1021Bytes",                   LongLineOf(1021),                                            1132},
    {"LineOf1022BytesIsFollowedByAnEmptyOne", LongLineOf(1022),                                           0},
    {"LineOf1023BytesIsTwoLines",         LongLineOf(1023),                                            1132},
    {"LineOf1024BytesIsTwoLines",         LongLineOf(1024),                                            1132},
    {"LineOf2044BytesIsFollowedByAnEmptyOne", LongLineOf(2044),                                           0},
    {"HeaderAtByte1022OfALine",           "To: a\n" + std::string(1022, 'x') + "From: b\n",            1132},
    {"HeaderAtByte1021OfALine",           "To: a\n" + std::string(1021, 'x') + "From: b\n",               0},
    {"HeaderAtByte1023OfALine",           "To: a\n" + std::string(1023, 'x') + "From: b\n",               0},
    {"ColonBehindTheCut",                 "To" + std::string(1020, 'x') + ": a\nFrom: b\n",               0},
    {"ColonIsTheLastByteOfTheCut",        "To" + std::string(1019, 'x') + ": a\nFrom: b\n",            1132},
    {"CutLinesCountAsLines",              std::string(std::size_t{1022} * 298, 'x') + "To: a\nFrom: b\n", 1132},
    {"CutLinesCountTowardsThe300",        std::string(std::size_t{1022} * 299, 'x') + "To: a\nFrom: b\n",    0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Limits, ProbeMail, testing::ValuesIn(limitCases), FICaseName);

TEST(ProbeMailFailure, NoBufferIsNoVerdict) {
    const auto handle = FIMakeTestHandle("To: b\nFrom: a\n");
    FIFailAllocationsFrom(1);  // the reader is the block with the number 0
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *handle, ""), 0);
    FIHeapNeverFails();
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *FIMakeTestHandle("To: b\nFrom: a\n"), ""), 1132);
}

TEST(ProbeMailFailure, FailingSeekIsNoVerdict) {
    const auto handle = FIMakeTestHandle("To: b\nFrom: a\n");
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *handle, ""), 0);
    EXPECT_EQ(handle->reads, 0U);
}

TEST(ProbeMailFailure, UnreadableFileIsNoVerdict) {
    const auto handle = FIMakeTestHandle("To: b\nFrom: a\n");
    handle->failReadsFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *handle, ""), 0);
}

TEST(ProbeMailFailure, DecidesOnWhatWasReadBeforeAFailure) {
    const std::string bytes =
        "From: a\nTo: b\n" + FIRepeat("X: y\n", 280) + std::string(1000, 'x') + "\nMIME-Version: 1.0\n";
    const auto torn = FIMakeTestHandle(bytes);
    torn->failReadsFrom = 1;  // the first 2,048 bytes can be read
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *torn, ""), 1132);
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *FIMakeTestHandle(bytes), ""), 1192);
}

TEST(ProbeMailStart, RewindsTheReader) {
    const auto handle = FIMakeTestHandle("To: b\nFrom: a\n");
    EXPECT_EQ(FIAnswerOver([](FIReader& reader) { return FIProbeMail(reader, ""); }, *handle, 6), 1132);
}

TEST(ProbeMailCost, AnEndlessHeaderIsReadFor300Lines) {
    const auto handle = FIMakeTestHandle(FIRepeat("X-Line: y\n", 100000));  // 300 lines are 3,000 bytes
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *handle, ""), 0);
    EXPECT_EQ(handle->bytesDelivered, 4096U);
}

TEST(ProbeMailCost, ABodyIsNotRead) {
    const auto handle = FIMakeTestHandle("MIME-Version: 1.0\n\n" + std::string(100000, 'x'));
    EXPECT_EQ(FIAnswerOver(FIProbeMail, *handle, ""), 1187);
    EXPECT_EQ(handle->bytesDelivered, 2048U);
}

// Every beginning of a mail comes back with an answer that its headers so far give.
TEST(ProbeMailTruncated, EveryLengthHasItsAnswer) {
    const std::string mail = "From: a\r\nTo: b\r\nMIME-Version: 1.0\r\n\r\nbody\r\n";
    const std::size_t toColon = mail.find("To:") + 3;
    const std::size_t version = mail.find("1.0") + 3;
    for (std::size_t size = 0; size <= mail.size(); ++size) {
        const FIID expected = size < toColon ? 0 : size < version ? 1132 : 1192;
        EXPECT_EQ(FIAnswerOver(FIProbeMail, *FIMakeTestHandle(mail.substr(0, size)), ""), expected) << size << " bytes";
    }
}

// A NUL in the place of every byte: the lines in front of its line decide.
TEST(ProbeMailNul, InEveryPlace) {
    const std::string mail = "From: a\r\nTo: b\r\nMIME-Version: 1.0\r\n\r\nbody\r\n";
    const std::size_t toLineEnd = mail.find('\r', mail.find("To:"));
    const std::size_t versionLineEnd = mail.find('\r', mail.find("1.0"));
    for (std::size_t place = 0; place < mail.size(); ++place) {
        std::string bytes = mail;
        bytes[place] = '\0';
        const FIID expected = place <= toLineEnd ? 0 : place <= versionLineEnd ? 1132 : 1192;
        EXPECT_EQ(FIAnswerOver(FIProbeMail, *FIMakeTestHandle(bytes), ""), expected) << place;
    }
}

// The same through the whole system: row 385 calls the routine.
struct MailFileCase {
    const char* name;
    std::string bytes;
    const char* fileName;
    FIID answer;
    std::uint16_t row;
};

class IdentifyMail : public testing::TestWithParam<MailFileCase> {};

TEST_P(IdentifyMail, Answers) {
    const MailFileCase& fileCase = GetParam();
    std::uint16_t row = 1;
    EXPECT_EQ(FIIdentifyBytes(fileCase.bytes, fileCase.fileName, FIFlagExtendedText, &row), fileCase.answer);
    EXPECT_EQ(row, fileCase.row);
}

constexpr std::uint16_t mailRow = 385_row;
constexpr std::uint16_t noRow = 0;

const MailFileCase mailFileCases[] = {
    // clang-format off
    {"LooseText",             "From: a\nTo: b\n",                                    "note.txt",    1132, mailRow},
    {"Mime",                  "MIME-Version: 1.0\nSubject: x\n",                     "",            1187, mailRow},
    {"Mail",                  "MIME-Version: 1.0\r\nFrom: a\r\nTo: b\r\n\r\nHi\r\n", "a.msg",       1192, mailRow},
    {"MailEml",               "MIME-Version: 1.0\r\nFrom: a\r\nTo: b\r\n\r\nHi\r\n", "a.eml",       1195, mailRow},
    {"News",                  "Newsgroups: a\nMessage-ID: b\n",                      "a.txt",       1193, mailRow},
    {"NewsNws",               "Newsgroups: a\nMessage-ID: b\n",                      "a.nws",       1194, mailRow},
    {"NewsFourLetters",       "Newsgroups: a\nMessage-ID: b\n",                      "a.NwsX",      1194, mailRow},
    {"NewsLongExtension",     "Newsgroups: a\nMessage-ID: b\n",                      "a.nwsletter", 1194, mailRow},
    {"NewsNamedByItsFolder",  "Newsgroups: a\nMessage-ID: b\n",                      "nws",         1193, mailRow},
    {"HtmlMail",              "Content-Type: text/html\nMessage-ID: b\n",            "a",           1198, mailRow},
    {"HtmlMailMht",           "Message-ID: x\nContent-Type: text/plain\n",           "a.mht",       1198, mailRow},
    {"HtmlMailMhtml",         "Message-ID: x\nContent-Type: text/plain\n",           "a.mhtml",     1198, mailRow},
    {"Envelope",              "From x\nFrom: a\nTo: b\n",                            "inbox",       1817, mailRow},
    {"EnvelopeWithColon",     "From someone Sat 10:00\nTo: b\n",                     "inbox",       1817, mailRow},
    {"NulInLine1",            "MIME-Version: 1.0\nx\0"s,                             "",            1187, mailRow},
    {"The300thLine",          FIRepeat("X: y\n", 298) + "To: a\nFrom: b\n",          "",            1132, mailRow},
    {"The301stLine",          FIRepeat("X: y\n", 299) + "To: a\nFrom: b\n",          "",            4022, noRow},
    {"EmptyLineFirst",        "\nFrom: a\nTo: b\nMIME-Version: 1.0\n",               "",            4022, noRow},
    {"OneToLine",             "To: a\nTo: b\nSubject: c\n",                          "",            4022, noRow},
    {"MimeVersion11",         "MIME-Version: 1.1\nSubject: x\n",                     "a.eml",       4022, noRow},
    {"Disposition",           "Content-Disposition: attachment\nTo: b\n",            "",            4022, noRow},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Mail, IdentifyMail, testing::ValuesIn(mailFileCases), FICaseName);

}  // namespace
