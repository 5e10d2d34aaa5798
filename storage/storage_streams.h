// storage_streams.h - opening the streams and sub-storages of a compound storage, and running a test over one.
//
// The reader of the identification, whose handle is the storage, is never moved: a test over a stream has a reader of
// its own, which is freed before the stream is closed.
#pragma once

#include <cstdint>

#include "fiid.h"
#include "reader/reader.h"

// Whether a handle is a compound storage.
bool FIIsStorage(HIOFILE handle);

// Opens the object that a name and a kind (IOSUB_STREAM, IOSUB_STORAGE) mean in the record's parent, and returns
// its handle, which the caller closes, or null when it isn't there. The name is written into the record, which may
// serve again.
HIOFILE FIOpenStorageObject(IOSubSpec& specification, std::uint32_t kind, const char* name);

// Closes a handle of FIOpenStorageObject.
void FICloseStorageObject(HIOFILE object);

// Runs a step, FIID(FIReader&), over an open stream with a reader of its own. Returns the step's answer, or
// withoutReader when memory is exhausted. The stream stays open.
template <typename Step>
FIID FIReadStream(HIOFILE stream, FIID withoutReader, Step step) {
    FIReader* const reader = FIReaderNew(stream);
    if (reader == nullptr) return withoutReader;
    const FIID answer = step(*reader);
    static_cast<void>(FIReaderFree(*reader));
    return answer;
}

// Opens a stream of a storage, runs a step over it and closes it. Returns the step's answer, or withoutStream when
// there is no such stream or memory is exhausted.
template <typename Step>
FIID FIRunOverStream(HIOFILE storage, const char* name, FIID withoutStream, Step step) {
    IOSubSpec specification;
    specification.parent = storage;
    const HIOFILE stream = FIOpenStorageObject(specification, IOSUB_STREAM, name);
    if (stream == nullptr) return withoutStream;
    const FIID answer = FIReadStream(stream, withoutStream, step);
    FICloseStorageObject(stream);
    return answer;
}
