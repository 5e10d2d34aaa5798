// Files that are hashed and identified in one pass: the bytes that it keeps, what it costs, and the answers, which are
// those without a hash. The linker wraps pread and fstat (see CMakeLists.txt).
#include "scan/hashed_source.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>

#include "scan/descriptors.h"
#include "scan/identify.h"
#include "scan/interrupt.h"
#include "support/temporary_directory.h"
#include "support/zip_writer.h"

namespace {

// What stands in the way of reads, of this file and the library's.
std::function<void(int descriptor, int call)> beforeRead;  // call counts from 0
std::uint64_t failedFrom = UINT64_MAX;                     // bytes from here on can't be read
std::size_t mostBytes = SIZE_MAX;                          // that one read delivers
int interruptedReads = 0;                                  // so many reads are interrupted first,
bool signalInterrupts = false;                             // by a signal that ends the program
std::uint64_t bytesDelivered = 0;
std::uint64_t readsMade = 0;
bool pretendsDevice = false;  // files seem to be block devices

void Unwrap() {
    beforeRead = nullptr;
    failedFrom = UINT64_MAX;
    mostBytes = SIZE_MAX;
    interruptedReads = 0;
    signalInterrupts = false;
    pretendsDevice = false;
}

void StartCounting() {
    bytesDelivered = 0;
    readsMade = 0;
}

}  // namespace

extern "C" {

ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
int __real_fstat(int descriptor, struct stat* status);

ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset) {
    if (interruptedReads > 0) {
        --interruptedReads;
        if (signalInterrupts && !Interrupted()) raise(SIGTERM);
        errno = EINTR;
        return -1;
    }
    if (beforeRead) beforeRead(descriptor, static_cast<int>(readsMade));
    ++readsMade;
    const auto start = static_cast<std::uint64_t>(offset);
    if (start >= failedFrom) {
        errno = EIO;
        return -1;
    }
    const std::uint64_t wanted = std::min<std::uint64_t>({size, mostBytes, failedFrom - start});
    const ssize_t came = __real_pread(descriptor, buffer, static_cast<std::size_t>(wanted), offset);
    if (came > 0) bytesDelivered += static_cast<std::uint64_t>(came);
    return came;
}
int __wrap_fstat(int descriptor, struct stat* status) {
    const int result = __real_fstat(descriptor, status);
    if (!pretendsDevice || !S_ISREG(status->st_mode)) return result;
    status->st_mode = S_IFBLK | 0600;
    status->st_size = 0;
    return result;
}

}  // extern "C"

namespace {

constexpr std::uint64_t block = hashBlockBytes;
constexpr std::uint64_t tail = keptTailBytes;

// Sizes around each at which blocks are divided in another way.
std::vector<std::uint64_t> SizesAroundLimits() {
    std::vector<std::uint64_t> sizes = {0, 1, 2};
    for (const std::uint64_t limit :
         {std::uint64_t{8192}, tail, block, block + tail, 2 * block - tail, 2 * block, 2 * block + tail}) {
        for (const std::uint64_t size : {limit - 1, limit, limit + 1}) sizes.push_back(size);
    }
    return sizes;
}

// Bytes without a period, the same for every size.
std::string NoiseOf(std::uint64_t size) {
    static const std::string noise = [] {
        std::string bytes(static_cast<std::size_t>(4 * block), '\0');
        std::uint32_t state = 12345;
        for (char& byte : bytes) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<char>(state >> 24);
        }
        return bytes;
    }();
    if (size > noise.size()) throw std::out_of_range("so much noise there is not");
    return noise.substr(0, static_cast<std::size_t>(size));
}

std::string ContentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string HashOf(HashKind kind, std::string_view bytes) {
    Hasher hasher(kind);
    hasher.Update(std::as_bytes(std::span(bytes)));
    return hasher.Hex();
}

class Hashed : public testing::Test {
 protected:
    ~Hashed() override { Unwrap(); }

