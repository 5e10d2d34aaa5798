// look.cpp - reading what the second table asks for.
#include "further/look.h"

#include <algorithm>
#include <cstring>

#include "further/look_numbers.h"
#include "further/package_facts.h"
#include "platform/base_utility.h"
#include "reader/ascii_case.h"

namespace {

// The name's characters as bytes: of a 16-bit unit the low one, and of a unit that has no such byte what no extension has.
char FINameCharacter(const UTHandleName& name, std::size_t index) {
    if (!name.wide) return name.narrow[index];
    constexpr std::uint16_t lastAscii = 0x7F;
    return name.units[index] <= lastAscii ? static_cast<char>(name.units[index]) : '\x01';
}

void FICutLookExtension(FILook& look) {
    const UTHandleName& name = look.file->name;
    const std::size_t capacity = name.wide ? std::size(name.units) : std::size(name.narrow);
    std::size_t end = 0;
    while (end < capacity && FINameCharacter(name, end) != '\0') ++end;
    std::size_t start = end;
    while (start > 0 && FINameCharacter(name, start - 1) != '.') --start;
    look.isHidden = start == 1;
    look.extensionSize = 0;
    if (start == 0) return;
    look.extensionSize = static_cast<std::uint8_t>(std::min(end - start, longestExtension));
    for (std::size_t index = 0; index < look.extensionSize; ++index) {
        look.extensionText[index] = FILowerAscii(FINameCharacter(name, start + index));
    }
}

// Reads the start of a file that hands out no head. Readers ask such a file for what lies behind, and are told that there is
// nothing to be had.
bool FIReadCutStart(FILook& look) {
    look.wide = static_cast<std::uint8_t*>(HeapAlloc(GetProcessHeap(), 0, lookHeadBytes));
    if (look.wide == nullptr) return false;
    if (UTReadAt(*look.file, 0, look.wide, lookHeadBytes, look.wideSize) != 0 || look.wideSize == 0) {
        HeapFree(GetProcessHeap(), 0, look.wide);
        return false;
    }
    const std::uint64_t size = UTGetSize(*look.file);
    look.start.bytes = look.wide;
    look.start.size = std::min(look.wideSize, largestHead);
    look.start.fileSize = size > 0 ? size : unknownSize;
    look.start.maskedBytes = 0;
    return true;
}

}  // namespace

bool FIStartLook(FILook& look, UTHandle& file, FIID fiid, std::uint16_t row) {
    look.file = &file;
    look.wide = nullptr;
    look.wideSize = 0;
    look.startIsCut = !FITakeHead(UTHandleFile(file), look.start);
    if (look.startIsCut && !FIReadCutStart(look)) return false;
    look.fiid = fiid;
    look.row = row;
    look.size = look.start.fileSize;
    look.outOfMemory = false;
    look.text = FITextBytes::NotRead;
    look.json = FIJsonKind::NotRead;
    look.package = nullptr;
    FICutLookExtension(look);
    // A file that tells no size has at least a head's bytes here. Those that end within the patterns' reach are measured.
    if (look.size == unknownSize && !look.startIsCut) {
        const std::size_t seen = FILookAtHead(look).size();
        if (seen < lookHeadBytes) look.size = seen;
    }
    return true;
}

void FIEndLook(FILook& look) {
    if (look.package != nullptr) FIFreePackageFacts(*look.package);
    HeapFree(GetProcessHeap(), 0, look.wide);
}

std::span<const std::uint8_t> FILookAtHead(FILook& look) {
    if (look.wide != nullptr) return {look.wide, look.wideSize};
    if (look.size <= look.start.size) return FILookAtStart(look);
    look.wide = static_cast<std::uint8_t*>(HeapAlloc(GetProcessHeap(), 0, lookHeadBytes));
    if (look.wide == nullptr) {
        look.outOfMemory = true;
        return FILookAtStart(look);
    }
    std::memcpy(look.wide, look.start.bytes, look.start.size);
    std::uint32_t count = 0;
    static_cast<void>(
        UTReadAt(*look.file, look.start.size, look.wide + look.start.size, lookHeadBytes - look.start.size, count));
    look.wideSize = look.start.size + count;
    return {look.wide, look.wideSize};
}

bool FILookAt(FILook& look, std::uint64_t offset, void* destination, std::uint32_t size) {
    const std::span<const std::uint8_t> known = look.wide != nullptr ? FILookAtHead(look) : FILookAtStart(look);
    if (offset > known.size() || known.size() - offset < size) {
        return UTReadFully(*look.file, offset, destination, size);
    }
    std::memcpy(destination, known.data() + offset, size);
    return true;
}

bool FIHasStorageMark(const FILook& look) {
    constexpr std::string_view mark("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    return FIStandsAt(FILookAtStart(look), 0, mark);
}

// A file that ends within the patterns' reach is read whole: what its tail does not tell, all of it may.
bool FILookAtTail(FILook& look, std::uint64_t distance, void* destination, std::uint32_t size) {
    if (look.size <= lookHeadBytes && !FIHasStorageMark(look)) static_cast<void>(FILookAtHead(look));
    return look.size != unknownSize && look.size >= distance && FILookAt(look, look.size - distance, destination, size);
}

bool FIHoldsWord(std::string_view list, std::string_view word) {
    while (!list.empty()) {
        const std::size_t size = std::min(list.find(' '), list.size());
        const bool fits = std::ranges::equal(list.substr(0, size), word,
                                             [](char known, char given) { return known == given || known == '?'; });
        if (fits) return true;
        list.remove_prefix(std::min(size + 1, list.size()));
    }
    return false;
}

bool FIEndsWith(FILook& look, std::uint64_t distance, std::string_view text) {
    std::array<char, 16> bytes;
    const auto size = static_cast<std::uint32_t>(text.size());
    return FILookAtTail(look, distance, bytes.data(), size) && std::string_view(bytes.data(), size) == text;
}
