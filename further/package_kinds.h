// package_kinds.h - the kinds of ZIP archives and packages: what their members' names, the text in "mimetype" or the
// content type of the main part tell.
//
// Notation of a line: alternatives separated by " ; ", one of which must hold; each of terms separated by " + ", all of
// which must hold. Between values of a term stands a bar, one of them is to be met.
//
//   opc:TYPE       the content type of the package's main part, ASCII letters without case
//   rel:strict     the relationship of the strict office formats leads to the main part; rel:oxps: that of OpenXPS
//   zipmime:TYPE   the text in the member "mimetype", with case
//   zip:NAME       a member of exactly that name
//   zip^TEXT       a member's name begins so
//   zip~TEXT       a member's name contains that
//   ext:WORD       the extension of the file's name, with ASCII letters in lower case
//
// The first line that holds decides. None holds of an archive of which no directory can be read.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "further/look.h"

struct FIPackageLine {
    std::uint16_t identifier;
    std::uint16_t over;  // the answer of the signature table that it is asked over
    std::string_view test;
};

// All lines, in their order.
std::span<const FIPackageLine> FIPackageLines();

// The kind of the package, or 0 when no line over the signature table's answer holds.
FIID FITellPackageKind(FILook& look);