    int Open(const std::string& bytes) {
        directory_.Write("file", bytes);
        opened_ = std::make_unique<OwnedDescriptor>(open(directory_.At("file").c_str(), O_RDWR | O_CLOEXEC));
        return opened_->Number();
    }
    void Shrink(std::uint64_t size) const {
        EXPECT_EQ(truncate(directory_.At("file").c_str(), static_cast<off_t>(size)), 0);
    }
    // The record of what a path leads to; beginning and counting anew.
    Record RecordOf(const std::string& path, HashKind hash, std::uint32_t flags = FIID_EXPLAIN) const {
        IdentifyOptions options;
        options.hash = hash;
        options.flags = flags;
        StartCounting();
        std::optional<Record> record = IdentifyNamedPath(path, options);
        if (!record.has_value()) {
            ADD_FAILURE() << path << ": no record";
            record.emplace();
        }
        return *record;
    }
    // The answer with a hash is that without, but for its cost, which is what was read.
    Record ExpectSameAnswer(const std::string& path, HashKind hash, std::uint32_t flags = FIID_EXPLAIN) const;
    Record ExpectSameAnswerOf(const std::string& bytes, HashKind hash = HashKind::Xxh3) const {
        directory_.Write("file", bytes);
        const Record record = ExpectSameAnswer(directory_.At("file"), hash);
        EXPECT_EQ(record.hash, HashOf(hash, bytes));
        return record;
    }

    TemporaryDirectory directory_;
    std::unique_ptr<OwnedDescriptor> opened_;
};

// ---- The pass -------------------------------------------------------------------------------------------------------

std::string ReadAll(HashedSource& source, std::uint64_t offset, std::uint64_t size) {
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        std::uint32_t count = 0;
        const auto wanted = static_cast<std::uint32_t>(std::min<std::size_t>(bytes.size() - filled, 65536));
        if (source.ReadAt(offset + filled, bytes.data() + filled, wanted, count) != 0 || count == 0) break;
        filled += count;
    }
    bytes.resize(filled);
    return bytes;
}

TEST_F(Hashed, PassReadsEveryByteOnceAndDeliversAllOfThem) {
    for (const std::uint64_t size : SizesAroundLimits()) {
        const std::string bytes = NoiseOf(size);
        HashedSource source(Open(bytes));
        Hasher hasher(HashKind::Xxh3);
        StartCounting();
        ASSERT_TRUE(source.HashBytes(size, hasher)) << size;
        EXPECT_EQ(hasher.Hex(), HashOf(HashKind::Xxh3, bytes)) << size;
        EXPECT_EQ(source.Size(), size);
        EXPECT_EQ(bytesDelivered, size);
        EXPECT_EQ(source.BytesRead(), size);
        EXPECT_EQ(source.Calls(), readsMade);
        EXPECT_EQ(ReadAll(source, 0, size), bytes) << size;
    }
}

TEST_F(Hashed, PassKeepsTheHeadAndTheTail) {
    for (const std::uint64_t size : SizesAroundLimits()) {
        const std::string bytes = NoiseOf(size);
        HashedSource source(Open(bytes));
        Hasher hasher(HashKind::Xxh3);
        ASSERT_TRUE(source.HashBytes(size, hasher)) << size;
        const std::uint64_t calls = source.Calls();
        const std::uint64_t head = std::min(size, block);
        const std::uint64_t end = std::min(size, tail);
        EXPECT_EQ(ReadAll(source, 0, head), bytes.substr(0, static_cast<std::size_t>(head))) << size;
        EXPECT_EQ(ReadAll(source, size - end, end), bytes.substr(static_cast<std::size_t>(size - end))) << size;
        EXPECT_EQ(source.Calls(), calls) << size;
    }
}

TEST_F(Hashed, PassReadsInBlocks) {
    struct {
        std::uint64_t size;
        std::uint64_t calls;
    } const costs[] = {{0, 0},  // which is known without a read
                       {1, 1},         {block, 1},         {block + 1, 2},        {block + tail, 2},
                       {2 * block, 2}, {2 * block + 1, 3}, {2 * block + tail, 3}, {4 * block - 1, 4},
                       {4 * block, 4}};
    for (const auto& [size, calls] : costs) {
        HashedSource source(Open(NoiseOf(size)));
        Hasher hasher(HashKind::Xxh3);
        ASSERT_TRUE(source.HashBytes(size, hasher));
        EXPECT_EQ(source.Calls(), calls) << size;
    }
}

