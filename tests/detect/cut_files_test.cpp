// Files that end too early, by what their first bytes tell: each rule on both sides of its limit.
#include "detect/cut_files.h"

#include <gtest/gtest.h>

#include <fstream>

#include "fiid/detect.h"
#include "support/bytes.h"
#include "support/storage_writer.h"

namespace {

// Whether a file of that many bytes, which begins so, is cut.
bool IsCut(const std::string& start, std::uint64_t size, FIBasis basis = FIBasis::Signature) {
    UTHandle file = {};
    file.archiveSearch = ZASearch::NotMade;
    FIHead head;
    head.bytes = reinterpret_cast<const std::uint8_t*>(start.data());
    head.size = static_cast<std::uint32_t>(start.size());
    return FIIsCut(file, head, size, basis);
}

struct CutCase {
    const char* name;
    const char* start;
    std::uint64_t whole;  // the fewest bytes of a whole file; 0 where the start tells nothing
};

const CutCase cutCases[] = {
    // clang-format off
    {"Riff",                   R"("RIFF" d:1000 "WAVE")",                                          1008},
    {"RiffOfAStream",          R"("RIFF" FF FF FF FF "WAVE")",                                        0},
    {"Rifx",                   R"("RIFX" D:1000 "WAVE")",                                          1008},
    {"Form",                   R"("FORM" D:1000 "AIFF")",                                          1008},
    {"Bitmap",                 R"("BM" d:1000 00*4 d:54 d:40 d:15 d:20 w:1 w:24 d:0 d:0 00*16)",   1000},
    {"BitmapWhosePixelsAreFew", R"("BM" d:9000 00*4 d:54 d:40 d:15 d:20 w:1 w:24 d:0 d:0 00*16)",  1014},
    {"BitmapFromTheTop",       R"("BM" d:9000 00*4 d:54 d:40 d:15 EC FF FF FF w:1 w:24 d:0 d:0 00*16)",  1014},
    {"BitmapThatIsPacked",     R"("BM" d:9000 00*4 d:54 d:40 d:15 d:20 w:1 w:8 d:1 d:946 00*16)",  1000},
    {"BitmapOfNoSize",         R"("BM" d:0 00*4 d:54 d:40 d:15 d:20 w:1 w:24 d:0 d:0 00*16)",         0},
    {"BitmapThatIsTooLarge",   R"("BM" d:1000 00*4 d:54 d:40 FF*4 FF FF FF 7F w:1 w:24 d:0 d:0 00*16)", 0},
    {"BitmapWithNoSuchHeader", R"("BM" d:1000 00*4 d:54 d:41 d:15 d:20 w:1 w:24 d:0 d:0 00*16)",      0},
    {"SevenZip",               R"("7z" BC AF 27 1C 00 04 00*4 d:1000 00*4 d:100 00*4 00*4)",        1132},
    {"SevenZipThatOverflows",  R"("7z" BC AF 27 1C 00 04 00*4 FF*8 d:100 00*4 00*4)",         UINT64_MAX},
    {"Sqlite",                 R"("SQLite format 3" 00 W:4096 >24 D:7 D:3 >92 D:7 00*4)",         12288},
    {"SqliteOfLargestPages",   R"("SQLite format 3" 00 W:1 >24 D:7 D:3 >92 D:7 00*4)",           196608},
    {"SqliteByAnOldWriter",    R"("SQLite format 3" 00 W:4096 >24 D:7 D:3 >92 D:6 00*4)",             0},
    {"Woff",                   R"("wOFF" "OTTO" D:1000)",                                          1000},
    {"Woff2",                  R"("wOF2" "OTTO" D:1000)",                                          1000},
    {"Gltf",                   R"("glTF" d:2 d:1000)",                                             1000},
    {"IccProfile",             R"(D:1000 >36 "acsp" 00*90)",                                       1000},
    {"Cabinet",                R"("MSCF" 00*4 d:1000)",                                            1000},
    {"TiffOfLittleEnd",        R"("II*" 00 d:1000)",                                               1001},
    {"TiffOfBigEnd",           R"("MM" 00 "*" D:1000)",                                            1001},
    {"TrueType",               R"(00 01 00 00 W:2 00*6 "cmap" 00*4 D:100 D:900 "glyf" 00*4 D:44 D:56)", 1000},
    {"OpenType",               R"("OTTO" W:1 00*6 "cmap" 00*4 D:100 D:900)",                       1000},
    {"FontWhoseTablesAreMore", R"("OTTO" W:9 00*6 "cmap" 00*4 D:100 D:900)",                       1000},
    {"TooManyTablesForAFont",  R"(00 01 00 00 "Standard Jet DB" 00 FF*90)",                          0},
    {"NoMark",                 R"("GIF89a" FF*90)",                                                   0},
    // clang-format on
};

TEST(CutFile, EndsInFrontOfWhatItTells) {
    for (const CutCase& test : cutCases) {
        const std::string start = FIBytes(test.start);
        if (test.whole == 0) {
            EXPECT_FALSE(IsCut(start, start.size() + 1)) << test.name;
            continue;
        }
        EXPECT_TRUE(IsCut(start, test.whole - 1)) << test.name;
        if (test.whole == UINT64_MAX) continue;
        EXPECT_FALSE(IsCut(start, test.whole)) << test.name;
    }
}

TEST(CutFile, MayEndInWhatTellsItsLength) {
    EXPECT_TRUE(IsCut("RIFF", 4));
    EXPECT_TRUE(IsCut("RIFF\1\2\3", 7));
    EXPECT_TRUE(IsCut("BM", 2));
    EXPECT_FALSE(IsCut("RIF", 3)) << "in front of the end of its mark it has none";
    EXPECT_FALSE(IsCut("", 0));
}

TEST(CutFile, IsNoTextThatBeginsLikeOne) {
    for (const char* const text : {"FORM a line with me", "RIFFRAFF, the street rats", "BM is no name, but a brand"}) {
        EXPECT_FALSE(IsCut(text, 20, FIBasis::Text)) << text;
    }
    EXPECT_TRUE(IsCut("FORM a line with me", 20, FIBasis::Structure));
    EXPECT_TRUE(IsCut(FIBytes(R"("7z" BC AF 27 1C 00 04 00*4 d:1000 00*4 d:100 00*4)"), 28, FIBasis::Text));
}

// ---- Whole identifications -------------------------------------------------------------------------------------------

std::string ReadSample(const char* path) {
    std::ostringstream bytes;
    bytes << std::ifstream(std::string(FIID_SAMPLES_DIR) + path, std::ios::binary).rdbuf();
    return bytes.str();
}

bool WarnsOfCut(const std::string& bytes) {
    fiid_result result;
    EXPECT_EQ(fiid_detect_memory(bytes.data(), bytes.size(), nullptr, nullptr, &result), FIID_OK);
    return (result.warnings & FIID_WARN_CUT) != 0;
}

TEST(CutArchive, HasLostItsDirectory) {
    const std::string package = ReadSample("/xlsx/calc.xlsx");
    EXPECT_FALSE(WarnsOfCut(package));
    EXPECT_TRUE(WarnsOfCut(package.substr(0, package.size() - 23)));
    EXPECT_TRUE(WarnsOfCut(package.substr(0, 100)));
}

TEST(CutStorage, HasSectorsBehindItsEnd) {
    const std::string document = ReadSample("/doc/writer_word97.doc");
    EXPECT_FALSE(WarnsOfCut(document));
    EXPECT_TRUE(WarnsOfCut(document.substr(0, 600)));
    EXPECT_TRUE(WarnsOfCut(document.substr(0, 100)));
    StorageWriter writer;
    writer.AddStream(u"Contents", std::string(5000, 'x'));
    const WrittenStorage storage = writer.Write();
    EXPECT_FALSE(WarnsOfCut(storage.bytes));
    const std::size_t directory = storage.SectorOffset(storage.directory.front());
    const std::size_t table = storage.SectorOffset(storage.fat.front());
    EXPECT_TRUE(WarnsOfCut(storage.bytes.substr(0, std::max(directory, table))));
}

}  // namespace
