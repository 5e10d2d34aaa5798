// sub_objects.h - a watch over the sub-objects that a routine opens through a TestHandle, and storages for tests.
//
// The watch notes every call of IOOpenSub with its record, and every IOClose with what the process heap held at that
// moment, so that a test can tell the order in which a routine asks, and that a reader is released before its stream.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/driver.h"
#include "fiid.h"
#include "reader/reader.h"
#include "support/bytes.h"
#include "support/case_name.h"
#include "support/process_heap.h"
#include "support/row_number.h"
#include "support/test_handle.h"

// One call of IOOpenSub.
struct SubObjectOpening {
    std::uint32_t kind;
    std::string name;  // of a stream or sub-storage; "range" or "derived" for these
    std::uint32_t flags;
    HIOFILE parent;
    std::uint32_t siblingsOpen;  // sub-objects of the parent that were open when the call came
    IOSubRangeSpec range;        // the record, for a range
    IOSubDerivedSpec derived;    // the record, for a derived stream
    HIOFILE child;               // null when the call failed
};

// One call of IOClose on a sub-object.
struct SubObjectClosing {
    std::string name;
    std::string bytes;           // what the object held
    std::uint32_t reads;         // reads of the object
    std::uint32_t childrenOpen;  // sub-objects of this one, still open
    std::uint32_t siblingsLeft;  // sub-objects of the parent that stay open
    std::size_t heapBlocks;      // blocks allocated at that moment
};

// One call of IOGetInfo on the handle that is watched.
struct SubObjectQuestion {
    std::uint32_t selector;
    const void* value;
};

// What was seen, and how awkward the sub-objects are to be.
struct SubObjectWatch {
    std::vector<SubObjectOpening> openings;
    std::vector<SubObjectClosing> closings;
    std::vector<SubObjectQuestion> questions;
    std::uint32_t failReadsFrom = testNever;  // for every sub-object, as in TestHandle
    std::uint32_t failSeeksFrom = testNever;
    std::uint32_t bytesPerRead = testNever;  // if not testNever, in place of the parent's

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const SubObjectOpening& opening : openings) names.push_back(opening.name);
        return names;
    }
};

namespace sub_objects {

// An operation has no room for a context of the test's: the watch in force stands here, null when there is none.
inline SubObjectWatch* watch = nullptr;
inline IOOperations plainOperations = {};

inline TestHandle& From(HIOFILE file) { return *reinterpret_cast<TestHandle*>(file); }

inline std::int32_t Close(HIOFILE file) {
    const TestHandle& handle = From(file);
    if (watch == nullptr) return plainOperations.IOClose(file);
    watch->closings.push_back({handle.name, handle.bytes, handle.reads, handle.openChildren,
                               handle.parent->openChildren - 1, FIHeapBlocks()});
    return plainOperations.IOClose(file);
}

inline std::int32_t OpenSub(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t flags) {
    if (watch == nullptr || specification == nullptr) return plainOperations.IOOpenSub(out, kind, specification, flags);
    SubObjectOpening opening = {};
    opening.kind = kind;
    opening.flags = flags;
    opening.parent = *static_cast<const HIOFILE*>(specification);  // every record starts with the parent
    opening.siblingsOpen = From(opening.parent).openChildren;
    if (kind == IOSUB_STREAM || kind == IOSUB_STORAGE)
        opening.name = static_cast<const IOSubSpec*>(specification)->name;
    if (kind == IOSUB_RANGE) {
        opening.name = "range";
        opening.range = *static_cast<const IOSubRangeSpec*>(specification);
    }
    if (kind == IOSUB_DERIVED) {
        opening.name = "derived";
        opening.derived = *static_cast<const IOSubDerivedSpec*>(specification);
    }
    const std::int32_t status = plainOperations.IOOpenSub(out, kind, specification, flags);
    if (status == 0) {
        TestHandle& child = From(*out);
        child.name = opening.name;
        child.failReadsFrom = watch->failReadsFrom;
        child.failSeeksFrom = watch->failSeeksFrom;
        if (watch->bytesPerRead != testNever) child.bytesPerRead = watch->bytesPerRead;
        child.file.operations.IOClose = Close;
        child.file.operations.IOOpenSub = OpenSub;
        opening.child = *out;
    }
    watch->openings.push_back(opening);
    return status;
}

inline std::int32_t GetInfo(HIOFILE file, std::uint32_t selector, void* value) {
    if (watch != nullptr) watch->questions.push_back({selector, value});
    return plainOperations.IOGetInfo(file, selector, value);
}

}  // namespace sub_objects

