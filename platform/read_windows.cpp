// read_windows.cpp - the windows of an object that is read: when they are filled, and what they serve.
#include "platform/read_windows.h"

#include <algorithm>
#include <cstring>

#include "platform/repeated_read.h"

namespace {

constexpr std::uint32_t windowBytes = UTHeadBytes;

// Reads from an object until size bytes have come or it ends, over short reads. failed tells whether a read failed, also
// behind bytes that came.
std::int32_t UTReadOn(UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                      std::uint32_t& count, bool& failed) {
    failed = false;
    const auto readOn = [=, &file, &failed](std::uint32_t at, std::uint32_t wanted, std::uint32_t& came) {
        const std::int32_t status =
            file.object.readOnce(file.object.object, offset + at, destination + at, wanted, came);
        ++file.cost.calls;
        failed = status != 0;
        if (!failed) file.cost.bytes += came;
        return status;
    };
    return UTRepeatRead(size, count, readOn);
}

// A file that tells its size is not asked for more, which would cost a second call that finds the end.
std::int32_t UTReadWindow(UTReadWindows& file) {
    if (file.windowRead) return 0;
    const std::uint64_t wanted =
        file.object.sizeKnown ? std::min<std::uint64_t>(file.object.size, windowBytes) : windowBytes;
    const std::int32_t status =
        UTReadOn(file, 0, file.window, static_cast<std::uint32_t>(wanted), file.windowFilled, file.windowFailed);
    file.windowRead = status == 0;
    return status;
}

// Whether to ask the file for what the window does not hold. A file that tells its size ends there; in front of it a
// window that is not full is no end. Of any other file it is one, unless a failure cut it. Where bytes can't be read, the
// read that begins at them is to fail as the system's does.
bool UTGoesOnBehindWindow(const UTReadWindows& file, std::uint64_t offset) {
    if (file.object.sizeKnown) return offset < file.object.size;
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
void UTFillWindow(UTReadWindows& file, UTFarWindow& window, std::uint64_t start, std::uint32_t size) {
    bool failed = false;
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, file.object.size - start));
    window.start = start;
    static_cast<void>(UTReadOn(file, start, window.bytes, wanted, window.filled, failed));
}

// Whether the place's window may take that many bytes: more than its own memory take a block of the heap.
bool UTPlaceHolds(UTReadWindows& file, std::uint32_t bytes) {
    if (bytes <= farWindowBytes || file.place.bytes != file.placeBytes) return true;
    void* const block = HeapAlloc(GetProcessHeap(), 0, file.object.largestStep);
    if (block == nullptr) return false;
    file.place.bytes = static_cast<std::uint8_t*>(block);
    file.place.filled = 0;
    return true;
}

// Whether the reads go on at an offset where the place's window ends.
bool UTGoesOnAtPlace(const UTReadWindows& file, std::uint64_t offset) {
    return file.place.filled > 0 && offset == file.place.start + file.place.filled;
}

// Reads ahead around an offset in front of the tail: twice as much as last time when the reads go on there. Without memory
// for so much the window stays as it is. The tail's bytes are left out, if they are held. In their place a look at a new
// place close to them has those in front of it: writers put the parts that are looked at together at the end, in any order.
void UTReadPlaceAhead(UTReadWindows& file, std::uint64_t offset) {
    const UTReadObject& object = file.object;
    const bool goesOn = UTGoesOnAtPlace(file, offset);
    std::uint32_t step = goesOn ? std::min(file.placeStep * 2, object.largestStep) : object.firstStep;
    if (!UTPlaceHolds(file, step)) step = std::min(object.firstStep, farWindowBytes);
    file.placeStep = step;
    std::uint64_t start = offset;
    if (file.tail.filled > 0 && offset < file.tail.start && file.tail.start - offset < step) {
        if (!goesOn)
            start =
                std::max<std::uint64_t>(windowBytes, file.tail.start - std::min<std::uint64_t>(file.tail.start, step));
        start = std::min(start, offset);
        step = static_cast<std::uint32_t>(file.tail.start - start);
    }
    UTFillWindow(file, file.place, start, step);
}

