// open_handle.h - a handle that closes itself at the end of its scope, with its operations in the form that tests want.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "fiid.h"
#include "platform/base_utility.h"
#include "support/test_handle.h"

class OpenHandle {
 public:
    explicit OpenHandle(HIOFILE file) : file_(file) {}
    OpenHandle(OpenHandle&& other) noexcept : file_(std::exchange(other.file_, nullptr)) {}
    OpenHandle(const OpenHandle&) = delete;
    OpenHandle& operator=(const OpenHandle&) = delete;
    ~OpenHandle() { Close(); }

    explicit operator bool() const { return file_ != nullptr; }
    HIOFILE File() const { return file_; }

    void Close() {
        if (file_ != nullptr) file_->operations.IOClose(std::exchange(file_, nullptr));
    }

    bool IsStorage() const { return file_->operations.IOGetInfo(file_, IOInfoIsStorage, nullptr) == 0; }

    // 16 bytes, or nothing when the handle has no class identifier.
    std::string ClassId() const {
        std::string classId(16, '\x55');
        return file_->operations.IOGetInfo(file_, IOInfoClassId, classId.data()) == 0 ? classId : "";
    }

    OpenHandle Stream(const std::string& name) const { return Open(IOSUB_STREAM, name); }
    OpenHandle Storage(const std::string& name) const { return Open(IOSUB_STORAGE, name); }

    std::int32_t Seek(std::uint16_t origin, std::int64_t offset) const {
        return file_->operations.IOSeek(file_, origin, static_cast<std::int32_t>(static_cast<std::uint32_t>(offset)));
    }

    std::uint32_t Tell() const {
        std::uint32_t position = 0x55555555;
        EXPECT_EQ(file_->operations.IOTell(file_, &position), 0);
        return position;
    }

    // One read; what it delivered.
    std::string Read(std::uint32_t size) const {
        std::string bytes(size, '\x55');
        std::uint32_t count = 0x55555555;
        EXPECT_EQ(file_->operations.IORead(file_, bytes.data(), size, &count), 0);
        EXPECT_LE(count, size);
        bytes.resize(std::min(count, size));
        return bytes;
    }

    // From the current position to the end, in reads of at most piece bytes; no more than limit bytes.
    std::string ReadToEnd(std::uint32_t piece = 65536, std::size_t limit = SIZE_MAX) const {
        std::string bytes;
        while (bytes.size() < limit) {
            const std::string came = Read(piece);
            if (came.empty()) break;
            bytes += came;
        }
        return bytes;
    }

 private:
    OpenHandle Open(std::uint32_t kind, const std::string& name) const {
        IOSubSpec specification;
        std::memset(&specification, 0x55, sizeof(specification));
        specification.parent = file_;
        std::memcpy(specification.name, name.c_str(), name.size() + 1);
        HIOFILE out = file_;  // to be overwritten in any case
        const std::int32_t status = file_->operations.IOOpenSub(&out, kind, &specification, 1);
        EXPECT_EQ(status == 0, out != nullptr);
        return OpenHandle(status == 0 ? out : nullptr);
    }

    HIOFILE file_;
};

// A handle of the platform layer over bytes, which must outlive it.
inline OpenHandle FIOpenBytes(const std::string& bytes) {
    const IOMemorySpec memory = {bytes.data(), bytes.size(), ""};
    HIOFILE file = nullptr;
    EXPECT_EQ(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead), 0);
    return OpenHandle(file);
}

// A handle of the platform layer over a handle of the test's own, which counts what is done.
inline OpenHandle FIOpenOver(TestHandle& handle) {
    HIOFILE file = nullptr;
    EXPECT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(handle), IOOpenRead), 0);
    return OpenHandle(file);
}
