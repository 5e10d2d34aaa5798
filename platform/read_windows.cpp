// read_windows.cpp - the windows of an object that is read: when they are filled, and what they serve.
#include "platform/read_windows.h"

#include <algorithm>
#include <cstring>

#include "platform/repeated_read.h"

namespace {

constexpr std::uint32_t windowBytes = UTHeadBytes;
constexpr std::uint32_t farWindowBytes = UTFarWindowBytes;
// What a window grows to, by doubling, while reads go on behind it.
constexpr std::uint32_t largestFarWindowBytes = 32768;
// A read of at least as many bytes goes straight to where the caller wants them.
constexpr std::uint32_t largeReadBytes = 4096;

// Reads from an object until size bytes have come or it ends, over short reads. failed tells whether a read failed, also
// behind bytes that came.
std::int32_t UTReadObject(const UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination,
                          std::uint32_t size, std::uint32_t& count, bool& failed) {
    failed = false;
    const auto readOn = [=, &file, &failed](std::uint32_t at, std::uint32_t wanted, std::uint32_t& came) {
        const std::int32_t status = file.readOnce(file.object, offset + at, destination + at, wanted, came);
        failed = status != 0;
        return status;
    };
    return UTRepeatRead(size, count, readOn);
}

// A file that tells its size is not asked for more, which would cost a second call that finds the end.
std::int32_t UTReadWindow(UTReadWindows& file) {
    if (file.windowRead) return 0;
    const std::uint64_t wanted = file.sizeKnown ? std::min<std::uint64_t>(file.size, windowBytes) : windowBytes;
    const std::int32_t status =
        UTReadObject(file, 0, file.window, static_cast<std::uint32_t>(wanted), file.windowFilled, file.windowFailed);
    file.windowRead = status == 0;
    return status;
}

// Whether to ask the file for what the window does not hold. A file that tells its size ends there; in front of it a
// window that is not full is no end. Of any other file it is one, unless a failure cut it. Where bytes can't be read, the
// read that begins at them is to fail as the system's does.
bool UTGoesOnBehindWindow(const UTReadWindows& file, std::uint64_t offset) {
    if (file.sizeKnown) return offset < file.size;
    return file.windowFilled == windowBytes || file.windowFailed;
}

// ---- Far windows ---------------------------------------------------------------------------------------------------

// Copies what a window holds of the bytes at an offset. Returns how many they are.
std::uint32_t UTCopyWindow(const UTFarWindow& window, std::uint64_t offset, std::uint8_t* destination,
                           std::uint32_t size) {
    if (offset < window.start || offset - window.start >= window.filled) return 0;
    const auto start = static_cast<std::uint32_t>(offset - window.start);
    const std::uint32_t count = std::min(size, window.filled - start);
    std::memcpy(destination, window.bytes + start, count);
    return count;
}

// The same for both windows: the place's may end where the tail's begins.
std::uint32_t UTCopyFar(const UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination,
                        std::uint32_t size) {
    const std::uint32_t count = UTCopyWindow(file.place, offset, destination, size);
    if (count == size) return count;
    return count + UTCopyWindow(file.tail, offset + count, destination + count, size - count);
}

// Reads a window ahead. Where that fails or comes short it holds less, or nothing.
void UTFillWindow(const UTReadWindows& file, UTFarWindow& window, std::uint64_t start, std::uint32_t size) {
    bool failed = false;
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, file.size - start));
    window.start = start;
    static_cast<void>(UTReadObject(file, start, window.bytes, wanted, window.filled, failed));
}

// How much is read ahead at an offset: twice as much as last time when the reads go on there. The first larger window
// takes memory; without it the window stays as it is.
std::uint32_t UTNextStep(UTReadWindows& file, std::uint64_t offset) {
    const bool goesOn = file.place.filled > 0 && offset == file.place.start + file.place.filled;
    if (!goesOn) return farWindowBytes;
    if (file.place.bytes == file.placeBytes) {
        void* const block = HeapAlloc(GetProcessHeap(), 0, largestFarWindowBytes);
        if (block == nullptr) return farWindowBytes;
        file.place.bytes = static_cast<std::uint8_t*>(block);
    }
    return std::min(file.placeStep * 2, largestFarWindowBytes);
}

