// xml_reader.cpp - the XML reader: tags one at a time, elements told by numbers.
//
// The first tag decides most documents. Where nobody sees how the handle is read, a plain one is told from the first bytes
// and the parser is made only if more is asked for; it starts from the beginning then.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

#include "platform/base_utility.h"
#include "platform/handle.h"
#include "platform/heap_allocator.h"
#include "platform/xml/plain_tags.h"
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

// So many maps lie in the reader itself: those by which a package's main part is told.
constexpr std::uint32_t ownMapCount = 12;

}  // namespace

struct UTXmlReader {
    HIOFILE file = nullptr;
    UTXmlParser* parser = nullptr;  // null until it is needed
    bool firstTold = false;         // whether the first tag was told without the parser
    UTXmlTagMap* firstMap = nullptr;
    UTXmlTagMap* lastMap = nullptr;
    std::uint32_t ownMapsUsed = 0;
    UTXmlTagMap ownMaps[ownMapCount];
    UTVector<UTXmlTag> tags;  // that came until the parser paused
    std::size_t tagsDelivered = 0;
};

namespace {

// Finds the first registered pair with the namespace and the local name of an element.
UTXmlTag UTXmlTellElement(const UTXmlReader& reader, std::string_view namespaceUri, std::string_view localName) {
    for (const UTXmlTagMap* map = reader.firstMap; map != nullptr; map = map->next) {
        if (namespaceUri != map->namespaceUri) continue;
        for (std::uint32_t index = 0; index < map->pairCount; ++index) {
            if (localName == map->pairs[index].name) return {map->namespaceId, map->pairs[index].tagId, 0};
        }
    }
    return {0, UTXmlUnknownTag, 0};
}

// The same for an element's name as the parser tells it.
UTXmlTag UTXmlTellName(const UTXmlReader& reader, const char* name) {
    const char* const end = std::strchr(name, xmlNamespaceEnd);
    if (end == nullptr) return UTXmlTellElement(reader, "", name);
    return UTXmlTellElement(reader, std::string_view(name, static_cast<std::size_t>(end - name)), end + 1);
}

// Called by expat, through which no exception may pass.
void UTXmlQueueTag(UTXmlReader& reader, const char* name, std::uint16_t flags) noexcept {
    UTXmlTag tag = UTXmlTellName(reader, name);
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

bool UTXmlMakeParser(UTXmlReader& reader) {
    reader.parser = UTXmlNewParser(reader.file, {UTXmlQueueStart, UTXmlQueueEnd}, &reader);
    return reader.parser != nullptr;
}

// Tells the first tag of a plain document. It does not move the handle. Most documents' first tags are short: the rest of
// the bytes is looked at only where it is needed.
bool UTXmlTellFirst(const UTXmlReader& reader, UTXmlTag& tag) {
    constexpr std::uint32_t portions[] = {1280, plainTagBytes};
    UTHandle& handle = *UTFindHandle(reader.file);
    char bytes[plainTagBytes];
    std::uint32_t filled = 0;
    for (const std::uint32_t wanted : portions) {
        std::uint32_t came = 0;
        if (UTReadAt(handle, handle.position + filled, bytes + filled, wanted - filled, came) != 0) came = 0;
        filled += came;
        const std::optional<UTPlainElement> first = UTPlainFirstElement({bytes, filled});
        if (first) {
            tag = UTXmlTellElement(reader, first->namespaceUri, first->localName);
            return true;
        }
        if (filled < wanted) return false;
    }
    return false;
}

// The next tag that the parser tells.
std::int16_t UTXmlParseTag(UTXmlReader& reader, UTXmlTag& tag) {
    while (reader.tagsDelivered == reader.tags.size()) {
        reader.tagsDelivered = 0;
        reader.tags.clear();
        if (!UTXmlGoOn(*reader.parser) && reader.tags.empty()) return failure;
    }
    tag = reader.tags[reader.tagsDelivered++];
    return success;
}

}  // namespace

extern "C" {

std::int16_t UTXMLInit(HUTXML* xml, HIOFILE handle) {
    *xml = nullptr;
    if (handle == nullptr) return failure;
    auto* const reader = UTNewRecord<UTXmlReader>();
    if (reader == nullptr) return failure;
    reader->file = handle;
    const UTHandle* const known = UTFindHandle(handle);
    const bool waits = known != nullptr && UTIsUnseen(*known);
    if (!waits && !UTXmlMakeParser(*reader)) {
        UTDeleteRecord(*reader);
        return failure;
    }
    *xml = reader;
    return success;
}

std::int16_t UTXMLAddTagMap(HUTXML* xml, const char* namespaceUri, std::uint32_t namespaceId, std::uint32_t,
                            const UTXmlTagPair* pairs, std::uint32_t pairCount) {
    UTXmlReader& reader = **xml;
    const bool fits = reader.ownMapsUsed < ownMapCount;
    auto* const map = fits ? &reader.ownMaps[reader.ownMapsUsed] : UTNewRecord<UTXmlTagMap>();
    if (map == nullptr) return failure;
    if (fits) ++reader.ownMapsUsed;
    *map = {namespaceUri, namespaceId, pairs, pairCount, nullptr};
    (reader.lastMap != nullptr ? reader.lastMap->next : reader.firstMap) = map;
    reader.lastMap = map;
    return success;
}

std::int16_t UTXMLReadNextTag(HUTXML* xml, UTXmlTag* tag, std::uint32_t*) {
    UTXmlReader& reader = **xml;
    if (reader.parser == nullptr) {
        if (!reader.firstTold && UTXmlTellFirst(reader, *tag)) {
            reader.firstTold = true;
            return success;
        }
        if (!UTXmlMakeParser(reader)) return failure;
        if (reader.firstTold && UTXmlParseTag(reader, *tag) != success) return failure;
    }
    return UTXmlParseTag(reader, *tag);
}

void UTXMLDeInit(HUTXML* xml) {
    UTXmlReader* const reader = *xml;
    *xml = nullptr;
    if (reader == nullptr) return;
    if (reader->parser != nullptr) UTXmlFreeParser(*reader->parser);
    UTXmlTagMap* further = reader->ownMapsUsed == ownMapCount ? reader->ownMaps[ownMapCount - 1].next : nullptr;
    while (further != nullptr) {
        UTXmlTagMap* const next = further->next;
        UTDeleteRecord(*further);
        further = next;
    }
    UTDeleteRecord(*reader);
}

}  // extern "C"
