// package_facts.h - what is found about a file's ZIP archive, each thing when it is first asked for, and once.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "further/look.h"
#include "further/main_part.h"
#include "platform/handle.h"

// Bytes of the member "mimetype" that count.
inline constexpr std::uint32_t mimetypeBytes = 200;

struct FIPackageFacts {
    UTHandle* archive;          // null when the file is none of which the directory can be read
    bool mimetypeRead;          // whether mimetype tells the truth
    bool mainPartSought;        // whether main tells the truth
    std::string_view mimetype;  // without white space at its ends; empty when there is none
    FIMainPart main;
    std::array<char, mimetypeBytes> mimetypeText;
};

// What was found so far; null when nothing was asked for. It lasts as long as the look.
inline const FIPackageFacts* FIPackageFactsOf(const FILook& look) { return look.package; }

void FIFreePackageFacts(FIPackageFacts& facts);

// The archive that the file is, or null. It is the look's: nobody closes it.
UTHandle* FIArchiveOf(FILook& look);

// What the member "mimetype" holds, with the spelling as it stands: its first 200 bytes without white space at both ends.
// Of a damaged one the bytes in front of the damage count. Empty when there is none, and when the first one of exactly
// that name is encrypted or packed in a way that can't be unpacked.
std::string_view FIMimetypeOf(FILook& look);

// The main part of the package. Where the file is no package its relationship is None.
const FIMainPart& FIMainPartOf(FILook& look);

// What is asked about the names of an archive's members. Case counts.
enum class FINameTest : std::uint8_t { Is, Begins, Contains };

struct FINameQuestion {
    FINameTest test = FINameTest::Is;
    std::string_view text;
};

inline constexpr std::size_t mostNameQuestions = 32;

// Puts up to mostNameQuestions questions to all names of the archive's members in one walk. Returns a bit for each question
// that a name answers, the first question's the lowest; none when the file is no archive. A walk that meets one of the
// questions in enough ends there.
std::uint32_t FIAskNames(FILook& look, std::span<const FINameQuestion> questions, std::uint32_t enough);
