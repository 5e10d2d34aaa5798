// plain_tags.h - the tags of a plain XML document, told from its bytes without a parser.
//
// Most parts of packages are plain where they count: UTF-8 in ASCII characters, no DTD, no comments and no references in
// front of the tag that is wanted. For such a beginning these functions tell what the parser would tell. Whatever else
// they meet, also everything that is wrong, they leave to the parser: they say that the document is not plain.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// Bytes of a document's beginning that are looked at.
inline constexpr std::uint32_t plainTagBytes = 4096;

// An element by its namespace, empty for none, and its local name.
struct UTPlainElement {
    std::string_view namespaceUri;
    std::string_view localName;
};

// The first element of a document that begins with these bytes; nothing when it is not plain, or its start tag ends
// behind them.
std::optional<UTPlainElement> UTPlainFirstElement(std::string_view start);

// What is known of the first relationship of a type.
enum class UTPlainFind {
    NotPlain,  // the parser has to tell
    Absent,    // the part has none that is not external
    NoTarget,
    Found,
};

// Finds the first relationship of a type that is not external in a relationships part (see relationships.h) that begins
// with these bytes. target is what the part says, and lies in the bytes.
UTPlainFind UTPlainFindRelationship(std::string_view start, std::string_view type, std::string_view& target);

// ---- All tags ------------------------------------------------------------------------------------------------------

inline constexpr std::size_t mostPlainAttributes = 64;

struct UTPlainName {
    std::string_view prefix;  // empty for none
    std::string_view local;
};

struct UTPlainAttribute {
    UTPlainName name;
    std::string_view value;
};

// A start tag or an empty-element tag. Declarations of namespaces stand among its attributes.
struct UTPlainTag {
    UTPlainName name;
    bool empty;
    std::size_t attributeCount;
    UTPlainAttribute attributes[mostPlainAttributes];
};

// The value of the first attribute of a local name that declares no namespace; nothing when there is none.
std::optional<std::string_view> UTPlainFindAttribute(const UTPlainTag& tag, std::string_view localName);

// What is called for each tag. Returns whether the walk is to go on.
using UTPlainVisitor = bool (*)(void* context, const UTPlainTag& tag);

enum class UTPlainWalk {
    NotPlain,  // the parser has to tell; some tags may have been visited
    Ended,     // the document has no more elements in front of its end or an error
    Stopped,   // by the visitor
};

// Visits the first element of a document that begins with these bytes, and those directly in it, as long as they are all
// that there is: empty elements, which declare nothing.
UTPlainWalk UTPlainVisitTags(std::string_view start, UTPlainVisitor visit, void* context);
