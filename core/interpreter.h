// interpreter.h - FIRunSignature, which runs one row of the signature bytecode (signatures/bytecode.h) against a file.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fiid.h"
#include "package/xml_namespace.h"
#include "signatures/bytecode.h"

struct FIHead;

// Where calls of routines go that core/routines.cpp does not know: those of a further table.
struct FIFurtherCalls {
    FIID (*call)(FIFurtherCalls& calls, std::uint16_t number);
};

// Characters of an extension that the rows know.
inline constexpr std::size_t extensionLength = 4;

// What a row can ask about besides the file's bytes; one per request.
struct FIRequest {
    char extension[extensionLength + 1];  // the file's, in upper case, NUL-terminated
    bool hasClassId;                      // whether classId holds the class identifier of a storage
    std::uint8_t classId[classIdSize];    // a GUID in its memory form
    FIHead* head = nullptr;               // the file's, or null: then all rows and routines run
    FIFurtherCalls* calls = nullptr;      // null while the signature table runs
    // FIXmlNamespace: the first unit is xmlNamespaceNotScanned until a row asks; the further ones need no value before.
    std::uint16_t xmlNamespace[xmlNamespaceUnits];
};

// Runs the row that starts at row and returns its result, or 0 when it failed. The reader is left wherever the row
// stopped: no row depends on where another stopped.
FIID FIRunSignature(const std::uint8_t* row, FIReader& reader, FIRequest& request);
