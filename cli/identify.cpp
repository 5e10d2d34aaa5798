// identify.cpp - opens an object, identifies it, and says in plain words why that failed.
#include "cli/identify.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "cli/spool.h"
#include "core/driver.h"
#include "platform/base_utility.h"

namespace {

constexpr std::uint32_t openMode = 1;

std::string ReasonOf(int reason) { return reason == 0 ? "can't be read" : std::strerror(reason); }

std::string DescribeOpenFailure(const std::string& path, int reason) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT && lstat(path.c_str(), &status) == 0) return "is a symbolic link that leads nowhere";
        return ReasonOf(reason);
    }
    if (S_ISDIR(status.st_mode)) return "is a directory";
    if (S_ISFIFO(status.st_mode)) return "is a FIFO, not a file";
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

}  // namespace

Record IdentifyPath(const std::string& path, std::uint32_t flags) {
    Record record;
    record.path = path;
    HIOFILE handle = nullptr;
    if (IOOpen(&handle, IOSpecNarrow, path.c_str(), openMode) != 0) {
        record.error = DescribeOpenFailure(path, errno);
        return record;
    }
    IdentifyHandle(handle, flags, record);
    handle->operations.IOClose(handle);
    return record;
}

Record IdentifyStandardInput(std::uint32_t flags) {
    Record record;
    record.path = "-";
    SpooledInput input;
    if (!input.Open(record.error)) return record;
    const IODescriptorSpec specification = {input.Descriptor(), nullptr};
    HIOFILE handle = nullptr;
    if (IOOpen(&handle, IOSpecDescriptor, &specification, openMode) != 0) {
        record.error = "standard input: " + ReasonOf(errno);
        return record;
    }
    IdentifyHandle(handle, flags, record);
    handle->operations.IOClose(handle);
    return record;
}
