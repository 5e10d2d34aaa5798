// Which answers are told: --match, --exclude-format and --mismatch, over answers that are made up.
#include "scan/format_filter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

// An answer without a failure, of 100 bytes.
fiid_result AnswerOf(std::uint16_t fiid, const char* mime, const char* puids, const char* family) {
    fiid_result answer = {};
    answer.fiid = fiid;
    answer.size = 100;
    answer.mime = mime;
    answer.puids = puids;
    answer.family = family;
    return answer;
}

const fiid_result msWord = AnswerOf(1650, "application/msword", "fmt/40 fmt/609 x-fmt/45", "document");
const fiid_result amr = AnswerOf(1500, "audio/AMR", "fmt/356", "audio");
const fiid_result unknown = AnswerOf(1999, "", "", "unknown");

bool Matches(const std::string& patterns, const fiid_result& answer) {
    FormatFilter match;
    EXPECT_EQ(match.AddMatch(patterns), "");
    FormatFilter exclude;
    EXPECT_EQ(exclude.AddExclude(patterns), "");
    EXPECT_NE(match.Takes(answer), exclude.Takes(answer)) << patterns;
    return match.Takes(answer);
}

TEST(FormatFilter, TakesAllByItself) {
    const FormatFilter filter;
    EXPECT_TRUE(filter.Takes(msWord));
    EXPECT_TRUE(filter.Takes(unknown));
}

// ---- Patterns -------------------------------------------------------------------------------------------------------

TEST(FormatPatterns, NumberIsAnIdentifierOfEitherTable) {
    fiid_result answer = AnswerOf(1999, "image/jxl", "", "image");
    answer.further = 20336;
    EXPECT_TRUE(Matches("1999", answer));
    EXPECT_TRUE(Matches("20336", answer));
    EXPECT_TRUE(Matches("020336", answer));
    EXPECT_FALSE(Matches("20337", answer));
    EXPECT_FALSE(Matches("20336", unknown));
}

TEST(FormatPatterns, PronomIdentifierIsOneOfTheAnswers) {
    EXPECT_TRUE(Matches("fmt/40", msWord));
    EXPECT_TRUE(Matches("fmt/609", msWord));
    EXPECT_TRUE(Matches("x-fmt/45", msWord));
    EXPECT_FALSE(Matches("fmt/45", msWord));
    EXPECT_FALSE(Matches("fmt/4", msWord));
    EXPECT_FALSE(Matches("fmt/61", msWord));
    EXPECT_FALSE(Matches("x-fmt/17", AnswerOf(1450, "", "fmt/17", "spreadsheet")));
    EXPECT_FALSE(Matches("fmt/40", unknown));
}

TEST(FormatPatterns, CaseOfAPronomIdentifierDoesNotCount) {
    EXPECT_TRUE(Matches("FMT/40", msWord));
    EXPECT_TRUE(Matches("X-Fmt/45", msWord));
}

TEST(FormatPatterns, PronomIdentifierMayHaveWildcards) {
    EXPECT_TRUE(Matches("fmt/4*", msWord));
    EXPECT_TRUE(Matches("fmt/?0", msWord));
    EXPECT_TRUE(Matches("fmt/*9", msWord));
    EXPECT_TRUE(Matches("x-fmt/*", msWord));
    EXPECT_FALSE(Matches("fmt/5*", msWord));
    EXPECT_FALSE(Matches("fmt/4?9", msWord));
    EXPECT_FALSE(Matches("x-fmt/*", amr));
    EXPECT_FALSE(Matches("fmt/*", unknown));
    EXPECT_FALSE(Matches("fmt/4*9", msWord)) << "blanks lie between identifiers";
}

TEST(FormatPatterns, MediaTypeIsCompared) {
    EXPECT_TRUE(Matches("application/msword", msWord));
    EXPECT_FALSE(Matches("application/pdf", msWord));
    EXPECT_FALSE(Matches("application/msword", unknown));
}

TEST(FormatPatterns, CaseOfAMediaTypeDoesNotCount) {
    EXPECT_TRUE(Matches("Application/MSWord", msWord));
    EXPECT_TRUE(Matches("audio/AMR", amr));
    EXPECT_TRUE(Matches("audio/amr", amr));
    EXPECT_TRUE(Matches("AUDIO/*", amr));
}