// Reads ahead what is worth it for a read of size bytes at an offset in front of the file's end. A large read is worth it
// only where it jumps to the tail, as one does that looks for something from the end on: more reads follow there.
void UTReadAhead(UTReadWindows& file, std::uint64_t offset, std::uint32_t size) {
    const std::uint64_t fileSize = file.object.size;
    const std::uint32_t tailStep = std::min(file.object.firstStep, farWindowBytes);
    const bool jumps = offset != file.behindLast;
    const bool inTail = fileSize - offset <= tailStep;
    if (size >= file.object.largeRead && !(jumps && inTail)) return;
    if (!inTail) return UTReadPlaceAhead(file, offset);
    // What the head or the reads before have had is left out.
    const std::uint64_t earliest = fileSize > windowBytes + tailStep ? fileSize - tailStep : windowBytes;
    UTFillWindow(file, file.tail, jumps ? std::min(earliest, offset) : offset, tailStep);
}

// Reads bytes for themselves. Those of the tail's window are left to it.
std::int32_t UTReadDirectly(UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                            std::uint32_t& count) {
    const bool reachesTail = file.tail.filled > 0 && offset < file.tail.start && file.tail.start - offset < size;
    const std::uint32_t wanted = reachesTail ? static_cast<std::uint32_t>(file.tail.start - offset) : size;
    bool failed = false;
    const std::int32_t status = UTReadOn(file, offset, destination, wanted, count, failed);
    if (count < wanted || wanted == size) return status;
    count += UTCopyWindow(file.tail, offset + count, destination + count, size - count);
    if (count == size) return status;
    std::uint32_t further = 0;
    static_cast<void>(UTReadOn(file, offset + count, destination + count, size - count, further, failed));
    count += further;
    return status;
}

// Reads at an offset that the head's window does not serve, in front of the end of a file that tells its size.
std::int32_t UTReadFar(UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                       std::uint32_t& count) {
    std::int32_t status = 0;
    count = UTCopyFar(file, offset, destination, size);
    if (count < size && offset + count < file.object.size) {
        UTReadAhead(file, offset + count, size - count);
        count += UTCopyFar(file, offset + count, destination + count, size - count);
    }
    if (count < size && offset + count < file.object.size) {
        // An object is not asked for what lies behind its end: no source need know what to say there.
        const std::uint64_t left = file.object.size - offset - count;
        const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size - count, left));
        std::uint32_t further = 0;
        status = UTReadDirectly(file, offset + count, destination + count, wanted, further);
        count += further;
    }
    return count > 0 ? 0 : status;
}

// ---- Reading -------------------------------------------------------------------------------------------------------

std::int32_t UTReadBehindWindow(UTReadWindows& file, std::uint64_t offset, std::uint8_t* destination,
                                std::uint32_t size, std::uint32_t& count) {
    if (file.object.sizeKnown) return UTReadFar(file, offset, destination, size, count);
    bool failed = false;
    return UTReadOn(file, offset, destination, size, count, failed);
}

}  // namespace

std::int32_t UTReadThroughWindows(UTReadWindows& file, std::uint64_t offset, void* destination, std::uint32_t size,
                                  std::uint32_t& count) {
    auto* const bytes = static_cast<std::uint8_t*>(destination);
    count = 0;
    if (file.object.sizeKnown && offset >= file.object.size) return 0;
    if (offset < windowBytes || !file.object.sizeKnown) {
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
    if (file.object.sizeKnown && file.windowFilled < std::min<std::uint64_t>(file.object.size, windowBytes))
        return false;
    const std::uint64_t sizeSeen = file.windowFilled < windowBytes ? file.windowFilled : UINT64_MAX;
    head = {file.window, file.windowFilled, file.object.sizeKnown ? file.object.size : sizeSeen};
    return true;
}

void UTStartWindows(UTReadWindows& file, const UTReadObject& object) {
    file.object = object;
    file.cost = {0, 0};
    file.windowRead = false;
    file.windowFailed = false;
    file.windowFilled = 0;
    file.place = {0, 0, file.placeBytes};
    file.tail = {0, 0, file.tailBytes};
    file.behindLast = 0;
}

void UTEndWindows(const UTReadWindows& file) {
    if (file.place.bytes != file.placeBytes) HeapFree(GetProcessHeap(), 0, file.place.bytes);
}
