// identify.h - one file, one record.
//
// A hash is that of all bytes of a file, and its answer is the same as without one. The file is read once for both; of a
// file that grows meanwhile, the bytes are hashed that it had when it was opened. A file of which a part can't be read has no
// hash to be told, so with one it is a failure, where without one its beginning may be enough. A signal that ends the
// program ends a hash under way: its record is a failure that is not to be told.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "scan/hash.h"
#include "scan/record.h"

struct IdentifyOptions {
    std::uint32_t flags = 0;             // those of fiid_options
    HashKind hash = HashKind::None;      // what Record::hash is to be
    std::uint64_t minSize = 0;           // in bytes; files and block devices that are smaller than that,
    std::uint64_t maxSize = UINT64_MAX;  // or larger than that, have no record. Streams have no size to look at
    bool state = false;                  // fill Record::state: as it was before the file was read
};

// Each of the three may be called in several threads at the same time. They return nothing for a file outside of the
// limits of size.

// Identifies what a walk found: path is what the record tells, and what begins in it at nameStart is the file, as an open
// directory has it, or the working directory for AT_FDCWD. Links to files are followed. A FIFO that has taken the file's
// place is a failure: it is opened to be refused, and never read.
std::optional<Record> IdentifyEntry(int directory, std::string path, std::size_t nameStart,
                                    const IdentifyOptions& options);

// Identifies whatever a path leads to: a FIFO too, which is read to its end, into a temporary file. A directory is a
// failure.
std::optional<Record> IdentifyNamedPath(std::string path, const IdentifyOptions& options);

// Identifies what standard input holds: a regular file or a block device in its place, as a whole, wherever its
// position is; anything else as a FIFO is.
std::optional<Record> IdentifyStandardInput(const IdentifyOptions& options);
