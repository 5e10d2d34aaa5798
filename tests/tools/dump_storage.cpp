// dump_storage.cpp - writes what the storage reader sees in a compound file: dump_storage FILE.
//
// The output is made for scripts/check-storages. A line for each object, names in hexadecimal 16-bit units of four
// digits, the storages of a path parted by a slash:
//   class 32 digits                  the class identifier of the file's storage
//   storage PATH 32 digits           a sub-storage and its class identifier, in front of what it holds
//   stream PATH SIZE COUNT           a stream, its size as told and the count of bytes it delivered; behind the line
//                                    those bytes and a line end
// The exit status is 0, 1 when the file is no storage, 2 when it can't be opened.
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/base_utility.h"
#include "platform/handle.h"
#include "platform/storage/compound_storage.h"

namespace {

constexpr std::uint32_t deepestStorage = 64;  // a damaged file may nest without end

std::string HexClassId(HIOFILE storage) {
    std::uint8_t classId[IOClassIdBytes] = {};
    static_cast<void>(storage->operations.IOGetInfo(storage, IOInfoClassId, classId));
    std::string text;
    for (const std::uint8_t byte : classId) {
        char digits[3];
        std::snprintf(digits, sizeof(digits), "%02X", byte);
        text += digits;
    }
    return text;
}

std::string HexName(const CFChild& child) {
    std::string text;
    for (std::uint32_t index = 0; index < child.nameLength; ++index) {
        char digits[5];
        std::snprintf(digits, sizeof(digits), "%04X", child.name[index]);
        text += digits;
    }
    return text;
}

std::string ReadToEnd(HIOFILE stream) {
    std::string bytes;
    std::vector<char> buffer(65536);
    while (true) {
        std::uint32_t count = 0;
        const auto size = static_cast<std::uint32_t>(buffer.size());
        if (stream->operations.IORead(stream, buffer.data(), size, &count) != 0 || count == 0) return bytes;
        bytes.append(buffer.data(), count);
    }
}

void DumpStream(HIOFILE stream, const std::string& path, std::uint64_t size) {
    const std::string bytes = ReadToEnd(stream);
    std::printf("stream %s %llu %zu\n", path.c_str(), static_cast<unsigned long long>(size), bytes.size());
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    std::putchar('\n');
}

// The prefix is the storage's own path and a slash, or nothing for the file's storage.
void DumpChildren(UTHandle& storage, const std::string& prefix, std::uint32_t depth) {
    if (depth == deepestStorage) return;
    CFChild child;
    for (std::size_t place = 0; CFGetChild(storage, place, child); ++place) {
        UTHandle* const handle = UTOpenChild(storage, place);
        if (handle == nullptr) continue;
        const HIOFILE file = UTHandleFile(*handle);
        const std::string path = prefix + HexName(child);
        if (child.isStorage) {
            std::printf("storage %s %s\n", path.c_str(), HexClassId(file).c_str());
            DumpChildren(*handle, path + "/", depth + 1);
        } else {
            DumpStream(file, path, child.size);
        }
        file->operations.IOClose(file);
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: dump_storage FILE\n");
        return 2;
    }
    HIOFILE file = nullptr;
    if (IOOpen(&file, IOSpecNarrow, arguments[1], IOOpenRead) != 0) {
        std::fprintf(stderr, "dump_storage: %s can't be opened\n", arguments[1]);
        return 2;
    }
    const bool isStorage = file->operations.IOGetInfo(file, IOInfoIsStorage, nullptr) == 0;
    if (isStorage) {
        std::printf("class %s\n", HexClassId(file).c_str());
        DumpChildren(*UTFindHandle(file), "", 0);
    }
    file->operations.IOClose(file);
    return isStorage ? 0 : 1;
}
