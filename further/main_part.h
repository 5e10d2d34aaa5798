// main_part.h - the main part of an Open Packaging package (ISO/IEC 29500-2): which it is, and its content type.
//
// Unlike the lookup that the signature table's routines make, this one names the part and need not open it: the content
// type alone tells a document from a template, and one with macros from one without.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/handle.h"

// The types of relationships that lead to a main part, the one that counts most first.
enum class FIMainRelationship : std::uint8_t {
    Office,
    OfficeDraft,
    OfficeStrict,
    Visio,
    Xps,
    OpenXps,
    None,  // the package has no main part
};

inline constexpr std::size_t shortTextBytes = 128;

// The start of a text, and whether that is all.
struct FIShortText {
    std::array<char, shortTextBytes> bytes;
    std::uint8_t size;
    bool cut;
};

inline std::string_view FITextOf(const FIShortText& text) { return {text.bytes.data(), text.size}; }

struct FIMainPart {
    FIMainRelationship relationship = FIMainRelationship::None;
    FIShortText name = {};         // without the slash in front
    FIShortText contentType = {};  // without parameters and white space, spelled as it stands; empty when there is none
};

// Compares two texts, ASCII letters without case.
bool FIEqualsAnyCase(std::string_view one, std::string_view other);

// White space around the type in "mimetype" and in a content type.
constexpr bool FIIsTypeSpace(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }

// Finds the main part of the package that an archive is, by its parts "_rels/.rels" and "[Content_Types].xml". No other
// member is looked at: the main part itself need not be there. Returns false where memory is exhausted.
bool FIFindMainPart(UTHandle& archive, FIMainPart& part);
