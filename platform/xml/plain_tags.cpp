// plain_tags.cpp - a scanner for plain documents.
//
// It takes only what it can be sure of. In the terms of XML 1.0 (fifth edition) and Namespaces in XML 1.0:
//
//   declaration   version "1.0", then at most encoding "UTF-8" and standalone, in this order
//   white space   between tags; no text, comment, instruction or DTD
//   names         ASCII letters, digits, '_', '-' and '.', with at most one colon; a prefix does not begin with "xml"
//   values        printable ASCII without '<' and '&'
//   attributes    no name twice; of prefixed ones not even the local name, which two prefixes might put into one
//                 namespace
//   namespaces    declared in the first tag only; addresses neither empty, nor longer than the parser's bound, nor those
//                 that are reserved; every prefix that is used is declared
//
// All that is well-formed, and costs the parser so little that none of its bounds is near.
#include "platform/xml/plain_tags.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "platform/xml/relationship_names.h"
#include "platform/xml/xml_parser.h"

namespace {

constexpr std::size_t longestAddress = UTXmlLimits{}.address;

// ---- Pieces --------------------------------------------------------------------------------------------------------

// Each of these takes a piece off the front of the rest, and returns whether it was there.

bool UTTakeText(std::string_view& rest, std::string_view text) {
    if (!rest.starts_with(text)) return false;
    rest.remove_prefix(text.size());
    return true;
}

bool UTTakeCharacter(std::string_view& rest, char character) {
    if (rest.empty() || rest[0] != character) return false;
    rest.remove_prefix(1);
    return true;
}

bool UTIsSpace(char character) {
    return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

bool UTTakeSpace(std::string_view& rest) {
    std::size_t length = 0;
    while (length < rest.size() && UTIsSpace(rest[length])) ++length;
    rest.remove_prefix(length);
    return length > 0;
}

// What a character may be in: each a bit.
constexpr std::uint8_t startsName = 1;
constexpr std::uint8_t inName = 2;
constexpr std::uint8_t inDoubleQuotes = 4;
constexpr std::uint8_t inSingleQuotes = 8;

struct UTCharacterTable {
    std::uint8_t uses[256];
};

constexpr UTCharacterTable UTMakeCharacterTable() {
    UTCharacterTable table = {};
    for (std::uint32_t code = 0x20; code < 0x7F; ++code) {
        const bool inValue = code != '<' && code != '&';
        if (inValue && code != '"') table.uses[code] |= inDoubleQuotes;
        if (inValue && code != '\'') table.uses[code] |= inSingleQuotes;
        const bool letter = (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') || code == '_';
        if (letter) table.uses[code] |= startsName | inName;
        if ((code >= '0' && code <= '9') || code == '-' || code == '.') table.uses[code] |= inName;
    }
    return table;
}

constexpr UTCharacterTable characters = UTMakeCharacterTable();

bool UTMayBe(char character, std::uint8_t use) {
    return (characters.uses[static_cast<std::uint8_t>(character)] & use) != 0;
}

// Takes the characters that may be used so, perhaps none.
std::string_view UTTakeWhile(std::string_view& rest, std::uint8_t use) {
    const char* const begin = rest.data();
    const char* const end = begin + rest.size();
    const char* place = begin;
    while (place != end && UTMayBe(*place, use)) ++place;
    const auto length = static_cast<std::size_t>(place - begin);
    const std::string_view taken = rest.substr(0, length);
    rest.remove_prefix(length);
    return taken;
}

// A name without a colon.
bool UTTakeSimpleName(std::string_view& rest, std::string_view& name) {
    if (rest.empty() || !UTMayBe(rest[0], startsName)) return false;
    name = UTTakeWhile(rest, inName);
    return true;
}

bool UTTakeName(std::string_view& rest, UTPlainName& name) {
    name.prefix = {};
    if (!UTTakeSimpleName(rest, name.local)) return false;
    if (!UTTakeCharacter(rest, ':')) return true;
    name.prefix = name.local;
    return UTTakeSimpleName(rest, name.local);
}

// A value in quotes of either kind.
bool UTTakeValue(std::string_view& rest, std::string_view& value) {
    if (rest.empty() || (rest[0] != '"' && rest[0] != '\'')) return false;
    const char quote = rest[0];
    rest.remove_prefix(1);
    value = UTTakeWhile(rest, quote == '"' ? inDoubleQuotes : inSingleQuotes);
    return UTTakeCharacter(rest, quote);
}

// An equals sign and a value.
bool UTTakeAssigned(std::string_view& rest, std::string_view& value) {
    UTTakeSpace(rest);
    if (!UTTakeCharacter(rest, '=')) return false;
    UTTakeSpace(rest);
    return UTTakeValue(rest, value);
}

// The XML declaration, if there is one.
bool UTTakeDeclaration(std::string_view& rest) {
    static_cast<void>(UTTakeText(rest, "\xEF\xBB\xBF"));
    if (!rest.starts_with("<?")) return true;
    std::string_view value;
    if (!UTTakeText(rest, "<?xml") || !UTTakeSpace(rest)) return false;
    if (!UTTakeText(rest, "version") || !UTTakeAssigned(rest, value) || value != "1.0") return false;
    bool space = UTTakeSpace(rest);
    if (space && UTTakeText(rest, "encoding")) {
        if (!UTTakeAssigned(rest, value) || (value != "UTF-8" && value != "utf-8")) return false;
        space = UTTakeSpace(rest);
    }
    if (space && UTTakeText(rest, "standalone")) {
        if (!UTTakeAssigned(rest, value) || (value != "yes" && value != "no")) return false;
        UTTakeSpace(rest);
    }
    return UTTakeText(rest, "?>");
}

// ---- Tags ----------------------------------------------------------------------------------------------------------

bool UTIsReserved(std::string_view prefix) {
    const auto lower = [](char letter) { return letter | 0x20; };
    return prefix.size() >= 3 && lower(prefix[0]) == 'x' && lower(prefix[1]) == 'm' && lower(prefix[2]) == 'l';
}

bool UTDeclaresPrefix(const UTPlainAttribute& attribute) { return attribute.name.prefix == "xmlns"; }

bool UTDeclaresDefault(const UTPlainAttribute& attribute) {
    return attribute.name.prefix.empty() && attribute.name.local == "xmlns";
}

// Whether two attributes may be one and the same.
bool UTMayClash(const UTPlainAttribute& one, const UTPlainAttribute& other) {
    // Most names of a tag differ in their last character.
    if (one.name.local.back() != other.name.local.back() || one.name.local != other.name.local) return false;
    const bool bothPrefixed = !one.name.prefix.empty() && !other.name.prefix.empty();
    if (bothPrefixed) return UTDeclaresPrefix(one) == UTDeclaresPrefix(other);
    return one.name.prefix.empty() && other.name.prefix.empty();
}

bool UTTakeAttribute(std::string_view& rest, UTPlainTag& tag) {
    if (tag.attributeCount == mostPlainAttributes) return false;
    UTPlainAttribute& attribute = tag.attributes[tag.attributeCount];
    if (!UTTakeName(rest, attribute.name) || !UTTakeAssigned(rest, attribute.value)) return false;
    for (std::size_t index = 0; index < tag.attributeCount; ++index) {
        if (UTMayClash(attribute, tag.attributes[index])) return false;
    }
    ++tag.attributeCount;
    return true;
}

// A start tag or an empty-element tag, from its '<' to its '>'.
bool UTTakeTag(std::string_view& rest, UTPlainTag& tag) {
    tag.attributeCount = 0;
    if (!UTTakeCharacter(rest, '<') || !UTTakeName(rest, tag.name)) return false;
    for (;;) {
        const bool space = UTTakeSpace(rest);
        tag.empty = UTTakeText(rest, "/>");
        if (tag.empty || UTTakeCharacter(rest, '>')) return true;
        if (!space || !UTTakeAttribute(rest, tag)) return false;
    }
}

// ---- Namespaces ----------------------------------------------------------------------------------------------------

bool UTIsPlainAddress(std::string_view address) {
    return !address.empty() && address.size() <= longestAddress && !address.starts_with("http://www.w3.org/");
}

// Whether what the first tag declares is plain.
bool UTDeclaresPlainly(const UTPlainTag& first) {
    return std::all_of(first.attributes, first.attributes + first.attributeCount, [](const auto& attribute) {
        if (UTDeclaresDefault(attribute)) return UTIsPlainAddress(attribute.value);
        if (!UTDeclaresPrefix(attribute)) return true;
        return !UTIsReserved(attribute.name.local) && UTIsPlainAddress(attribute.value);
    });
}

// Finds what a prefix means, or no prefix, by the declarations of the first tag. Returns false for a prefix that has none.
bool UTFindNamespace(const UTPlainTag& first, std::string_view prefix, std::string_view& address) {
    address = {};
    for (std::size_t index = 0; index < first.attributeCount; ++index) {
        const UTPlainAttribute& attribute = first.attributes[index];
        const bool meant = prefix.empty() ? UTDeclaresDefault(attribute)
                                          : UTDeclaresPrefix(attribute) && attribute.name.local == prefix;
        if (!meant) continue;
        address = attribute.value;
        return true;
    }
    return prefix.empty();
}

// Whether each prefixed attribute has a namespace. Declarations are looked for in the first tag.
bool UTHasNamespaces(const UTPlainTag& tag, const UTPlainTag& first) {
    return std::all_of(tag.attributes, tag.attributes + tag.attributeCount, [&](const auto& attribute) {
        std::string_view address;
        return attribute.name.prefix.empty() || UTDeclaresPrefix(attribute) ||
               UTFindNamespace(first, attribute.name.prefix, address);
    });
}

bool UTDeclaresNothing(const UTPlainTag& tag) {
    return std::none_of(tag.attributes, tag.attributes + tag.attributeCount, [](const auto& attribute) {
        return UTDeclaresPrefix(attribute) || UTDeclaresDefault(attribute);
    });
}

// Takes all up to the first tag, and that.
bool UTTakeFirstTag(std::string_view& rest, UTPlainTag& first, UTPlainElement& element) {
    if (!UTTakeDeclaration(rest)) return false;
    UTTakeSpace(rest);
    if (!UTTakeTag(rest, first) || !UTDeclaresPlainly(first) || !UTHasNamespaces(first, first)) return false;
    element.localName = first.name.local;
    return UTFindNamespace(first, first.name.prefix, element.namespaceUri);
}

enum class UTInner { Tag, End, NotPlain };

// Takes the next tag of those that the first one holds, or what ends them.
UTInner UTTakeInnerTag(std::string_view& rest, const UTPlainTag& first, UTPlainTag& tag, UTPlainElement& element) {
    UTTakeSpace(rest);
    // The first element ends here, or the document is wrong: no more elements come.
    if (UTTakeText(rest, "</")) return UTInner::End;
    const bool plain = UTTakeTag(rest, tag) && tag.empty && UTDeclaresNothing(tag) && UTHasNamespaces(tag, first) &&
                       UTFindNamespace(first, tag.name.prefix, element.namespaceUri);
    element.localName = tag.name.local;
    return plain ? UTInner::Tag : UTInner::NotPlain;
}

// ---- Relationships -------------------------------------------------------------------------------------------------

bool UTIsRelationship(const UTPlainElement& element) {
    return element.localName == relationshipName &&
           std::ranges::find(relationshipNamespaces, element.namespaceUri) != std::end(relationshipNamespaces);
}

// The value of an attribute in no namespace; nothing when there is none.
std::optional<std::string_view> UTFindPlainAttribute(const UTPlainTag& tag, std::string_view name) {
    for (std::size_t index = 0; index < tag.attributeCount; ++index) {
        const UTPlainAttribute& attribute = tag.attributes[index];
        if (attribute.name.prefix.empty() && attribute.name.local == name) return attribute.value;
    }
    return std::nullopt;
}

}  // namespace

std::optional<UTPlainElement> UTPlainFirstElement(std::string_view start) {
    UTPlainTag first;
    UTPlainElement element;
    if (!UTTakeFirstTag(start, first, element)) return std::nullopt;
    return element;
}

UTPlainFind UTPlainFindRelationship(std::string_view start, std::string_view type, std::string_view& target) {
    UTPlainTag first;
    UTPlainTag tag;
    UTPlainElement element;
    std::string_view& rest = start;
    if (!UTTakeFirstTag(rest, first, element) || first.empty || UTIsRelationship(element)) return UTPlainFind::NotPlain;
    UTInner step;
    while ((step = UTTakeInnerTag(rest, first, tag, element)) == UTInner::Tag) {
        if (!UTIsRelationship(element) || UTFindPlainAttribute(tag, "Type") != type) continue;
        if (UTFindPlainAttribute(tag, "TargetMode") == "External") continue;
        const std::optional<std::string_view> found = UTFindPlainAttribute(tag, "Target");
        if (!found) return UTPlainFind::NoTarget;
        target = *found;
        return UTPlainFind::Found;
    }
    return step == UTInner::End ? UTPlainFind::Absent : UTPlainFind::NotPlain;
}

std::optional<std::string_view> UTPlainFindAttribute(const UTPlainTag& tag, std::string_view localName) {
    for (std::size_t index = 0; index < tag.attributeCount; ++index) {
        const UTPlainAttribute& attribute = tag.attributes[index];
        if (attribute.name.local == localName && !UTDeclaresPrefix(attribute) && !UTDeclaresDefault(attribute)) {
            return attribute.value;
        }
    }
    return std::nullopt;
}

UTPlainWalk UTPlainVisitTags(std::string_view start, UTPlainVisitor visit, void* context) {
    UTPlainTag first;
    UTPlainTag tag;
    UTPlainElement element;
    if (!UTTakeFirstTag(start, first, element)) return UTPlainWalk::NotPlain;
    if (!visit(context, first)) return UTPlainWalk::Stopped;
    if (first.empty) return UTPlainWalk::Ended;
    UTInner step;
    while ((step = UTTakeInnerTag(start, first, tag, element)) == UTInner::Tag) {
        if (!visit(context, tag)) return UTPlainWalk::Stopped;
    }
    return step == UTInner::End ? UTPlainWalk::Ended : UTPlainWalk::NotPlain;
}