// Reads ahead what is worth it for a read of size bytes at an offset in front of the file's end. A large read is worth it
// only where it jumps to the tail, as one does that looks for something from the end on: more reads follow there.
void UTReadAhead(UTReadWindows& file, std::uint64_t offset, std::uint32_t size) {
    const bool jumps = offset != file.behindLast;
    const bool inTail = file.size - offset <= farWindowBytes;
    if (size >= largeReadBytes && !(jumps && inTail)) return;
    if (!inTail) {
        file.placeStep = UTNextStep(file, offset);
        UTFillWindow(file, file.place, offset, file.placeStep);
        return;
    }
    // What the head or the reads before have had is left out.
    const std::uint64_t earliest = file.size > windowBytes + farWindowBytes ? file.size - farWindowBytes : windowBytes;
    UTFillWindow(file, file.tail, jumps ? std::min(earliest, offset) : offset, farWindowBytes);
}

// Reads at an offset that the head's window does not serve, in front of the end of a file that tells its size.
std::int32_t UTReadFar(UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                       std::uint32_t& count) {
    std::int32_t status = 0;
    count = UTCopyFar(file, offset, destination, size);
    if (count < size && offset + count < file.size) {
        UTReadAhead(file, offset + count, size - count);
        count += UTCopyFar(file, offset + count, destination + count, size - count);
    }
    if (count < size && offset + count < file.size) {
        std::uint32_t further = 0;
        bool failed = false;
        status = UTReadObject(file, offset + count, destination + count, size - count, further, failed);
        count += further;
    }
    return count > 0 ? 0 : status;
}

// ---- Reading -------------------------------------------------------------------------------------------------------

std::int32_t UTReadBehindWindow(UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination,
                                std::uint32_t size, std::uint32_t& count) {
    if (file.sizeKnown) return UTReadFar(file, offset, destination, size, count);
    bool failed = false;
    return UTReadObject(file, offset, destination, size, count, failed);
}

}  // namespace

std::int32_t UTReadThroughWindows(UTReadWindows& file, std::uint64_t offset, void* destination, std::uint32_t size,
                                  std::uint32_t& count) {
    auto* const bytes = static_cast<std::uint8_t*>(destination);
    count = 0;
    if (file.sizeKnown && offset >= file.size) return 0;
    if (offset < windowBytes || !file.sizeKnown) {
        if (UTReadWindow(file) != 0) return -1;
        if (offset < file.windowFilled) {
            const auto start = static_cast<std::uint32_t>(offset);
            count = std::min(size, file.windowFilled - start);
            std::memcpy(bytes, file.window + start, count);
        }
    }
    std::int32_t status = 0;
    if (count < size && UTGoesOnBehindWindow(file, offset + count)) {
        std::uint32_t further = 0;
        status = UTReadBehindWindow(file, offset + count, bytes + count, size - count, further);
        count += further;
    }
    file.behindLast = offset + count;
    return count > 0 ? 0 : status;
}

// The window, if it is all that reads would deliver of its range. A file that became shorter, or of which a part can't be
// read, is left to the reads.
bool UTHeadOfWindows(UTReadWindows& file, UTHead& head) {
    if (UTReadWindow(file) != 0 || file.windowFailed) return false;
    if (file.sizeKnown && file.windowFilled < std::min<std::uint64_t>(file.size, windowBytes)) return false;
    const std::uint64_t sizeSeen = file.windowFilled < windowBytes ? file.windowFilled : UINT64_MAX;
    head = {file.window, file.windowFilled, file.sizeKnown ? file.size : sizeSeen};
    return true;
}

void UTStartWindows(UTReadWindows& file, UTReadOnce readOnce, void* object, std::uint64_t size) {
    file.readOnce = readOnce;
    file.object = object;
    file.windowRead = false;
    file.windowFailed = false;
    file.sizeKnown = size > 0;
    file.size = size;
    file.windowFilled = 0;
    file.place = {0, 0, file.placeBytes};
    file.tail = {0, 0, file.tailBytes};
    file.behindLast = 0;
}

void UTEndWindows(const UTReadWindows& file) {
    if (file.place.bytes != file.placeBytes) HeapFree(GetProcessHeap(), 0, file.place.bytes);
}
