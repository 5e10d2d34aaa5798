// interpreter.h - FIRunSignature, which runs one row of the signature bytecode (signatures/bytecode.h) against a file.
#pragma once

#include <cstdint>

#include "fiid.h"

// Runs the row that starts at row and returns its result, or 0 when it failed.
//   reader        the reader of this request; left wherever the row stopped, for no row depends on where another
//   stopped extension     the file's extension: upper case, at most 4 characters, NUL-terminated hasClassId    whether
//   classId holds the class identifier of a storage classId       its 16 bytes, a GUID in its memory form xmlNamespace
//   FIXmlNamespace of this request, xmlNamespaceUnits units; the first row that asks fills it
FIID FIRunSignature(const std::uint8_t* row, FIReader& reader, const char* extension, bool hasClassId,
                    const std::uint8_t* classId, std::uint16_t* xmlNamespace);
