// plain_file.cpp - handles over regular files and block devices, read through windows (read_windows.h).
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/byte_objects.h"
#include "platform/read_windows.h"

namespace {

// Bytes read ahead: what the page cache delivers at little more than the cost of the call.
constexpr std::uint32_t firstStep = 8192;
constexpr std::uint32_t largestStep = 32768;
constexpr std::uint32_t largeRead = 4096;

static_assert(sizeof(off_t) == sizeof(std::uint64_t),
              "systems of 32 bits have files of 64 bits, too: _FILE_OFFSET_BITS");

struct UTPlainFile {
    UTHandle handle;
    int descriptor;
    bool ownsDescriptor;
    timespec modified;
    UTReadWindows windows;
};

// One read, over interrupted system calls.
std::int32_t UTReadDescriptor(void* object, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                              std::uint32_t& came) {
    const int descriptor = static_cast<const UTPlainFile*>(object)->descriptor;
    ssize_t result = -1;
    do {
        result = pread(descriptor, destination, size, static_cast<off_t>(offset));
    } while (result < 0 && errno == EINTR);
    if (result < 0) return -1;
    came = static_cast<std::uint32_t>(result);
    return 0;
}

std::int32_t UTReadPlainFile(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                             std::uint32_t& count) {
    return UTReadThroughWindows(UTRecordOf<UTPlainFile>(handle).windows, offset, destination, size, count);
}

std::uint64_t UTPlainFileSize(UTHandle& handle) { return UTRecordOf<UTPlainFile>(handle).windows.object.size; }

void UTReleasePlainFile(UTHandle& handle) {
    const UTPlainFile& file = UTRecordOf<UTPlainFile>(handle);
    UTEndWindows(file.windows);
    if (file.ownsDescriptor) close(file.descriptor);
}

bool UTPlainFileHead(UTHandle& handle, UTHead& head) {
    return UTHeadOfWindows(UTRecordOf<UTPlainFile>(handle).windows, head);
}

UTReadCost UTPlainFileCost(UTHandle& handle) { return UTRecordOf<UTPlainFile>(handle).windows.cost; }

constexpr UTHandleKind plainFileKind = {UTReadPlainFile, UTPlainFileSize, UTReleasePlainFile, UTPlainFileHead, true,
                                        UTPlainFileCost};

// Tells the size, or -1 with errno set for a kind of file that is refused.
std::int32_t UTMeasureDescriptor(int descriptor, std::uint64_t& size, timespec& modified) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0) return -1;
    modified = status.st_mtim;
    if (S_ISREG(status.st_mode)) {
        size = static_cast<std::uint64_t>(status.st_size);
        return 0;
    }
    if (S_ISBLK(status.st_mode)) {
        const off_t end = lseek(descriptor, 0, SEEK_END);
        if (end < 0) return -1;
        size = static_cast<std::uint64_t>(end);
        return 0;
    }
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return -1;
}

UTHandle* UTNewPlainFile(int descriptor, bool ownsDescriptor) {
    std::uint64_t size = 0;
    timespec modified = {};
    if (UTMeasureDescriptor(descriptor, size, modified) != 0) return nullptr;
    auto* const file = UTNewHandleRecord<UTPlainFile>(plainFileKind, nullptr);
    if (file == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    file->descriptor = descriptor;
    file->ownsDescriptor = ownsDescriptor;
    file->modified = modified;
    UTStartWindows(file->windows, {UTReadDescriptor, file, size, size > 0, firstStep, largestStep, largeRead});
    return &file->handle;
}

}  // namespace

UTHandle* UTOpenPath(const char* path) {
    // O_NONBLOCK: opening a FIFO must not wait for its other end. It has no effect on regular files.
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return nullptr;
    UTHandle* const handle = UTNewPlainFile(descriptor, true);
    if (handle == nullptr) {
        const int reason = errno;
        close(descriptor);
        errno = reason;
        return nullptr;
    }
    UTSetNarrowName(*handle, path);
    return handle;
}

bool UTIsReadable(int descriptor) {
    const int flags = fcntl(descriptor, F_GETFL);
    if (flags < 0) return false;
    const int access = flags & O_ACCMODE;
    if ((flags & O_PATH) != 0 || (access != O_RDONLY && access != O_RDWR)) {
        errno = EBADF;
        return false;
    }
    if ((flags & O_DIRECT) != 0) {
        errno = EINVAL;
        return false;
    }
    return true;
}

UTHandle* UTOpenDescriptor(const IODescriptorSpec& specification) {
    return UTIsReadable(specification.descriptor) ? UTOpenReadableDescriptor(specification) : nullptr;
}

UTHandle* UTOpenReadableDescriptor(const IODescriptorSpec& specification) {
    UTHandle* const handle = UTNewPlainFile(specification.descriptor, false);
    if (handle != nullptr) UTSetNarrowName(*handle, specification.name);
    return handle;
}

bool UTTellModified(const UTHandle& handle, std::int64_t& seconds, std::uint32_t& nanoseconds) {
    if (handle.kind != &plainFileKind) return false;
    const timespec& modified = reinterpret_cast<const UTPlainFile&>(handle).modified;
    seconds = modified.tv_sec;
    nanoseconds = static_cast<std::uint32_t>(modified.tv_nsec);
    return true;
}
