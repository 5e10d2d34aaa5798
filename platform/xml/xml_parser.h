// xml_parser.h - expat over a handle, with bounds: an XML document of any making costs a bounded amount of memory and
// time.
//
// Namespaces are worked out. No external entity and no external part of a DTD is ever loaded; internal entities are
// expanded.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fiid.h"

// The bounds of a document. It ends for the parser, as at an error, where it would go beyond one of them.
struct UTXmlLimits {
    // Bytes of XML text read in all.
    std::uint64_t text = std::uint64_t{64} << 20;
    // Bytes of one token, such as a tag or a comment. One of this size always passes, one of twice the size never.
    std::uint64_t token = std::uint64_t{1} << 20;
    // Bytes that expat holds at a time: names, elements that are open, the token.
    std::uint64_t memory = std::uint64_t{16} << 20;
    // Start tags and attributes, with those that have their value from the DTD.
    std::uint32_t tags = 4000000;
    // Entities and attributes that the DTD declares.
    std::uint32_t declarations = 1000;
    // Bytes of a namespace's address.
    std::size_t address = 1024;
    // Work: bytes that expat reads, copies and compares, as UTXmlWorkOf counts them. Elements, and attributes without a
    // prefix, cost about what their text is long. Before a prefixed attribute's name expat puts the namespace's
    // address: with addresses of 60 bytes, text full of such attributes costs four to five times its length.
    std::uint64_t work = 6 * (std::uint64_t{64} << 20);
    // Bytes of text with its expanded entities up to which they may multiply as they like.
    std::uint64_t expansion = std::uint64_t{8} << 20;
};

// What an element or a declaration that expat passes in a list counts for.
inline constexpr std::uint64_t xmlStepWork = 32;

// In the name of an element or attribute this stands between the namespace and the local name; a name in no namespace
// has none. No document can hold the character.
inline constexpr char xmlNamespaceEnd = '\x01';

struct UTXmlParser;

// What is called for each start tag, with pairs of attribute names and values ended by a null, and for each end tag,
// also the one that an empty-element tag implies.
struct UTXmlHandlers {
    void (*startTag)(void* context, const char* name, const char** attributes);
    void (*endTag)(void* context, const char* name);  // null when not wanted
};

// A parser that reads a handle from where it stands. Returns null when memory is exhausted. Only tests set other limits.
UTXmlParser* UTXmlNewParser(HIOFILE file, const UTXmlHandlers& handlers, void* context, const UTXmlLimits& limits = {});

// Goes on with the document. Returns true when a handler asked for a pause, and false when there is no more: at the
// end, at an error, when a handler asked for the end, and in every call from then on.
bool UTXmlGoOn(UTXmlParser& parser);

// For handlers: to pause behind this tag. Some may come before: the end of an empty-element tag, and, with some
// releases of expat, the next tag behind an entity that ends with this one.
void UTXmlPause(UTXmlParser& parser);

// For handlers: to end here for good.
void UTXmlStop(UTXmlParser& parser);

// The work so far:
//   the bytes of each portion that is given to expat, and those in front of it that expat scans again with it;
//   for each start tag the local name, and for each of its attributes the whole name and the value;
//   for each end tag the local name;
//   for each declaration of a namespace, an entity or an attribute its names and its value;
//   for each start tag once more the declarations of all attributes, and xmlStepWork for each of them, also for each
//   attribute and namespace that the tag itself has;
//   xmlStepWork for each open element, whenever expat moves the address of a namespace in memory.
std::uint64_t UTXmlWorkOf(const UTXmlParser& parser);

// Whether the process heap had no block for expat. The document has ended there.
bool UTXmlRanOutOfMemory(const UTXmlParser& parser);

void UTXmlFreeParser(UTXmlParser& parser);
