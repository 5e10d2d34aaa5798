// opened_look.h - looks at bytes in memory, for the routines of the second table.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "further/look.h"
#include "support/open_file.h"

// A look at a file that counts its reads; the file's start is there without one.
class OpenedLook {
 public:
    explicit OpenedLook(const std::string& bytes, const char* name = "") : file_(bytes, name) {
        UTHandle* const handle = UTFindHandle(file_.File());
        EXPECT_TRUE(FIStartLook(look, *handle, 4005, 0));
        ordinary = handle->kind;
        counting = *handle->kind;
        counting.readAt = CountRead;
        handle->kind = &counting;
        reads = 0;
        failReads = false;
    }
    ~OpenedLook() {
        FIEndLook(look);
        look.file->kind = ordinary;
    }
    OpenedLook(const OpenedLook&) = delete;
    OpenedLook& operator=(const OpenedLook&) = delete;

    FILook look;

    // Of the one that was opened last.
    static inline std::uint32_t reads;
    static inline bool failReads;

 private:
    static std::int32_t CountRead(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                                  std::uint32_t& count) {
        ++reads;
        count = 0;
        return failReads ? -1 : ordinary->readAt(handle, offset, destination, size, count);
    }

    static inline const UTHandleKind* ordinary;
    static inline UTHandleKind counting;

    OpenFile file_;
};

// What a routine answers to these bytes.
inline FIID FIAskLook(FIID (*tell)(FILook&), const std::string& bytes, const char* name = "") {
    OpenedLook opened(bytes, name);
    return tell(opened.look);
}
