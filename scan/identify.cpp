// identify.cpp - opens an object, identifies it, and says in plain words why that failed.
#include "scan/identify.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include "fiid/detect.h"
#include "scan/descriptors.h"
#include "scan/file_state.h"
#include "scan/hashed_source.h"
#include "scan/spool.h"

namespace {

// What is opened: a path from an open directory on.
struct Place {
    int directory;
    const char* path;
};

// What is identified, as the library is told of it.
struct Input {
    int descriptor;
    const char* name;     // what it may tell; null for none
    std::uint32_t flags;  // with FIID_DESCRIPTOR_IS_READABLE where that is known
};

// ---- Failures in words ----------------------------------------------------------------------------------------------

std::string ReasonOf(int reason) { return reason == 0 ? "can't be read" : std::strerror(reason); }

// Why something of this kind can't be opened or is refused.
std::string DescribeKind(mode_t mode, int reason) {
    if (S_ISDIR(mode)) return "is a directory";
    if (S_ISSOCK(mode)) return "is a socket, not a file";
    if (S_ISCHR(mode)) return "is a character device, not a file";
    return ReasonOf(reason);
}

std::string DescribeOpenFailure(const Place& place, int reason) {
    struct stat status = {};
    if (fstatat(place.directory, place.path, &status, 0) == 0) return DescribeKind(status.st_mode, reason);
    const bool leadsNowhere =
        errno == ENOENT && fstatat(place.directory, place.path, &status, AT_SYMLINK_NOFOLLOW) == 0;
    return leadsNowhere ? "is a symbolic link that leads nowhere" : ReasonOf(reason);
}

// A file that was opened and could not be told.
bool WasOpened(std::int32_t status) { return status == FIID_ERROR_READ || status == FIID_ERROR_MEMORY; }

std::string DescribeFailure(std::int32_t status, const fiid_result& answer) {
    return status == FIID_ERROR_READ ? ReasonOf(answer.system_error) : fiid_error_text(status);
}

// ---- Sizes ----------------------------------------------------------------------------------------------------------

bool HasLimits(const IdentifyOptions& options) { return options.minSize > 0 || options.maxSize < UINT64_MAX; }

bool IsWithin(std::uint64_t size, const IdentifyOptions& options) {
    return size >= options.minSize && size <= options.maxSize;
}

bool HoldsBytes(const struct stat& status) { return S_ISREG(status.st_mode) || S_ISBLK(status.st_mode); }

// Of a block device the status tells no size; -1 where none can be told.
std::int64_t SizeOf(int descriptor, const struct stat& status) {
    return S_ISBLK(status.st_mode) ? lseek(descriptor, 0, SEEK_END) : status.st_size;
}

// Whether a file is to be left out, by what its path tells, or by what is open: a device has to be opened for that.
bool IsLeftOut(const Place& place, const IdentifyOptions& options) {
    struct stat status = {};
    return HasLimits(options) && fstatat(place.directory, place.path, &status, 0) == 0 && S_ISREG(status.st_mode) &&
           !IsWithin(static_cast<std::uint64_t>(status.st_size), options);
}

bool IsLeftOut(int descriptor, const struct stat& status, const IdentifyOptions& options) {
    if (!HasLimits(options) || !HoldsBytes(status)) return false;
    const std::int64_t size = SizeOf(descriptor, status);
    return size >= 0 && !IsWithin(static_cast<std::uint64_t>(size), options);
}

// ---- Identification -------------------------------------------------------------------------------------------------

std::int32_t DetectByLibrary(const Input& input, fiid_result& answer) {
    const fiid_options options = {sizeof(options), input.flags};
    return fiid_detect_descriptor(input.descriptor, input.name, &options, &answer);
}

std::int32_t ReadHashed(void* context, std::uint64_t offset, void* buffer, std::uint32_t size, std::uint32_t* count) {
    return static_cast<HashedSource*>(context)->ReadAt(offset, buffer, size, *count);
}

// Identifies the bytes that were hashed, with the answer that the library has for the descriptor.
std::int32_t DetectHashed(HashedSource& bytes, const Input& input, fiid_result& answer) {
    constexpr std::uint32_t blockOfFiles = 8192;  // what the library reads ahead of files
    const fiid_source source = {&bytes, ReadHashed, bytes.Size(), input.name, blockOfFiles, 0};
    const fiid_options options = {sizeof(options), input.flags & ~std::uint32_t{FIID_DESCRIPTOR_IS_READABLE}};
    const std::int32_t status = fiid_detect_source(&source, &options, &answer);
    answer.source_error = 0;
    answer.bytes_read = 0;  // what was looked at in memory is no cost
    answer.calls = 0;
    return status;
}

// Hashes a file whole and identifies it by what is read for that. A file that does not hold what its size tells, as under
// /proc and /sys or while it shrinks, is left to the library: what it says of such a file depends on what it is told.
std::int32_t HashAndDetect(const Input& input, const struct stat& status, HashKind hash, Record& record) {
    fiid_result& answer = record.answer;
    const std::int64_t size = SizeOf(input.descriptor, status);
    const std::uint64_t told = size > 0 ? static_cast<std::uint64_t>(size) : 0;
    HashedSource bytes(input.descriptor);
    Hasher hasher(hash);
    if (size < 0 || !bytes.HashBytes(told > 0 ? told : UINT64_MAX, hasher)) {
        answer.system_error = errno;
        return FIID_ERROR_READ;
    }
    record.hash = hasher.Hex();
    std::int32_t result = FIID_OK;
    if (bytes.Size() == told) {
        result = DetectHashed(bytes, input, answer);
        answer.modified_seconds = status.st_mtim.tv_sec;
        answer.modified_nanoseconds = static_cast<std::uint32_t>(status.st_mtim.tv_nsec);
        answer.modified_known = 1;
    } else {
        result = DetectByLibrary(input, answer);
    }
    answer.bytes_read += bytes.BytesRead();
    answer.calls += bytes.Calls();
    return result;
}

// What became of an input: the status of the library, or nothing if it is to be left out.
using Outcome = std::optional<std::int32_t>;

// Identifies what a descriptor holds, which is open for reading. What is neither file nor block device is the library's to
// refuse. A plain file is looked at by the library alone, unless more is asked for.
Outcome Detect(const Input& input, const IdentifyOptions& options, Record& record) {
    const bool hashed = options.hash != HashKind::None;
    struct stat status = {};
    if (!(hashed || options.state || HasLimits(options)) || fstat(input.descriptor, &status) != 0 ||
        !HoldsBytes(status)) {
        return DetectByLibrary(input, record.answer);
    }
    if (IsLeftOut(input.descriptor, status, options)) return std::nullopt;
    if (options.state) record.state = StateOf(status);
    const std::int32_t result =
        hashed ? HashAndDetect(input, status, options.hash, record) : DetectByLibrary(input, record.answer);
    if (result != FIID_OK) record.hash.clear();
    return result;
}

// Identifies a descriptor for which inputName stands in the error. Returns false if it is to be left out.
bool IdentifyDescriptor(const Input& input, const std::string& inputName, const IdentifyOptions& options,
                        Record& record) {
    const Outcome status = Detect(input, options, record);
    if (!status.has_value()) return false;
    if (*status == FIID_OK) return true;
    record.error = WasOpened(*status) ? DescribeFailure(*status, record.answer)
                                      : inputName + ": " + ReasonOf(record.answer.system_error);
    return true;
}

// What the copy alone has is not told of the stream, and it has no size that limits would speak of.
void IdentifyStream(const Input& stream, const std::string& streamName, const IdentifyOptions& options,
                    Record& record) {
    SpooledInput input;
    if (!input.Open(stream.descriptor, streamName, record.error)) return;
    IdentifyOptions ofCopy;
    ofCopy.hash = options.hash;
    IdentifyDescriptor({input.Descriptor(), stream.name, stream.flags}, streamName, ofCopy, record);
    record.answer.modified_known = 0;  // the time told is that of the copy
}

// What the library has refused, or could not read.
enum class Fifos { Read, Refused };

void TellRefused(const Input& input, std::int32_t status, Fifos fifos, const IdentifyOptions& options, Record& record) {
    struct stat seen = {};
    if (WasOpened(status)) {
        record.error = DescribeFailure(status, record.answer);
    } else if (fstat(input.descriptor, &seen) != 0) {
        record.error = ReasonOf(record.answer.system_error);
    } else if (!S_ISFIFO(seen.st_mode)) {
        record.error = DescribeKind(seen.st_mode, record.answer.system_error);
    } else if (fifos == Fifos::Refused) {
        record.error = "is a FIFO, not a file";
    } else {
        IdentifyStream(input, "FIFO", options, record);  // through this descriptor, the writer's one reader
    }
}

// The path is opened once, whatever it leads to, and only what the library refuses is looked at. So a plain file takes the
// library's own calls and no more, and nothing can change between a look and the opening. Opening has no effect that
// looking first would spare: what is neither a file nor a FIFO was always opened to be refused.
//
// The library is not given the path: it would open and close a FIFO to learn what it is, and a writer that waits there
// would lose its reader, and end by SIGPIPE.
bool IdentifyPlace(const Place& place, Fifos fifos, const IdentifyOptions& options, Record& record) {
    if (IsLeftOut(place, options)) return false;
    const OwnedDescriptor file(OpenForReading(place.directory, place.path));
    if (file.Number() < 0) {
        record.error = DescribeOpenFailure(place, errno);
        return true;
    }
    const Input input = {file.Number(), place.path, options.flags | FIID_DESCRIPTOR_IS_READABLE};
    const Outcome status = Detect(input, options, record);
    if (status.has_value() && *status != FIID_OK) TellRefused(input, *status, fifos, options, record);
    return status.has_value();
}

bool HoldsAFile(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && HoldsBytes(status);
}

std::optional<Record> MakeRecord(std::string path) {
    std::optional<Record> record(std::in_place);
    record->path = std::move(path);
    return record;
}

}  // namespace

std::optional<Record> IdentifyEntry(int directory, std::string path, std::size_t nameStart,
                                    const IdentifyOptions& options) {
    std::optional<Record> record = MakeRecord(std::move(path));
    if (!IdentifyPlace({directory, record->path.c_str() + nameStart}, Fifos::Refused, options, *record)) record.reset();
    return record;
}

std::optional<Record> IdentifyNamedPath(std::string path, const IdentifyOptions& options) {
    std::optional<Record> record = MakeRecord(std::move(path));
    if (!IdentifyPlace({AT_FDCWD, record->path.c_str()}, Fifos::Read, options, *record)) record.reset();
    return record;
}

std::optional<Record> IdentifyStandardInput(const IdentifyOptions& options) {
    std::optional<Record> record = MakeRecord("-");
    const Input input = {STDIN_FILENO, nullptr, options.flags};
    const std::string name = "standard input";
    if (!IsOpenForReading(STDIN_FILENO)) {
        record->error = name + " is closed";
    } else if (!HoldsAFile(STDIN_FILENO)) {
        IdentifyStream(input, name, options, *record);
    } else if (!IdentifyDescriptor(input, name, options, *record)) {
        record.reset();
    }
    return record;
}
