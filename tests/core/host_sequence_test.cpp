// What a host sees: every operation on its own handle, one behind the other, with its numbers.
//
// A host counts on them: its handle may be slow, or fail or come short at any operation, and the answer it then gets is
// part of what is promised. So all sequences over the samples and the skeletons are kept here as digests, of which each
// takes in the answers too. A digest changes only when what a host sees changes on purpose.
//
// The numbers come from the version of the library in which every identification walked every row in full, before
// handles had heads: this test was built and run with it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "fiid.h"
#include "platform/base_utility.h"
#include "signatures/table.h"
#include "support/case_name.h"
#include "support/ordinary_files.h"
#include "support/skeleton.h"

namespace {

using ::PrintTo;

constexpr std::uint32_t never = 0xFFFFFFFF;

// FNV-1a of 64 bits.
struct Digest {
    std::uint64_t value = 14695981039346656037U;

    void Take(std::uint64_t number) {
        for (std::uint32_t byte = 0; byte < 8; ++byte, number >>= 8) {
            value = (value ^ (number & 0xFF)) * 1099511628211U;
        }
    }
    void Take(const char* text) {
        for (; *text != '\0'; ++text) Take(static_cast<std::uint8_t>(*text));
    }
};

struct HostHandle;

// How awkward a host is, and what was done to its handle and to all that were opened in it.
struct Host {
    std::uint32_t failingRead = never;
    std::uint32_t shortRead = never;  // delivers half of what it was asked for
    std::uint32_t failingSeek = never;
    std::uint32_t reads = 0;
    std::uint32_t seeks = 0;
    Digest digest = {};
    // All of them, until the file is done: one that the core leaves open, as that of an archive, is freed with them.
    std::vector<std::shared_ptr<HostHandle>> handles = {};
};

// A host's handle: one of the platform layer, which does the work, behind operations of the host's own. So there are
// storages, archives and their parts in it.
struct HostHandle {
    IOFile file;  // first: a HostHandle is an HIOFILE
    HIOFILE inner;
    Host* host;
    const Skeleton* skeleton;  // whose class identifier it claims, or null
    std::uint32_t emptyReads;
};

enum Operation : std::uint8_t { opClose = 1, opRead, opWrite, opSeek, opTell, opGetInfo, opOpenSub };

HostHandle& From(HIOFILE file) { return *reinterpret_cast<HostHandle*>(file); }

HIOFILE NewHostHandle(HIOFILE inner, Host& host, const Skeleton* skeleton = nullptr);

std::int32_t Close(HIOFILE file) {
    HostHandle& handle = From(file);
    handle.host->digest.Take(opClose);
    return handle.inner->operations.IOClose(handle.inner);
}

// Delivers a line feed after some empty reads, for the routine that has no test for the end.
std::int32_t Read(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    constexpr std::uint32_t mostEmptyReads = 512;
    HostHandle& handle = From(file);
    Host& host = *handle.host;
    host.digest.Take(opRead);
    host.digest.Take(size);
    *count = 0;
    const std::uint32_t number = host.reads++;
    if (number == host.failingRead) return -1;
    if (number == host.shortRead) size /= 2;
    const std::int32_t status = handle.inner->operations.IORead(handle.inner, destination, size, count);
    if (*count > 0) {
        handle.emptyReads = 0;
    } else if (size > 0 && ++handle.emptyReads > mostEmptyReads) {
        *static_cast<char*>(destination) = '\n';
        *count = 1;
        handle.emptyReads = 0;
        return 0;
    }
    return status;
}

std::int32_t Write(HIOFILE file, const void*, std::uint32_t, std::uint32_t*) {
    From(file).host->digest.Take(opWrite);
    return -1;
}

std::int32_t Seek(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    HostHandle& handle = From(file);
    Host& host = *handle.host;
    host.digest.Take(opSeek);
    host.digest.Take(origin);
    host.digest.Take(static_cast<std::uint32_t>(offset));
    if (host.seeks++ == host.failingSeek) return -1;
    return handle.inner->operations.IOSeek(handle.inner, origin, offset);
}

std::int32_t Tell(HIOFILE file, std::uint32_t* position) {
    HostHandle& handle = From(file);
    handle.host->digest.Take(opTell);
    return handle.inner->operations.IOTell(handle.inner, position);
}

std::int32_t GetInfo(HIOFILE file, std::uint32_t selector, void* value) {
    HostHandle& handle = From(file);
    handle.host->digest.Take(opGetInfo);
    handle.host->digest.Take(selector);
    if (handle.skeleton != nullptr && handle.skeleton->isStorage) {
        if (selector == IOInfoIsStorage) return 0;
        if (selector == IOInfoClassId) {
            std::memcpy(value, handle.skeleton->classId.data(), handle.skeleton->classId.size());
            return 0;
        }
    }
    return handle.inner->operations.IOGetInfo(handle.inner, selector, value);
}

// Opens in the handle behind the host's. Every specification starts with the parent, which takes its place in a copy.
template <typename Specification>
std::int32_t OpenInner(HIOFILE* out, HostHandle& handle, std::uint32_t kind, const void* given, std::uint32_t flags) {
    Specification specification = {};
    std::memcpy(&specification, given, sizeof(specification));
    EXPECT_EQ(specification.parent, &handle.file);
    specification.parent = handle.inner;
    return handle.inner->operations.IOOpenSub(out, kind, &specification, flags);
}

std::int32_t OpenSubOf(HIOFILE* out, HostHandle& handle, std::uint32_t kind, const void* given, std::uint32_t flags) {
    switch (kind) {
        case IOSUB_STREAM:
        case IOSUB_STORAGE:
            handle.host->digest.Take(static_cast<const IOSubSpec*>(given)->name);
            return OpenInner<IOSubSpec>(out, handle, kind, given, flags);
        case IOSUB_MEMBER:
            handle.host->digest.Take(static_cast<const IOSubMemberSpec*>(given)->name);
            return OpenInner<IOSubMemberSpec>(out, handle, kind, given, flags);
        case IOSUB_RANGE:
            handle.host->digest.Take(static_cast<const IOSubRangeSpec*>(given)->start);
            handle.host->digest.Take(static_cast<const IOSubRangeSpec*>(given)->end);
            return OpenInner<IOSubRangeSpec>(out, handle, kind, given, flags);
        case IOSUB_DERIVED:
            handle.host->digest.Take(static_cast<const IOSubDerivedSpec*>(given)->method);
            return OpenInner<IOSubDerivedSpec>(out, handle, kind, given, flags);
        default:
            return -1;
    }
}

std::int32_t OpenSub(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t flags) {
    // The file's handle stands in *out for an archive, and is the first thing in what names anything else.
    const bool isArchive = kind == IOSUB_ARCHIVE;
    HostHandle& handle = From(isArchive ? *out : *static_cast<const HIOFILE*>(specification));
    handle.host->digest.Take(opOpenSub);
    handle.host->digest.Take(kind);
    HIOFILE opened = handle.inner;
    const std::int32_t status = isArchive ? handle.inner->operations.IOOpenSub(&opened, kind, specification, flags)
                                          : OpenSubOf(&opened, handle, kind, specification, flags);
    *out = status == 0 ? NewHostHandle(opened, *handle.host) : nullptr;
    return status;
}

HIOFILE NewHostHandle(HIOFILE inner, Host& host, const Skeleton* skeleton) {
    constexpr IOOperations operations = {Close, Read, Write, Seek, Tell, GetInfo, OpenSub};
    host.handles.push_back(std::make_shared<HostHandle>(HostHandle{{operations}, inner, &host, skeleton, 0}));
    return &host.handles.back()->file;
}

// ---- The files ------------------------------------------------------------------------------------------------------

struct File {
    std::string bytes;
    std::string name;
    Skeleton skeleton = {};
};

// In an order that is the same everywhere.
std::vector<File> ReadSamples() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(FIID_SAMPLES_DIR)) {
        const bool isText = entry.path().parent_path() == FIID_SAMPLES_DIR;  // the answers and what tells about them
        if (entry.is_regular_file() && !isText) paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    std::vector<File> files;
    for (const auto& path : paths) {
        std::ifstream file(path, std::ios::binary);
        files.push_back({std::string(std::istreambuf_iterator<char>(file), {}), path.filename().string()});
    }
    return files;
}

