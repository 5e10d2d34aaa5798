// xml_namespace.h - the namespace at the head of an XML text, for the signature rows that compare it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fiid.h"

// FIXmlNamespace: the XML namespace of one request in 16-bit units, a 0 unit behind it. The first unit is a state too.
inline constexpr std::size_t xmlNamespaceUnits = 256;
inline constexpr std::uint16_t xmlNamespaceNotScanned = 0xFFFF;
inline constexpr std::uint16_t xmlNamespaceNotFound = 0xFFFE;

// Looks in the first kilobyte for the value of the first attribute that is spelled exactly xmlns, and fills
// namespaceUnits, an array of xmlNamespaceUnits units: the value's bytes, each widened to 16 bits, at most 255 of them,
// with a 0 unit behind; or xmlNamespaceNotFound in the first unit, the others being left as they were, when there is no
// such value or the file can't be read. No character encoding is decoded, so the first unit is never mistaken for one
// of the two states. The reader is rewound first and left wherever the scan stopped.
void FIScanXmlNamespace(FIReader& reader, std::uint16_t* namespaceUnits);
