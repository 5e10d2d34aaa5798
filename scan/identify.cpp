// identify.cpp - opens an object, identifies it, and says in plain words why that failed.
#include "scan/identify.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "fiid/detect.h"
#include "scan/descriptors.h"
#include "scan/spool.h"

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

// A file that was opened and could not be told, in words.
std::string DescribeFailure(std::int32_t status, const fiid_result& answer) {
    return status == FIID_ERROR_READ ? ReasonOf(answer.system_error) : fiid_error_text(status);
}

bool WasOpened(std::int32_t status) { return status == FIID_ERROR_READ || status == FIID_ERROR_MEMORY; }

fiid_options OptionsWith(std::uint32_t flags) { return {sizeof(fiid_options), flags}; }

// What a descriptor is, for those who have it. inputName stands for it in the error.
struct Input {
    int descriptor;
    const char* name;  // of the file, or null
};

void IdentifyDescriptor(const Input& input, const std::string& inputName, std::uint32_t flags, Record& record) {
    const fiid_options options = OptionsWith(flags);
    const std::int32_t status = fiid_detect_descriptor(input.descriptor, input.name, &options, &record.answer);
    if (status == FIID_OK) return;
    record.error = WasOpened(status) ? DescribeFailure(status, record.answer)
                                     : inputName + ": " + ReasonOf(record.answer.system_error);
}

void IdentifyStream(const Input& stream, const std::string& streamName, std::uint32_t flags, Record& record) {
    SpooledInput input;
    if (!input.Open(stream.descriptor, streamName, record.error)) return;
    IdentifyDescriptor({input.Descriptor(), stream.name}, streamName, flags, record);
    record.answer.modified_known = 0;  // the time told is that of the copy
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
    const fiid_options options = OptionsWith(flags);
    const std::int32_t status = fiid_detect_path(path.c_str(), &options, &record.answer);
    if (WasOpened(status)) {
        record.error = DescribeFailure(status, record.answer);
    } else if (status != FIID_OK) {
        record.error = DescribeOpenFailure(path, record.answer.system_error);
    }
    return record;
}

// The path is opened once, whatever it leads to, and only what the library refuses is looked at. So a plain file takes the
// library's own calls and no more, and nothing can change between a look and the opening. Opening has no effect that
// looking first would spare: what is neither a file nor a FIFO was always opened to be refused.
//
// The library is not given the path: it would open and close a FIFO to learn what it is, and a writer that waits there
// would lose its reader, and end by SIGPIPE.
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
    const Input input = {named.Number(), path.c_str()};
    const fiid_options options = OptionsWith(flags | FIID_DESCRIPTOR_IS_READABLE);
    const std::int32_t status = fiid_detect_descriptor(input.descriptor, input.name, &options, &record.answer);
    if (status == FIID_OK) return record;
    if (status == FIID_ERROR_DIRECTORY) return std::nullopt;
    if (WasOpened(status)) {
        record.error = DescribeFailure(status, record.answer);
    } else if (status == FIID_ERROR_NOT_A_FILE && IsFifo(named.Number())) {
        IdentifyStream(input, "FIFO", flags, record);  // through this descriptor, the writer's one reader
    } else {
        record.error = DescribeOpenFailure(path, record.answer.system_error);
    }
    return record;
}

Record IdentifyStandardInput(std::uint32_t flags) {
    Record record;
    record.path = "-";
    const Input input = {STDIN_FILENO, nullptr};
    const std::string name = "standard input";
    if (!IsOpenForReading(STDIN_FILENO)) {
        record.error = name + " is closed";
    } else if (HoldsAFile(STDIN_FILENO)) {
        IdentifyDescriptor(input, name, flags, record);
    } else {
        IdentifyStream(input, name, flags, record);
    }
    return record;
}
