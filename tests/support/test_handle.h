// test_handle.h - a handle for tests: over bytes in memory, as awkward as a test wants it, and counting what is done.
//
// It knows nothing of the platform layer, so that the core is tested against the handle contract alone.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "fiid.h"

inline constexpr std::uint32_t testNever = 0xFFFFFFFF;

struct TestHandle {
    IOFile file;  // first: a TestHandle is an HIOFILE

    // What the object is. Set before use.
    std::string bytes;
    std::string name;
    std::u16string wideName;  // if not empty, the name is wide and this is it
    bool isStorage = false;
    bool hasClassId = true;                       // for a storage: whether IOInfoClassId works
    std::string classId = std::string(16, '\0');  // in memory form
    std::map<std::string, std::string> streams;   // opened by IOSUB_STREAM
    std::map<std::string, std::string> storages;  // opened by IOSUB_STORAGE; the value is not used
    bool allowRange = false;                      // IOSUB_RANGE opens a handle over the stretch
    std::string derived;                          // if not empty, IOSUB_DERIVED opens a handle over these bytes

    // How awkward it is.
    std::uint32_t bytesPerRead = testNever;   // most bytes that one read delivers
    std::uint32_t claimBeyond = 0;            // bytes that a read which delivers some claims besides
    std::uint32_t failReadsFrom = testNever;  // reads fail from the one with this number on, counted from 0
    std::uint32_t failSeeksFrom = testNever;  // seeks fail from the one with this number on
    std::uint32_t failRead = testNever;       // the read with this number alone fails
    std::uint32_t failSeek = testNever;       // the seek with this number alone fails
    bool failSeekFromEnd = false;             // seeks with origin 2 fail
    bool failTell = false;
    bool refuseSeekBehindEnd = false;
    std::uint32_t lineFeedAfterEmptyReads = testNever;  // reads at the end deliver a line feed after so many empty ones

    // What was done.
    std::uint32_t reads = 0;
    std::uint32_t seeks = 0;
    std::uint32_t tells = 0;
    std::uint32_t infos = 0;
    std::uint32_t emptyReads = 0;
    std::uint32_t openChildren = 0;  // sub-objects opened here and not closed yet
    std::uint64_t bytesDelivered = 0;
    std::vector<std::string> opened;  // names asked for by IOOpenSub, in order; "range" and "derived" too

    std::uint64_t position = 0;
    TestHandle* parent = nullptr;  // for a sub-object
};

// A new handle over bytes. It is freed with its pointer; IOClose does nothing to it but count for a sub-object.
std::unique_ptr<TestHandle> FIMakeTestHandle(std::string bytes, std::string name = "");

inline HIOFILE FIFileOf(TestHandle& handle) { return &handle.file; }
