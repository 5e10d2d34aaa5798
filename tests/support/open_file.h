// open_file.h - handles of the platform layer over bytes in memory, archives in them, and reading all of a handle.
#pragma once

#include <cstdint>
#include <string>

#include "fiid.h"

// A handle over a block of memory; closed with its owner.
class OpenFile {
 public:
    explicit OpenFile(std::string bytes, const char* name = "");
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    // For a test that closes the handle itself.
    void Close();

    HIOFILE File() const { return file_; }

 private:
    std::string bytes_;
    HIOFILE file_ = nullptr;
};

// IOOpenSub with IOSUB_ARCHIVE and IOSUB_MEMBER; null when it fails. The caller closes the handle.
HIOFILE FIOpenArchive(HIOFILE file);
HIOFILE FIOpenMember(HIOFILE archive, const char* name);

void FICloseFile(HIOFILE file);

// What a handle delivers from where it stands.
struct ReadResult {
    std::string bytes;
    bool failed;  // whether a read failed in the end; otherwise the end came

    bool operator==(const ReadResult&) const = default;
};

// Reads to the end, so many bytes at a time. Null is a failure without bytes.
ReadResult FIReadAll(HIOFILE file, std::uint32_t portion = 2048);

// Opens the member of that name in the archive of these bytes and reads all of it. A member that can't be opened is a
// failure without bytes.
ReadResult FIReadMember(const std::string& archive, const char* name, std::uint32_t portion = 2048);
