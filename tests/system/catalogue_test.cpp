// Every identifier of the catalogue that the system can return is returned for a file: for the skeleton of a row, for a
// sample, or for one of the files made here.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

#include "catalogue/format_catalogue.h"
#include "core/driver.h"
#include "support/golden.h"
#include "support/probe_case.h"
#include "support/zip_writer.h"

namespace {

// ---- Files that neither a skeleton nor a sample stands for ----------------------------------------------------------

struct MadeFile {
    FIID fiid;
    const char* bytes;
    const char* name = "";
};

const MadeFile madeFiles[] = {
    // clang-format off
    {1003, "(61 62 E3 20 63 64 E4 20 0D 0A)*5"},
    {1006, "01 >440 05 00 >508 01 00 00 00 02 >1026 FF 03 B3"},
    {1007, "01 >420 01 >440 05 00 >508 01 00 00 00 02 >1026 FF 03 B3"},
    {1010, "53 04 02 01 w:4 w:0 w:65535 >32 w:1 w:0"},
    {1018, "(00 02)*4"},
    {1019, R"(1B "[001$K")"},
    {1020, R"(41*114 1A 1A "LAYOUT 000" 0D 0A 1A*128 00 01 02 41*125)"},
    {1021, R"(74 00 >118 40 00 7C "N" 40 7C "O" 41*200)"},
    {1022, "41 (0E 0D 0A)*3 41*20"},
    {1024, R"(41*114 1A 1A "LAYOUT 000" 0D 0A 1A*128 00 01 03 41*125)"},
    {1025, "00*3 >256 w:1 00*8 w:1 >1024 86"},
    {1033, R"(41 AE "LM" AE "RM" 41*20)"},
    {1034, "2B 2B D1 2B D2 41*20"},
    {1039, "01 >440 05 00 >511 04 w:2 >1026 FF 03 B3"},
    {1041, "w:130 00 00 w:99 w:456 00*10 >1824 B3"},
    {1077, R"(01 >118 7C "N" 40 7C "O" 41*200)"},
    {1108, R"("WordPro" 00*9 >48 05 00)"},
    {1202, R"(8B 00 0C 1F 00*4 w:48 >43 "C" >47 0D)"},
    {1206, "00 00 00 01 >32 00 01 >57 08 >62 1F 0F >88 01 00"},
    {1207, "00 00 00 08 >32 00 01 >57 08 >62 1F 0F >88 01 00"},
    {1210, "d:101 >100 d:201 >204 d:101", "a.rbf"},
    {1212, R"(37 FF >14 w:1009 >34 "ABCDEFGH" >1024 "ABCDEFGH")"},
    {1213, ">24 FF FF FF 7F >512", "a.rbf"},
    {1416, "00 00 02 00 00 00 w:2 w:1 00 w:3 w:1 00 w:6 w:8 00*8 w:75 w:0 w:150 w:0"},
    {1442, "09 04 06 00 00 01 00 01"},
    {1521, R"("RIFF" 00*4 "CDR ")"},
    {1537, R"("RIFF" 00*4 "CDR4")"},
    {1541, R"("RIFF" 00*4 "CDR5")"},
    {1570, "02 01 00 02 02 01 7E 02 02 01 7F 02 02 02 7E"},
    {1582, R"("RIFF" 00*4 "CDR6")"},
    {1583, R"("RIFF" 00*4 "CDR7")"},
    {1596, R"("RIFF" 00*4 "CDR8")"},
    {1598, R"("RIFF" 00*4 "CDR9")"},
    {1601, "w:0x0800 w:0 w:0x0900 w:0 w:0x0A00 w:0"},
    {1629, R"("RIFF" 00*4 "CDRA")"},
    {1630, R"("RIFF" 00*4 "CDRB")"},
    {1711, "FF FF 10 00 >32 FF FF 10 00"},
    {1713, "FF F7 10 00 >68 FF F7 10 00"},
    // clang-format on
};

// A storage by its class identifier, in memory form, and one stream or sub-storage.
struct MadeStorage {
    FIID fiid;
    const char* classId;
    const char* object;
    const char* bytes;
    std::uint32_t kind = IOSUB_STREAM;
};

constexpr const char* noClass = "00*16";
constexpr const char* designerClass = "2F E4 05 FE F7 C8 CF 11 9A 59 00 20 AF 9B F9 3E";
constexpr const char* visioClass = "13 1A 02 00 00 00 00 00 C0 00 00 00 00 00 00 46";
constexpr const char* notebookClass = "00 B4 02 00 00 00 00 00 C0 00 00 00 00 00 00 46";

const MadeStorage madeStorages[] = {
    // clang-format off
    {1444, noClass,       "PerfectOffice_MAIN",  "00 00 02 00 07 10"},
    {1445, notebookClass, "NativeContent_MAIN",  "01 00 0E 00 51 50 57 39"},
    {1448, noClass,       "Workbook",            "00*8 w:6214 w:1997"},
    {1451, noClass,       "Workbook",            "00*8 w:5612 w:1997"},
    {1538, noClass,       "PP40",                ""},
    {1592, noClass,       "PP97_DUALSTORAGE",    "", IOSUB_STORAGE},
    {1597, visioClass,    "VisioDocument",       "00*24 00 00 06 00"},
    {1600, noClass,       "PowerPoint Document", "w:4"},
    {1608, designerClass, "DesignerDoc",         "00*13 w:6"},
    {1631, visioClass,    "VisioDocument",       "00*24 00 00 0B 00"},
    // clang-format on
};

FIID IdentifyStorage(const MadeStorage& made) {
    const auto handle = FIMakeTestHandle("no bytes that a row knows");
    handle->isStorage = true;
    handle->classId = FIBytes(made.classId);
    (made.kind == IOSUB_STREAM ? handle->streams : handle->storages)[made.object] = FIBytes(made.bytes);
    FIVerdict verdict = {0, 0};
    EXPECT_EQ(FIIdHandleWithRow(FIFileOf(*handle), 0, verdict), 0);
    EXPECT_EQ(handle->openChildren, 0U);
    return verdict.fiid;
}

// A Word document told by the version in the name of the writing application.
FIID IdentifyWordStorage(const char* version) {
    const auto handle = FIMakeTestHandle("no bytes that a row knows");
    handle->isStorage = true;
    handle->classId = FIBytes("06 09 02 00 00 00 00 00 C0 00 00 00 00 00 00 46");
    handle->streams["\005SummaryInformation"] = FIBytes(
        R"(d:0x0000FFFE >44 d:48 d:100 d:1 d:18 d:16 d:30 d:20 "Microsoft Word )" + std::string(version) + "\"");
    FIVerdict verdict = {0, 0};
    EXPECT_EQ(FIIdHandleWithRow(FIFileOf(*handle), 0, verdict), 0);
    return verdict.fiid;
}

FIID IdentifyBinaryPackage() {
    const std::string relationships =
        R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="a" )"
        R"(Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="b.bin"/>)"
        "</Relationships>";
    return FIIdentifyBytes(FIWriteZip(
        {{.name = "_rels/.rels", .bytes = relationships}, {.name = "b.bin", .bytes = FIBytes("83 01 00 80 01")}}));
}

