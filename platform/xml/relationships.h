// relationships.h - the relationships of a ZIP package (ISO/IEC 29500-2): to which part one of a type leads.
#pragma once

#include <cstddef>
#include <string_view>

#include "fiid.h"

// The name of a part, as a member of the package's archive. Without text there is none.
struct UTPartName {
    char* text;  // from the process heap; not NUL-terminated
    std::size_t length;
};

// Reads a relationships part, from where its handle stands, up to the first relationship of a type that is not
// external, and works out its target against the package's root. Relationships in front of a point where the part stops
// being well-formed XML count, and so do those in front of damage. Returns no name when there is no such relationship,
// it has no target, or memory is exhausted. The name is released with UTFreePartName.
UTPartName UTFindRelationshipTarget(HIOFILE relationships, std::string_view type);

void UTFreePartName(const UTPartName& name);

// Works a target of length bytes out against the package's root, in place: a leading '/' is dropped, the segments '.'
// and
// '..' are worked out ('..' at the root stays there), and then percent escapes are decoded; an escape that is none
// stays as it is. Returns the new length, which is not above the old one.
std::size_t UTResolveTarget(char* target, std::size_t length);
