// relationships.h - the relationships of a ZIP package (ISO/IEC 29500-2): to which part one of a type leads.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "fiid.h"

// Of each type the first relationship that is not external.
struct UTRelationships;

// Bytes that are kept of one relationships part: types, targets, and relationshipOverhead for each type. Where more
// would be kept, the part ends for the reader, as at an error.
inline constexpr std::size_t relationshipsLimit = std::size_t{4} << 20;
inline constexpr std::size_t relationshipOverhead = 128;

// Reads a relationships part, from where its handle stands to its end. Relationships in front of a point where the part
// stops being well-formed XML count, and so do those in front of damage and of a bound of the XML parser. Returns null
// when memory is exhausted. The relationships are released with UTFreeRelationships.
UTRelationships* UTReadRelationships(HIOFILE part);

// The name of the part to which the first relationship of a type leads, as a member of the package's archive. There is
// none when the part has no such relationship, or the first one has no target. The name lasts as long as the
// relationships.
std::optional<std::string_view> UTFindTarget(const UTRelationships& relationships, std::string_view type);

void UTFreeRelationships(UTRelationships& relationships);

// Works a target of length bytes out against the package's root, in place: a leading '/' is dropped, the segments "."
// and ".." are worked out (".." at the root stays there), and then percent escapes are decoded; an escape that is none
// stays as it is. Returns the new length, which is not above the old one.
std::size_t UTResolveTarget(char* target, std::size_t length);