std::vector<File> MakeSkeletons() {
    std::vector<File> files;
    for (std::uint16_t row = 1; row <= signatureRowCount; ++row) {
        const Skeleton skeleton = FIMakeSkeleton(FIFindSignatureRow(row)->signature);
        files.push_back({skeleton.bytes, skeleton.name, skeleton});
    }
    for (const std::string& bytes : FIOrdinaryFiles()) files.push_back({bytes.substr(0, 20000), ""});
    for (const std::size_t size : {std::size_t{1}, std::size_t{512}, std::size_t{9000}}) {
        files.push_back({std::string(size, '\0'), ""});
    }
    return files;
}

const std::vector<File>& Files() {
    static const std::vector<File> files = [] {
        std::vector<File> all = ReadSamples();
        for (File& file : MakeSkeletons()) all.push_back(std::move(file));
        return all;
    }();
    return files;
}

// Identifies a file over a host's handle and takes the operations and the answer into the digest.
void Identify(const File& file, Host& host) {
    const IOMemorySpec memory = {file.bytes.data(), file.bytes.size(), file.name.c_str()};
    HIOFILE inner = nullptr;
    ASSERT_EQ(IOOpen(&inner, IOSpecMemory, &memory, IOOpenRead), 0);
    const HIOFILE handle = NewHostHandle(inner, host, &file.skeleton);
    FIID fiid = 0;
    EXPECT_EQ(FIIdHandle(handle, FIFlagExtendedText, &fiid), 0);
    host.digest.Take(fiid);
    static_cast<void>(handle->operations.IOClose(handle));
}

