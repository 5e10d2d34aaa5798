// identify.cpp - opens an object, identifies it, and says in plain words why that failed.
#include "cli/identify.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "cli/descriptors.h"
#include "cli/spool.h"
#include "core/driver.h"
#include "platform/base_utility.h"
#include "platform/byte_objects.h"
#include "platform/operations.h"

namespace {

std::string ReasonOf(int reason) { return reason == 0 ? "can't be read" : std::strerror(reason); }

std::string DescribeOpenFailure(const std::string& path, int reason) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT && lstat(path.c_str(), &status) == 0) return "is a symbolic link that leads nowhere";
        return ReasonOf(reason);
    }
    if (S_ISDIR(status.st_mode)) return "is a directory";
    if (S_ISSOCK(status.st_mode)) return "is a socket, not a file";
    if (S_ISCHR(status.st_mode)) return "is a character device, not a file";
    return ReasonOf(reason);
}

// Reads one byte first: the library takes a file that can be opened and not read for an empty one.
void IdentifyHandle(HIOFILE handle, std::uint32_t flags, Record& record) {
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    errno = 0;
    if (handle->operations.IORead(handle, &byte, 1, &count) != 0) {
        record.error = ReasonOf(errno);
        return;
    }
    FIVerdict verdict = {0, 0};
    if (FIIdHandleWithRow(handle, flags, verdict) != 0) {
        record.error = "memory is exhausted";
        return;
    }
    record.fiid = verdict.fiid;
    record.row = verdict.row;
}

// inputName stands for the descriptor in the error.
void IdentifyDescriptor(const IODescriptorSpec& specification, const std::string& inputName, std::uint32_t flags,
                        Record& record) {
    HIOFILE handle = nullptr;
    if (IOOpen(&handle, IOSpecDescriptor, &specification, IOOpenRead) != 0) {
        record.error = inputName + ": " + ReasonOf(errno);
        return;
    }
    IdentifyHandle(handle, flags, record);
    handle->operations.IOClose(handle);
}

void IdentifyStream(const IODescriptorSpec& stream, const std::string& streamName, std::uint32_t flags,
                    Record& record) {
    SpooledInput input;
    if (!input.Open(stream.descriptor, streamName, record.error)) return;
    IdentifyDescriptor({input.Descriptor(), stream.name}, streamName, flags, record);
}

bool HoldsAFile(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && (S_ISREG(status.st_mode) || S_ISBLK(status.st_mode));
}

bool IsFifo(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

bool IsDirectory(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

Record IdentifyPath(const std::string& path, std::uint32_t flags) {
    Record record;
    record.path = path;
    HIOFILE handle = nullptr;
    if (IOOpen(&handle, IOSpecNarrow, path.c_str(), IOOpenRead) != 0) {
        record.error = DescribeOpenFailure(path, errno);
        return record;
    }
    IdentifyHandle(handle, flags, record);
    handle->operations.IOClose(handle);
    return record;
}

// The path is opened once, whatever it leads to, and only what the library refuses is looked at. So a plain file takes the
// library's own calls and no more, and nothing can change between a look and the opening. Opening has no effect that
// looking first would spare: what is neither a file nor a FIFO was always opened to be refused.
//
// The library is not given the path: it would open and close a FIFO to learn what it is, and a writer that waits there
// would lose its reader, and end by SIGPIPE. Nor is IOOpen given the descriptor, whose mode it would ask for: one more
// call, for what is known here.
std::optional<Record> IdentifyNamedPath(const std::string& path, std::uint32_t flags) {
    Record record;
    record.path = path;
    const OwnedDescriptor named(OpenForReading(path));
    if (named.Number() < 0) {
        const int reason = errno;
        if (IsDirectory(path)) return std::nullopt;
        record.error = DescribeOpenFailure(path, reason);
        return record;
    }
    const IODescriptorSpec specification = {named.Number(), path.c_str()};
    UTHandle* const handle = UTOpenReadableDescriptor(specification);
    if (handle != nullptr) {
        UTGiveOperations(*handle);
        IdentifyHandle(UTHandleFile(*handle), flags, record);
        UTCloseHandle(*handle);
        return record;
    }
    const int reason = errno;
    if (reason == EISDIR) return std::nullopt;
    if (IsFifo(named.Number())) {
        IdentifyStream(specification, "FIFO", flags, record);  // through this descriptor, the writer's one reader
    } else {
        record.error = DescribeOpenFailure(path, reason);
    }
    return record;
}

Record IdentifyStandardInput(std::uint32_t flags) {
    Record record;
    record.path = "-";
    const IODescriptorSpec specification = {STDIN_FILENO, nullptr};
    const std::string name = "standard input";
    if (!IsOpenForReading(STDIN_FILENO)) {
        record.error = name + " is closed";
    } else if (HoldsAFile(STDIN_FILENO)) {
        IdentifyDescriptor(specification, name, flags, record);
    } else {
        IdentifyStream(specification, name, flags, record);
    }
    return record;
}