TEST_F(Hashed, PlacesBetweenAreReadAgain) {
    const std::string bytes = NoiseOf(4 * block);
    HashedSource source(Open(bytes));
    Hasher hasher(HashKind::Xxh3);
    ASSERT_TRUE(source.HashBytes(bytes.size(), hasher));
    EXPECT_EQ(ReadAll(source, block, 100), bytes.substr(block, 100));
    EXPECT_EQ(source.Calls(), 5U);
    EXPECT_EQ(source.BytesRead(), bytes.size() + 100);
    // A read across what is held is divided where that begins and ends.
    char buffer[200];
    std::uint32_t count = 0;
    EXPECT_EQ(source.ReadAt(block - 50, buffer, 200, count), 0);
    EXPECT_EQ(count, 50U);
    EXPECT_EQ(source.ReadAt(3 * block - 50, buffer, 200, count), 0);
    EXPECT_EQ(count, 50U);
    EXPECT_EQ(source.Calls(), 6U);
    failedFrom = block;
    EXPECT_EQ(source.ReadAt(block, buffer, 200, count), EIO);
}

TEST_F(Hashed, PassReadsOnOverShortAndInterruptedReads) {
    mostBytes = 1000;
    for (const std::uint64_t size : {std::uint64_t{5000}, block + 1, 2 * block + tail}) {
        const std::string bytes = NoiseOf(size);
        HashedSource source(Open(bytes));
        Hasher hasher(HashKind::Xxh3);
        interruptedReads = 3;
        ASSERT_TRUE(source.HashBytes(size, hasher));
        EXPECT_EQ(hasher.Hex(), HashOf(HashKind::Xxh3, bytes));
        EXPECT_EQ(ReadAll(source, 0, size), bytes) << size;
    }
}

TEST_F(Hashed, PassEndsWithTheFile) {
    for (const std::uint64_t size : SizesAroundLimits()) {
        const std::string bytes = NoiseOf(size);
        for (const std::uint64_t told : {size + 1, size + block, UINT64_MAX}) {
            HashedSource source(Open(bytes));
            Hasher hasher(HashKind::Xxh3);
            ASSERT_TRUE(source.HashBytes(told, hasher));
            EXPECT_EQ(source.Size(), size) << told;
            EXPECT_EQ(hasher.Hex(), HashOf(HashKind::Xxh3, bytes)) << size;
        }
    }
}

// ---- Answers --------------------------------------------------------------------------------------------------------

std::string TextOf(const fiid_result& answer) {
    std::ostringstream text;
    text << answer.fiid << ' ' << answer.further << ' ' << answer.row << ' ' << answer.further_row << ' '
         << answer.basis << ' ' << answer.warnings << " size " << answer.size << " modified " << answer.modified_seconds
         << '.' << answer.modified_nanoseconds << ' ' << answer.modified_known << " errors " << answer.system_error
         << ' ' << answer.source_error;
    for (const std::uint32_t number : answer.reserved_numbers) text << ' ' << number;
    for (const char* const part : {answer.name, answer.mime, answer.version, answer.puids, answer.extensions,
                                   answer.signature, answer.further_signature, answer.routine, answer.family}) {
        text << " | " << part;
    }
    for (const char* const part : answer.reserved_texts) text << " | " << part;
    text << " | " << answer.explanation;
    return text.str();
}

Record Hashed::ExpectSameAnswer(const std::string& path, HashKind hash, std::uint32_t flags) const {
    const Record plain = RecordOf(path, HashKind::None, flags);
    EXPECT_EQ(plain.hash, "") << path;
    const Record hashed = RecordOf(path, hash, flags);
    EXPECT_EQ(hashed.error, plain.error) << path;
    if (hashed.error.has_value() || plain.error.has_value()) return hashed;
    EXPECT_EQ(TextOf(hashed.answer), TextOf(plain.answer)) << path;
    EXPECT_EQ(hashed.answer.bytes_read, bytesDelivered) << path;
    EXPECT_EQ(hashed.answer.calls, readsMade) << path;
    return hashed;
}