struct SequenceCase {
    const char* name;
    std::uint32_t Host::*failing;
    std::uint32_t number;
    std::uint64_t digest;
};

const SequenceCase sequenceCases[] = {
    // clang-format off
    {"SoundHandle", &Host::failingRead, never, 0x75E4FB337EDD47D3},
    {"FailingRead0", &Host::failingRead, 0, 0xF3BF3AC368DE8CDE},
    {"FailingRead1", &Host::failingRead, 1, 0x4F56C0A78CAF21B7},
    {"FailingRead2", &Host::failingRead, 2, 0x6979019C750090C0},
    {"FailingRead3", &Host::failingRead, 3, 0x3EC78E0831AA8681},
    {"FailingRead4", &Host::failingRead, 4, 0x0ED12E96C751039E},
    {"FailingRead5", &Host::failingRead, 5, 0x717E9F4F404AC6E8},
    {"FailingRead6", &Host::failingRead, 6, 0x467A2499C6FE7ED6},
    {"FailingRead7", &Host::failingRead, 7, 0x16EBC247BBC678BD},
    {"ShortRead0", &Host::shortRead, 0, 0x8D956807BBDF28CD},
    {"ShortRead1", &Host::shortRead, 1, 0xD4F05BFCA322C399},
    {"ShortRead2", &Host::shortRead, 2, 0x480F388EE0805D60},
    {"ShortRead3", &Host::shortRead, 3, 0x06E146EF2BD3E9E8},
    {"ShortRead4", &Host::shortRead, 4, 0xCAE33388690F5F51},
    {"ShortRead5", &Host::shortRead, 5, 0x75E4FB337EDD47D3},
    {"ShortRead6", &Host::shortRead, 6, 0x75E4FB337EDD47D3},
    {"ShortRead7", &Host::shortRead, 7, 0xFB38F9D08C9D6858},
    {"FailingSeek0", &Host::failingSeek, 0, 0x353E2AF101CE5D8B},
    {"FailingSeek1", &Host::failingSeek, 1, 0x2A3704DAE2E884FE},
    {"FailingSeek2", &Host::failingSeek, 2, 0xAFEC0590C7A8BA8F},
    {"FailingSeek3", &Host::failingSeek, 3, 0x84258D7870206A56},
    {"FailingSeek4", &Host::failingSeek, 4, 0x33344229ED8BA2BC},
    {"FailingSeek5", &Host::failingSeek, 5, 0xE1FE82E6C7C71E7F},
    {"FailingSeek6", &Host::failingSeek, 6, 0x0ADF7A335D818A97},
    {"FailingSeek7", &Host::failingSeek, 7, 0xE124F54DAB152776},
    // clang-format on
};

class HostSequence : public testing::TestWithParam<SequenceCase> {};

TEST_P(HostSequence, StaysAsItWas) {
    ASSERT_GT(Files().size(), signatureRowCount + 500);
    Digest all;
    for (const File& file : Files()) {
        Host host;
        host.*GetParam().failing = GetParam().number;
        Identify(file, host);
        all.Take(host.digest.value);
    }
    EXPECT_EQ(all.value, GetParam().digest);
}

INSTANTIATE_TEST_SUITE_P(Hosts, HostSequence, testing::ValuesIn(sequenceCases), FICaseName);

}  // namespace
