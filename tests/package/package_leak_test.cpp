// The package routine against a base utility library whose IOSetInfo is this program's own, and against a host's
// handles.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "package/package_probe.h"
#include "platform/base_utility.h"
#include "reader/reader.h"
#include "support/open_file.h"
#include "support/process_heap.h"
#include "support/zip_writer.h"

namespace {

std::int32_t setInfoStatus = 0;
std::vector<std::string> calls;  // in order

// A host's handle that serves archives and members as the routine asks for them.
struct HostHandle {
    IOFile file;  // first
    std::string name;
    std::vector<std::string> reads;  // what each read delivers; a read behind them fails and leaves the count alone
    std::size_t readsDone = 0;
};

HostHandle hostFile;
HostHandle hostArchive;
HostHandle hostMember;
std::int32_t memberStatus = 0;

HostHandle& Host(HIOFILE file) { return *reinterpret_cast<HostHandle*>(file); }

std::int32_t Close(HIOFILE file) {
    calls.push_back("close " + Host(file).name);
    return 0;
}

std::int32_t Read(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    HostHandle& host = Host(file);
    if (&host == &hostMember) calls.push_back("read " + std::to_string(size));
    if (host.readsDone == host.reads.size()) return -1;
    const std::string& bytes = host.reads[host.readsDone++];
    EXPECT_LE(bytes.size(), size);
    std::memcpy(destination, bytes.data(), bytes.size());
    *count = static_cast<std::uint32_t>(bytes.size());
    return 0;
}

std::int32_t Seek(HIOFILE, std::uint16_t, std::int32_t) { return -1; }

std::int32_t Tell(HIOFILE, std::uint32_t*) { return -1; }

std::int32_t GetInfo(HIOFILE, std::uint32_t, void*) { return -1; }

std::int32_t OpenSub(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t flags) {
    EXPECT_EQ(flags, 0U);
    if (kind == IOSUB_ARCHIVE) {
        calls.emplace_back("archive");
        EXPECT_EQ(specification, nullptr);
        EXPECT_EQ(*out, &hostFile.file);
        *out = &hostArchive.file;
        return 0;
    }
    EXPECT_EQ(kind, IOSUB_MEMBER);
    const auto& member = *static_cast<const IOSubMemberSpec*>(specification);
    calls.push_back(std::string("member ") + member.name);
    EXPECT_EQ(member.parent, &hostArchive.file);
    const std::string rest(member.name + 8, sizeof(member.name) - 8);
    EXPECT_EQ(rest, std::string(sizeof(member.name) - 8, '\0'));
    *out = &hostMember.file;
    return memberStatus;
}

FIID AnswerOverHost(std::vector<std::string> memberReads) {
    const IOOperations operations = {Close, Read, nullptr, Seek, Tell, GetInfo, OpenSub};
    hostFile = {{operations}, "file", {}};
    hostArchive = {{operations}, "archive", {}};
    hostMember = {{operations}, "member", std::move(memberReads)};
    calls.clear();
    FIReader* const reader = FIReaderNew(&hostFile.file);
    const FIID answer = FIProbePackage(*reader);
    static_cast<void>(FIReaderFree(*reader));
    return answer;
}

}  // namespace

extern "C" std::int32_t IOSetInfo(HIOFILE, std::uint32_t selector, std::uint32_t member, const void* value) {
    calls.push_back("set " + std::to_string(selector) + ' ' + std::to_string(member));
    std::uint32_t number = 1;
    std::memcpy(&number, value, sizeof(number));
    EXPECT_EQ(number, 0U);
    return setInfoStatus;
}

namespace {

const char prefix[] = "application/vnd.oasis.opendocument.";

TEST(PackageLeak, WhenTheSettingIsRefusedTheArchiveStaysOpenUntilTheFileIsClosed) {
    setInfoStatus = -1;
    const std::size_t blocks = FIHeapBlocks();
    OpenFile file(FIWriteZip({{"mimetype", std::string(prefix) + "text"}}));
    FIReader* const reader = FIReaderNew(file.File());
    const std::size_t blocksBefore = FIHeapBlocks();
    EXPECT_EQ(FIProbePackage(*reader), 1802);
    EXPECT_EQ(FIHeapBlocks(), blocksBefore + 1) << "the archive's handle";
    static_cast<void>(FIReaderFree(*reader));
    file.Close();
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(PackageLeak, WhenTheSettingIsTakenNothingStaysOpen) {
    setInfoStatus = 0;
    const OpenFile file(FIWriteZip({{"mimetype", std::string(prefix) + "text"}}));
    FIReader* const reader = FIReaderNew(file.File());
    const std::size_t blocksBefore = FIHeapBlocks();
    EXPECT_EQ(FIProbePackage(*reader), 1309);
    EXPECT_EQ(FIHeapBlocks(), blocksBefore);
    static_cast<void>(FIReaderFree(*reader));
}

TEST(PackageCalls, WhenTheSettingIsRefusedNothingIsClosed) {
    setInfoStatus = -1;
    EXPECT_EQ(AnswerOverHost({}), 1802);
    EXPECT_EQ(calls, (std::vector<std::string>{"archive", "set 39 2"}));
}

TEST(PackageCalls, TheSettingIsMadeBeforeAMemberIsOpened) {
    setInfoStatus = 0;
    EXPECT_EQ(AnswerOverHost({prefix, "graphics"}), 1632);
    EXPECT_EQ(calls, (std::vector<std::string>{"archive", "set 39 2", "member mimetype", "read 35", "read 21",
                                               "close member", "close archive"}));
}

TEST(PackageCalls, WithoutAMemberTheArchiveIsClosed) {
    setInfoStatus = 0;
    memberStatus = -1;
    EXPECT_EQ(AnswerOverHost({}), 1802);
    memberStatus = 0;
    EXPECT_EQ(calls, (std::vector<std::string>{"archive", "set 39 2", "member mimetype", "close archive"}));
}

TEST(PackageCalls, AnotherPrefixEndsTheReading) {
    setInfoStatus = 0;
    EXPECT_EQ(AnswerOverHost({"application/zip"}), 1802);
    EXPECT_EQ(calls, (std::vector<std::string>{"archive", "set 39 2", "member mimetype", "read 35", "close member",
                                               "close archive"}));
}

TEST(PackageCalls, AReadThatFailsDeliversWhatItCounts) {
    setInfoStatus = 0;
    EXPECT_EQ(AnswerOverHost({}), 1802);        // no count at all: nothing
    EXPECT_EQ(AnswerOverHost({prefix}), 1802);  // the second read leaves the first one's count and text
    EXPECT_EQ(AnswerOverHost({prefix, ""}), 1802);
    EXPECT_EQ(AnswerOverHost({std::string(prefix).substr(0, 20), "opendocument.text"}),
              1802);  // one read, one comparison
}

}  // namespace
