// xml_reader.cpp - the XML reader: tags one at a time, elements told by numbers.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

#include "platform/base_utility.h"
#include "platform/heap_allocator.h"
#include "platform/xml/xml_parser.h"

namespace {

// The registered names of one namespace; in the order of registration.
struct UTXmlTagMap {
    const char* namespaceUri = nullptr;
    std::uint32_t namespaceId = 0;
    const UTXmlTagPair* pairs = nullptr;
    std::uint32_t pairCount = 0;
    UTXmlTagMap* next = nullptr;
};

constexpr std::int16_t success = 0;
constexpr std::int16_t failure = -1;

}  // namespace

struct UTXmlReader {
    UTXmlParser* parser = nullptr;
    UTXmlTagMap* firstMap = nullptr;
    UTXmlTagMap* lastMap = nullptr;
    UTVector<UTXmlTag> tags;  // that came until the parser paused
    std::size_t tagsDelivered = 0;
};

namespace {

// Finds the first registered pair with the namespace and the local name of an element.
UTXmlTag UTXmlTellElement(const UTXmlReader& reader, const char* name) {
    const char* const end = std::strchr(name, xmlNamespaceEnd);
    const std::string_view namespaceUri =
        end != nullptr ? std::string_view(name, static_cast<std::size_t>(end - name)) : "";
    const std::string_view localName = end != nullptr ? end + 1 : name;
    for (const UTXmlTagMap* map = reader.firstMap; map != nullptr; map = map->next) {
        if (namespaceUri != map->namespaceUri) continue;
        for (std::uint32_t index = 0; index < map->pairCount; ++index) {
            if (localName == map->pairs[index].name) return {map->namespaceId, map->pairs[index].tagId, 0};
        }
    }
    return {0, UTXmlUnknownTag, 0};
}

// Called by expat, through which no exception may pass.
void UTXmlQueueTag(UTXmlReader& reader, const char* name, std::uint16_t flags) noexcept {
    UTXmlTag tag = UTXmlTellElement(reader, name);
    tag.flags = flags;
    try {
        reader.tags.push_back(tag);
        UTXmlPause(*reader.parser);
    } catch (const std::bad_alloc&) {
        UTXmlStop(*reader.parser);
    }
}

void UTXmlQueueStart(void* context, const char* name, const char**) {
    UTXmlQueueTag(*static_cast<UTXmlReader*>(context), name, 0);
}

void UTXmlQueueEnd(void* context, const char* name) {
    UTXmlQueueTag(*static_cast<UTXmlReader*>(context), name, UTXmlFlagEndTag);
}

}  // namespace

extern "C" {

std::int16_t UTXMLInit(HUTXML* xml, HIOFILE handle) {
    *xml = nullptr;
    if (handle == nullptr) return failure;
    auto* const reader = UTNewRecord<UTXmlReader>();
    if (reader == nullptr) return failure;
    reader->parser = UTXmlNewParser(handle, {UTXmlQueueStart, UTXmlQueueEnd}, reader);
    if (reader->parser == nullptr) {
        UTDeleteRecord(*reader);
        return failure;
    }
    *xml = reader;
    return success;
}

std::int16_t UTXMLAddTagMap(HUTXML* xml, const char* namespaceUri, std::uint32_t namespaceId, std::uint32_t,
                            const UTXmlTagPair* pairs, std::uint32_t pairCount) {
    auto* const map = UTNewRecord<UTXmlTagMap>();
    if (map == nullptr) return failure;
    *map = {namespaceUri, namespaceId, pairs, pairCount, nullptr};
    UTXmlReader& reader = **xml;
    (reader.lastMap != nullptr ? reader.lastMap->next : reader.firstMap) = map;
    reader.lastMap = map;
    return success;
}

std::int16_t UTXMLReadNextTag(HUTXML* xml, UTXmlTag* tag, std::uint32_t*) {
    UTXmlReader& reader = **xml;
    while (reader.tagsDelivered == reader.tags.size()) {
        reader.tagsDelivered = 0;
        reader.tags.clear();
        if (!UTXmlGoOn(*reader.parser) && reader.tags.empty()) return failure;
    }
    *tag = reader.tags[reader.tagsDelivered++];
    return success;
}

void UTXMLDeInit(HUTXML* xml) {
    UTXmlReader* const reader = *xml;
    *xml = nullptr;
    if (reader == nullptr) return;
    UTXmlFreeParser(*reader->parser);
    for (UTXmlTagMap* map = reader->firstMap; map != nullptr;) {
        UTXmlTagMap* const next = map->next;
        UTDeleteRecord(*map);
        map = next;
    }
    UTDeleteRecord(*reader);
}

}  // extern "C"
