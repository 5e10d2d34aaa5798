// basis.h - what an answer stands on.
#pragma once

#include <cstdint>

enum class FIBasis : std::uint8_t {
    None,        // nothing was found that tells the format
    Signature,   // bytes at known places
    Storage,     // a compound storage: its class identifier, its streams
    Package,     // a ZIP archive: its members, the types of its parts
    Structure,   // the structure behind the first bytes holds: lengths, checksums, records, a grammar
    Statistics,  // how often which bytes or codes occur
    Extension,   // the name's extension decides, and the contents do not speak against it
    Text,        // the contents are text, of whatever kind
};
