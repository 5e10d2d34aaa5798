// archive.h - ZIP archives in the bytes of another handle, and their members.
//
// An archive's handle is a child of the file's, and a member's one of the archive's. Closing a handle of this layer
// frees the children that are still open, so an archive's handle that nobody closes is gone with the file's.
#pragma once

#include <string_view>

#include "platform/handle.h"
#include "platform/zip/zip_directory.h"

// Opens the archive in an object, of which the central directory can be read. Read as bytes, the handle delivers the
// object's own bytes, and it has the object's name. Returns null when there is no such directory or memory is
// exhausted.
UTHandle* UTOpenArchive(UTHandle& parent);

// Whether a handle is one of UTOpenArchive.
bool UTIsArchive(const UTHandle& handle);

// Whether an archive holds a member of a name, with ASCII letters compared without case.
bool UTHasMember(UTHandle& archive, std::string_view name);

// Calls visit with the name of each member, as ZAVisitNames does. Returns false also when archive is no archive.
bool UTVisitMembers(UTHandle& archive, ZANameVisitor visit, void* context);

// Opens a member by its exact name, or with ASCII letters compared without case; of several the first in the central
// directory. Its size is the one that the directory tells, its name the part behind the last slash. Returns null when
// archive is no archive, there is no such member, it is encrypted or neither stored nor deflated, or memory is
// exhausted.
UTHandle* UTOpenMember(UTHandle& archive, const char* name);
UTHandle* UTOpenMemberAnyCase(UTHandle& archive, std::string_view name);
