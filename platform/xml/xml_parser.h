// xml_parser.h - expat over a handle, with bounds: an XML document of any making costs a bounded amount of memory and
// time.
//
// Namespaces are worked out. No external entity and no external part of a DTD is ever loaded; internal entities are
// expanded.
#pragma once

#include <cstdint>

#include "fiid.h"

// A document ends for the parser, as at an error, where it would go beyond one of these.

// Bytes of XML text read in all.
inline constexpr std::uint64_t xmlTextLimit = std::uint64_t{64} << 20;
// Bytes of one token, such as a tag or a comment. One of this size always passes, one of twice the size never.
inline constexpr std::uint64_t xmlTokenLimit = std::uint64_t{1} << 20;
// Bytes that expat holds at a time: names, elements that are open, the token.
inline constexpr std::uint64_t xmlMemoryLimit = std::uint64_t{16} << 20;
// Start tags and attributes, with those that have their value from the DTD.
inline constexpr std::uint32_t xmlTagLimit = 4000000;
// Entities and attributes that the DTD declares.
inline constexpr std::uint32_t xmlDeclarationLimit = 1000;

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

// A parser that reads a handle from where it stands. Returns null when memory is exhausted.
UTXmlParser* UTXmlNewParser(HIOFILE file, const UTXmlHandlers& handlers, void* context);

// Goes on with the document. Returns true when a handler asked for a pause, and false when there is no more: at the
// end, at an error, when a handler asked for the end, and in every call from then on.
bool UTXmlGoOn(UTXmlParser& parser);

// For handlers: to pause behind this tag. An empty-element tag's end still comes.
void UTXmlPause(UTXmlParser& parser);

// For handlers: to end here for good.
void UTXmlStop(UTXmlParser& parser);

void UTXmlFreeParser(UTXmlParser& parser);