// ---- Identifiers that no file gets ----------------------------------------------------------------------------------

const std::map<FIID, const char*> unreachable = {
    {1056,
     "the routine that tells it is called by no row: rows 148 and 149 give 1057 for every file with its sections"},
    {1182, "a document type of HTML counts only when the tags agree, and then the tags give the answer"},
    {1554, "row 388 needs a text that the PostScript routine of row 387 claims"},
};

// The answers in a table whose second column holds them.
void AddAnswers(const std::vector<std::string>& lines, std::set<FIID>& reached) {
    for (const std::string& line : lines) {
        const std::size_t tab = line.find('\t');
        reached.insert(static_cast<FIID>(std::stoul(line.substr(tab + 1))));
    }
}

std::vector<std::string> SampleAnswers() {
    std::ifstream text(FIID_SAMPLES_DIR "/answers.tsv");
    std::vector<std::string> lines;
    std::string line;
    std::getline(text, line);  // the header
    while (std::getline(text, line)) lines.push_back(line);
    return lines;
}

TEST(Catalogue, MadeFilesGetTheirIdentifiers) {
    for (const MadeFile& made : madeFiles) EXPECT_EQ(FIIdentifyBytes(FIBytes(made.bytes), made.name, 0), made.fiid);
    for (const MadeStorage& made : madeStorages) EXPECT_EQ(IdentifyStorage(made), made.fiid);
    EXPECT_EQ(IdentifyWordStorage("10.0"), 1185);
    EXPECT_EQ(IdentifyWordStorage("11.0"), 1186);
    EXPECT_EQ(IdentifyBinaryPackage(), 1457);
}

// The other tests of this program and of the skeletons and samples show that the files really get these answers.
TEST(Catalogue, EveryIdentifierIsReachedOrHasAReasonNotToBe) {
    std::set<FIID> reached = {1185, 1186, 1457};
    for (const MadeFile& made : madeFiles) reached.insert(made.fiid);
    for (const MadeStorage& made : madeStorages) reached.insert(made.fiid);
    AddAnswers(FIReadGolden("skeletons.tsv"), reached);
    AddAnswers(SampleAnswers(), reached);
    for (const FIFormatRecord& format : FIFormatRecords()) {
        EXPECT_NE(reached.contains(format.fiid), unreachable.contains(format.fiid)) << format.fiid;
    }
    for (const FIID fiid : reached) EXPECT_NE(FIFindFormatRecord(fiid), nullptr) << fiid;
}

}  // namespace
