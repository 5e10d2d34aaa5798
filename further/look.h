// look.h - a file as the second table looks at it: behind the signature table's answer, with all that its patterns and
// routines ask about. What is costly is read when it is first asked for, and once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "fiid.h"
#include "platform/handle.h"
#include "reader/head.h"

// Bytes of the file's beginning that patterns look at.
inline constexpr std::uint32_t lookHeadBytes = 65536;

// Of longer extensions no format is known; they are told as this many characters.
inline constexpr std::size_t longestExtension = 31;

// A size that is not known: of files that tell none, as under /proc, and have more than lookHeadBytes.
inline constexpr std::uint64_t unknownSize = UINT64_MAX;

struct FIPackageFacts;

// What the head is as a text of one-byte characters or UTF-8, once it was looked at.
enum class FITextBytes : std::uint8_t { NotRead, NoText, Ascii, WithHigh };

// What the whole of a JSON text is, once it was read.
enum class FIJsonKind : std::uint8_t { NotRead, None, Json, GeoJson, Notebook, Lines };

// Of one file, for the time of its identification.
struct FILook {
    UTHandle* file;              // at no place in particular: all reads are by offset
    FIID fiid;                   // the signature table's answer
    std::uint16_t row;           // the row that gave it, or 0
    std::uint64_t size;          // in bytes, or unknownSize
    FIHead start;                // the first 8,192 bytes
    bool startIsCut;             // whether start ends in front of bytes that can't be read
    bool isHidden;               // whether the name's last full stop is its first character
    std::uint8_t extensionSize;  // of what follows the name's last full stop; 0 also for a name without one
    std::array<char, longestExtension> extensionText;  // with ASCII letters in lower case
    std::uint8_t* wide;                                // the first lookHeadBytes bytes, once read; null before
    std::uint32_t wideSize;
    bool outOfMemory;         // whether a block that was needed was not to be had: the answer may lack what it was for
    FITextBytes text;         // see further/clean_text.h
    FIJsonKind json;          // see further/json_kinds.h
    FIPackageFacts* package;  // see further/package_facts.h; null until asked for
};

// Looks at a file for which the signature table gave an answer. Takes memory and reads only when asked for more, but for a
// file that has no head to hand out, because a part of it can't be read: what stands in front of that is its start then.
// Returns false when that is nothing, or memory is exhausted. FIEndLook is to be called if it returned true.
bool FIStartLook(FILook& look, UTHandle& file, FIID fiid, std::uint16_t row);

void FIEndLook(FILook& look);

// The first 8,192 bytes, or all there are and can be read.
inline std::span<const std::uint8_t> FILookAtStart(const FILook& look) { return {look.start.bytes, look.start.size}; }

// The first lookHeadBytes bytes, or all there are. Where the rest can't be read or memory is exhausted, what there is.
std::span<const std::uint8_t> FILookAtHead(FILook& look);

// Reads size bytes at an offset of up to 64 bits. Returns false when they are not all there.
bool FILookAt(FILook& look, std::uint64_t offset, void* destination, std::uint32_t size);

// Whether the file has the mark of a compound storage (MS-CFB). Such a file is told without the tests of text, which look at
// the whole head: so it is not worth reading for a look at a few bytes.
bool FIHasStorageMark(const FILook& look);

// Reads size bytes that begin distance bytes before the end. Returns false when the file has fewer than distance bytes or
// its size is not known.
bool FILookAtTail(FILook& look, std::uint64_t distance, void* destination, std::uint32_t size);

// The extension in lower case; empty when there is none.
inline std::string_view FIExtensionOf(const FILook& look) { return {look.extensionText.data(), look.extensionSize}; }

// Whether the words of a list with one blank between two hold a word. A question mark in the list stands for any character.
bool FIHoldsWord(std::string_view list, std::string_view word);