// From here on to FIStopWatching the sub-objects of the handle are noted in the watch, which must live as long.
inline void FIWatchSubObjects(TestHandle& handle, SubObjectWatch& watch) {
    if (handle.file.operations.IOOpenSub != sub_objects::OpenSub) sub_objects::plainOperations = handle.file.operations;
    sub_objects::watch = &watch;
    handle.file.operations.IOOpenSub = sub_objects::OpenSub;
    handle.file.operations.IOGetInfo = sub_objects::GetInfo;
}

inline void FIStopWatching() { sub_objects::watch = nullptr; }

// ---- Storages -----------------------------------------------------------------------------------------------------

// A stream, its bytes in the notation of FIBytes.
struct NamedBytes {
    const char* name;
    const char* bytes;
};

// One case of a storage probe. The name is the sentence.
struct StorageCase {
    const char* name;
    std::vector<NamedBytes> streams;
    FIID answer;
};

// The memory form of a class identifier in registry form: the first three groups are numbers, least significant byte
// first; the last two are bytes as they are written.
inline std::string FIClassId(const std::string& registryForm) {
    std::string digits;
    for (const char character : registryForm) {
        if (character != '{' && character != '}' && character != '-') digits += character;
    }
    const std::string written = FIBytes([&] {
        std::string pairs;
        for (std::size_t index = 0; index < digits.size(); index += 2) pairs += digits.substr(index, 2) + " ";
        return pairs;
    }());
    std::string memory;
    for (const std::size_t place : {3U, 2U, 1U, 0U, 5U, 4U, 7U, 6U, 8U, 9U, 10U, 11U, 12U, 13U, 14U, 15U}) {
        memory += written.at(place);
    }
    return memory;
}

// The row of storages without a class identifier.
inline constexpr std::uint16_t dispatcherRow = 45_row;

// A row behind those of class identifiers, its bytes and its answer: what a storage holds that no class row is to
// decide.
inline constexpr std::uint16_t byteRow = 54_row;
inline constexpr const char* byteRowBytes = "ED DE AD 0B 02 00 00 00";
inline constexpr FIID byteRowAnswer = 1605;

// A storage of streams, with a class identifier in registry form; its own bytes are byteRowBytes.
inline std::unique_ptr<TestHandle> FIMakeStorage(const std::vector<NamedBytes>& streams,
                                                 const std::string& classId = "00000000-0000-0000-0000-000000000000") {
    auto storage = FIMakeTestHandle(FIBytes(byteRowBytes));
    storage->isStorage = true;
    storage->classId = FIClassId(classId);
    for (const NamedBytes& stream : streams) storage->streams[stream.name] = FIBytes(stream.bytes);
    return storage;
}

using FIStorageProbe = std::function<FIID(FIReader&)>;

// The answer of a probe for a storage, its reader standing in the middle of a buffer. Fails the test when the probe
// moves or uses that reader, touches the storage's own bytes, asks anything but whether the handle is a storage, leaks
// a block or a sub-object, opens with other flags than 1, or closes a stream before it has released the reader over it.
inline FIID FIStorageAnswer(const FIStorageProbe& probe, TestHandle& storage, SubObjectWatch& watch) {
    FIWatchSubObjects(storage, watch);
    const std::size_t blocksBefore = FIHeapBlocks();
    FIReader* const reader = FIReaderNew(FIFileOf(storage));
    for (std::size_t index = 0; index < 3; ++index) EXPECT_NE(FIReaderGetByte(*reader), endOfFile);
    const std::size_t blocksHeld = FIHeapBlocks();
    const std::int16_t bytesLeft = reader->bytesLeft;
    const std::uint32_t bytesFilled = reader->bytesFilled;
    const std::uint32_t bufferPos = reader->bufferPos;
    const std::uint8_t* const cursor = reader->cursor;
    const std::uint64_t position = storage.position;
    const std::uint32_t reads = storage.reads;
    const std::uint32_t seeks = storage.seeks;

    const FIID answer = probe(*reader);

    FIStopWatching();
    EXPECT_EQ(FIReaderTell(*reader), 3U) << "the reader over the storage was moved";
    EXPECT_EQ(reader->bytesLeft, bytesLeft);
    EXPECT_EQ(reader->bytesFilled, bytesFilled);
    EXPECT_EQ(reader->bufferPos, bufferPos);
    EXPECT_EQ(reader->cursor, cursor);
    EXPECT_EQ(storage.position, position) << "the storage's handle was moved";
    EXPECT_EQ(storage.reads, reads) << "the storage's own bytes were read";
    EXPECT_EQ(storage.seeks, seeks);
    EXPECT_EQ(FIReaderFree(*reader), FIFileOf(storage));
    EXPECT_EQ(FIHeapBlocks(), blocksBefore) << "the probe leaked a heap block";
    EXPECT_EQ(storage.openChildren, 0U) << "the probe left a sub-object open";
    EXPECT_FALSE(watch.questions.empty()) << "the probe has not asked whether the handle is a storage";
    for (const SubObjectQuestion& question : watch.questions) {
        EXPECT_EQ(question.selector, static_cast<std::uint32_t>(IOInfoIsStorage));
        EXPECT_EQ(question.value, nullptr);
    }
    for (const SubObjectOpening& opening : watch.openings) {
        EXPECT_EQ(opening.flags, 1U) << opening.name;
        EXPECT_EQ(opening.parent, FIFileOf(storage)) << opening.name;
    }
    for (const SubObjectClosing& closing : watch.closings) {
        EXPECT_LE(closing.heapBlocks, blocksHeld + closing.siblingsLeft)
            << closing.name << " was closed before its reader was released";
    }
    return answer;
}

