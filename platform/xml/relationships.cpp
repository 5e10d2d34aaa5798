// relationships.cpp - finding a relationship in a relationships part, and resolving its target.
//
//   Element       Relationship, in one of the two namespaces below, at any depth
//   Type          what the relationship is for: a URI, compared byte by byte
//   Target        where it leads: a relative reference
//   TargetMode    "External" when it leads out of the package
#include "platform/xml/relationships.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/base_utility.h"
#include "platform/xml/xml_parser.h"

namespace {

// The element's names as the parser tells them: of the standard, and of its draft.
constexpr std::string_view relationshipElements[] = {
    "http://schemas.openxmlformats.org/package/2006/relationships\x01Relationship",
    "http://schemas.microsoft.com/package/2005/06/relationships\x01Relationship",
};
static_assert(relationshipElements[0].find(xmlNamespaceEnd) != std::string_view::npos);

struct UTSearch {
    std::string_view type;
    UTXmlParser* parser;
    UTPartName found;
};

// The value of an attribute in no namespace, or null.
const char* UTFindAttribute(const char** attributes, std::string_view name) {
    for (; *attributes != nullptr; attributes += 2) {
        if (name == attributes[0]) return attributes[1];
    }
    return nullptr;
}

void UTCheckElement(void* context, const char* name, const char** attributes) {
    UTSearch& search = *static_cast<UTSearch*>(context);
    if (std::ranges::find(relationshipElements, std::string_view(name)) == std::end(relationshipElements)) return;
    const char* const type = UTFindAttribute(attributes, "Type");
    if (type == nullptr || search.type != type) return;
    const char* const mode = UTFindAttribute(attributes, "TargetMode");
    if (mode != nullptr && std::strcmp(mode, "External") == 0) return;
    UTXmlStop(*search.parser);
    const char* const target = UTFindAttribute(attributes, "Target");
    if (target == nullptr) return;
    const std::size_t length = std::strlen(target);
    search.found.text = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, length + 1));
    if (search.found.text == nullptr) return;
    std::copy_n(target, length, search.found.text);
    search.found.length = length;
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

UTPartName UTFindRelationshipTarget(HIOFILE relationships, std::string_view type) {
    UTSearch search = {type, nullptr, {nullptr, 0}};
    search.parser = UTXmlNewParser(relationships, {UTCheckElement, nullptr}, &search);
    if (search.parser == nullptr) return search.found;
    static_cast<void>(UTXmlGoOn(*search.parser));  // never pauses
    UTXmlFreeParser(*search.parser);
    if (search.found.text != nullptr) search.found.length = UTResolveTarget(search.found.text, search.found.length);
    return search.found;
}

void UTFreePartName(const UTPartName& name) { HeapFree(GetProcessHeap(), 0, name.text); }

std::size_t UTResolveTarget(char* target, std::size_t length) {
    if (length > 0 && target[0] == '/') {
        --length;
        std::memmove(target, target + 1, length);
    }
    return UTDecodeEscapes(target, UTResolveDots(target, length));
}
