// versions_test.cpp - the rules that read versions: every version that is listed, near misses, and both sides of limits.
#include "further/versions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "fiid.h"
#include "further/look.h"
#include "platform/handle.h"
#include "support/bytes.h"
#include "support/case_name.h"

namespace {

// A file of which a test tells stretches; all else in it is zero. It counts what is read behind the start.
struct SparseFile {
    std::uint64_t size = 0;
    std::map<std::uint64_t, std::string> stretches;
    std::uint64_t readable = UINT64_MAX;  // bytes from here on can't be read
    std::uint64_t toldSize = 0;
    std::uint32_t reads = 0;
    std::uint64_t bytesRead = 0;
    std::vector<std::uint8_t> head;
};

struct SparseHandle {
    UTHandle handle;  // first: a kind's own record begins with it
    SparseFile* sparse;
};

void FIFillFrom(const SparseFile& file, std::uint64_t offset, std::span<std::uint8_t> bytes) {
    std::ranges::fill(bytes, std::uint8_t{0});
    for (const auto& [start, stretch] : file.stretches) {
        const std::uint64_t first = std::max(start, offset);
        const std::uint64_t last = std::min(start + stretch.size(), offset + bytes.size());
        if (first < last) std::memcpy(bytes.data() + (first - offset), stretch.data() + (first - start), last - first);
    }
}

std::int32_t FIReadSparse(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    SparseFile& file = *UTRecordOf<SparseHandle>(handle).sparse;
    count = 0;
    ++file.reads;
    if (offset >= file.readable) return -1;
    const std::uint64_t end = std::min(file.size, file.readable);
    if (offset < end) count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, end - offset));
    file.bytesRead += count;
    FIFillFrom(file, offset, {static_cast<std::uint8_t*>(destination), count});
    return 0;
}

std::uint64_t FISparseSize(UTHandle& handle) { return UTRecordOf<SparseHandle>(handle).sparse->toldSize; }

void FIReleaseSparse(UTHandle&) {}

bool FISparseHead(UTHandle& handle, UTHead& head) {
    SparseFile& file = *UTRecordOf<SparseHandle>(handle).sparse;
    head = {file.head.data(), static_cast<std::uint32_t>(file.head.size()), file.toldSize};
    return true;
}

constexpr UTHandleKind sparseKind = {FIReadSparse, FISparseSize, FIReleaseSparse, FISparseHead, true};

struct ReadVersion {
    bool read;
    std::string version;
    std::string puids;
    bool headWasRead;  // the first 65,536 bytes, all at once

    bool operator==(const ReadVersion&) const = default;
};

std::ostream& operator<<(std::ostream& out, const ReadVersion& read) {
    return out << (read.read ? "read '" + read.version + "' of " + read.puids : "nothing read");
}

ReadVersion FIReadVersionOf(SparseFile& file, std::uint16_t identifier, std::uint16_t row = 0) {
    if (file.toldSize == 0) file.toldSize = file.size;
    file.head.resize(std::min<std::uint64_t>(file.size, UTHeadBytes));
    FIFillFrom(file, 0, file.head);
    auto* const handle = UTNewHandleRecord<SparseHandle>(sparseKind, nullptr);
    handle->sparse = &file;
    FILook look;
    EXPECT_TRUE(FIStartLook(look, handle->handle, 1999, row));
    FIVersion version = {nullptr, nullptr};
    ReadVersion result = {FIReadVersion(look, identifier, version), "", "", false};
    if (result.read) {
        result.version = version.version;
        result.puids = version.puids;
    }
    result.headWasRead = look.wide != nullptr;
    FIEndLook(look);
    UTCloseHandle(handle->handle);
    return result;
}

SparseFile FIFileOfBytes(std::string bytes) {
    SparseFile file;
    file.size = bytes.size();
    file.stretches[0] = std::move(bytes);
    return file;
}

ReadVersion FIReadVersionOf(std::string bytes, std::uint16_t identifier, std::uint16_t row = 0) {
    SparseFile file = FIFileOfBytes(std::move(bytes));
    return FIReadVersionOf(file, identifier, row);
}

ReadVersion FINothingRead(bool headWasRead = false) { return {false, "", "", headWasRead}; }
ReadVersion FIRead(const char* version, const char* puids, bool headWasRead = false) {
    return {true, version, puids, headWasRead};
}

struct VersionCase {
    const char* name;
    std::uint16_t identifier;
    const char* bytes;    // in the notation of FIBytes
    const char* version;  // null when none is read
    const char* puids;
    std::uint16_t row = 0;
};
using ::PrintTo;

class Version : public testing::TestWithParam<VersionCase> {};

TEST_P(Version, IsRead) {
    const VersionCase& tested = GetParam();
    const ReadVersion expected = tested.version != nullptr ? FIRead(tested.version, tested.puids) : FINothingRead();
    EXPECT_EQ(FIReadVersionOf(FIBytes(tested.bytes), tested.identifier, tested.row), expected);
}

// Files of up to 8,192 bytes whose every beginning is read as well, so that a look behind the end shows.
void FIReadEveryBeginning(const std::string& bytes, std::uint16_t identifier, std::uint16_t row = 0) {
    for (std::size_t size = 0; size < std::min<std::size_t>(bytes.size(), 1200); ++size) {
        FIReadVersionOf(bytes.substr(0, size), identifier, row);
    }
}

TEST_P(Version, OfACutFileIsLookedForInWhatThereIs) {
    FIReadEveryBeginning(FIBytes(GetParam().bytes), GetParam().identifier, GetParam().row);
}

// ---- Every version that is listed -----------------------------------------------------------------------------------

struct ListedVersion {
    std::uint16_t identifier;
    const char* bytes;  // in the notation of FIBytes
    const char* version;
    const char* puids;
};