TEST_F(Hashed, SamplesHaveTheSameAnswers) {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(FIID_SAMPLES_DIR)) {
        if (!entry.is_regular_file()) continue;
        ++count;
        const Record record = ExpectSameAnswer(entry.path(), HashKind::Xxh3);
        const std::string bytes = ContentsOf(entry.path());
        EXPECT_EQ(record.hash, HashOf(HashKind::Xxh3, bytes)) << entry.path();
        if (bytes.size() > block) continue;
        EXPECT_EQ(record.answer.bytes_read, bytes.size()) << entry.path();
        EXPECT_LE(record.answer.calls, 1U) << entry.path();
    }
    EXPECT_GE(count, 800);
}

TEST_F(Hashed, FlagsCount) {
    const std::string text = FIID_SAMPLES_DIR "/xlsx/calc.xlsx";
    for (const int flags : {0, +FIID_NO_FURTHER, FIID_NO_TEXT | FIID_NO_FURTHER, FIID_NO_TEXT | FIID_EXPLAIN}) {
        ExpectSameAnswer(text, HashKind::Sha256, static_cast<std::uint32_t>(flags));
    }
}

// The name decides where the bytes say nothing.
TEST_F(Hashed, NameCounts) {
    directory_.Write("a.tga", std::string(100, '\0'));
    EXPECT_EQ(ExpectSameAnswer(directory_.At("a.tga"), HashKind::Sha256).answer.fiid, 1512);
}

// What tells the format stands at the file's beginning or at its end.
TEST_F(Hashed, FilesOfSizesAroundLimitsHaveTheSameAnswers) {
    for (const std::uint64_t size : SizesAroundLimits()) {
        ExpectSameAnswerOf(NoiseOf(size));
        ExpectSameAnswerOf(std::string(static_cast<std::size_t>(size), 'a'));
        if (size < 128) continue;
        std::string tagged(static_cast<std::size_t>(size), '\0');
        tagged.replace(tagged.size() - 128, 3, "TAG");
        const Record record = ExpectSameAnswerOf(tagged);
        EXPECT_EQ(record.answer.fiid, 1708) << size;
        EXPECT_LE(record.answer.bytes_read, size + 65536) << size;
    }
}

// Its parts lie anywhere, its directory at the end.
TEST_F(Hashed, PackagesOfSizesAroundLimitsHaveTheSameAnswers) {
    const std::string package = ContentsOf(FIID_SAMPLES_DIR "/xlsx/calc.xlsx");
    for (const std::uint64_t size : SizesAroundLimits()) {
        const std::string padding = NoiseOf(size);
        const ZipMember mark = {"mimetype", "application/epub+zip"};
        const ZipMember container = {
            "META-INF/container.xml",
            "<container xmlns=\"urn:oasis:names:tc:opendocument:xmlns:container\" version=\"1.0\"/>"};
        ExpectSameAnswerOf(FIWriteZip({mark, {"padding", padding}, container}));
        ExpectSameAnswerOf(FIWriteZip({{"padding", padding}, mark, container, {"more", padding}}));
        ExpectSameAnswerOf(package + padding);
        ExpectSameAnswerOf(padding + package);
    }
}

TEST_F(Hashed, LargePackageIsReadOnceButForPlacesBetween) {
    const std::string padding = NoiseOf(2 * block);
    const Record record = ExpectSameAnswerOf(
        FIWriteZip({{"a", padding}, {"[Content_Types].xml", "<Types/>"}, {"_rels/.rels", "<x/>"}, {"b", padding}}));
    const std::uint64_t size = record.answer.size;
    EXPECT_GT(record.answer.bytes_read, size);
    EXPECT_LE(record.answer.bytes_read, size + 65536);
}

