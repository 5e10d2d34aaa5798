// ZIP archives and their members as handles.
#include "platform/zip/archive.h"

#include <gtest/gtest.h>

#include "platform/base_utility.h"
#include "support/open_file.h"
#include "support/process_heap.h"
#include "support/test_handle.h"
#include "support/zip_writer.h"

namespace {

std::string Text(std::size_t size) {
    std::string text;
    while (text.size() < size) text += "line " + std::to_string(text.size()) + "\n";
    text.resize(size);
    return text;
}

const std::string longText = Text(20000);

const std::vector<ZipMember> members = {
    {"stored.txt", longText},
    {.name = "packed.txt", .bytes = longText, .method = zipDeflated},
    {"empty", ""},
    {.name = "emptyPacked", .bytes = "", .method = zipDeflated},
    {.name = "dir/inner.txt", .bytes = "inner", .method = zipDeflated, .descriptor = true},
    {.name = "wide", .bytes = "wide bytes", .method = zipDeflated, .zip64 = true},
};

const std::string archiveBytes = FIWriteZip(members);

std::string NameOf(HIOFILE file) {
    char name[256] = {};
    EXPECT_EQ(file->operations.IOGetInfo(file, IOInfoName, name), 0);
    return name;
}

std::uint32_t PositionOf(HIOFILE file) {
    std::uint32_t position = 0;
    EXPECT_EQ(file->operations.IOTell(file, &position), 0);
    return position;
}

TEST(Archive, ReadAsBytesIsTheFile) {
    const OpenFile file(archiveBytes, "some/archive.zip");
    const HIOFILE archive = FIOpenArchive(file.File());
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(FIReadAll(archive), (ReadResult{archiveBytes, false}));
    EXPECT_EQ(archive->operations.IOSeek(archive, 2, -22), 0);
    EXPECT_EQ(FIReadAll(archive).bytes, archiveBytes.substr(archiveBytes.size() - 22));
    EXPECT_EQ(NameOf(archive), "archive.zip");
    FICloseFile(archive);
}

TEST(Archive, OpensInAnyHandleWhoseDirectoryCanBeRead) {
    const OpenFile plain("no archive");
    EXPECT_EQ(FIOpenArchive(plain.File()), nullptr);
    const OpenFile file(std::string(50, 'x') + archiveBytes);
    const HIOFILE archive = FIOpenArchive(file.File());
    ASSERT_NE(archive, nullptr);
    const HIOFILE again = FIOpenArchive(archive);  // an archive's handle is one too
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(FIReadAll(FIOpenMember(again, "packed.txt")).bytes, longText);
    const IOSubRangeSpec range = {file.File(), 50, 0xFFFFFFFF};
    HIOFILE stretch = nullptr;
    ASSERT_EQ(file.File()->operations.IOOpenSub(&stretch, IOSUB_RANGE, &range, 1), 0);
    EXPECT_NE(FIOpenArchive(stretch), nullptr);
}

TEST(Archive, OpensInAnArchive) {
    const OpenFile file(FIWriteZip({{.name = "inner.zip", .bytes = archiveBytes, .method = zipDeflated}}));
    const HIOFILE inner = FIOpenMember(FIOpenArchive(file.File()), "inner.zip");
    ASSERT_NE(inner, nullptr);
    const HIOFILE archive = FIOpenArchive(inner);
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(FIReadAll(FIOpenMember(archive, "packed.txt")).bytes, longText);
}

TEST(Archive, OpensInAHostsHandleThroughOneOfThisLayer) {
    const auto host = FIMakeTestHandle(archiveBytes, "host.zip");
    host->bytesPerRead = 7;
    EXPECT_EQ(FIOpenArchive(FIFileOf(*host)), nullptr);  // the host's own operation knows no archives
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    const HIOFILE archive = FIOpenArchive(file);
    ASSERT_NE(archive, nullptr);
    for (const ZipMember& member : members) {
        EXPECT_EQ(FIReadAll(FIOpenMember(archive, member.name.c_str())), (ReadResult{member.bytes, false}))
            << member.name;
    }
    FICloseFile(file);
}

TEST(Archive, TellsTheNamesOfItsMembers) {
    const OpenFile file(archiveBytes);
    const auto count = [](void* context, std::string_view name) {
        *static_cast<std::string*>(context) += std::string(name) + " ";
        return true;
    };
    std::string names;
    EXPECT_FALSE(UTVisitMembers(*UTFindHandle(file.File()), count, &names)) << "a file is no archive";
    EXPECT_EQ(names, "");
    EXPECT_TRUE(UTVisitMembers(*UTOpenArchive(*UTFindHandle(file.File())), count, &names));
    EXPECT_EQ(names, "stored.txt packed.txt empty emptyPacked dir/inner.txt wide ");
}

TEST(Archive, IsFreedWithTheFileWhenNobodyClosesIt) {
    const std::size_t blocks = FIHeapBlocks();
    OpenFile file(archiveBytes);
    const HIOFILE archive = FIOpenArchive(file.File());
    ASSERT_NE(archive, nullptr);
    EXPECT_NE(FIOpenMember(archive, "packed.txt"), nullptr);
    EXPECT_NE(FIOpenMember(archive, "stored.txt"), nullptr);
    file.Close();
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(Archive, FailsWhenMemoryIsExhaustedAndLosesNone) {
    const OpenFile file(archiveBytes);
    const std::size_t blocks = FIHeapBlocks();
    for (std::uint32_t allocation = 0; allocation < 2; ++allocation) {
        FIFailAllocationsFrom(allocation);
        const HIOFILE archive = FIOpenArchive(file.File());
        if (allocation == 0) {
            EXPECT_EQ(archive, nullptr);
        } else {
            EXPECT_EQ(FIOpenMember(archive, "packed.txt"), nullptr);
            EXPECT_EQ(FIOpenMember(archive, "stored.txt"), nullptr);
            FICloseFile(archive);
        }
        FIHeapNeverFails();
        EXPECT_EQ(FIHeapBlocks(), blocks);
    }
}

TEST(Archive, TakesAllMemoryForAMemberWhenItIsOpened) {
    const OpenFile file(archiveBytes);
    const HIOFILE archive = FIOpenArchive(file.File());
    const std::size_t blocks = FIHeapBlocks();
    HIOFILE member = nullptr;
    std::uint32_t allocations = 0;
    while (member == nullptr) {
        EXPECT_EQ(FIHeapBlocks(), blocks);
        FIFailAllocationsFrom(allocations++);
        member = FIOpenMember(archive, "packed.txt");
        ASSERT_LT(allocations, 10U);
    }
    EXPECT_GT(allocations, 2U);  // the handle's record, and what the unpacker needs
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(FIReadAll(member), (ReadResult{longText, false}));
        EXPECT_EQ(member->operations.IOSeek(member, 0, 0), 0);
    }
    FICloseFile(member);
    FIHeapNeverFails();
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(Archive, TakesTheOneSettingAndNoOther) {
    const OpenFile file(archiveBytes);
    const HIOFILE archive = FIOpenArchive(file.File());
    const std::uint32_t zero = 0;
    EXPECT_EQ(IOSetInfo(archive, 39, 2, &zero), 0);
    EXPECT_EQ(IOSetInfo(archive, 39, 1, &zero), -1);
    EXPECT_EQ(IOSetInfo(archive, 40, 2, &zero), -1);
    EXPECT_EQ(IOSetInfo(file.File(), 39, 2, &zero), -1);
    EXPECT_EQ(IOSetInfo(FIOpenMember(archive, "empty"), 39, 2, &zero), -1);
    EXPECT_EQ(IOSetInfo(nullptr, 39, 2, &zero), -1);
    const auto host = FIMakeTestHandle(archiveBytes);
    EXPECT_EQ(IOSetInfo(FIFileOf(*host), 39, 2, &zero), -1);
}

// ---- Members -------------------------------------------------------------------------------------------------------

TEST(Member, DeliversItsBytesInPortionsOfAnySize) {
    for (const std::uint32_t portion : {1U, 3U, 2048U, 4095U, 4096U, 4097U, 8192U, 100000U}) {
        for (const ZipMember& member : members) {
            EXPECT_EQ(FIReadMember(archiveBytes, member.name.c_str(), portion), (ReadResult{member.bytes, false}))
                << member.name << " by " << portion;
        }
    }
}

TEST(Member, IsFoundByItsExactName) {
    const OpenFile file(archiveBytes);
    const HIOFILE archive = FIOpenArchive(file.File());
    EXPECT_NE(FIOpenMember(archive, "dir/inner.txt"), nullptr);
    EXPECT_EQ(FIOpenMember(archive, "Dir/inner.txt"), nullptr);
    EXPECT_EQ(FIOpenMember(archive, "/dir/inner.txt"), nullptr);
    EXPECT_EQ(FIOpenMember(archive, "dir\\inner.txt"), nullptr);
    EXPECT_EQ(FIOpenMember(archive, "inner.txt"), nullptr);
    EXPECT_EQ(FIOpenMember(archive, "dir/inner"), nullptr);
    EXPECT_EQ(FIOpenMember(archive, ""), nullptr);
    EXPECT_EQ(FIOpenMember(file.File(), "empty"), nullptr);  // not in the file's own handle
    EXPECT_EQ(FIOpenMember(FIOpenMember(archive, "empty"), "empty"), nullptr);
}

TEST(Member, OfTwoOfOneNameIsTheFirstInTheDirectory) {
    const std::vector<ZipMember> same = {{"same", "one"}, {.name = "same", .bytes = "two", .method = zipDeflated}};
    EXPECT_EQ(FIReadMember(FIWriteZip(same), "same").bytes, "one");
    EXPECT_EQ(FIReadMember(FIWriteZip(same, {.directoryOrder = {1, 0}}), "same").bytes, "two");
}

TEST(Member, HasTheLastPartOfItsName) {
    const std::string longName = "d/" + std::string(300, 'a') + ".txt";
    const OpenFile file(FIWriteZip({{"dir/inner.txt", ""}, {longName, ""}, {"dir/", ""}}));
    const HIOFILE archive = FIOpenArchive(file.File());
    EXPECT_EQ(NameOf(FIOpenMember(archive, "dir/inner.txt")), "inner.txt");
    EXPECT_EQ(NameOf(FIOpenMember(archive, longName.c_str())), std::string(251, 'a') + ".txt");
    EXPECT_EQ(NameOf(FIOpenMember(archive, "dir/")), "");
}

TEST(Member, SeeksLikeAFile) {
    const OpenFile file(archiveBytes);
    const HIOFILE archive = FIOpenArchive(file.File());
    for (const char* const name : {"stored.txt", "packed.txt"}) {
        const HIOFILE member = FIOpenMember(archive, name);
        const auto size = static_cast<std::int32_t>(longText.size());
        for (const std::int32_t offset : {15000, 100, 0, 4096, 4095, size - 1, size, 12345}) {
            EXPECT_EQ(member->operations.IOSeek(member, 0, offset), 0);
            EXPECT_EQ(FIReadAll(member), (ReadResult{longText.substr(static_cast<std::size_t>(offset)), false}))
                << offset;
        }
        EXPECT_EQ(member->operations.IOSeek(member, 2, -5), 0);
        EXPECT_EQ(PositionOf(member), longText.size() - 5);
        EXPECT_EQ(FIReadAll(member).bytes, longText.substr(longText.size() - 5));
        EXPECT_EQ(member->operations.IOSeek(member, 2, 100), 0);
        EXPECT_EQ(FIReadAll(member), (ReadResult{"", false}));
        EXPECT_EQ(member->operations.IOSeek(member, 2, -size - 1), -1);
        EXPECT_EQ(PositionOf(member), longText.size() + 100);
    }
}

TEST(Member, ThatIsEncryptedDoesNotOpen) {
    const ZipMember stored = {.name = "m", .bytes = "bytes", .flags = zipEncryptedFlag};
    const ZipMember packed = {.name = "m", .bytes = "bytes", .method = zipDeflated, .flags = zipEncryptedFlag};
    EXPECT_EQ(FIReadMember(FIWriteZip({stored}), "m"), (ReadResult{"", true}));
    EXPECT_EQ(FIReadMember(FIWriteZip({packed}), "m"), (ReadResult{"", true}));
    EXPECT_EQ(FIReadMember(FIWriteZip({packed, {"m", "second"}}), "m"), (ReadResult{"", true}));  // the first is meant
}

TEST(Member, NeitherStoredNorDeflatedDoesNotOpen) {
    constexpr std::uint16_t methods[] = {1, 2, 6, 7, 9, 10, 12, 14, 20, 77, 93, 95, 98, 99, 256, 264, 65535};
    for (const std::uint16_t method : methods) {
        const ZipMember member = {.name = "m", .bytes = "bytes", .method = method, .packed = FIDeflate("bytes")};
        EXPECT_EQ(FIReadMember(FIWriteZip({member}), "m"), (ReadResult{"", true})) << method;
    }
}

TEST(Member, ThatIsStoredIsAsLongAsItsPackedSize) {
    for (const std::uint64_t told : {std::uint64_t{0}, std::uint64_t{4}, std::uint64_t{6}, std::uint64_t{5} << 40}) {
        const OpenFile file(FIWriteZip({{.name = "m", .bytes = "bytes", .zip64 = true, .sizeTold = told}}));
        const HIOFILE member = FIOpenMember(FIOpenArchive(file.File()), "m");
        ASSERT_NE(member, nullptr);
        EXPECT_EQ(FIReadAll(member), (ReadResult{"bytes", false})) << told;
        EXPECT_EQ(member->operations.IOSeek(member, 2, 0), 0);
        EXPECT_EQ(PositionOf(member), 5U) << told;
    }
}

TEST(Member, WithoutALocalHeaderDoesNotOpen) {
    EXPECT_EQ(FIReadMember(FIWriteZip({{.name = "m", .bytes = "bytes", .headerOffsetTold = 1}}), "m"),
              (ReadResult{"", true}));
}

TEST(Member, AChecksumIsNotVerified) {
    const ZipMember packed = {.name = "m", .bytes = "bytes", .method = zipDeflated, .checksumTold = 1};
    EXPECT_EQ(FIReadMember(FIWriteZip({packed}), "m"), (ReadResult{"bytes", false}));
    const ZipMember stored = {.name = "m", .bytes = "bytes", .checksumTold = 1};
    EXPECT_EQ(FIReadMember(FIWriteZip({stored}), "m"), (ReadResult{"bytes", false}));
}

TEST(Member, AWrongSizeIsNoDamage) {
    for (const std::uint64_t told :
         {std::uint64_t{0}, std::uint64_t{4}, std::uint64_t{6}, std::uint64_t{0xFFFFFFFFFF}}) {
        const ZipMember member = {
            .name = "m", .bytes = "bytes", .method = zipDeflated, .zip64 = true, .sizeTold = told};
        EXPECT_EQ(FIReadMember(FIWriteZip({member}), "m"), (ReadResult{"bytes", false})) << told;
    }
}

TEST(Member, ThatClaimsTerabytesCostsWhatWasAskedFor) {
    constexpr std::uint64_t terabytes = std::uint64_t{5} << 40;
    const ZipMember claimed = {.name = "m",
                               .bytes = "bytes",
                               .method = zipDeflated,
                               .zip64 = true,
                               .sizeTold = terabytes,
                               .packedSizeTold = terabytes};
    EXPECT_EQ(FIReadMember(FIWriteZip({claimed}), "m"), (ReadResult{"bytes", false}));
    ZipMember stored = claimed;
    stored.method = zipStored;
    const OpenFile file(FIWriteZip({stored}));
    const HIOFILE member = FIOpenMember(FIOpenArchive(file.File()), "m");
    char start[5];
    std::uint32_t count = 0;
    EXPECT_EQ(member->operations.IORead(member, start, 5, &count), 0);
    EXPECT_EQ(std::string(start, count), "bytes");
    EXPECT_EQ(member->operations.IOSeek(member, 2, 0), 0);
    EXPECT_EQ(PositionOf(member), 0xFFFFFFFF);
    EXPECT_EQ(FIReadAll(member), (ReadResult{"", false}));
}

TEST(Member, IsUnpackedAsItIsRead) {
    // Twenty megabytes in twenty kilobytes.
    const auto host =
        FIMakeTestHandle(FIWriteZip({{.name = "m", .bytes = std::string(20000000, 'z'), .method = zipDeflated}}));
    ASSERT_GT(host->bytes.size(), 15000U);
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    const HIOFILE member = FIOpenMember(FIOpenArchive(file), "m");
    ASSERT_NE(member, nullptr);
    host->bytesDelivered = 0;
    char bytes[10000];
    std::uint32_t count = 0;
    EXPECT_EQ(member->operations.IORead(member, bytes, sizeof(bytes), &count), 0);
    EXPECT_EQ(count, sizeof(bytes));
    EXPECT_LE(host->bytesDelivered, 10000U);
    FICloseFile(file);
}

TEST(Member, ThatTheFileCutsDeliversWhatIsThere) {
    const ZipMember stored = {.name = "m", .bytes = "0123456789", .packedSizeTold = 100000};
    const std::string zip = FIWriteZip({stored});
    const std::string rest = zip.substr(31);
    EXPECT_EQ(FIReadMember(zip, "m"), (ReadResult{rest, true}));
    EXPECT_EQ(FIReadMember(zip, "m", 1), (ReadResult{rest, true}));
    ZipMember packed = stored;
    packed.method = zipDeflated;
    packed.packed = FIStoredBlock(std::string(60000, 'x')).substr(0, 15);
    const ReadResult result = FIReadMember(FIWriteZip({packed}), "m");
    EXPECT_EQ(result.bytes.substr(0, 14), "xxxxxxxxxxPK\1\2");
    EXPECT_TRUE(result.failed);
}

TEST(Member, WhoseDataLieBehindTheFileFails) {
    const ZipMember front = {.name = "m", .bytes = "bytes", .method = zipDeflated};
    std::string zip = FIWriteZip({front});
    zip[28] = zip[29] = '\xFF';  // the local header's extra field
    EXPECT_EQ(FIReadMember(zip, "m"), (ReadResult{"", true}));
    ZipMember stored = front;
    stored.method = zipStored;
    zip = FIWriteZip({stored});
    zip[28] = zip[29] = '\xFF';
    EXPECT_EQ(FIReadMember(zip, "m"), (ReadResult{"", true}));
}

TEST(Member, ReadsOfNothingAreNothing) {
    const OpenFile file(archiveBytes);
    const HIOFILE archive = FIOpenArchive(file.File());
    for (const char* const name : {"stored.txt", "packed.txt", "empty"}) {
        const HIOFILE member = FIOpenMember(archive, name);
        std::uint32_t count = 1;
        EXPECT_EQ(member->operations.IORead(member, nullptr, 0, &count), 0);
        EXPECT_EQ(count, 0U);
    }
}

TEST(Member, OfAFileThatFailsIsDamaged) {
    const auto host = FIMakeTestHandle(archiveBytes);
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    const HIOFILE archive = FIOpenArchive(file);
    const HIOFILE packed = FIOpenMember(archive, "packed.txt");
    const HIOFILE stored = FIOpenMember(archive, "stored.txt");
    host->failReadsFrom = 0;
    EXPECT_EQ(FIReadAll(packed), (ReadResult{"", true}));
    EXPECT_EQ(FIReadAll(stored), (ReadResult{"", true}));
    EXPECT_EQ(FIOpenMember(archive, "stored.txt"), nullptr);
    FICloseFile(file);
}

}  // namespace
