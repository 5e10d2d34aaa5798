// xml_namespace.h - the namespace at the head of an XML text, for the signature rows that compare it.
#pragma once

#include <cstdint>

#include "fiid.h"

// Looks in the first kilobyte for the value of the first attribute that is spelled exactly xmlns, and fills
// namespaceUnits, an array of xmlNamespaceUnits units (core/interpreter.h): the value's bytes, each widened to 16 bits,
// at most 255 of them, with a 0 unit behind; or xmlNamespaceNotFound in the first unit, the others being left as they
// were, when there is no such value or the file can't be read. No character encoding is decoded, so the first unit is
// never mistaken for one of the two states. The reader is rewound first and left wherever the scan stopped.
void FIScanXmlNamespace(FIReader& reader, std::uint16_t* namespaceUnits);
