// relationships.cpp - reading a relationships part in one pass, and resolving targets.
//
//   Element       Relationship, in one of the two namespaces of relationship_names.h, at any depth
//   Type          what the relationship is for: a URI, compared byte by byte
//   Target        where it leads: a relative reference
//   TargetMode    "External" when it leads out of the package
#include "platform/xml/relationships.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <new>
#include <string>
#include <utility>

#include "platform/heap_allocator.h"
#include "platform/xml/relationship_names.h"
#include "platform/xml/xml_parser.h"

namespace {

using UTText = std::basic_string<char, std::char_traits<char>, UTHeapAllocator<char>>;
using UTTarget = std::optional<UTText>;

}  // namespace

struct UTRelationships {
    // In the order of the types: whatever they are, finding one takes few comparisons.
    std::map<UTText, UTTarget, std::less<>, UTHeapAllocator<std::pair<const UTText, UTTarget>>> targets;
    std::size_t bytes = 0;  // as relationshipsLimit counts them
};

namespace {

struct UTReading {
    UTRelationships* relationships;
    UTXmlParser* parser;
    bool outOfMemory;
};

// The value of an attribute in no namespace, or null.
const char* UTFindAttribute(const char** attributes, std::string_view name) {
    for (; *attributes != nullptr; attributes += 2) {
        if (name == attributes[0]) return attributes[1];
    }
    return nullptr;
}

void UTKeepRelationship(UTReading& reading, std::string_view type, const char* target) {
    UTRelationships& relationships = *reading.relationships;
    if (relationships.targets.find(type) != relationships.targets.end()) return;
    const std::string_view text = target != nullptr ? target : "";
    const std::size_t bytes = type.size() + text.size() + relationshipOverhead;  // a token's bytes: no overflow
    if (bytes > relationshipsLimit - relationships.bytes) {
        UTXmlStop(*reading.parser);
        return;
    }
    UTTarget& kept = relationships.targets[UTText(type)];
    if (target != nullptr) {
        kept.emplace(text);
        kept->resize(UTResolveTarget(kept->data(), kept->size()));
    }
    relationships.bytes += bytes;
}

// Whether the parser tells this name of the element.
bool UTIsRelationship(std::string_view name) {
    const std::size_t end = name.find(xmlNamespaceEnd);
    return end != std::string_view::npos && name.substr(end + 1) == relationshipName &&
           std::ranges::find(relationshipNamespaces, name.substr(0, end)) != std::end(relationshipNamespaces);
}

// Called by expat, through which no exception may pass.
void UTCheckElement(void* context, const char* name, const char** attributes) noexcept {
    UTReading& reading = *static_cast<UTReading*>(context);
    if (!UTIsRelationship(name)) return;
    const char* const type = UTFindAttribute(attributes, "Type");
    if (type == nullptr) return;
    const char* const mode = UTFindAttribute(attributes, "TargetMode");
    if (mode != nullptr && std::strcmp(mode, "External") == 0) return;
    try {
        UTKeepRelationship(reading, type, UTFindAttribute(attributes, "Target"));
    } catch (const std::bad_alloc&) {
        reading.outOfMemory = true;
        UTXmlStop(*reading.parser);
    }
}

// Returns false when memory is exhausted.
bool UTReadInto(UTRelationships& relationships, HIOFILE part) {
    UTReading reading = {&relationships, nullptr, false};
    reading.parser = UTXmlNewParser(part, {UTCheckElement, nullptr}, &reading);
    if (reading.parser == nullptr) return false;
    static_cast<void>(UTXmlGoOn(*reading.parser));  // never pauses
    const bool outOfMemory = reading.outOfMemory || UTXmlRanOutOfMemory(*reading.parser);
    UTXmlFreeParser(*reading.parser);
    return !outOfMemory;
}

// Works out the segments '.' and '..'. What is kept always ends with a '/' while segments follow.
std::size_t UTResolveDots(char* target, std::size_t length) {
    std::size_t kept = 0;
    for (std::size_t start = 0; start < length;) {
        const std::string_view rest(target + start, length - start);
        const std::string_view segment = rest.substr(0, rest.find('/'));
        const std::size_t step = std::min(segment.size() + 1, rest.size());  // with the slash
        if (segment == "..") {
            if (kept > 0) --kept;
            while (kept > 0 && target[kept - 1] != '/') --kept;
        } else if (segment != ".") {
            std::memmove(target + kept, target + start, step);
            kept += step;
        }
        start += step;
    }
    return kept;
}

// The value of a hexadecimal digit, or 16.
std::uint32_t UTHexValue(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<std::uint32_t>(digit - '0');
    if (digit >= 'A' && digit <= 'F') return static_cast<std::uint32_t>(digit - 'A' + 10);
    if (digit >= 'a' && digit <= 'f') return static_cast<std::uint32_t>(digit - 'a' + 10);
    return 16;
}

std::size_t UTDecodeEscapes(char* target, std::size_t length) {
    std::size_t kept = 0;
    for (std::size_t index = 0; index < length;) {
        if (target[index] == '%' && length - index > 2) {
            const std::uint32_t high = UTHexValue(target[index + 1]);
            const std::uint32_t low = UTHexValue(target[index + 2]);
            if (high < 16 && low < 16) {
                target[kept++] = static_cast<char>(high << 4 | low);
                index += 3;
                continue;
            }
        }
        target[kept++] = target[index++];
    }
    return kept;
}

}  // namespace

UTRelationships* UTReadRelationships(HIOFILE part) {
    auto* const relationships = UTNewRecord<UTRelationships>();
    if (relationships == nullptr || UTReadInto(*relationships, part)) return relationships;
    UTDeleteRecord(*relationships);
    return nullptr;
}

std::optional<std::string_view> UTFindTarget(const UTRelationships& relationships, std::string_view type) {
    const auto found = relationships.targets.find(type);
    if (found == relationships.targets.end() || !found->second) return std::nullopt;
    return *found->second;
}

void UTFreeRelationships(UTRelationships& relationships) { UTDeleteRecord(relationships); }

std::size_t UTResolveTarget(char* target, std::size_t length) {
    if (length > 0 && target[0] == '/') {
        --length;
        std::memmove(target, target + 1, length);
    }
    return UTDecodeEscapes(target, UTResolveDots(target, length));
}