TEST(FormatPatterns, MediaTypeMayHaveWildcards) {
    EXPECT_TRUE(Matches("audio/*", amr));
    EXPECT_TRUE(Matches("audio/???", amr));
    EXPECT_TRUE(Matches("*/amr", amr));
    EXPECT_TRUE(Matches("a*/a*r", amr));
    EXPECT_TRUE(Matches("*/*", amr));
    EXPECT_TRUE(Matches("application/*msword*", msWord));
    EXPECT_TRUE(Matches("*/*s*d", msWord));
    EXPECT_FALSE(Matches("audio/???", AnswerOf(1500, "audio/AMR-WB", "fmt/954", "audio")));
    EXPECT_FALSE(Matches("image/*", amr));
    EXPECT_FALSE(Matches("application/*pdf", msWord));
}

TEST(FormatPatterns, FileWithoutAMediaTypeIsAnOctetStream) {
    EXPECT_TRUE(Matches("application/octet-stream", unknown));
    EXPECT_TRUE(Matches("application/*", unknown));
    EXPECT_TRUE(Matches("*/*", unknown));
    EXPECT_FALSE(Matches("inode/x-empty", unknown));
    EXPECT_FALSE(Matches("application/octet-stream", msWord));
    fiid_result endless = unknown;
    endless.size = FIID_SIZE_UNKNOWN;
    EXPECT_TRUE(Matches("application/octet-stream", endless));
}

TEST(FormatPatterns, EmptyFileHasATypeOfItsOwn) {
    for (fiid_result empty : {unknown, AnswerOf(1700, "text/plain", "x-fmt/111", "text")}) {
        empty.size = 0;
        EXPECT_TRUE(Matches("inode/x-empty", empty));
        EXPECT_TRUE(Matches("inode/*", empty));
        EXPECT_FALSE(Matches("application/octet-stream", empty));
        EXPECT_FALSE(Matches("text/plain", empty));
    }
}

TEST(FormatPatterns, WordIsAFamily) {
    for (const char* family : {"document", "spreadsheet", "presentation", "database", "image", "drawing", "audio",
                               "video", "archive", "mail", "text", "code", "system", "unknown"}) {
        EXPECT_TRUE(Matches(family, AnswerOf(1000, "", "", family)));
        EXPECT_FALSE(Matches(family, AnswerOf(1000, "", "", "another")));
        EXPECT_FALSE(Matches(family, AnswerOf(1000, "", "", "")));
    }
    EXPECT_TRUE(Matches("DOCUMENT", msWord));
    EXPECT_TRUE(Matches("unknown", unknown));
    EXPECT_FALSE(Matches("unknown", msWord));
}

TEST(FormatPatterns, FamilyOfEachFormatIsAWord) {
    fiid_format format;
    for (std::uint32_t index = 0; fiid_format_at(index, &format) == FIID_OK; ++index) {
        const std::string family = format.family;
        if (family.empty()) continue;
        EXPECT_EQ(FormatFilter().AddMatch(family), "") << format.id;
    }
}

TEST(FormatPatterns, ListMatchesAsAnyOfIt) {
    EXPECT_TRUE(Matches("image,fmt/40", msWord));
    EXPECT_TRUE(Matches("document,1999", unknown));
    EXPECT_TRUE(Matches(" audio ,\timage/* ", amr));
    EXPECT_FALSE(Matches("image,video,text/*", amr));
}

// ---- Together -------------------------------------------------------------------------------------------------------

TEST(FormatFilter, MatchesAddUp) {
    FormatFilter filter;
    EXPECT_EQ(filter.AddMatch("image"), "");
    EXPECT_EQ(filter.AddMatch("audio"), "");
    EXPECT_TRUE(filter.Takes(amr));
    EXPECT_FALSE(filter.Takes(msWord));
}

TEST(FormatFilter, ExcludesWin) {
    FormatFilter filter;
    EXPECT_EQ(filter.AddExclude("fmt/40"), "");
    EXPECT_EQ(filter.AddExclude("unknown"), "");
    EXPECT_EQ(filter.AddMatch("document,audio,unknown"), "");
    EXPECT_FALSE(filter.Takes(msWord));
    EXPECT_FALSE(filter.Takes(unknown));
    EXPECT_TRUE(filter.Takes(amr));
    EXPECT_FALSE(filter.Takes(AnswerOf(1000, "", "", "image")));
}