// The same, with a watch of its own, and with the same answer when every read delivers one byte.
inline FIID FIStorageAnswer(const FIStorageProbe& probe, TestHandle& storage) {
    SubObjectWatch watch;
    const FIID answer = FIStorageAnswer(probe, storage, watch);
    storage.position = 0;
    storage.bytesPerRead = 1;
    SubObjectWatch slowWatch;
    EXPECT_EQ(FIStorageAnswer(probe, storage, slowWatch), answer) << "another answer when reads deliver one byte each";
    EXPECT_EQ(slowWatch.Names(), watch.Names()) << "other streams are opened when reads deliver one byte each";
    storage.position = 0;
    storage.bytesPerRead = testNever;
    return answer;
}

inline FIID FIStorageAnswer(const FIStorageProbe& probe, const std::vector<NamedBytes>& streams) {
    const auto storage = FIMakeStorage(streams);
    return FIStorageAnswer(probe, *storage);
}

// The answer when the process heap gives the probe so many blocks and no more.
inline FIID FIStorageAnswerWithBlocks(const FIStorageProbe& probe, std::uint32_t blocks, TestHandle& storage) {
    const auto probeWithBlocks = [&](FIReader& reader) {
        FIFailAllocationsFrom(blocks);
        const FIID answer = probe(reader);
        FIHeapNeverFails();
        return answer;
    };
    return FIStorageAnswer(probeWithBlocks, storage);
}

inline FIID FIStorageAnswerWithBlocks(const FIStorageProbe& probe, std::uint32_t blocks,
                                      const std::vector<NamedBytes>& streams) {
    const auto storage = FIMakeStorage(streams);
    return FIStorageAnswerWithBlocks(probe, blocks, *storage);
}

// The names that a probe asks a storage for, in order.
inline std::vector<std::string> FINamesAskedFor(const FIStorageProbe& probe, TestHandle& storage) {
    SubObjectWatch watch;
    static_cast<void>(FIStorageAnswer(probe, storage, watch));
    storage.position = 0;
    return watch.Names();
}

// The answer of the whole system for a handle, with text identification allowed, and the deciding row. Fails the test
// when the public entry gives another answer, a block or a sub-object stays behind, or the handle is not back at 0.
inline FIVerdict FIIdentifyHandle(TestHandle& handle) {
    const std::size_t blocksBefore = FIHeapBlocks();
    FIVerdict verdict = {0, 0};
    EXPECT_EQ(FIIdHandleWithRow(FIFileOf(handle), FIFlagExtendedText, verdict), 0);
    EXPECT_EQ(handle.position, 0U) << "the handle was not moved back to its start";
    const std::vector<std::string> opened = handle.opened;
    FIID fiid = 0;
    EXPECT_EQ(FIIdHandle(FIFileOf(handle), FIFlagExtendedText, &fiid), 0);
    EXPECT_EQ(fiid, verdict.fiid) << "the public entry gives another answer";
    EXPECT_EQ(handle.position, 0U);
    EXPECT_EQ(FIHeapBlocks(), blocksBefore) << "the identification leaked a heap block";
    EXPECT_EQ(handle.openChildren, 0U) << "the identification left a sub-object open";
    handle.opened = opened;
    return verdict;
}