const ListedVersion listedVersions[] = {
    // clang-format off
    {1028, R"("{\rtf0")",                                 "0",   "fmt/969"},
    {1028, R"("{\rtf1\ansi")",                            "1",   "fmt/45"},
    {1028, R"("{\rtf1\ansi\ansicpg1252")",                "1",   "fmt/50 fmt/52 fmt/53 fmt/355"},
    {1502, "0A 00", "0", "fmt/86"},
    {1502, "0A 02", "2", "fmt/87"},
    {1502, "0A 03", "3", "fmt/88"},
    {1502, "0A 04", "4", "fmt/89"},
    {1502, "0A 05", "5", "fmt/90"},
    {1503, R"("GIF87a")", "87a", "fmt/3"},
    {1503, R"("GIF89a")", "89a", "fmt/4"},
    {1557, R"("%PDF-1.0")", "1.0", "fmt/14"},
    {1557, R"("%PDF-1.1")", "1.1", "fmt/15"},
    {1557, R"("%PDF-1.2")", "1.2", "fmt/16"},
    {1557, R"("%PDF-1.3")", "1.3", "fmt/17"},
    {1557, R"("%PDF-1.4")", "1.4", "fmt/18"},
    {1557, R"("%PDF-1.5")", "1.5", "fmt/19"},
    {1557, R"("%PDF-1.6")", "1.6", "fmt/20"},
    {1557, R"("%PDF-1.7")", "1.7", "fmt/276"},
    {1557, R"("%PDF-2.0")", "2.0", "fmt/1129"},
    {1587, R"("AC1012")", "AC1012", "fmt/33"},
    {1587, R"("AC1013")", "AC1013", "fmt/33"},
    {1587, R"("AC1014")", "AC1014", "fmt/34"},
    {20241, R"("MC0.0")",  "MC0.0",  "fmt/21"},
    {20241, R"("AC1.2")",  "AC1.2",  "fmt/22"},
    {20241, R"("AC1.3")",  "AC1.3",  "fmt/23"},
    {20241, R"("AC1.40")", "AC1.40", "fmt/24"},
    {20241, R"("AC1.50")", "AC1.50", "fmt/25"},
    {20241, R"("AC2.10")", "AC2.10", "fmt/26"},
    {20241, R"("AC2.21")", "AC2.21", "fmt/27"},
    {20241, R"("AC2.22")", "AC2.22", "fmt/27"},
    {1704,  R"("FWS" 01)", "1",  "fmt/104"},
    {1704,  R"("FWS" 04)", "4",  "fmt/107"},
    {1704,  R"("CWS" 06)", "6",  "fmt/109"},
    {1704,  R"("CWS" 07)", "7",  "fmt/110"},
    {20112, R"("FWS" 08)", "8",  "fmt/505"},
    {20112, R"("FWS" 0A)", "10", "fmt/507"},
    {20112, R"("FWS" 0B)", "11", "fmt/757"},
    {20113, R"("ZWS" 0D)", "13", "fmt/759"},
    {20113, R"("CWS" 1D)", "29", "fmt/775"},
    {20113, R"("CWS" 1E)", "30", "fmt/776"},
    {1101, R"("<!DOCTYPE HTML PUBLIC " 22 "-//IETF//DTD HTML 2.0//EN" 22 ">")",              "2.0",  "fmt/97"},
    {1101, R"("<!DOCTYPE HTML PUBLIC " 22 "-//W3C//DTD HTML 3.2 Final//EN" 22 ">")",         "3.2",  "fmt/98"},
    {1101, R"("<!doctype html public '-//W3C//DTD HTML 4.0//EN'>")",                         "4.0",  "fmt/99"},
    {1101, R"("<!DOCTYPE HTML PUBLIC " 22 "-//W3C//DTD HTML 4.01 Transitional//EN" 22 ">")", "4.01", "fmt/100"},
    {1101, R"("<!DOCTYPE html>")",                                                           "5",    "fmt/471"},
    {1101, R"("<!DOCTYPE html PUBLIC " 22 "-//W3C//DTD XHTML 1.0 Strict//EN" 22)",           "XHTML 1.0", "fmt/102"},
    {1101, R"("<!DOCTYPE html PUBLIC " 22 "-//W3C//DTD XHTML 1.1//EN" 22)",                  "XHTML 1.1", "fmt/103"},
    {1101, R"("<html>")",                                                                    "",     "fmt/96"},
    {1147, R"("<!DOCTYPE html><meta>")",                                                     "5",    "fmt/471"},
    {1147, R"("<html>")",                                                                    "",     "fmt/96"},
    {1150, R"("<?xml version=" 22 "1.0" 22 "?>")", "1.0", "fmt/101"},
    {1150, R"("<?xml version='1.1'?>")",           "1.1", "fmt/1776"},
    {1580, R"("%!PS-Adobe-1.0")", "1.0", "x-fmt/91"},
    {1580, R"("%!PS-Adobe-2.0")", "2.0", "x-fmt/406"},
    {1580, R"("%!PS-Adobe-2.1")", "2.1", "x-fmt/407"},
    {1580, R"("%!PS-Adobe-3.0")", "3.0", "x-fmt/408"},
    {1554, R"("%!PS-Adobe-3.1")", "3.1", "fmt/501"},
    {1580, R"("%!PS-Adobe-2.0 EPSF-1.2")", "EPSF-1.2", "fmt/122"},
    {1580, R"("%!PS-Adobe-2.0 EPSF-2.0")", "EPSF-2.0", "fmt/123"},
    {1580, R"("%!PS-Adobe-3.0 EPSF-2.1")", "EPSF-2.1", "fmt/1884"},
    {1554, R"("%!PS-Adobe-3.0 EPSF-3.0")", "EPSF-3.0", "fmt/124"},
    {1504, R"(C5 D0 D3 C6 d:30 00*22 "%!PS-Adobe-2.0 EPSF-1.2")",    "EPSF-1.2", "fmt/122"},
    {1504, R"(C5 D0 D3 C6 d:32 >32 "%!PS-Adobe-2.0 EPSF-2.0")",      "EPSF-2.0", "fmt/123"},
    {1504, R"(C5 D0 D3 C6 d:32 >32 "%!PS-Adobe-3.0  EPSF-2.1" 0D)",  "EPSF-2.1", "fmt/1884"},
    {1504, R"(C5 D0 D3 C6 d:32 >32 "%!PS-Adobe-3.0 EPSF-3.0" 0D)",   "EPSF-3.0", "fmt/124"},
    {1528, "00 21 00 00 10 22 00 01", "1", "fmt/303"},
    {1528, "00 22 01 41 10 22 00 02", "2", "fmt/304"},
    {1528, "00 23 02 41 42 00 10 22 00 03", "3", "fmt/305"},
    {1528, "00 20 10 22 00 04", "4", "fmt/306"},
    {1535, R"(FF D8 FF E0 00 10 "JFIF" 00 01 00)", "JFIF 1.00", "fmt/42"},
    {1535, R"(FF D8 FF E0 00 10 "JFIF" 00 01 01)", "JFIF 1.01", "fmt/43"},
    {1599, R"(FF D8 FF E0 00 10 "JFIF" 00 01 02)", "JFIF 1.02", "fmt/44"},
    {1535, R"(FF D8 FF E8 00 20 "SPIFF" 00)",      "SPIFF",     "fmt/112"},
    {1535, "FF D8 FF DB",                          "",          "fmt/41"},
    {1591, R"("8BPS" 00 01)", "1", "x-fmt/92"},
    {1591, R"("8BPS" 00 02)", "2", "fmt/996"},
    {1545, R"("AutoCAD Binary DXF" 0D 0A 1A 00 00)", "", "fmt/1394"},
    {1544, R"("  0" 0A "SECTION" 0A)", "", "fmt/63"},
    {20184, "w:62211 0D 0A", "2.7", "fmt/939"},
    {20184, "w:3310 0D 0A",  "3.4", "fmt/940"},
    {20184, "w:50823 0D 0A", "2.0", "fmt/1106"},
    {20184, "w:60202 0D 0A", "2.1", "fmt/1107"},
    {20184, "w:60717 0D 0A", "2.2", "fmt/1108"},
    {20184, "w:62011 0D 0A", "2.3", "fmt/1109"},
    {20184, "w:62061 0D 0A", "2.4", "fmt/1110"},
    {20184, "w:62131 0D 0A", "2.5", "fmt/1111"},
    {20184, "w:62161 0D 0A", "2.6", "fmt/1112"},
    {20184, "w:3131 0D 0A",  "3.0", "fmt/1113"},
    {20184, "w:3151 0D 0A",  "3.1", "fmt/1114"},
    {20184, "w:3180 0D 0A",  "3.2", "fmt/1115"},
    {20184, "w:3230 0D 0A",  "3.3", "fmt/1116"},
    {20184, "w:3350 0D 0A",  "3.5", "fmt/1117"},
    {20184, "w:3379 0D 0A",  "3.6", "fmt/1118"},
    {20068, ">24 01 >29 d:1",     "1.5",     "fmt/1629"},
    {20068, ">24 01 >29 d:2",     "2.0",     "fmt/1630"},
    {20068, ">24 01 >29 d:3",     "CS",      "fmt/196"},
    {20068, ">24 01 >29 d:4",     "CS2",     "fmt/548"},
    {20068, ">24 01 >29 d:5",     "CS3",     "fmt/549"},
    {20068, ">24 01 >29 d:6",     "CS4",     "fmt/550"},
    {20068, ">24 01 >29 d:7",     "CS5",     "fmt/551"},
    {20068, ">24 01 >29 d:7 04",  "CS5",     "fmt/551"},
    {20068, ">24 01 >29 d:7 05",  "CS5.5",   "fmt/1631"},
    {20068, ">24 02 >29 D:7 05",  "CS5.5",   "fmt/1631"},
    {20068, ">24 02 >29 D:8 05",  "CS6",     "fmt/552"},
    {20068, ">24 01 >29 d:9",     "CC",      "fmt/1632"},
    {20068, ">24 01 >29 d:10",    "CC 2014", "fmt/1633"},
    {20068, ">24 01 >29 d:11",    "CC 2015", "fmt/1634"},
    {20068, ">24 01 >29 d:12",    "CC 2017", "fmt/1635"},
    {20068, ">24 01 >29 d:13",    "CC 2018", "fmt/1636"},
    {20068, ">24 01 >29 d:14",    "CC 2019", "fmt/1637"},
    {20068, ">24 01 >29 d:15",    "CC 2020", "fmt/1638"},
    {20068, ">24 01 >29 d:16",    "CC 2021", "fmt/1639"},
    {20068, ">24 01 >29 d:17",    "CC 2022", "fmt/1640"},
    {20068, ">24 01 >29 d:18",    "CC 2023", "fmt/1941"},
    {20068, ">24 02 >29 D:19",    "CC 2024", "fmt/1942"},
    {20378, R"(>16 "LIBRARY2")", "2", "fmt/1642"},
    {20378, R"(>16 "LIBRARY4")", "4", "fmt/1192"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "." 00)",        "1",  "fmt/1259"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "2" 00 "." 00)",        "2",  "fmt/1260"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "3" 00 "." 00)",        "3",  "fmt/1261"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "4" 00 "." 00)",        "4",  "fmt/1262"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "5" 00 "." 00)",        "5",  "fmt/1263"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "6" 00 "." 00)",        "6",  "fmt/1264"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "7" 00 "." 00)",        "7",  "fmt/1265"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "8" 00 "." 00)",        "8",  "fmt/1266"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "3" 00 "." 00)", "13", "fmt/1267"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "4" 00 "." 00)", "14", "fmt/1268"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "5" 00 "." 00)", "15", "fmt/1269"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "6" 00 "." 00)", "16", "fmt/1270"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "7" 00 "." 00)", "17", "fmt/1271"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "8" 00 "." 00)", "18", "fmt/1272"},
    {20252, R"(>32 FF FE FF 0F "{" 00 "1" 00 "9" 00 "." 00)", "19", "fmt/1273"},
    {20107, R"(2E "ra" FD 00 03)", "3", "x-fmt/278"},
    {20107, R"(2E "ra" FD 00 04)", "4", "fmt/404"},
    {20229, "CF AD 12 FE C5", "", "fmt/838"},
    {20229, "CF AD 12 FE C6", "", "fmt/839"},
    {20145, "ED AB EE DB 01", "1", "fmt/793"},
    {20145, "ED AB EE DB 02", "2", "fmt/794"},
    {20250, R"("BLENDER_v")", "", "fmt/902"},
    {20250, R"("BLENDER-v")", "", "fmt/903"},
    {20262, ">8 00 00 01 00", "1.0", "fmt/1382"},
    {20262, ">8 01 00 02 00", "2.1", "fmt/1383"},
    {20262, ">8 02 00 02 00", "2.2", "fmt/1384"},
    {20300, R"("<svg version=" 22 "1.0" 22 ">")", "1.0", "fmt/91"},
    {20300, R"("<svg version=" 22 "1.1" 22 ">")", "1.1", "fmt/92"},
    {20300, R"("<svg version=" 22 "1.2" 22 ">")", "1.2", "fmt/413"},
    {20167, R"("filedesc://a.arc 0.0.0.0 19980708031133 text/plain 73" 0A "1 0 AlexaInternet" 0A)", "1.0", "x-fmt/219"},
    {20167, R"("filedesc://a.arc 0.0.0.0 19980708031133 text/plain 73" 0A "1 1 InternetArchive" 0A)", "1.1", "fmt/410"},
    {20134, R"("Rar!" 1A 07 00 00 00 73 >44 14)", "2.0", "x-fmt/264"},
    {20134, R"("Rar!" 1A 07 00 00 00 73 >44 1D)", "2.9", "fmt/411"},
    {20207, R"(>39 "1" >216 "8.0202M0")", "8.2", "fmt/1018"},
    {20207, R"(>39 "1" >216 "9.0101M3")", "9.1", "fmt/608"},
    {20207, R"(>39 "1" >216 "9.0202M3")", "9.2", "fmt/1020"},
    {20207, R"(>39 "1" >216 "9.0301M2")", "9.3", "fmt/1022"},
    {20207, R"(>39 "1" >216 "9.0401M2")", "",    "fmt/1016"},
    {20207, R"(>39 "2" >216 "8.0202M0")", "8.2", "fmt/1017"},
    {20207, R"(>39 "2" >216 "9.0101M3")", "9.1", "fmt/607"},
    {20207, R"(>39 "2" >216 "9.0202M3")", "9.2", "fmt/1019"},
    {20207, R"(>39 "2" >216 "9.0301M2")", "9.3", "fmt/1021"},
    {20207, R"(>39 "2" >216 "9.0401M2")", "",    "fmt/1015"},
    {20380, R"(>39 "1" >216 "9.0101M3")", "9.1", "fmt/606"},
    {20380, R"(>39 "1" >216 "9.0202M3")", "9.2", "fmt/1026"},
    {20380, R"(>39 "1" >216 "9.0301M2")", "9.3", "fmt/1028"},
    {20380, R"(>39 "1" >216 "8.0202M0")", "",    "fmt/1024"},
    {20380, R"(>39 "2" >216 "9.0101M3")", "9.1", "fmt/605"},
    {20380, R"(>39 "2" >216 "9.0202M3")", "9.2", "fmt/1025"},
    {20380, R"(>39 "2" >216 "9.0301M2")", "9.3", "fmt/1027"},
    {20380, R"(>39 "2" >216 "8.0202M0")", "",    "fmt/1023"},
    {20188, R"("Microsoft C/C++ program database 2.00" 0D 0A)", "2.00", "fmt/1078"},
    {20188, R"("Microsoft C/C++ MSF 7.00" 0D 0A)",              "7.00", "fmt/1079"},
    {20210, R"("<stata_dta><header><release>117</release>")", "117", "fmt/1036"},
    {20210, R"("<stata_dta><header><release>118</release>")", "118", "fmt/1037"},
    // clang-format on
};

TEST(ListedVersions, AreRead) {
    for (const ListedVersion& listed : listedVersions) {
        const std::string bytes = FIBytes(listed.bytes);
        EXPECT_EQ(FIReadVersionOf(bytes, listed.identifier), FIRead(listed.version, listed.puids)) << listed.bytes;
        FIReadEveryBeginning(bytes, listed.identifier);
    }
}

struct ListedText {
    const char* text;
    const char* puids;
};

TEST(ListedVersions, OfDxfAreRead) {
    constexpr ListedText versions[] = {
        {"MC0.0", "fmt/64"},   {"AC1.2", "fmt/65"},    {"AC1.3", "fmt/66"},   {"AC1.40", "fmt/67"},
        {"AC1.50", "fmt/68"},  {"AC2.10", "fmt/69"},   {"AC1001", "fmt/70"},  {"AC2.21", "fmt/70"},
        {"AC2.22", "fmt/70"},  {"AC1002", "fmt/71"},   {"AC1003", "fmt/72"},  {"AC1004", "fmt/73"},
        {"AC1006", "fmt/74"},  {"AC1009", "fmt/75"},   {"AC1012", "fmt/76"},  {"AC1014", "fmt/77"},
        {"AC1015", "fmt/78"},  {"AC1018", "fmt/79"},   {"AC1021", "fmt/433"}, {"AC1024", "fmt/435"},
        {"AC1027", "fmt/532"}, {"AC1032", "fmt/1389"},
    };
    for (const ListedText& listed : versions) {
        const std::string text = std::string("  0\nSECTION\n  9\n$ACADVER\n  1\n") + listed.text + "\n  9\n";
        EXPECT_EQ(FIReadVersionOf(text, 1544), FIRead(listed.text, listed.puids));
    }
}

TEST(ListedVersions, OfBinaryDxfAreRead) {
    constexpr ListedText versions[] = {
        {"AC1006", "fmt/80"},   {"AC1009", "fmt/81"},   {"AC1012", "fmt/82"},   {"AC1014", "fmt/83"},
        {"AC1015", "fmt/84"},   {"AC1018", "fmt/85"},   {"AC1021", "fmt/1390"}, {"AC1024", "fmt/1391"},
        {"AC1027", "fmt/1392"}, {"AC1032", "fmt/1393"},
    };
    for (const ListedText& listed : versions) {
        for (const char* const codeEnd : {"", " 00"}) {
            const std::string notation = std::string(R"("AutoCAD Binary DXF" 0D 0A 1A 00 09)") + codeEnd +
                                         R"( "$ACADVER" 00 01)" + codeEnd + " \"" + listed.text + "\" 00 09";
            EXPECT_EQ(FIReadVersionOf(FIBytes(notation), 1545), FIRead(listed.text, listed.puids)) << notation;
        }
    }
}

TEST(ListedVersions, OfMxfAreRead) {
    constexpr ListedText versions[] = {{"OP1a", "fmt/200"}, {"OP1b", "fmt/783"}, {"OP1c", "fmt/784"},
                                       {"OP2a", "fmt/785"}, {"OP2b", "fmt/786"}, {"OP2c", "fmt/787"},
                                       {"OP3a", "fmt/788"}, {"OP3b", "fmt/789"}, {"OP3c", "fmt/790"}};
    std::string bytes = FIBytes("06 0E 2B 34 02 05 01 01 0D 01 02 01 01 02 >84 06 0E 2B 34 >92 0D 01 02 01 00 00");
    for (std::size_t index = 0; index < std::size(versions); ++index) {
        bytes[96] = static_cast<char>(1 + index / 3);
        bytes[97] = static_cast<char>(1 + index % 3);
        EXPECT_EQ(FIReadVersionOf(bytes, 20120), FIRead(versions[index].text, versions[index].puids));
    }
    for (const char packages : {'\0', '\x01', '\x7F'}) {
        bytes[96] = '\x10';
        bytes[97] = packages;
        EXPECT_EQ(FIReadVersionOf(bytes, 20120), FIRead("OP-Atom", "fmt/791"));
    }
    EXPECT_EQ(FIReadVersionOf(bytes.substr(0, 97), 20120), FIRead("OP-Atom", "fmt/791"));
    EXPECT_EQ(FIReadVersionOf(bytes.substr(0, 96), 20120), FINothingRead());
}

// ---- Misses and limits ----------------------------------------------------------------------------------------------

TEST(VersionRules, AreNoneOfOtherFormats) {
    std::vector<std::uint16_t> ruled = {1028,  1101,  1147,  1150,  1502,  1503,  1504,  1528,  1535,  1544,
                                        1545,  1554,  1557,  1564,  1580,  1587,  1591,  1599,  1700,  1704,
                                        20068, 20107, 20112, 20113, 20120, 20134, 20145, 20167, 20184, 20188,
                                        20207, 20210, 20229, 20241, 20250, 20252, 20262, 20300, 20378, 20380};
    for (std::uint32_t number = 0; number <= 0xFFFF; ++number) {
        EXPECT_EQ(FIHasVersionRule(static_cast<std::uint16_t>(number)), std::ranges::binary_search(ruled, number));
    }
    for (std::uint32_t identifier = 0; identifier <= 20400; ++identifier) {
        if (std::ranges::binary_search(ruled, identifier)) continue;
        EXPECT_EQ(FIReadVersionOf("%PDF-1.4", static_cast<std::uint16_t>(identifier)), FINothingRead()) << identifier;
    }
}

const VersionCase simpleCases[] = {
    // clang-format off
    {"Pdf14IsReadOverOther",           1557, R"("%PDF-1.9 %PDF-1.4")",             nullptr, ""},  // the first decides
    {"Pdf19IsNotListed",               1557, R"("%PDF-1.9")",                      nullptr, ""},
    {"PdfHeaderEndsAt1023",            1557, R"(00*1019 "%PDF-1.4")",              "1.4", "fmt/18"},
    {"PdfHeaderEndsAt1024",            1557, R"(00*1020 "%PDF-1.4")",              nullptr, ""},
    {"PdfVersionOfThreeBytes",         1557, R"("%PDF-1.75")",                     "1.7", "fmt/276"},
    {"PdfVersionIsCut",                1557, R"("%PDF-1.")",                       nullptr, ""},
    {"PdfBehindMacBinary",             1557, R"(00*128 "%PDF-1.3")",               "1.3", "fmt/17"},
    {"PdfMarkInSmallLetters",          1557, R"("%pdf-1.3")",                      nullptr, ""},
    {"Gif88aIsNotListed",              1503, R"("GIF88a")",                        nullptr, ""},
    {"GifIsCut",                       1503, R"("GIF87")",                         nullptr, ""},
    {"RtfWithoutNumberIs1",            1028, R"("{\rtf\ansi")",                    "1", "fmt/45"},
    {"RtfEndsBehindMark",              1028, R"("{\rtf")",                         "1", "fmt/45"},
    {"RtfWithoutNumberWithCodePage",   1028, R"("{\rtf\ansi\ansicpg")",            "1", "fmt/50 fmt/52 fmt/53 fmt/355"},
    {"Rtf2IsNotListed",                1028, R"("{\rtf2")",                        nullptr, ""},
    {"Rtf10IsNotListed",               1028, R"("{\rtf10")",                       nullptr, ""},
    {"Rtf01Is1",                       1028, R"("{\rtf01")",                       "1", "fmt/45"},
    {"Rtf00Is0",                       1028, R"("{\rtf00\ansicpg1252")",           "0", "fmt/969"},
    {"RtfMarkInCapitals",              1028, R"("{\RTF1")",                        nullptr, ""},
    {"RtfMarkNotAt0",                  1028, R"(" {\rtf1")",                       nullptr, ""},
    {"RtfCodePageEndsAt63",            1028, R"("{\rtf1" 20*50 "\ansicpg1252")",   "1", "fmt/50 fmt/52 fmt/53 fmt/355"},
    {"RtfCodePageEndsAt64",            1028, R"("{\rtf1" 20*51 "\ansicpg1252")",   "1", "fmt/45"},
    {"Drawing1015IsNotListed",         1587, R"("AC1015")",                        nullptr, ""},
    {"EarlyDrawing14IsNotListed",      20241, R"("AC1.41")",                       nullptr, ""},
    {"EarlyDrawing12WithMore",         20241, R"("AC1.20")",                       "AC1.2", "fmt/22"},
    {"EarlyDrawingIsCut",              20241, R"("AC1.4")",                        nullptr, ""},
    {"Flash0IsNotListed",              1704, R"("FWS" 00)",                        nullptr, ""},
    {"Flash31IsNotListed",             20113, R"("CWS" 1F)",                       nullptr, ""},
    {"FlashIsCut",                     20112, R"("FWS")",                          nullptr, ""},
    {"Pcx1IsNotListed",                1502, "0A 01",                              nullptr, ""},
    {"Pcx6IsNotListed",                1502, "0A 06",                              nullptr, ""},
    {"Photoshop3IsNotListed",          1591, R"("8BPS" 00 03)",                    nullptr, ""},
    {"PhotoshopInTheOtherOrder",       1591, R"("8BPS" 01 00)",                    nullptr, ""},
    {"PhotoshopIsCut",                 1591, R"("8BPS" 00)",                       nullptr, ""},
    {"Python3394IsNotListed",          20184, "w:3394 0D 0A",                      nullptr, ""},
    {"InDesignOfNoByteOrder",          20068, ">24 00 >29 d:3",                    nullptr, ""},
    {"InDesignOfByteOrder3",           20068, ">24 03 >29 d:3",                    nullptr, ""},
    {"InDesignInTheOtherOrder",        20068, ">24 02 >29 d:3",                    nullptr, ""},
    {"InDesign0IsNotListed",           20068, ">24 01 >29 d:0",                    nullptr, ""},
    {"InDesign20IsNotListed",          20068, ">24 01 >29 d:20",                   nullptr, ""},
    {"InDesign256Plus3IsNotListed",    20068, ">24 01 >29 d:259",                  nullptr, ""},
    {"InDesignIsCut",                  20068, ">24 01 >29 03 00 00",               nullptr, ""},
    {"InDesignLibrary3IsNotListed",    20378, R"(>16 "LIBRARY3")",                 nullptr, ""},
    {"SketchUp9IsNotListed",           20252, R"(>32 FF FE FF 0F "{" 00 "9" 00 "." 00)",            nullptr, ""},
    {"SketchUp20IsNotListed",          20252, R"(>32 FF FE FF 0F "{" 00 "2" 00 "0" 00 "." 00)",     nullptr, ""},
    {"SketchUpOfManyDigits",           20252, R"(>32 FF FE FF 0F "{" 00 ("1" 00)*4000)",            nullptr, ""},
    {"SketchUpWithoutNumber",          20252, R"(>32 FF FE FF 0F "{" 00 "." 00)",                   nullptr, ""},
    {"SketchUpWithAnyLength",          20252, R"(>32 FF FE FF 42 "{" 00 "8" 00 "." 00)",            "8", "fmt/1266"},
    {"SketchUpWithoutMark",            20252, R"(>32 FF FE FE 0F "{" 00 "8" 00 "." 00)",            nullptr, ""},
    {"SketchUpWithoutBrace",           20252, R"(>32 FF FE FF 0F "(" 00 "8" 00 "." 00)",            nullptr, ""},
    {"SketchUpInBytes",                20252, R"(>32 FF FE FF 0F "{" 00 "88")",                     nullptr, ""},
    {"RealAudio5IsNotListed",          20107, R"(2E "ra" FD 00 05)",               nullptr, ""},
    {"OutlookExpressC7IsNotListed",    20229, "CF AD 12 FE C7",                    nullptr, ""},
    {"Rpm3IsNotListed",                20145, "ED AB EE DB 03",                    nullptr, ""},
    {"Blender5HasNoSizeOfPointers",    20250, R"("BLENDER17-01v0500")",            nullptr, ""},
    {"EmbeddedFont20IsNotListed",      20262, ">8 00 00 02 00",                    nullptr, ""},
    {"EmbeddedFontIsCut",              20262, ">8 00 00 01",                       nullptr, ""},
    {"Rar14IsNotListed",               20134, R"("Rar!" 1A 07 00 00 00 73 >44 0F)", nullptr, ""},
    {"RarWithoutMainHeader",           20134, R"("Rar!" 1A 07 00 00 00 74 >44 14)", nullptr, ""},
    {"RarIsCut",                       20134, R"("Rar!" 1A 07 00 00 00 73 >44)",   nullptr, ""},
    {"Stata119IsNotListed",            20210, R"("<stata_dta><header><release>119</release>")", nullptr, ""},
    {"ProgramDatabase6IsNotListed",    20188, R"("Microsoft C/C++ MSF 6.00")",     nullptr, ""},
    {"ProgramDatabaseIsCut",           20188, R"("Microsoft C/C++ MSF 7.0")",      nullptr, ""},
    {"SasOfNoSystem",                  20207, R"(>39 00 >216 "9.0101M3")",         nullptr, ""},
    {"SasOfSystem3",                   20207, R"(>39 "3" >216 "9.0101M3")",        nullptr, ""},
    {"SasWithoutRelease",              20207, R"(>39 "2" >232)",                   "", "fmt/1015"},
    {"SasIsCutBehindSystem",           20380, R"(>39 "1")",                        "", "fmt/1024"},
    {"SasIsCutInFrontOfSystem",        20380, ">39",                               nullptr, ""},
    {"SasReleaseBeginsAt200",          20207, R"(>39 "1" >200 "9.01")",            "9.1", "fmt/608"},
    {"SasReleaseBeginsAt199",          20207, R"(>39 "1" >199 "9.01" >240)",       "", "fmt/1016"},
    {"SasReleaseEndsAt231",            20207, R"(>39 "1" >228 "9.0101M3")",        "9.1", "fmt/608"},
    {"SasReleaseEndsAt232",            20207, R"(>39 "1" >229 "9.0101M3")",        "", "fmt/1016"},
    {"SasFirstReleaseDecides",         20207, R"(>39 "1" >210 "9.0401M1" "9.0101M3")", "", "fmt/1016"},
    {"SasReleaseIsNot7",               20207, R"(>39 "1" >210 "7.01" "9.01M3")",   "9.1", "fmt/608"},
    {"SasReleaseWithoutDigit",         20207, R"(>39 "1" >210 "9.0x" "9.0101")",   "9.1", "fmt/608"},
    {"SasReleaseWithoutFullStop",      20207, R"(>39 "1" >210 "9001" "9.0201")",   "9.2", "fmt/1020"},
    {"ArcWithCarriageReturns",         20167, R"("filedesc://a" 0D 0A "1 0 Alexa" 0D 0A)", "1.0", "x-fmt/219"},
    {"Arc12IsNotListed",               20167, R"("filedesc://a" 0A "1 2 Alexa" 0A)", nullptr, ""},
    {"ArcWithNothingMore",             20167, R"("filedesc://a" 0A "1 0 ")",         nullptr, ""},
    {"ArcWithNothingMoreOnTheLine",    20167, R"("filedesc://a" 0A "1 0 " 0A "URL")", nullptr, ""},
    {"ArcWithoutBlank",                20167, R"("filedesc://a" 0A "1 0Alexa")",     nullptr, ""},
    {"ArcVersionOnTheThirdLine",       20167, R"("filedesc://a" 0A 0A "1 0 Alexa")", nullptr, ""},
    {"ArcOfOneLine",                   20167, R"("filedesc://a 1 0 Alexa")",         nullptr, ""},
    {"MxfPatternOfAnotherLabel",       20120, "06 0E 2B 34 02 05 01 01 0D 01 02 01 01 02 >84 06 0E 2B 34 >92 0D 01 02 02 01 01", nullptr, ""},
    {"MxfPatternIsNoLabel",            20120, "06 0E 2B 34 02 05 01 01 0D 01 02 01 01 02 >84 06 0E 2B 35 >92 0D 01 02 01 01 01", nullptr, ""},
    {"MxfPack03IsNoHeader",            20120, "06 0E 2B 34 02 05 01 01 0D 01 02 01 01 03 >84 06 0E 2B 34 >92 0D 01 02 01 01 01", nullptr, ""},
    {"MxfPattern04IsNotListed",        20120, "06 0E 2B 34 02 05 01 01 0D 01 02 01 01 02 >84 06 0E 2B 34 >92 0D 01 02 01 04 01", nullptr, ""},
    {"MxfPackages04AreNotListed",      20120, "06 0E 2B 34 02 05 01 01 0D 01 02 01 01 02 >84 06 0E 2B 34 >92 0D 01 02 01 01 04", nullptr, ""},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Simple, Version, testing::ValuesIn(simpleCases), FICaseName);

const VersionCase markupCases[] = {
    // clang-format off
    {"HtmlOfNothing",                  1101, "",                                                        "", "fmt/96"},
    {"HtmlWithBlanksEverywhere",       1101, R"("<!doctype" 0D 0A "html" 09 "public" 0C "'-//W3C//dtd" 0B "html" 0A "4.01'")", "4.01", "fmt/100"},
    {"HtmlOfUtf16",                    1101, R"(FF FE "<" 00 "!" 00 "D" 00 "O" 00 "C" 00 "T" 00 "Y" 00 "P" 00 "E" 00 " " 00 "h" 00 "t" 00 "m" 00 "l" 00 ">" 00)", "5", "fmt/471"},
    {"HtmlNumberBehindNoBlank",        1101, R"("<!doctype html public '-//W3C//DTD HTML3.2//EN'>")",    "3.2", "fmt/98"},
    {"HtmlNumberNotListed",            1101, R"("<!doctype html public '-//W3C//DTD HTML 3.0//EN'>")",   nullptr, ""},
    {"HtmlNumberWithMoreDigits",       1101, R"("<!doctype html public '-//W3C//DTD HTML 4.011//EN'>")", nullptr, ""},
    {"XhtmlNumberNotListed",           1101, R"("<!doctype html public '-//W3C//DTD XHTML 2.0//EN'>")",  nullptr, ""},
    {"HtmlNameWithoutNumber",          1101, R"("<!doctype html public '-//W3C//DTD HTML//EN'>")",       "", "fmt/96"},
    {"HtmlNumberWithoutFraction",      1101, R"("<!doctype html public '-//W3C//DTD HTML 4//EN'>")",     "", "fmt/96"},
    {"HtmlNumberWithFullStopOnly",     1101, R"("<!doctype html public '-//W3C//DTD HTML 4.//EN'>")",    "", "fmt/96"},
    {"HtmlNumberOfTwoDigits",          1101, R"("<!doctype html public '-//W3C//DTD HTML 14.0//EN'>")",  "", "fmt/96"},
    {"XhtmlBasicHasNoNumberThere",     1101, R"("<!doctype html public '-//W3C//DTD XHTML Basic 1.0//EN'>")", "", "fmt/96"},
    {"HtmlOfAnUnregisteredOwner",      1101, R"("<!doctype html public '+//W3C//DTD HTML 4.0//EN'>")",   "", "fmt/96"},
    {"HtmlOwnerWithASlash",            1101, R"("<!doctype html public '-//W3/C//DTD HTML 4.0//EN'>")",  "", "fmt/96"},
    {"HtmlOwnerWithAQuotationMark",    1101, R"("<!doctype html public '-//W'C//DTD HTML 4.0//EN'>")",   "", "fmt/96"},
    {"HtmlWithoutOwner",               1101, R"("<!doctype html public '-////DTD HTML 4.0//EN'>")",      "4.0", "fmt/99"},
    {"HtmlWithoutQuotationMarks",      1101, R"("<!doctype html public -//W3C//DTD HTML 4.0//EN>")",     "", "fmt/96"},
    {"HtmlNameThatGoesOn",             1101, R"("<!doctype html5>")",                                    "", "fmt/96"},
    {"HtmlWithASystemIdentifier",      1101, R"("<!doctype html system 'a.dtd'>")",                      "", "fmt/96"},
    {"Html5ForOldPrograms",            1101, R"("<!DOCTYPE html SYSTEM 'about:legacy-compat'>")",        "5", "fmt/471"},
    {"Html5ForOldProgramsWithoutMark", 1101, R"("<!DOCTYPE html SYSTEM 'about:legacy-compat>")",         "", "fmt/96"},
    {"Html5WithoutBlank",              1101, R"("<!DOCTYPE htmlSYSTEM 'about:legacy-compat'>")",         "", "fmt/96"},
    {"Html5WithBlanks",                1101, R"("<!DOCTYPE html  " 0A ">")",                             "5", "fmt/471"},
    {"HtmlDoctypeOfAnother",           1101, R"("<!doctype book>")",                                     "", "fmt/96"},
    {"HtmlPublicBehindHtml5",          1101, R"("<!doctype html><!doctype html public '-//W3C//DTD HTML 4.0//EN'>")", "4.0", "fmt/99"},
    {"HtmlBehindAComment",             1101, R"("<!-- -->" 0A "<!doctype html>")",                       "5", "fmt/471"},
    {"HtmlEndsAt1023",                 1101, R"(20*1009 "<!doctype html>")",                             "5", "fmt/471"},
    {"HtmlEndsAt1024",                 1101, R"(20*1010 "<!doctype html>")",                             "", "fmt/96"},
    {"HtmlNumberCutAt1024",            1101, R"(20*981 "<!doctype html public '-//W3C//DTD HTML 4.01//EN'>")", "4.0", "fmt/99"},
    {"ZeroBytesCountAmongThe1024",     1101, R"(00*1010 "<!doctype html>")",                             "", "fmt/96"},
    {"XmlWithoutDeclaration",          1150, R"("<a/>")",                                   "1.0", "fmt/101"},
    {"XmlOfNothing",                   1150, "",                                            "1.0", "fmt/101"},
    {"XmlOfAnotherInstruction",        1150, R"("<?xml-stylesheet version='1.1'?>")",       "1.0", "fmt/101"},
    {"XmlBehindWhiteSpace",            1150, R"(20 0D 0A 09 "<?xml version='1.1'?>")",      "1.1", "fmt/1776"},
    {"XmlBehindText",                  1150, R"("a<?xml version='1.1'?>")",                 "1.0", "fmt/101"},
    {"XmlInCapitals",                  1150, R"("<?XML version='1.1'?>")",                  "1.0", "fmt/101"},
    {"XmlWithBlanks",                  1150, R"("<?xml" 0A "version" 09 "=" 0D "'1.1'?>")", "1.1", "fmt/1776"},
    {"XmlBehindAUtf8Mark",             1150, R"(EF BB BF "<?xml version='1.1'?>")",         "1.1", "fmt/1776"},
    {"XmlOfUtf16",                     1150, R"(FF FE "<" 00 "?" 00 "x" 00 "m" 00 "l" 00 " " 00 "v" 00 "e" 00 "r" 00 "s" 00 "i" 00 "o" 00 "n" 00 "=" 00 "'" 00 "1" 00 "." 00 "1" 00 "'" 00)", "1.1", "fmt/1776"},
    {"XmlOfUtf16InTheOtherOrder",      1150, R"(FE FF 00 "<" 00 "?" 00 "x" 00 "m" 00 "l" 00 " " 00 "v" 00 "e" 00 "r" 00 "s" 00 "i" 00 "o" 00 "n" 00 "=" 00 "'" 00 "1" 00 "." 00 "1" 00 "'")", "1.1", "fmt/1776"},
    {"XmlWithoutVersion",              1150, R"("<?xml encoding='UTF-8'?>")",               nullptr, ""},
    {"XmlVersionNotFirst",             1150, R"("<?xml encoding='UTF-8' version='1.0'?>")", nullptr, ""},
    {"XmlVersionInCapitals",           1150, R"("<?xml VERSION='1.0'?>")",                  nullptr, ""},
    {"XmlVersionWithoutValue",         1150, R"("<?xml version '1.0'?>")",                  nullptr, ""},
    {"XmlVersionWithoutMarks",         1150, R"("<?xml version=1.0?>")",                    nullptr, ""},
    {"XmlVersionOfTwoSortsOfMarks",    1150, R"("<?xml version='1.0" 22 "?>")",             nullptr, ""},
    {"Xml12IsNotListed",               1150, R"("<?xml version='1.2'?>")",                  nullptr, ""},
    {"XmlVersionEndsAt1023",           1150, R"(20*1005 "<?xml version='1.1'?>")",          "1.1", "fmt/1776"},
    {"XmlVersionEndsAt1024",           1150, R"(20*1006 "<?xml version='1.1'?>")",          nullptr, ""},
    {"SvgWithoutVersion",              20300, R"("<svg xmlns='a'>")",                       nullptr, ""},
    {"SvgOfNothing",                   20300, "",                                           nullptr, ""},
    {"SvgWithAttributes",              20300, R"("<svg xmlns='a'" 0A "version = '1.1' width=5>")", "1.1", "fmt/92"},
    {"SvgWithAttributesWithoutMarks",  20300, R"("<svg width=5 height version='1.1'>")",    "1.1", "fmt/92"},
    {"SvgWithAnUnclosedValue",         20300, R"("<svg a='5 version=" 22 "1.1" 22 ">")",    "1.1", "fmt/92"},
    {"SvgVersionOfAnotherName",        20300, R"("<svg xversion='1.0' version='1.1'>")",    "1.1", "fmt/92"},
    {"SvgVersionOfAnotherNamespace",   20300, R"("<svg a:version='1.0' version='1.1'>")",   "1.1", "fmt/92"},
    {"SvgVersionInAValue",             20300, R"("<svg a=" 22 " version='1.0' " 22 " version='1.1'>")", "1.1", "fmt/92"},
    {"SvgFirstVersionDecides",         20300, R"("<svg version='1.3' version='1.1'>")",     nullptr, ""},
    {"SvgVersionBehindTheElement",     20300, R"("<svg a='b'><g version='1.1'>")",          nullptr, ""},
    {"SvgFirstElementDecides",         20300, R"("<svg a='b'><svg version='1.1'>")",        nullptr, ""},
    {"SvgAttributesEndAtTheFirstSign", 20300, R"("<svg a='>' version='1.1'>")",             nullptr, ""},
    {"SvgNameThatGoesOn",              20300, R"("<svga version='1.0'><svg version='1.1'>")", "1.1", "fmt/92"},
    {"SvgWithoutWhiteSpace",           20300, R"("<svg><svg version='1.1'>")",              "1.1", "fmt/92"},
    {"SvgBehindAComment",              20300, R"("<!-- a -->" 0A "<svg" 0C "version='1.2'")", "1.2", "fmt/413"},
    {"SvgEndsInItsName",               20300, R"("<svg")",                                  nullptr, ""},
    {"SvgEndsInItsValue",              20300, R"("<svg version='1.1")",                     nullptr, ""},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Markup, Version, testing::ValuesIn(markupCases), FICaseName);

const VersionCase postScriptCases[] = {
    // clang-format off
    {"WithoutComment",              1580, R"("%!" 0A "%%Title")",                                 nullptr, ""},
    {"OfAnotherCase",               1554, R"("%!PS-ADOBE-3.0")",                                  nullptr, ""},
    {"Conventions12AreNotListed",   1580, R"("%!PS-Adobe-1.2")",                                  nullptr, ""},
    {"VersionIsCut",                1580, R"("%!PS-Adobe-3.")",                                   nullptr, ""},
    {"EncapsulatedNotListed",       1580, R"("%!PS-Adobe-3.0 EPSF-3.1")",                         nullptr, ""},
    {"EncapsulatedOfUnlisted",      1580, R"("%!PS-Adobe-9.9 EPSF-3.0")",                         "EPSF-3.0", "fmt/124"},
    {"EncapsulatedIsCut",           1580, R"("%!PS-Adobe-3.0 EPSF-3.")",                          nullptr, ""},
    {"WordIsCut",                   1580, R"("%!PS-Adobe-3.0 EPSF")",                             "3.0", "x-fmt/408"},
    {"WithoutBlank",                1580, R"("%!PS-Adobe-3.0EPSF-3.0")",                          "3.0", "x-fmt/408"},
    {"BehindATab",                  1580, R"("%!PS-Adobe-3.0" 09 "EPSF-3.0")",                    "3.0", "x-fmt/408"},
    {"BehindManyBlanks",            1580, R"("%!PS-Adobe-3.0" 20*200 "EPSF-3.0")",                "EPSF-3.0", "fmt/124"},
    {"OnTheNextLine",               1580, R"("%!PS-Adobe-3.0" 0A "EPSF-3.0")",                    "3.0", "x-fmt/408"},
    {"FirstCommentDecides",         1580, R"("%!PS-Adobe-2.0" 0A "%!PS-Adobe-3.0 EPSF-3.0")",     "2.0", "x-fmt/406"},
    {"MarkEndsAt4095",              1580, R"(20*4085 "%!PS-Adobe-3.0 EPSF-3.0")",                 "EPSF-3.0", "fmt/124"},
    {"MarkEndsAt4096",              1580, R"(20*4086 "%!PS-Adobe-3.0 EPSF-3.0")",                 nullptr, ""},
    {"PreviewOfPlainPostScript",    1504, R"(C5 D0 D3 C6 d:30 00*22 "%!PS-Adobe-3.0")",           nullptr, ""},
    {"PreviewBehindTheEnd",         1504, R"(C5 D0 D3 C6 d:0xFFFFFFFF >64)",                      nullptr, ""},
    {"PreviewWithoutOffset",        1504, "C5 D0 D3 C6 1E 00 00",                                 nullptr, ""},
    {"PreviewAt0",                  1504, R"(C5 D0 D3 C6 d:0 "%!PS-Adobe-3.0 EPSF-3.0")",         "EPSF-3.0", "fmt/124"},
    {"PreviewPartBeginsBehind",     1504, R"(C5 D0 D3 C6 d:9 "%!PS-Adobe-3.0 EPSF-3.0")",         nullptr, ""},
    {"PreviewMarkEndsAt4095",       1504, R"(C5 D0 D3 C6 d:30 >4115 "%!PS-Adobe-3.0 EPSF-3.0")",  "EPSF-3.0", "fmt/124"},
    {"PreviewMarkEndsAt4096",       1504, R"(C5 D0 D3 C6 d:30 >4116 "%!PS-Adobe-3.0 EPSF-3.0")",  nullptr, ""},
    {"PreviewBehindTheStart",       1504, R"(C5 D0 D3 C6 d:70000 >70000 "%!PS-Adobe-3.0 EPSF-3.0")", "EPSF-3.0", "fmt/124"},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(PostScript, Version, testing::ValuesIn(postScriptCases), FICaseName);

const VersionCase metafileCases[] = {
    // clang-format off
    {"CgmOfLongForm",               1528, "00 3F 00 03 41 42 43 00 10 22 00 01",            "1", "fmt/303"},
    {"CgmOfLongFormInParts",        1528, "00 3F 80 02 41 42 10 22 00 01",                  "1", "fmt/303"},
    {"CgmVersionFarBehind",         1528, "00 3F W:0x7FFF 41*32768 10 22 00 03",            "3", "fmt/305"},
    {"Cgm0IsNotListed",             1528, "00 20 10 22 00 00",                              nullptr, ""},
    {"Cgm5IsNotListed",             1528, "00 20 10 22 00 05",                              nullptr, ""},
    {"Cgm257IsNotListed",           1528, "00 20 10 22 01 01 10 22 00 01",                  nullptr, ""},
    {"CgmElsewhere",                1528, "00 20 00 00 10 22 00 02",                        "2", "fmt/304"},
    {"CgmElsewhereTheFirst",        1528, "00 20 00 00 10 22 00 05 10 22 00 02",            nullptr, ""},
    {"CgmElsewhereAbove255",        1528, "00 20 00 00 10 22 01 00 10 22 00 02",            "2", "fmt/304"},
    {"CgmElsewhereEndsAt1023",      1528, "00 20 >1021 10 22 00 02",                        "2", "fmt/304"},
    {"CgmElsewhereEndsAt1024",      1528, "00 20 >1022 10 22 00 02",                        nullptr, ""},
    {"CgmElsewhereIsCut",           1528, "00 20 00 00 10 22 00",                           nullptr, ""},
    {"CgmIsCut",                    1528, "00 20 10 22 00",                                 nullptr, ""},
    {"CgmLongFormIsCut",            1528, "00 3F 00",                                       nullptr, ""},
    {"CgmOfNothing",                1528, "",                                               nullptr, ""},
    {"EmfOfNothing",                1564, "",                                               "1.0", "x-fmt/153"},
    {"EmfOf99Bytes",                1564, "d:1 d:99 >108",                                  "1.0", "x-fmt/153"},
    {"EmfOf100Bytes",               1564, "d:1 d:100 >108",                                 "2.0", "fmt/344"},
    {"EmfOf107Bytes",               1564, "d:1 d:107 >108",                                 "2.0", "fmt/344"},
    {"EmfOf108Bytes",               1564, "d:1 d:108 >108",                                 "3.0", "fmt/345"},
    {"EmfDescriptionAt88",          1564, "d:1 d:200 >60 d:10 d:88 >108",                   "1.0", "x-fmt/153"},
    {"EmfDescriptionAt87",          1564, "d:1 d:200 >60 d:10 d:87 >108",                   "3.0", "fmt/345"},
    {"EmfDescriptionAt100",         1564, "d:1 d:200 >60 d:10 d:100 >108",                  "2.0", "fmt/344"},
    {"EmfDescriptionAt108",         1564, "d:1 d:200 >60 d:10 d:108 >108",                  "3.0", "fmt/345"},
    {"EmfDescriptionFitsJust",      1564, "d:1 d:200 >60 d:50 d:100 >108",                  "2.0", "fmt/344"},
    {"EmfDescriptionIsTooLong",     1564, "d:1 d:200 >60 d:51 d:100 >108",                  "3.0", "fmt/345"},
    {"EmfDescriptionOverflows",     1564, "d:1 d:200 >60 d:0x80000000 d:100 >108",          "3.0", "fmt/345"},
    {"EmfPixelFormatAt100",         1564, "d:1 d:200 >88 d:40 d:100 >108",                  "2.0", "fmt/344"},
    {"EmfPixelFormatAt99",          1564, "d:1 d:200 >88 d:40 d:99 >108",                   "3.0", "fmt/345"},
    {"EmfPixelFormatAt108",         1564, "d:1 d:200 >88 d:40 d:108 >108",                  "3.0", "fmt/345"},
    {"EmfPixelFormatFitsJust",      1564, "d:1 d:200 >88 d:100 d:100 >108",                 "2.0", "fmt/344"},
    {"EmfPixelFormatIsTooLong",     1564, "d:1 d:200 >88 d:101 d:100 >108",                 "3.0", "fmt/345"},
    {"EmfPixelFormatOverflows",     1564, "d:1 d:200 >88 d:0xFFFFFFFF d:101 >108",          "3.0", "fmt/345"},
    {"EmfPixelFormatBehindText",    1564, "d:1 d:200 >60 d:4 d:108 >88 d:40 d:120 >130",    "3.0", "fmt/345"},
    {"EmfPixelFormatBeforeText",    1564, "d:1 d:200 >60 d:4 d:140 >88 d:40 d:100 >130",    "2.0", "fmt/344"},
    {"EmfPixelFormatOfNoHeader",    1564, "d:1 d:200 >60 d:4 d:90 >88 d:40 d:100 >130",     "1.0", "x-fmt/153"},
    {"EmfPixelFormatIsCut",         1564, "d:1 d:200 >88 d:40 64 00 00",                    "3.0", "fmt/345"},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Metafiles, Version, testing::ValuesIn(metafileCases), FICaseName);

const VersionCase jpegCases[] = {
    // clang-format off
    {"Jfif103IsNotListed",        1535, R"(FF D8 FF E0 00 10 "JFIF" 00 01 03)", nullptr, ""},
    {"Jfif201IsNotListed",        1535, R"(FF D8 FF E0 00 10 "JFIF" 00 02 01)", nullptr, ""},
    {"JfifIsCut",                 1535, R"(FF D8 FF E0 00 10 "JFIF" 00 01)",    nullptr, ""},
    {"JfifOfAnotherName",         1535, R"(FF D8 FF E0 00 10 "JFXX" 00 01 01)", "", "fmt/41"},
    {"JfifOfAnotherSegment",      1535, R"(FF D8 FF E1 00 10 "JFIF" 00 01 01)", "", "fmt/41"},
    {"JfifWithoutZeroByte",       1535, R"(FF D8 FF E0 00 10 "JFIF" 01 01 01)", "", "fmt/41"},
    {"SpiffWithoutZeroByte",      1535, R"(FF D8 FF E8 00 20 "SPIFF" 01)",      "", "fmt/41"},
    {"SpiffOfAnotherSegment",     1535, R"(FF D8 FF E0 00 20 "SPIFF" 00)",      "", "fmt/41"},
    {"JpegEnds",                  1535, "FF D8",                                "", "fmt/41"},
    {"ExifWithOneZeroByte",       1535, R"(FF D8 FF E1 00 20 "Exif" 00 FF "MM")", "", "fmt/41"},
    {"XmpIsRaw",                  1535, R"(FF D8 FF E1 00 20 "http://ns" 00)",  "", "fmt/41"},
    {"JfifBehindMacBinary",       1535, R"(00*128 FF D8 FF E0 00 10 "JFIF" 00 01 02)", "JFIF 1.02", "fmt/44", 167},
    {"JfifBehindMacBinaryByRow",  1535, R"(00*128 FF D8 FF E0 00 10 "JFIF" 00 01 02)", "", "fmt/41", 166},
    {"Exif20",   1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:8 W:1 87 69 00 04 D:1 D:26 D:0 W:1 90 00 00 07 D:4 "0200")", "Exif 2.0", "x-fmt/398"},
    {"Exif21",   1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "II" 2A 00 d:8 w:1 69 87 04 00 d:1 d:26 d:0 w:1 00 90 07 00 d:4 "0210")", "Exif 2.1", "x-fmt/390"},
    {"Exif22",   1599, R"(FF D8 FF E1 00 00 "Exif" 00 00 "II" 2A 00 d:8 w:1 69 87 04 00 d:1 d:26 d:0 w:1 00 90 07 00 d:4 "0220")", "Exif 2.2", "x-fmt/391"},
    {"Exif221",  1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "II" 2A 00 d:8 w:1 69 87 04 00 d:1 d:26 d:0 w:1 00 90 07 00 d:4 "0221")", "Exif 2.21", "fmt/645"},
    {"ExifBehindMacBinary", 1535, R"(00*128 FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:8 W:1 87 69 00 04 D:1 D:26 D:0 W:1 90 00 00 07 D:4 "0221")", "Exif 2.21", "fmt/645", 167},
    {"ExifOfNoByteOrder",   1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MI" 00 2A D:8 W:1 87 69 00 04 D:1 D:26 D:0 W:1 90 00 00 07 D:4 "0220")", nullptr, ""},
    {"ExifWithoutDirectory", 1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:8 W:1 87 68 00 04 D:1 D:26 D:0 W:1 90 00 00 07 D:4 "0220")", nullptr, ""},
    {"ExifWithoutVersion",  1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:8 W:1 87 69 00 04 D:1 D:26 D:0 W:1 90 01 00 07 D:4 "0220")", nullptr, ""},
    {"ExifOfNoEntries",     1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:8 W:0 87 69 00 04 D:1 D:26 D:0 W:1 90 00 00 07 D:4 "0220")", nullptr, ""},
    {"ExifBehindOtherTags", 1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:10 00 00 W:2 01 0F 00*10 87 69 00 04 D:1 D:36 W:2 82 9A 00*10 90 00 00 07 D:4 "0220")", "Exif 2.2", "x-fmt/391"},
    {"ExifTagsAreFewer",    1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:10 00 00 W:1 01 0F 00*10 87 69 00 04 D:1 D:36 W:2 82 9A 00*10 90 00 00 07 D:4 "0220")", nullptr, ""},
    {"ExifVersionInTheFirstDirectory", 1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:8 W:1 90 00 00 07 D:4 "0220")", nullptr, ""},
    {"ExifOffsetsOutOfReach", 1535, R"(FF D8 FF E1 00 00 "Exif" 00 00 "MM" 00 2A D:0xFFFFFFFF W:1)", nullptr, ""},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Jpeg, Version, testing::ValuesIn(jpegCases), FICaseName);

// A stream whose Exif directory, of one entry, is at an offset in the TIFF structure.
SparseFile FIExifFile(std::uint64_t stream, std::uint32_t directory, const char* version) {
    SparseFile file;
    const std::uint64_t tiff = stream + 12;
    file.size = 200000;
    file.stretches[stream] = FIBytes(R"(FF D8 FF E1 FF FF "Exif" 00 00 "MM" 00 2A D:8 W:1 87 69 00 04 D:1)");
    file.stretches[tiff + 18] = FIBigEndian(directory, 4);
    file.stretches[tiff + directory] = FIBytes(R"(W:1 90 00 00 07 D:4)") + version;
    return file;
}

TEST(JpegVersion, ExifOfAnyNumberFrom0230To0239Is23) {
    for (std::uint32_t last = 0; last < 10; ++last) {
        const std::string text = "023" + std::to_string(last);
        SparseFile file = FIExifFile(0, 26, text.c_str());
        EXPECT_EQ(FIReadVersionOf(file, 1535), FIRead("Exif 2.3", "fmt/1507"));
    }
    for (const char* const other : {"0229", "0240", "0300", "023", "023:", "2300", "0222", "0100", "0110"}) {
        SparseFile file = FIExifFile(0, 26, other);
        EXPECT_EQ(FIReadVersionOf(file, 1535), FINothingRead()) << other;
    }
}

TEST(JpegVersion, ExifIsReadInTheFirst65536BytesOfTheStream) {
    constexpr std::uint32_t entryEnd = 12 + 2 + 12;  // of the TIFF structure's offset, the count and the entry
    for (const std::uint16_t row : {std::uint16_t{0}, std::uint16_t{167}}) {
        const std::uint64_t stream = row == 167 ? 128 : 0;
        SparseFile inside = FIExifFile(stream, 65536 - entryEnd, "0220");
        EXPECT_EQ(FIReadVersionOf(inside, 1535, row), FIRead("Exif 2.2", "x-fmt/391", true));
        SparseFile outside = FIExifFile(stream, 65537 - entryEnd, "0220");
        EXPECT_EQ(FIReadVersionOf(outside, 1535, row), FINothingRead(true));
    }
}

TEST(JpegVersion, ExifOfTheStartAloneReadsNothingMore) {
    SparseFile last = FIExifFile(0, 8192 - 26, "0220");
    EXPECT_EQ(FIReadVersionOf(last, 1535), FIRead("Exif 2.2", "x-fmt/391"));
    EXPECT_EQ(last.reads, 0U);
    SparseFile beyond = FIExifFile(0, 8193 - 26, "0220");
    EXPECT_EQ(FIReadVersionOf(beyond, 1535), FIRead("Exif 2.2", "x-fmt/391", true));
    EXPECT_EQ(beyond.reads, 1U);
}

TEST(JpegVersion, ExifOfManyEntriesCostsLittle) {
    SparseFile file = FIExifFile(128, 26, "0000");
    file.stretches[128 + 12 + 8] = FIBytes("FF FF 00 00");
    EXPECT_EQ(FIReadVersionOf(file, 1535, 167), FINothingRead(true));
    EXPECT_LE(file.reads, 12U);
}

// ---- DXF ------------------------------------------------------------------------------------------------------------

const VersionCase dxfCases[] = {
    // clang-format off
    {"WithCarriageReturns",    1544, R"("$ACADVER" 0D "1" 0D "AC1009" 0D)",                     "AC1009", "fmt/75"},
    {"WithBoth",               1544, R"("$ACADVER" 0D 0A "  1" 0D 0A "AC1009" 0D 0A)",          "AC1009", "fmt/75"},
    {"WithBlanksAndTabs",      1544, R"("$ACADVER " 09 0A 09 " 1" 09 " " 0A 20 09 "AC1009")",   "AC1009", "fmt/75"},
    {"WithBlanksWithoutEnd",   1544, R"("$ACADVER" 20*10000 0A "1" 20*10000 0A "AC1009")",      "AC1009", "fmt/75"},
    {"WithAnEmptyLine",        1544, R"("$ACADVER" 0A 0A "1" 0A "AC1009")",                     "", "fmt/63"},
    {"WithLineEndsReversed",   1544, R"("$ACADVER" 0A 0D "1" 0A "AC1009")",                     "", "fmt/63"},
    {"OnOneLine",              1544, R"("$ACADVER 1 AC1009")",                                  "", "fmt/63"},
    {"OfGroupCode2",           1544, R"("$ACADVER" 0A "2" 0A "AC1009")",                        "", "fmt/63"},
    {"OfGroupCode10",          1544, R"("$ACADVER" 0A "10" 0A "AC1009")",                       "", "fmt/63"},
    {"OfAnotherVariable",      1544, R"("$ACADMAINTVER" 0A "1" 0A "AC1009")",                   "", "fmt/63"},
    {"InSmallLetters",         1544, R"("$acadver" 0A "1" 0A "AC1009")",                        "", "fmt/63"},
    {"OfOtherLetters",         1544, R"("$ACADVER" 0A "1" 0A "AD1009")",                        "", "fmt/63"},
    {"OfTwoDigits",            1544, R"("$ACADVER" 0A "1" 0A "AC10" 0A)",                       "", "fmt/63"},
    {"OfThreeDigits",          1544, R"("$ACADVER" 0A "1" 0A "AC100" 0A)",                      nullptr, ""},
    {"OfSixDigits",            1544, R"("$ACADVER" 0A "1" 0A "AC100900" 0A)",                   nullptr, ""},
    {"WithMoreBehind",         1544, R"("$ACADVER" 0A "1" 0A "AC1009x")",                       "AC1009", "fmt/75"},
    {"NotListed",              1544, R"("$ACADVER" 0A "1" 0A "AC1033" 0A)",                     nullptr, ""},
    {"OfTheLettersMCNotListed", 1544, R"("$ACADVER" 0A "1" 0A "MC1009" 0A)",                    nullptr, ""},
    {"TheFirstFitDecides",     1544, R"("$ACADVER" 0A "x" 0A "$ACADVER" 0A "1" 0A "AC1012" 0A "$ACADVER" 0A "1" 0A "AC1009")", "AC1012", "fmt/76"},
    {"OfTwoSignsInARow",       1544, R"("$$ACADVER" 0A "1" 0A "AC1012")",                       "AC1012", "fmt/76"},
    {"BehindABrokenName",      1544, R"("$ACAD$ACADVER" 0A "1" 0A "AC1012")",                   "AC1012", "fmt/76"},
    {"OfNothing",              1544, "",                                                        "", "fmt/63"},
    {"BinaryMixedCodes",       1545, R"(09 00 "$ACADVER" 00 01 "AC1015" 00)",                   "AC1015", "fmt/84"},
    {"BinaryMixedCodesToo",    1545, R"(09 "$ACADVER" 00 01 00 "AC1015" 00)",                   "AC1015", "fmt/84"},
    {"BinaryOfTwoZeroBytes",   1545, R"(09 00 00 "$ACADVER" 00 01 00 "AC1015" 00)",             "", "fmt/1394"},
    {"BinaryWithoutCode",      1545, R"(0A "$ACADVER" 00 01 00 "AC1015" 00)",                   "", "fmt/1394"},
    {"BinaryOfCode2",          1545, R"(09 "$ACADVER" 00 02 00 "AC1015" 00)",                   "", "fmt/1394"},
    {"BinaryWithoutEnd",       1545, R"(09 "$ACADVER" 00 01 00 "AC1015" 0A)",                   "", "fmt/1394"},
    {"BinaryOfSevenDigits",    1545, R"(09 "$ACADVER" 00 01 00 "AC1015000" 00)",                "", "fmt/1394"},
    {"BinaryOfSixDigits",      1545, R"(09 "$ACADVER" 00 01 00 "AC101500" 00)",                 nullptr, ""},
    {"BinaryOfLetterM",        1545, R"(09 "$ACADVER" 00 01 00 "MC0.0" 00)",                    "", "fmt/1394"},
    {"BinaryNotListed",        1545, R"(09 "$ACADVER" 00 01 00 "AC1002" 00)",                   nullptr, ""},
    {"BinaryOfTwoCodesInARow", 1545, R"(09 09 "$ACADVER" 00 01 00 "AC1015" 00)",                "AC1015", "fmt/84"},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Dxf, Version, testing::ValuesIn(dxfCases), FICaseName);

constexpr std::uint64_t mebibyte = 1024 * 1024;

TEST(DxfVersion, IsReadAcrossPieces) {
    const std::string variable = "$ACADVER\r\n  1\r\nAC1015\r\n";
    for (std::uint64_t offset = 8192 - 24; offset <= 8192 + 1; ++offset) {
        for (const std::uint64_t pieces : {std::uint64_t{0}, std::uint64_t{16384}, std::uint64_t{5 * 16384}}) {
            SparseFile file;
            file.size = 2 * mebibyte;
            file.stretches[offset + pieces] = variable;
            EXPECT_EQ(FIReadVersionOf(file, 1544), FIRead("AC1015", "fmt/78")) << offset + pieces;
        }
    }
}

TEST(DxfVersion, IsLookedForInTheFirstMebibyte) {
    const std::string variable = "$ACADVER\n  1\nAC1015\n";
    SparseFile inside;
    inside.size = 2 * mebibyte;
    inside.stretches[mebibyte - 19] = variable;  // all but the line's end
    EXPECT_EQ(FIReadVersionOf(inside, 1544), FIRead("AC1015", "fmt/78"));
    EXPECT_EQ(inside.bytesRead, mebibyte - 8192);
    SparseFile cut;
    cut.size = 2 * mebibyte;
    cut.stretches[mebibyte - 18] = variable;  // AC101
    EXPECT_EQ(FIReadVersionOf(cut, 1544), FINothingRead());
    SparseFile outside;
    outside.size = 2 * mebibyte;
    outside.stretches[mebibyte - 15] = variable;  // AC
    EXPECT_EQ(FIReadVersionOf(outside, 1544), FIRead("", "fmt/63"));
    EXPECT_LE(outside.reads, 64U);
}

TEST(DxfVersion, OfABinaryFileIsLookedForInTheFirstMebibyte) {
    const std::string variable = FIBytes(R"(09 "$ACADVER" 00 01 "AC1015" 00)");
    SparseFile inside;
    inside.size = 2 * mebibyte;
    inside.stretches[mebibyte - variable.size()] = variable;
    EXPECT_EQ(FIReadVersionOf(inside, 1545), FIRead("AC1015", "fmt/84"));
    SparseFile outside;
    outside.size = 2 * mebibyte;
    outside.stretches[mebibyte - variable.size() + 1] = variable;
    EXPECT_EQ(FIReadVersionOf(outside, 1545), FIRead("", "fmt/1394"));
}

TEST(DxfVersion, InTheStartNeedsNoMore) {
    SparseFile file;
    file.size = 2 * mebibyte;
    file.stretches[100] = "$ACADVER\n1\nAC1015\n";
    EXPECT_EQ(FIReadVersionOf(file, 1544), FIRead("AC1015", "fmt/78"));
    EXPECT_EQ(file.reads, 0U);
}

TEST(DxfVersion, OfAFileThatCannotBeReadIsLookedForInItsStart) {
    SparseFile file;
    file.size = 2 * mebibyte;
    file.readable = 8192;
    file.stretches[9000] = "$ACADVER\n1\nAC1015\n";
    EXPECT_EQ(FIReadVersionOf(file, 1544), FIRead("", "fmt/63"));
}

TEST(DxfVersion, OfAFileThatTellsNoSizeIsLookedForInAllOfIt) {
    SparseFile file;
    file.size = 300000;
    file.toldSize = UINT64_MAX;
    file.stretches[200000] = "$ACADVER\n1\nAC1015\n";
    EXPECT_EQ(FIReadVersionOf(file, 1544), FIRead("AC1015", "fmt/78", true));
    file.stretches.clear();
    EXPECT_EQ(FIReadVersionOf(file, 1544), FIRead("", "fmt/63", true));
}

// ---- WAVE -----------------------------------------------------------------------------------------------------------

const VersionCase waveCases[] = {
    // clang-format off
    {"Plain",                 1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:1 >36 "data")",                    "", "fmt/141"},
    {"LongFormat",            1700, R"("RIFF" d:0 "WAVE" "fmt " d:18 w:1 >38 "data")",                    "", "fmt/142"},
    {"LongFormatOfAnyTag",    1700, R"("RIFF" d:0 "WAVE" "fmt " d:18 w:0x55 >38 "data")",                 "", "fmt/142"},
    {"FormatOf14Bytes",       1700, R"("RIFF" d:0 "WAVE" "fmt " d:14 w:1 >34 "data")",                    "", "fmt/142"},
    {"OtherTag",              1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:2 >36 "data")",                    "", "fmt/6"},
    {"Extensible",            1700, R"("RIFF" d:0 "WAVE" "fmt " d:40 w:0xFFFE >60 "data")",               "", "fmt/143"},
    {"ExtensibleOf16",        1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:0xFFFE >36 "data")",               "", "fmt/143"},
    {"WithoutData",           1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:1 >36)",                           "", "fmt/141"},
    {"FormatOf2BytesIsEnough", 1700, R"("RIFF" d:0 "WAVE" "fmt " d:2 w:1)",                               "", "fmt/142"},
    {"FormatOf1Byte",         1700, R"("RIFF" d:0 "WAVE" "fmt " d:1 01 00 "data")",                       nullptr, ""},
    {"FormatIsCut",           1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 01)",                                nullptr, ""},
    {"WithoutFormat",         1700, R"("RIFF" d:0 "WAVE" "data" d:0 "fmt " d:16 w:1 >60)",                nullptr, ""},
    {"WithoutChunks",         1700, R"("RIFF" d:0 "WAVE")",                                               nullptr, ""},
    {"BehindAnOddChunk",      1700, R"("RIFF" d:0 "WAVE" "JUNK" d:3 41 42 43 00 "fmt " d:16 w:1 >60)",    "", "fmt/141"},
    {"OddChunkWithoutPadding", 1700, R"("RIFF" d:0 "WAVE" "JUNK" d:3 41 42 43 "fmt " d:16 w:1 >60)",      nullptr, ""},
    {"FirstFormatDecides",    1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:1 >36 "fmt " d:16 w:2 >60)",       "", "fmt/141"},
    {"Broadcast0Plain",       1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >368 "fmt " d:16 w:1)",             "0", "fmt/703"},
    {"Broadcast1Plain",       1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:1 "fmt " d:16 w:1)",         "1", "fmt/704"},
    {"Broadcast2Plain",       1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:2 "fmt " d:16 w:1)",         "2", "fmt/705"},
    {"Broadcast0Mpeg",        1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:0 "fmt " d:40 w:0x50)",      "0", "fmt/706"},
    {"Broadcast1Mpeg",        1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:1 "fmt " d:40 w:0x50)",      "1", "fmt/707"},
    {"Broadcast2Mpeg",        1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:2 "fmt " d:40 w:0x50)",      "2", "fmt/708"},
    {"Broadcast0Extensible",  1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:0 "fmt " d:40 w:0xFFFE)",    "0", "fmt/709"},
    {"Broadcast1Extensible",  1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:1 "fmt " d:40 w:0xFFFE)",    "1", "fmt/710"},
    {"Broadcast2Extensible",  1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:2 "fmt " d:40 w:0xFFFE)",    "2", "fmt/711"},
    {"Broadcast0",            1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:0 "fmt " d:16 w:2)",         "0", "fmt/1"},
    {"Broadcast1",            1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:1 "fmt " d:16 w:2)",         "1", "fmt/2"},
    {"Broadcast2",            1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:2 "fmt " d:16 w:2)",         "2", "fmt/527"},
    {"Broadcast3IsNotListed", 1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:3 "fmt " d:16 w:1)",         nullptr, ""},
    {"BroadcastOf347Bytes",   1700, R"("RIFF" d:0 "WAVE" "bext" d:347 >366 w:1 "fmt " d:16 w:1 >400)",    "", "fmt/141"},
    {"BroadcastBehindFormat", 1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:1 >36 "bext" d:348 >390 w:1)",     "1", "fmt/704"},
    {"BroadcastIsCut",        1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:1 >36 "bext" d:348 >390 01)",      "", "fmt/141"},
    {"BroadcastWithoutFormat", 1700, R"("RIFF" d:0 "WAVE" "bext" d:348 >366 w:1 "data")",                 nullptr, ""},
    {"BroadcastBehindData",   1700, R"("RIFF" d:0 "WAVE" "fmt " d:16 w:1 >36 "data" d:0 "bext" d:348 >398 w:1)", "", "fmt/141"},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Wave, Version, testing::ValuesIn(waveCases), FICaseName);

TEST(WaveVersion, IsReadFarBehindTheStart) {
    SparseFile file;
    constexpr std::uint64_t second = 12 + 8 + 0xFFFFFFFEULL;
    constexpr std::uint64_t third = second + 8 + 0x100000000ULL;  // the length is odd
    file.size = 3 * 0x100000000ULL;
    file.stretches[0] = FIBytes(R"("RIFF" d:0 "WAVE" "JUNK" d:0xFFFFFFFE)");
    file.stretches[second] = FIBytes(R"("JUNK" d:0xFFFFFFFF)");
    file.stretches[third] = FIBytes(R"("fmt " d:16 w:1)");
    file.stretches[third + 24] = FIBytes(R"("bext" d:602 >354 w:2)");
    file.stretches[third + 24 + 8 + 602] = FIBytes(R"("data" d:4)");
    EXPECT_EQ(FIReadVersionOf(file, 1700), FIRead("2", "fmt/705"));
    EXPECT_EQ(file.reads, 6U);
    EXPECT_EQ(file.bytesRead, 4U * 8 + 2 * 2);
}

// Empty chunks from 12 on, and the format behind them.
SparseFile FIWaveOfChunks(std::uint64_t count) {
    std::string bytes = FIBytes(R"("RIFF" d:0 "WAVE")") + FIRepeat(FIBytes(R"("JUNK" d:0)"), count);
    return FIFileOfBytes(bytes + FIBytes(R"("fmt " d:16 w:1 00*14)"));
}

TEST(WaveVersion, OfAFileOfManyChunksIsLeftOpen) {
    SparseFile most = FIWaveOfChunks(256 - 2);
    most.stretches[most.size] = FIBytes(R"("data" d:0)");
    most.size += 8;
    EXPECT_EQ(FIReadVersionOf(most, 1700), FIRead("", "fmt/141"));
    SparseFile tooMany = FIWaveOfChunks(256 - 1);
    tooMany.stretches[tooMany.size] = FIBytes(R"("data" d:0)");
    tooMany.size += 8;
    EXPECT_EQ(FIReadVersionOf(tooMany, 1700), FINothingRead());
    SparseFile endless = FIWaveOfChunks(100000);
    EXPECT_EQ(FIReadVersionOf(endless, 1700), FINothingRead());
    EXPECT_LE(endless.reads, 256U);
}

// ---- What is read ---------------------------------------------------------------------------------------------------

TEST(SvgVersion, IsReadInTheFirst65536Bytes) {
    const std::string element = "<svg version='1.1'>";
    SparseFile start;
    start.size = 100000;
    start.stretches[8192 - element.size()] = element;
    EXPECT_EQ(FIReadVersionOf(start, 20300), FIRead("1.1", "fmt/92"));
    SparseFile across;
    across.size = 100000;
    across.stretches[8192 - element.size() + 1] = element;
    EXPECT_EQ(FIReadVersionOf(across, 20300), FIRead("1.1", "fmt/92", true));
    SparseFile last;
    last.size = 100000;
    last.stretches[65536 - element.size() + 1] = element;  // all but the ">"
    EXPECT_EQ(FIReadVersionOf(last, 20300), FIRead("1.1", "fmt/92", true));
    SparseFile outside;
    outside.size = 100000;
    outside.stretches[65536 - element.size() + 2] = element;
    EXPECT_EQ(FIReadVersionOf(outside, 20300), FINothingRead(true));
}

TEST(ArcVersion, IsReadBehindALongFirstLine) {
    for (const std::uint64_t line : {std::uint64_t{8190}, std::uint64_t{20000}, std::uint64_t{65530}}) {
        SparseFile file;
        file.size = 100000;
        file.stretches[line] = "\n1 1 InternetArchive\n";
        EXPECT_EQ(FIReadVersionOf(file, 20167), FIRead("1.1", "fmt/410", true)) << line;
    }
    SparseFile outside;
    outside.size = 100000;
    outside.stretches[65531] = "\n1 1 InternetArchive\n";
    EXPECT_EQ(FIReadVersionOf(outside, 20167), FINothingRead(true));
}

TEST(VersionRules, ReadNothingMoreWhereTheStartTells) {
    for (const ListedVersion& listed : listedVersions) {
        // Where nothing is found in the start of these, it is looked for further behind.
        if (listed.identifier == 1544 || listed.identifier == 1545) continue;
        SparseFile file = FIFileOfBytes(FIBytes(listed.bytes));
        file.size = 200000;
        FIReadVersionOf(file, listed.identifier);
        EXPECT_EQ(file.reads, 0U) << listed.bytes;
    }
}

}  // namespace