TEST(FormatFilter, MismatchTakesUnusualExtensionsAlone) {
    fiid_result renamed = msWord;
    renamed.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT;
    fiid_result cut = msWord;
    cut.warnings = FIID_WARN_CUT | FIID_WARN_SEVERAL;
    FormatFilter filter;
    filter.OnlyMismatch();
    EXPECT_TRUE(filter.Takes(renamed));
    EXPECT_FALSE(filter.Takes(cut));
    EXPECT_FALSE(filter.Takes(msWord));
    EXPECT_EQ(filter.AddMatch("audio"), "");
    EXPECT_FALSE(filter.Takes(renamed));
    EXPECT_EQ(filter.AddMatch("document"), "");
    EXPECT_TRUE(filter.Takes(renamed));
    EXPECT_FALSE(filter.Takes(cut));
    EXPECT_EQ(filter.AddExclude("1650"), "");
    EXPECT_FALSE(filter.Takes(renamed));
}

// ---- What is refused ------------------------------------------------------------------------------------------------

std::string FailureOf(const std::string& patterns) {
    FormatFilter match;
    std::string failure = match.AddMatch(patterns);
    FormatFilter exclude;
    EXPECT_EQ(exclude.AddExclude(patterns), failure);
    return failure;
}

TEST(FormatFailures, IdentifierIsKnown) {
    for (const char* number : {"0", "999", "1998000", "65535", "65536", "99999999999999999999999"}) {
        EXPECT_EQ(FailureOf(number), std::string(number) + ": no format has this identifier");
    }
    EXPECT_EQ(FailureOf("1999"), "");
}

TEST(FormatFailures, PronomIdentifierIsKnown) {
    for (const char* puid : {"fmt/99999", "fmt/", "fmt/4x", "x-fmt/99999", "Fmt/999?9", "fmt/040", "x-fmt/*x"}) {
        EXPECT_EQ(FailureOf(puid), std::string(puid) + ": no format has this PRONOM identifier");
    }
    EXPECT_EQ(FailureOf("x-fmt/111"), "");
}

TEST(FormatFailures, MediaTypeIsKnown) {
    for (const char* type : {"image/jpg", "application/", "/", "a/b/c", "imgae/*", "image/png*x", "*/"}) {
        EXPECT_EQ(FailureOf(type), std::string(type) + ": no format has this media type");
    }
    EXPECT_EQ(FailureOf("application/octet-stream"), "");
    EXPECT_EQ(FailureOf("inode/x-empty"), "");
    EXPECT_EQ(FailureOf("*/*"), "");
}

constexpr const char* families =
    "is no family; the families are document, spreadsheet, presentation, database, image, drawing, audio, video, "
    "archive, "
    "mail, text, code, system, unknown";

TEST(FormatFailures, FamilyIsKnown) {
    for (const char* word : {"pdf", "picture", "10*", "-1", "documentary", "*", "fmt", "x"}) {
        EXPECT_EQ(FailureOf(word), std::string(word) + ": " + families);
    }
}

TEST(FormatFailures, NearFamilyIsTold) {
    EXPECT_EQ(FailureOf("documents"), std::string("documents: ") + families + "; did you mean document?");
    EXPECT_EQ(FailureOf("docment"), std::string("docment: ") + families + "; did you mean document?");
    EXPECT_EQ(FailureOf("Imgae"), std::string("Imgae: ") + families + "; did you mean image?");
    EXPECT_EQ(FailureOf("spreadshets"), std::string("spreadshets: ") + families + "; did you mean spreadsheet?");
    EXPECT_EQ(FailureOf("test"), std::string("test: ") + families + "; did you mean text?");
    EXPECT_EQ(FailureOf("cod"), std::string("cod: ") + families + "; did you mean code?");
}

TEST(FormatFailures, PatternIsNotEmpty) {
    for (const char* patterns : {"", " ", ",", "image,", ",image", "image, ,audio"}) {
        EXPECT_EQ(FailureOf(patterns), "an empty pattern matches no format") << patterns;
    }
}

TEST(FormatFailures, OneOfAListIsNamedAndNothingIsAdded) {
    FormatFilter filter;
    EXPECT_EQ(filter.AddMatch("image,fmt/99999,audio"), "fmt/99999: no format has this PRONOM identifier");
    EXPECT_EQ(filter.AddExclude("image, 12 ,audio"), "12: no format has this identifier");
    EXPECT_TRUE(filter.Takes(msWord));
    EXPECT_TRUE(filter.Takes(amr));
}

TEST(FormatFailures, LongPatternsEnd) {
    const std::string stars(30000, '*');
    EXPECT_TRUE(FailureOf(stars + "/" + stars + "0x").ends_with("0x: no format has this media type"));
    const std::string word(60000, 'a');
    EXPECT_TRUE(FailureOf(word) == word + ": " + families);
}

}  // namespace
