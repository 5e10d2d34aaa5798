// Which group a record is in, and what is told of groups.
#include "report/summary.h"

#include <gtest/gtest.h>

#include "support/case_name.h"

namespace {

using ::PrintTo;

Record RecordOf(const std::string& path, std::uint64_t size = 1) {
    Record record = {};
    record.path = path;
    fiid_detect_memory(nullptr, 1, nullptr, nullptr, &record.answer);  // fails: an answer with nothing in it
    record.answer.basis = FIID_BASIS_SIGNATURE;
    record.answer.fiid = 1500;
    record.answer.size = size;
    return record;
}

Record FailedRecord(const std::string& path) {
    Record record = RecordOf(path, 1000);
    record.error = "is gone";
    return record;
}

Record FormatRecord(std::uint16_t fiid, std::uint16_t further, const char* name, const char* puids,
                    std::uint64_t size = 1) {
    Record record = RecordOf("a", size);
    record.answer.fiid = fiid;
    record.answer.further = further;
    record.answer.name = name;
    record.answer.puids = puids;
    return record;
}

// A group in a line: "NAME [FORMAT] PUIDS: FILES, BYTES".
std::string LineOf(const SummaryGroup& group) {
    std::string line = group.name;
    if (group.format != 0) line += " [" + std::to_string(group.format) + "]";
    if (!group.puids.empty()) line += " " + group.puids;
    return line + ": " + std::to_string(group.count.files) + ", " + std::to_string(group.count.bytes);
}

std::vector<std::string> Finished(Summary& summary) {
    summary.Finish();
    std::vector<std::string> lines;
    SummaryGroup group;
    while (summary.Next(group)) lines.push_back(LineOf(group));
    EXPECT_EQ(summary.Failure(), "");
    return lines;
}

using Lines = std::vector<std::string>;

// ---- Keys -------------------------------------------------------------------------------------------------------------

struct PathCase {
    const char* name;
    const char* path;
    const char* extension;
    const char* directory;
};

const PathCase pathCases[] = {
    // clang-format off
    {"NameAlone",                "a.pdf",            "pdf",      "."},
    {"NoExtension",              "a",                "",         "."},
    {"Hidden",                   "d/.bashrc",        "",         "d"},
    {"HiddenWithAnExtension",    "d/.a.Gz",          "Gz",       "d"},
    {"TwoExtensions",            "d/e/a.tar.gz",     "gz",       "d/e"},
    {"StopAtTheEnd",             "a.",               "",         "."},
    {"TwoStops",                 "..",               "",         "."},
    {"StopOfADirectory",         "d.e/a",            "",         "d.e"},
    {"InTheRoot",                "/a.b",             "b",        "/"},
    {"InTheRootTwice",           "//a.b",            "b",        "/"},
    {"BelowTheRoot",             "/d/a.b",           "b",        "/d"},
    {"HereByName",               "./a",              "",         "."},
    {"DoubledSlash",             "d//a",             "",         "d"},
    {"DoubledSlashInside",       "d//e/a",           "",         "d//e"},
    {"StandardInput",            "-",                "",         "."},
    {"Nothing",                  "",                 "",         "."},
    {"AnyBytes",                 "\xFF\n/a.\xFE",    "\xFE",     "\xFF\n"},
    // clang-format on
};

class PathKeys : public testing::TestWithParam<PathCase> {};

TEST_P(PathKeys, Are) {
    EXPECT_EQ(ExtensionOfPath(GetParam().path), GetParam().extension);
    EXPECT_EQ(DirectoryOfPath(GetParam().path), GetParam().directory);
}

INSTANTIATE_TEST_SUITE_P(Paths, PathKeys, testing::ValuesIn(pathCases), FICaseName);

TEST(SummaryKeys, MediaTypesAreThoseOfTheOptionMime) {
    fiid_result answer = RecordOf("a").answer;
    EXPECT_EQ(ToldMime(answer), "application/octet-stream");
    answer.mime = "image/png";
    EXPECT_EQ(ToldMime(answer), "image/png");
    answer.size = 0;
    EXPECT_EQ(ToldMime(answer), "inode/x-empty");
}

// ---- Groups -----------------------------------------------------------------------------------------------------------

TEST(SummaryByFormat, TakesTheMostPreciseIdentifier) {
    Summary summary(SummaryKey::Format);
    summary.Add(FormatRecord(1503, 0, "GIF", "fmt/3", 10));
    summary.Add(FormatRecord(4002, 20100, "JSON", "fmt/817", 1));
    summary.Add(FormatRecord(4005, 20100, "JSON", "fmt/817", 2));
    summary.Add(FormatRecord(4002, 0, "Text", "", 4));
    EXPECT_EQ(Finished(summary), (Lines{"JSON [20100] fmt/817: 2, 3", "GIF [1503] fmt/3: 1, 10", "Text [4002]: 1, 4"}));
}

TEST(SummaryByFormat, TellsThePuidsThatFilesHaveInOrder) {
    Summary summary(SummaryKey::Format);
    for (const char* const puids : {"fmt/20", "", "x-fmt/1 fmt/100", "fmt/3 fmt/20", "fmt/20"}) {
        summary.Add(FormatRecord(1600, 0, "PDF", puids));
    }
    EXPECT_EQ(Finished(summary), (Lines{"PDF [1600] fmt/3 fmt/20 fmt/100 x-fmt/1: 5, 5"}));
}

TEST(SummaryByFormat, PutsTheSameCountInTheOrderOfNamesThenIdentifiers) {
    Summary summary(SummaryKey::Format);
    summary.Add(FormatRecord(1003, 0, "B", ""));
    summary.Add(FormatRecord(1002, 0, "A", ""));
    summary.Add(FormatRecord(1001, 0, "B", ""));
    summary.Add(FormatRecord(1000, 0, "C", ""));
    summary.Add(FormatRecord(1000, 0, "C", ""));
    EXPECT_EQ(Finished(summary), (Lines{"C [1000]: 2, 2", "A [1002]: 1, 1", "B [1001]: 1, 1", "B [1003]: 1, 1"}));
}

TEST(SummaryByFormat, HasNoGroupForUnknownFiles) {
    Summary summary(SummaryKey::Format);
    Record unknown = FormatRecord(1999, 0, "Unknown format", "", 5);
    unknown.answer.basis = FIID_BASIS_NONE;
    summary.Add(unknown);
    summary.Add(FormatRecord(1000, 0, "C", "", 7));
    EXPECT_EQ(Finished(summary), (Lines{"C [1000]: 1, 7"}));
    EXPECT_EQ(summary.Totals().all, (FileCount{2, 12}));
    EXPECT_EQ(summary.Totals().unknown, (FileCount{1, 5}));
}

TEST(SummaryByFormat, OfNothingHasNoGroups) {
    Summary summary(SummaryKey::Format);
    EXPECT_EQ(Finished(summary), Lines());
    EXPECT_EQ(summary.Totals().all, FileCount());
}

TEST(SummaryByFamily, CountsUnknownFilesToo) {
    Summary summary(SummaryKey::Family);
    Record record = RecordOf("a", 3);
    record.answer.family = "image";
    summary.Add(record);
    summary.Add(record);
    record.answer.family = "unknown";
    record.answer.basis = FIID_BASIS_NONE;
    summary.Add(record);
    EXPECT_EQ(Finished(summary), (Lines{"image: 2, 6", "unknown: 1, 3"}));
    EXPECT_EQ(summary.Totals().unknown, (FileCount{1, 3}));
}

TEST(SummaryByMime, CountsWhatIsEmptyAndWhatHasNone) {
    Summary summary(SummaryKey::Mime);
    Record record = RecordOf("a", 3);
    summary.Add(record);
    record.answer.mime = "image/png";
    summary.Add(record);
    record.answer.size = 0;
    summary.Add(record);
    EXPECT_EQ(Finished(summary), (Lines{"application/octet-stream: 1, 3", "image/png: 1, 3", "inode/x-empty: 1, 0"}));
}

TEST(SummaryByExtension, TakesLowerCase) {
    Summary summary(SummaryKey::Extension);
    for (const char* const path : {"a.PDF", "b.pdf", "c", "d/.x", "e.\xC3\x84Z", "f.@[`{"}) summary.Add(RecordOf(path));
    EXPECT_EQ(Finished(summary), (Lines{": 2, 2", "pdf: 2, 2", "@[`{: 1, 1", "\xC3\x84z: 1, 1"}));
}

TEST(SummaryByDirectory, OfManyIsTheSameInLittleMemory) {
    std::vector<Lines> all;
    for (const std::size_t memory : {Summary::usualMemory, std::size_t{2000}}) {
        Summary summary(SummaryKey::Directory, memory);
        for (int index = 0; index < 3000; ++index) {
            summary.Add(
                RecordOf("directories/with long names/" + std::to_string(index * 7 % 1000 * index % 501) + "/x"));
        }
        all.push_back(Finished(summary));
    }
    EXPECT_GT(all[0].size(), 100U);
    EXPECT_EQ(all[0], all[1]);
}

// ---- Totals -----------------------------------------------------------------------------------------------------------

TEST(SummaryTotals, CountWhatIsInNoGroupToo) {
    Summary summary(SummaryKey::Directory);
    summary.Add(RecordOf("d/a", 10));
    summary.Add(FailedRecord("d/b"));
    Record unusual = RecordOf("d/c", 5);
    unusual.answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT;
    summary.Add(unusual);
    unusual.answer.warnings = FIID_WARN_CUT;
    summary.Add(unusual);
    summary.Add(RecordOf("d/d", FIID_SIZE_UNKNOWN));
    EXPECT_EQ(Finished(summary), (Lines{"d: 4, 20"}));
    EXPECT_EQ(summary.Totals().all, (FileCount{5, 20}));
    EXPECT_EQ(summary.Totals().unknown, FileCount());
    EXPECT_EQ(summary.Totals().unreadable, 1U);
    EXPECT_EQ(summary.Totals().unusual, (FileCount{1, 5}));
}

TEST(SummaryTotals, OfManyAtOnceAreThoseOfEachOne) {
    Summary each(SummaryKey::Format);
    Summary many(SummaryKey::Format);
    Record unusual = FormatRecord(1000, 0, "C", "fmt/1", 5);
    unusual.answer.warnings = FIID_WARN_EXTENSION;
    Record unknown = unusual;
    unknown.answer.basis = FIID_BASIS_NONE;
    for (const Record& record : {FormatRecord(1000, 0, "C", "fmt/2", 5), FailedRecord("a"), unusual, unknown}) {
        for (int index = 0; index < 3; ++index) each.Add(record);
        many.AddMany(record, {3, 15});
    }
    EXPECT_EQ(Finished(each), (Lines{"C [1000] fmt/1 fmt/2: 6, 30"}));
    EXPECT_EQ(Finished(many), (Lines{"C [1000] fmt/1 fmt/2: 6, 30"}));
    for (const Summary* const summary : {&each, &many}) {
        EXPECT_EQ(summary->Totals().all, (FileCount{12, 45}));
        EXPECT_EQ(summary->Totals().unknown, (FileCount{3, 15}));
        EXPECT_EQ(summary->Totals().unreadable, 3U);
        EXPECT_EQ(summary->Totals().unusual, (FileCount{6, 30}));
    }
}

TEST(SummaryTotals, AndGroupsMayBeCountedElsewhere) {
    Summary formats(SummaryKey::Format);
    formats.AddGroup({"C", 1000, "fmt/2", {3, 30}});
    formats.AddGroup({"C", 1000, "fmt/1", {1, 10}});
    EXPECT_EQ(Finished(formats), (Lines{"C [1000] fmt/1 fmt/2: 4, 40"}));
    Summary directories(SummaryKey::Directory);
    directories.AddGroup({"d", 0, "", {3, 30}});
    directories.AddGroup({"e", 0, "", {4, 40}});
    directories.AddTotals({{9, 70}, {2, 20}, 1, {3, 30}});
    directories.AddTotals({{1, 1}, {1, 1}, 1, {1, 1}});
    EXPECT_EQ(Finished(directories), (Lines{"e: 4, 40", "d: 3, 30"}));
    EXPECT_EQ(directories.Totals().all, (FileCount{10, 71}));
    EXPECT_EQ(directories.Totals().unknown, (FileCount{3, 21}));
    EXPECT_EQ(directories.Totals().unreadable, 2U);
    EXPECT_EQ(directories.Totals().unusual, (FileCount{4, 31}));
}

}  // namespace
