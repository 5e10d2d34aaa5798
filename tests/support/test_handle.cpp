#include "support/test_handle.h"

#include <algorithm>
#include <cstring>

namespace {

TestHandle& From(HIOFILE file) { return *reinterpret_cast<TestHandle*>(file); }

std::int32_t Close(HIOFILE file) {
    TestHandle& handle = From(file);
    if (handle.parent == nullptr) return 0;
    --handle.parent->openChildren;
    delete &handle;
    return 0;
}

std::int32_t Read(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    TestHandle& handle = From(file);
    *count = 0;
    const std::uint32_t number = handle.reads++;
    if (number >= handle.failReadsFrom || number == handle.failRead) {
        *count = size;  // a count with a failure status is to be ignored
        return -1;
    }
    if (handle.position >= handle.bytes.size()) {
        if (handle.emptyReads++ < handle.lineFeedAfterEmptyReads || size == 0) return 0;
        handle.emptyReads = 0;
        *static_cast<char*>(destination) = '\n';
        *count = 1;
        return 0;
    }
    const std::uint64_t left = handle.bytes.size() - handle.position;
    *count = static_cast<std::uint32_t>(std::min<std::uint64_t>({size, handle.bytesPerRead, left}));
    std::memcpy(destination, handle.bytes.data() + handle.position, *count);
    handle.position += *count;
    handle.bytesDelivered += *count;
    *count += handle.claimBeyond;
    return 0;
}

std::int32_t Write(HIOFILE, const void*, std::uint32_t, std::uint32_t*) { return -1; }

std::int32_t Seek(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    TestHandle& handle = From(file);
    const std::uint32_t number = handle.seeks++;
    if (number >= handle.failSeeksFrom || number == handle.failSeek) return -1;
    if (origin > 2 || (origin == 2 && handle.failSeekFromEnd)) return -1;
    const auto size = static_cast<std::int64_t>(handle.bytes.size());
    std::int64_t target = 0;
    if (origin == 0) {
        target = static_cast<std::uint32_t>(offset);
        if (target >= 0x80000000 && target > size) return -1;
    } else {
        target = (origin == 1 ? static_cast<std::int64_t>(handle.position) : size) + offset;
    }
    if (target < 0 || (handle.refuseSeekBehindEnd && target > size)) return -1;
    handle.position = static_cast<std::uint64_t>(target);
    return 0;
}

std::int32_t Tell(HIOFILE file, std::uint32_t* position) {
    TestHandle& handle = From(file);
    ++handle.tells;
    if (handle.failTell) return -1;
    *position = static_cast<std::uint32_t>(handle.position);
    return 0;
}

std::int32_t GetInfo(HIOFILE file, std::uint32_t selector, void* value) {
    TestHandle& handle = From(file);
    ++handle.infos;
    switch (selector) {
        case IOInfoName:
            if (!handle.wideName.empty()) {
                std::memcpy(value, handle.wideName.c_str(), (handle.wideName.size() + 1) * sizeof(char16_t));
            } else {
                std::memcpy(value, handle.name.c_str(), handle.name.size() + 1);
            }
            return 0;
        case IOInfoNameType:
            if (!handle.wideName.empty()) *static_cast<std::uint32_t*>(value) = IONameWide;
            return 0;
        case IOInfoIsStorage:
            return handle.isStorage ? 0 : -1;
        case IOInfoClassId:
            if (!handle.isStorage || !handle.hasClassId) return -1;
            std::memcpy(value, handle.classId.data(), 16);
            return 0;
        default:
            return -1;
    }
}

std::int32_t OpenChild(HIOFILE* out, TestHandle& parent, std::string bytes) {
    TestHandle* const child = FIMakeTestHandle(std::move(bytes)).release();
    child->parent = &parent;
    child->bytesPerRead = parent.bytesPerRead;
    ++parent.openChildren;
    *out = FIFileOf(*child);
    return 0;
}

std::int32_t OpenSub(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t) {
    *out = nullptr;
    if (specification == nullptr) return -1;
    TestHandle& parent = From(*static_cast<const HIOFILE*>(specification));  // every record starts with the parent
    if (kind == IOSUB_STREAM || kind == IOSUB_STORAGE) {
        const std::string name = static_cast<const IOSubSpec*>(specification)->name;
        parent.opened.push_back(name);
        const auto& objects = kind == IOSUB_STREAM ? parent.streams : parent.storages;
        const auto found = objects.find(name);
        return found != objects.end() ? OpenChild(out, parent, found->second) : -1;
    }
    if (kind == IOSUB_RANGE) {
        parent.opened.emplace_back("range");
        if (!parent.allowRange) return -1;
        const auto& range = *static_cast<const IOSubRangeSpec*>(specification);
        const std::size_t start = std::min<std::size_t>(range.start, parent.bytes.size());
        const std::size_t end = std::clamp<std::size_t>(range.end, start, parent.bytes.size());
        static_cast<void>(OpenChild(out, parent, parent.bytes.substr(start, end - start)));
        From(*out).derived = parent.derived;
        return 0;
    }
    if (kind == IOSUB_DERIVED) {
        parent.opened.emplace_back("derived");
        return parent.derived.empty() ? -1 : OpenChild(out, parent, parent.derived);
    }
    return -1;
}

constexpr IOOperations testOperations = {Close, Read, Write, Seek, Tell, GetInfo, OpenSub};

}  // namespace

std::unique_ptr<TestHandle> FIMakeTestHandle(std::string bytes, std::string name) {
    auto handle = std::make_unique<TestHandle>();
    handle->file.operations = testOperations;
    handle->bytes = std::move(bytes);
    handle->name = std::move(name);
    return handle;
}
