// package_fuzz.cpp - ZIP packages: directory, members, relationships, XML, and what the whole system makes of them.
//
// An input that begins with 'X' is an XML document behind that byte, for the XML reader alone; any other one is a file.
//
// Besides that nothing crashes, hangs or leaks, the target asserts the laws of a whole identification (fuzz/laws.h) and
// the same bytes of a part or member in portions of any size.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>

#include "fuzz/laws.h"
#include "platform/base_utility.h"
#include "platform/package_library.h"

namespace {

constexpr std::uint8_t xmlMode = 'X';
constexpr std::uint32_t mostTags = 50000;
constexpr std::size_t mostBytes = 20000;
constexpr std::size_t localHeaderSize = 30;

void Require(bool law) {
    if (!law) std::abort();
}

HIOFILE OpenMemory(const std::uint8_t* data, std::size_t size) {
    const IOMemorySpec memory = {data, size, "input"};
    HIOFILE file = nullptr;
    Require(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead) == 0);
    return file;
}

// The first bytes that a handle delivers, and whether a read failed among them.
std::pair<std::string, bool> ReadStart(HIOFILE file, std::uint32_t portion) {
    std::string bytes;
    Require(file->operations.IOSeek(file, 0, 0) == 0);
    while (bytes.size() < mostBytes) {
        char buffer[4096];
        std::uint32_t count = 0;
        const auto wanted = static_cast<std::uint32_t>(std::min<std::size_t>(portion, mostBytes - bytes.size()));
        if (file->operations.IORead(file, buffer, wanted, &count) != 0) return {bytes, true};
        Require(count <= wanted);
        if (count == 0) break;
        bytes.append(buffer, count);
    }
    return {bytes, false};
}

void ReadInPortions(HIOFILE file) {
    const auto whole = ReadStart(file, 4096);
    Require(ReadStart(file, 700) == whole);
    Require(ReadStart(file, 4095) == whole);
}

void OpenParts(HIOFILE file, std::uint32_t chosen) {
    constexpr const char* types[] = {
        "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument",
        "http://schemas.microsoft.com/office/2006/relationships/officeDocument",
        "http://schemas.microsoft.com/xps/2005/06/fixedrepresentation",
    };
    HPKGPACKAGE package = nullptr;
    if (PKGInit(file, &package) != 0) return;
    HPKGPART part = nullptr;
    if (PKGOpenFileByType(&part, 0, types[chosen % std::size(types)], package) == 0) {
        ReadInPortions(PKGGetHIOFILE(part));
        PKGCloseFile(part);
    }
    PKGDeinit(package);
}

void OpenMember(HIOFILE archive, const char* name, std::size_t length) {
    IOSubMemberSpec specification = {};
    specification.parent = archive;
    std::memcpy(specification.name, name, std::min(length, sizeof(specification.name) - 1));
    HIOFILE member = nullptr;
    if (archive->operations.IOOpenSub(&member, IOSUB_MEMBER, &specification, 0) != 0) return;
    ReadInPortions(member);
    member->operations.IOClose(member);
}

// Opens the member that is looked for, and the one that the file's first local header names.
void OpenMembers(HIOFILE file, const std::uint8_t* data, std::size_t size) {
    HIOFILE archive = file;
    if (file->operations.IOOpenSub(&archive, IOSUB_ARCHIVE, nullptr, 0) != 0) return;
    constexpr char mimetype[] = "mimetype";
    OpenMember(archive, mimetype, std::size(mimetype) - 1);
    if (size > localHeaderSize) {
        const std::size_t told = data[26] | static_cast<std::size_t>(data[27]) << 8;
        OpenMember(archive, reinterpret_cast<const char*>(data + localHeaderSize),
                   std::min(told, size - localHeaderSize));
    }
    archive->operations.IOClose(archive);
}

// The tags of a document, as one number.
std::uint64_t ReadTags(const std::uint8_t* data, std::size_t size) {
    constexpr UTXmlTagPair pairs[] = {{1, "document"}, {2, "a"}};
    const HIOFILE file = OpenMemory(data, size);
    HUTXML xml = nullptr;
    std::uint64_t sum = 0;
    Require(UTXMLInit(&xml, file) == 0);
    Require(UTXMLAddTagMap(&xml, "", 1, 0, pairs, std::size(pairs)) == 0);
    Require(UTXMLAddTagMap(&xml, "n", 2, 0, pairs, std::size(pairs)) == 0);
    UTXmlTag tag = {};
    for (std::uint32_t count = 0; count < mostTags && UTXMLReadNextTag(&xml, &tag, nullptr) == 0; ++count) {
        sum = sum * 31 + tag.namespaceId * 7 + tag.tagId * 3 + tag.flags + 1;
    }
    UTXMLDeInit(&xml);
    file->operations.IOClose(file);
    return sum;
}

// One of the things to do with a file, chosen by its bytes: doing all of them would leave time for fewer inputs.
void FuzzOneFile(const std::uint8_t* data, std::size_t size) {
    const HIOFILE file = OpenMemory(data, size);
    const std::uint32_t chosen = FuzzHash({reinterpret_cast<const char*>(data), size}) % 8;
    if (chosen == 0) {
        FuzzCheckIdentification({{reinterpret_cast<const char*>(data), size}});
    } else if (chosen <= 4) {
        OpenParts(file, chosen);
    } else {
        OpenMembers(file, data, size);
    }
    file->operations.IOClose(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 0 && data[0] == xmlMode) {
        Require(ReadTags(data + 1, size - 1) == ReadTags(data + 1, size - 1));
    } else {
        FuzzOneFile(data, size);
    }
    return 0;
}
