// plain_tags_fuzz.cpp - XML documents, told from their bytes and by the parser.
//
// What is told without the parser of a document's beginning is what the parser tells of the whole: the first element, all
// tags, and of each type of relationships the first one. The XML reader gives the same tags over a handle of the platform layer,
// where it may tell the first one so, and over a handle of the target's own, where the parser tells them all.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/laws.h"
#include "platform/base_utility.h"
#include "platform/xml/plain_tags.h"
#include "platform/xml/relationships.h"
#include "platform/xml/xml_parser.h"

namespace {

constexpr std::size_t mostTags = 64;
constexpr std::size_t mostTypes = 8;

// ---- What the parser tells -----------------------------------------------------------------------------------------

struct ParsedDocument {
    UTXmlParser* parser = nullptr;
    std::size_t tags = 0;
    std::string first;            // the name of the first element; empty when there is none
    std::set<std::string> types;  // values of attributes named Type
    std::string text;             // all tags: local names, and those and the values of their attributes
};

constexpr char textEnd = '\x02';  // no document can hold it

std::string_view LocalName(std::string_view name) { return name.substr(name.find(xmlNamespaceEnd) + 1); }

void AddText(std::string& text, std::string_view more) {
    text += more;
    text += textEnd;
}

void TakeStartTag(void* context, const char* name, const char** attributes) {
    ParsedDocument& document = *static_cast<ParsedDocument*>(context);
    if (document.tags == 0) document.first = name;
    AddText(document.text, LocalName(name));
    for (; *attributes != nullptr; attributes += 2) {
        if (attributes[0] == std::string_view("Type")) document.types.insert(attributes[1]);
        AddText(document.text, LocalName(attributes[0]));
        AddText(document.text, attributes[1]);
    }
    if (++document.tags == mostTags || document.types.size() == mostTypes) UTXmlStop(*document.parser);
}

ParsedDocument Parse(std::string_view bytes) {
    FuzzHandle handle = FuzzMakeHandle(bytes);
    ParsedDocument document;
    document.parser = UTXmlNewParser(&handle.file, {TakeStartTag, nullptr}, &document);
    static_cast<void>(UTXmlGoOn(*document.parser));
    UTXmlFreeParser(*document.parser);
    document.parser = nullptr;
    return document;
}

// ---- The first element ---------------------------------------------------------------------------------------------

void CheckFirst(std::string_view start, const ParsedDocument& document) {
    const std::optional<UTPlainElement> first = UTPlainFirstElement(start);
    if (!first) return;
    std::string name(first->namespaceUri);
    if (!name.empty()) name += xmlNamespaceEnd;
    name += first->localName;
    FuzzRequire(name == document.first, "UTPlainFirstElement", "not the parser's first element");
}

// ---- All tags ------------------------------------------------------------------------------------------------------

struct VisitedTags {
    std::size_t tags = 0;
    std::string text;
};

bool TakePlainTag(void* context, const UTPlainTag& tag) {
    auto& visited = *static_cast<VisitedTags*>(context);
    AddText(visited.text, tag.name.local);
    for (std::size_t index = 0; index < tag.attributeCount; ++index) {
        const auto& [name, value] = tag.attributes[index];
        if (name.prefix == "xmlns" || (name.prefix.empty() && name.local == "xmlns")) continue;
        AddText(visited.text, name.local);
        AddText(visited.text, value);
    }
    return ++visited.tags < mostTags;
}

void CheckTags(std::string_view start, const ParsedDocument& document) {
    VisitedTags visited;
    const UTPlainWalk walk = UTPlainVisitTags(start, TakePlainTag, &visited);
    if (walk == UTPlainWalk::NotPlain) return;
    const std::string_view told = document.text;
    const bool parserStopped = document.tags == mostTags || document.types.size() == mostTypes;
    if (parserStopped) {
        FuzzRequire(visited.text.starts_with(told), "UTPlainVisitTags", "other tags");
    } else {
        FuzzRequire(visited.text == told, "UTPlainVisitTags", "other or fewer tags");
    }
}

// ---- Relationships -------------------------------------------------------------------------------------------------

std::string Resolve(std::string_view target) {
    std::string name(target);
    name.resize(UTResolveTarget(name.data(), name.size()));
    return name;
}

void CheckRelationship(std::string_view start, const std::string& type, std::string_view bytes) {
    std::string_view target;
    const UTPlainFind found = UTPlainFindRelationship(start, type, target);
    if (found == UTPlainFind::NotPlain) return;
    FuzzHandle handle = FuzzMakeHandle(bytes);
    UTRelationships* const relationships = UTReadRelationships(&handle.file);
    const std::optional<std::string_view> parsed = UTFindTarget(*relationships, type);
    FuzzRequire(parsed.has_value() == (found == UTPlainFind::Found), "UTPlainFindRelationship", "another finding");
    FuzzRequire(!parsed || Resolve(target) == *parsed, "UTPlainFindRelationship", "another target");
    UTFreeRelationships(*relationships);
}

// ---- The XML reader ------------------------------------------------------------------------------------------------

struct ToldTag {
    std::uint32_t namespaceId;
    std::uint32_t tagId;
    std::uint32_t flags;
    bool operator==(const ToldTag&) const = default;
};

std::vector<ToldTag> ReadTags(HIOFILE file, const char* namespaceUri, const char* localName) {
    const UTXmlTagPair pairs[] = {{1, localName}, {2, "Relationship"}, {3, "a"}};
    HUTXML xml = nullptr;
    FuzzRequire(UTXMLInit(&xml, file) == 0, "UTXMLInit", "fails");
    FuzzRequire(UTXMLAddTagMap(&xml, namespaceUri, 1, 0, pairs, std::size(pairs)) == 0, "UTXMLAddTagMap", "fails");
    FuzzRequire(UTXMLAddTagMap(&xml, "", 2, 0, pairs, std::size(pairs)) == 0, "UTXMLAddTagMap", "fails");
    std::vector<ToldTag> tags;
    UTXmlTag tag = {};
    while (tags.size() < mostTags && UTXMLReadNextTag(&xml, &tag, nullptr) == 0) {
        tags.push_back({tag.namespaceId, tag.tagId, tag.flags});
    }
    UTXMLDeInit(&xml);
    return tags;
}

void CheckReader(std::string_view bytes, const ParsedDocument& document) {
    const std::size_t end = document.first.find(xmlNamespaceEnd);
    const std::string namespaceUri = end != std::string::npos ? document.first.substr(0, end) : "n";
    const std::string localName = document.first.substr(end != std::string::npos ? end + 1 : 0);
    const IOMemorySpec memory = {bytes.data(), bytes.size(), "input"};
    HIOFILE file = nullptr;
    FuzzRequire(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead) == 0, "IOOpen", "a block of memory opens");
    FuzzHandle host = FuzzMakeHandle(bytes);
    FuzzRequire(ReadTags(file, namespaceUri.c_str(), localName.c_str()) ==
                    ReadTags(&host.file, namespaceUri.c_str(), localName.c_str()),
                "UTXMLReadNextTag", "other tags over a host's handle");
    static_cast<void>(file->operations.IOClose(file));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const ParsedDocument document = Parse(bytes);
    // A beginning of any length, and the one that is looked at.
    for (const std::size_t length : {FuzzHash(bytes) % (size + 1), std::size_t{plainTagBytes}}) {
        const std::string_view start = bytes.substr(0, length);
        CheckFirst(start, document);
        CheckTags(start, document);
        CheckRelationship(start, "t", bytes);
        for (const std::string& type : document.types) CheckRelationship(start, type, bytes);
    }
    CheckReader(bytes, document);
    return 0;
}
