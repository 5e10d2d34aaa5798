#include "support/open_file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/base_utility.h"

OpenFile::OpenFile(std::string bytes, const char* name) : bytes_(std::move(bytes)) {
    const IOMemorySpec memory = {bytes_.data(), bytes_.size(), name};
    EXPECT_EQ(IOOpen(&file_, IOSpecMemory, &memory, IOOpenRead), 0);
}

OpenFile::~OpenFile() { Close(); }

void OpenFile::Close() {
    if (file_ != nullptr) FICloseFile(file_);
    file_ = nullptr;
}

HIOFILE FIOpenArchive(HIOFILE file) {
    HIOFILE out = file;
    return file->operations.IOOpenSub(&out, IOSUB_ARCHIVE, nullptr, 0) == 0 ? out : nullptr;
}

HIOFILE FIOpenMember(HIOFILE archive, const char* name) {
    IOSubMemberSpec specification = {};
    specification.parent = archive;
    const std::string text = name;
    std::copy(text.begin(), text.end(), specification.name);
    HIOFILE out = nullptr;
    return archive->operations.IOOpenSub(&out, IOSUB_MEMBER, &specification, 0) == 0 ? out : nullptr;
}

void FICloseFile(HIOFILE file) { EXPECT_EQ(file->operations.IOClose(file), 0); }

ReadResult FIReadAll(HIOFILE file, std::uint32_t portion) {
    ReadResult result = {"", file == nullptr};
    if (result.failed) return result;
    std::string buffer(portion, '\0');
    while (true) {
        std::uint32_t count = 0;
        result.failed = file->operations.IORead(file, buffer.data(), portion, &count) != 0;
        if (result.failed || count == 0) return result;
        result.bytes.append(buffer, 0, count);
    }
}

ReadResult FIReadMember(const std::string& archive, const char* name, std::uint32_t portion) {
    const OpenFile file(archive);
    const HIOFILE opened = FIOpenArchive(file.File());
    const HIOFILE member = opened != nullptr ? FIOpenMember(opened, name) : nullptr;
    return FIReadAll(member, portion);  // closing the file closes all
}
