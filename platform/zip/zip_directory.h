// zip_directory.h - the central directory of a ZIP archive: where it stands, and what it tells about a member.
//
// The directory is never loaded. Every look-up walks it in the file, entry by entry, through a small buffer, so an
// archive of a million members costs no more memory than one of three, and one that claims four thousand million
// members costs nothing but the look at what is there. Where nobody sees how a file is read, the walk that finds the
// directory notes the members that are asked for in most archives.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/handle.h"
#include "platform/zip/zip_entry.h"

// A larger directory is not read: it would have some two million members or more, and a look-up would take seconds.
inline constexpr std::uint64_t largestZipDirectory = std::uint64_t{256} << 20;

// Finds the directory of the archive in a file: the one of the last end record that leads to a place where every entry
// can be read. A zip64 record counts before the end record's own fields, and the place that is told before the one
// directly in front of the record. Neither the comment behind the record is looked at nor the counts of members and of
// volumes, for the directory's size says it all. An archive that was cut behind an archive among its members is none.
// All directories that are tried stay within largestZipDirectory together. Returns whether there is one.
bool ZAFindDirectory(UTHandle& file, ZADirectory& directory);

// The same, and why there is none.
ZASearch ZASearchDirectory(UTHandle& file, ZADirectory& directory);

// Finds the first entry of a name, by its bytes; without regard to the case of ASCII letters if anyCase. Returns
// whether there is one.
bool ZAFindEntry(UTHandle& file, const ZADirectory& directory, std::string_view name, bool anyCase, ZAEntry& entry);

// What is called with each entry's name. Returns whether the walk is to go on.
using ZANameVisitor = bool (*)(void* context, std::string_view name);

// Walks the directory once and calls visit with the name of each entry, in their order, until it returns false. A name is
// always whole, up to its 65,535 bytes, and lasts for the call; the walk takes memory only for one that is longer than
// its buffer of 16 KiB. Returns false when it broke off in front of a name that can't be had: the file fails, or memory
// is exhausted.
bool ZAVisitNames(UTHandle& file, const ZADirectory& directory, ZANameVisitor visit, void* context);

// Finds the first byte of a member's data by its local header. Returns whether the header stands where the entry says;
// the data may still lie behind the end of the file.
bool ZAFindData(UTHandle& file, const ZADirectory& directory, const ZAEntry& entry, std::uint64_t& offset);