TEST_F(Hashed, SparseFileHasTheSameAnswer) {
    const std::string path = directory_.At("file");
    directory_.Write("file", "GIF89a");
    ASSERT_EQ(truncate(path.c_str(), 20 << 20), 0);
    const Record record = ExpectSameAnswer(path, HashKind::Xxh3);
    EXPECT_EQ(record.answer.fiid, 1503);
    EXPECT_EQ(record.answer.bytes_read, std::uint64_t{20} << 20);
    EXPECT_EQ(record.answer.calls, 80U);
    EXPECT_EQ(record.hash, HashOf(HashKind::Xxh3, "GIF89a" + std::string((20 << 20) - 6, '\0')));
}

TEST_F(Hashed, DeviceIsHashedWhole) {
    pretendsDevice = true;
    for (const std::uint64_t size : {std::uint64_t{6}, block, 3 * block + 5}) {
        std::string bytes(static_cast<std::size_t>(size), '\0');
        bytes.replace(0, 6, "GIF89a");
        const Record record = ExpectSameAnswerOf(bytes, HashKind::Sha256);
        EXPECT_EQ(record.answer.fiid, 1503);
        EXPECT_EQ(record.answer.size, size);
    }
}

TEST_F(Hashed, StreamIsHashedByItsCopy) {
    ASSERT_EQ(mkfifo(directory_.At("fifo").c_str(), 0600), 0);
    const int writer = open(directory_.At("fifo").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(write(writer, "GIF89a", 6), 6);
    if (fork() == 0) {
        usleep(20000);
        _exit(0);
    }
    close(writer);
    const Record record = RecordOf(directory_.At("fifo"), HashKind::Sha256);
    EXPECT_EQ(record.answer.fiid, 1503);
    EXPECT_EQ(record.answer.modified_known, 0U);
    EXPECT_EQ(record.hash, HashOf(HashKind::Sha256, "GIF89a"));
}

// ---- Files that change, and files that are none --------------------------------------------------------------------

// The bytes count that the file had when it was opened.
TEST_F(Hashed, FileThatGrowsIsHashedAsItWas) {
    for (const std::uint64_t size : {std::uint64_t{100}, block, 3 * block}) {
        const std::string bytes = "GIF89a" + NoiseOf(size);
        directory_.Write("file", bytes);
        std::ofstream growing(directory_.At("file"), std::ios::binary | std::ios::app);
        beforeRead = [&](int, int call) {
            if (call < 10) growing << NoiseOf(block) << std::flush;
        };
        const Record record = RecordOf(directory_.At("file"), HashKind::Sha256);
        beforeRead = nullptr;
        EXPECT_EQ(record.hash, HashOf(HashKind::Sha256, bytes));
        EXPECT_EQ(record.answer.size, bytes.size());
        EXPECT_EQ(record.answer.fiid, 1503);
    }
}

// What is left of it is hashed, and has the answer that it has without a hash.
TEST_F(Hashed, FileThatShrinksIsHashedAsItIs) {
    for (const std::uint64_t left : {std::uint64_t{0}, std::uint64_t{6}, block - 1, block, 2 * block + 10}) {
        const std::string bytes = "GIF89a" + NoiseOf(3 * block);
        directory_.Write("file", bytes);
        beforeRead = [&](int, int call) {
            if (call == 0) Shrink(left);
        };
        const Record record = RecordOf(directory_.At("file"), HashKind::Sha256);
        beforeRead = nullptr;
        EXPECT_EQ(record.hash, HashOf(HashKind::Sha256, std::string_view(bytes).substr(0, left)));
        EXPECT_EQ(record.answer.calls, readsMade);
        const Record plain = RecordOf(directory_.At("file"), HashKind::None);
        EXPECT_EQ(TextOf(record.answer), TextOf(plain.answer)) << left;
    }
}

// Shrunk behind the pass: what is wanted between head and tail is gone, and nothing else happens.
TEST_F(Hashed, FileThatShrinksBehindThePassHasAnAnswer) {
    const std::string bytes = FIWriteZip({{"a", NoiseOf(2 * block)}, {"mimetype", "x"}, {"b", NoiseOf(2 * block)}});
    directory_.Write("file", bytes);
    beforeRead = [&](int, int call) {
        if (call == 5) Shrink(10);
    };
    const Record record = RecordOf(directory_.At("file"), HashKind::Sha256);
    EXPECT_GT(readsMade, 5U);
    EXPECT_EQ(record.error, std::nullopt);
    EXPECT_EQ(record.hash, HashOf(HashKind::Sha256, bytes));
    EXPECT_EQ(record.answer.source_error, 0);
}

// Files that tell no size, or more than they hold.
TEST_F(Hashed, FilesOfTheKernelHaveTheSameAnswers) {
    for (const char* const path : {"/proc/version", "/proc/filesystems", "/proc/self/mounts", "/sys/kernel/mm/ksm/run",
                                   "/proc/self/mem", "/proc/sys/kernel/ostype"}) {
        if (access(path, R_OK) != 0) continue;
        const Record record = ExpectSameAnswer(path, HashKind::Sha256);
        EXPECT_EQ(record.error.has_value(), record.hash.empty()) << path;
    }
    const Record version = RecordOf("/proc/version", HashKind::Sha256);
    EXPECT_EQ(version.hash, HashOf(HashKind::Sha256, ContentsOf("/proc/version")));
}

TEST_F(Hashed, DirectoriesAndDevicesAreRefusedAsWithout) {
    EXPECT_EQ(ExpectSameAnswer(directory_.At(""), HashKind::Sha256).error, "is a directory");
    EXPECT_EQ(ExpectSameAnswer("/dev/null", HashKind::Sha256).error, "is a character device, not a file");
}

// ---- Failures -------------------------------------------------------------------------------------------------------

// Where its beginning is enough without a hash, there is none for what can't be read.
TEST_F(Hashed, FileThatCantBeReadToItsEndIsAFailure) {
    directory_.Write("file", "GIF89a" + NoiseOf(3 * block));
    for (const std::uint64_t readable : {std::uint64_t{0}, std::uint64_t{6}, block, 3 * block + 5}) {
        failedFrom = readable;
        const Record record = RecordOf(directory_.At("file"), HashKind::Sha256);
        EXPECT_EQ(record.error, "Input/output error") << readable;
        EXPECT_EQ(record.hash, "") << readable;
    }
    failedFrom = block;
    EXPECT_EQ(RecordOf(directory_.At("file"), HashKind::None).answer.fiid, 1503);
    failedFrom = 3 * block + 6;
    EXPECT_EQ(RecordOf(directory_.At("file"), HashKind::Sha256).answer.fiid, 1503);
}

// The answer is that of what can be read, as without a hash.
TEST_F(Hashed, FailureBehindThePassIsNoFailureOfTheFile) {
    directory_.Write("file", FIWriteZip({{"a", NoiseOf(2 * block)}, {"mimetype", "x"}, {"b", NoiseOf(2 * block)}}));
    beforeRead = [&](int, int call) { failedFrom = call >= 5 ? 0 : UINT64_MAX; };
    const Record record = RecordOf(directory_.At("file"), HashKind::Sha256);
    EXPECT_GT(readsMade, 5U);
    EXPECT_EQ(record.error, std::nullopt);
    EXPECT_EQ(record.hash.size(), 64U);
    EXPECT_EQ(record.answer.source_error, 0);
    EXPECT_EQ(record.answer.system_error, 0);
}

// The statement runs in a process of its own, which exits with 0 when it holds.
TEST_F(Hashed, SignalEndsThePassAtTheNextBlock) {
    directory_.Write("file", "GIF89a");
    ASSERT_EQ(truncate(directory_.At("file").c_str(), std::int64_t{1} << 40), 0);
    EXPECT_EXIT(
        {
            CatchInterrupts();
            beforeRead = [](int, int call) {
                if (call == 2) raise(SIGTERM);
            };
            const Record record = RecordOf(directory_.At("file"), HashKind::Xxh3);
            _exit(record.error == "Interrupted system call" && readsMade == 3 && record.hash.empty() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(Hashed, SignalEndsAReadThatIsInterruptedByIt) {
    directory_.Write("file", "GIF89a");
    EXPECT_EXIT(
        {
            CatchInterrupts();
            interruptedReads = 1000;
            signalInterrupts = true;
            const Record record = RecordOf(directory_.At("file"), HashKind::Xxh3);
            _exit(record.error == "Interrupted system call" && interruptedReads == 999 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
