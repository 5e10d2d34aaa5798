// main_part.cpp - reading a package's relationships and content types.
//
//   _rels/.rels            Relationship   Type, Target, TargetMode ("External": leads out of the package)
//   [Content_Types].xml    Override       PartName, ContentType
//                          Default        Extension, ContentType
//
// Both are read to the first element that settles the matter. The names of parts and ASCII letters in them are compared
// without case, and so are the names of the two members, which some writers put behind a slash. Elements and attributes
// are known by their local names: drafts and careless writers have other namespaces.
//
// Source: ISO/IEC 29500-2, 7 to 9 and the schemas in annex C. Of the types of relationships, ISO/IEC 29500-1 and -4,
// ECMA-388, [MS-VSDX].
#include "further/main_part.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/base_utility.h"
#include "platform/xml/plain_tags.h"
#include "platform/xml/xml_parser.h"
#include "platform/zip/archive.h"
#include "reader/ascii_case.h"

namespace {

// In the order of FIMainRelationship.
constexpr std::string_view mainRelationships[] = {
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument",
    "http://schemas.microsoft.com/office/2006/relationships/officeDocument",
    "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument",
    "http://schemas.microsoft.com/visio/2010/relationships/document",
    "http://schemas.microsoft.com/xps/2005/06/fixedrepresentation",
    "http://schemas.openxps.org/oxps/v1.0/fixedrepresentation",
};
static_assert(std::size(mainRelationships) == static_cast<std::size_t>(FIMainRelationship::None));

void FIKeepCharacter(FIShortText& text, char character) {
    text.cut = text.cut || text.size == shortTextBytes;
    if (!text.cut) text.bytes[text.size++] = character;
}

// ---- XML -----------------------------------------------------------------------------------------------------------

std::string_view FILocalName(std::string_view name) {
    const std::size_t end = name.find(xmlNamespaceEnd);
    return end != std::string_view::npos ? name.substr(end + 1) : name;
}

// A start tag, as one of the two ways of reading tells it: by the bytes alone, or by the parser.
struct FITag {
    const UTPlainTag* plain;  // null where the parser tells
    const char* name;
    const char** attributes;
};

std::string_view FINameOf(const FITag& tag) {
    return tag.plain != nullptr ? tag.plain->name.local : FILocalName(tag.name);
}

// The value of the first attribute of a local name; nothing when there is none.
std::optional<std::string_view> FIFindAttribute(const FITag& tag, std::string_view localName) {
    if (tag.plain != nullptr) return UTPlainFindAttribute(*tag.plain, localName);
    for (const char** attribute = tag.attributes; *attribute != nullptr; attribute += 2) {
        if (FILocalName(attribute[0]) == localName) return attribute[1];
    }
    return std::nullopt;
}

UTHandle* FIOpenPart(UTHandle& archive, std::string_view name, std::string_view rootedName) {
    return UTOpenMemberAnyCase(archive, UTHasMember(archive, name) ? name : rootedName);
}

// A search goes through the start tags of a part: FILookAtTag looks at one and returns whether it goes on, and FIStartOver
// forgets those that were looked at.
template <typename Search>
struct FIParsing {
    Search* search;
    UTXmlParser* parser;
};

// Both parts list the parts of a package, of which there are some hundreds. What is longer than this is made to cost time.
constexpr std::uint64_t longestPart = std::uint64_t{4} << 20;
constexpr UTXmlLimits partLimits = {.text = longestPart, .work = 6 * longestPart};

template <typename Search>
bool FIParseTags(UTHandle& part, Search& search) {
    FIParsing<Search> parsing = {&search, nullptr};
    const auto onTag = [](void* context, const char* name, const char** attributes) {
        const auto& [wanted, parser] = *static_cast<FIParsing<Search>*>(context);
        if (!FILookAtTag(*wanted, {nullptr, name, attributes})) UTXmlStop(*parser);
    };
    parsing.parser = UTXmlNewParser(UTHandleFile(part), {onTag, nullptr}, &parsing, partLimits);
    if (parsing.parser == nullptr) {
        search.outOfMemory = true;
        return false;
    }
    static_cast<void>(UTXmlGoOn(*parsing.parser));  // never pauses
    search.outOfMemory = search.outOfMemory || UTXmlRanOutOfMemory(*parsing.parser);
    UTXmlFreeParser(*parsing.parser);
    return !search.outOfMemory;
}

// Lets a search go through the start of a part, which in most packages is all it needs. Returns false where the parser has
// to tell.
template <typename Search>
bool FIReadPlainTags(UTHandle& part, Search& search) {
    char start[plainTagBytes];
    std::uint32_t filled = 0;
    if (UTReadAt(part, 0, start, plainTagBytes, filled) != 0) return false;
    const auto onTag = [](void* context, const UTPlainTag& tag) {
        return FILookAtTag(*static_cast<Search*>(context), {&tag, nullptr, nullptr});
    };
    return UTPlainVisitTags({start, filled}, onTag, &search) != UTPlainWalk::NotPlain;
}

// Lets a search go through the start tags of a part, up to its end, an error or damage. Returns false when the part can't
// be opened or memory is exhausted.
template <typename Search>
bool FIReadTags(UTHandle* part, Search& search) {
    if (part == nullptr) return false;
    bool read = FIReadPlainTags(*part, search);
    if (!read) {
        FIStartOver(search);
        read = FIParseTags(*part, search);
    }
    UTCloseHandle(*part);
    return read;
}

// ---- The main part's name ------------------------------------------------------------------------------------------

struct FITargetSearch {
    std::size_t best;  // of mainRelationships; behind them while there is none
    char* part;        // the name of the part to which it leads, with one slash in front; null for no part
    std::size_t partSize;
    bool outOfMemory;
};

constexpr char FISlash(char character) { return character == '\\' ? '/' : character; }

// A target's path from the package's root. All slashes, and all segments ".", in front of it are left out; what stands
// behind stays as it is.
std::string_view FIPathOf(std::string_view target) {
    for (;;) {
        if (!target.empty() && FISlash(target[0]) == '/') {
            target.remove_prefix(1);
        } else if (target.size() >= 2 && target[0] == '.' && FISlash(target[1]) == '/') {
            target.remove_prefix(2);
        } else {
            return target;
        }
    }
}

// Targets are of any length, and seldom is there a second one that counts more.
void FIKeepTarget(FITargetSearch& search, std::string_view target) {
    const std::string_view path = FIPathOf(target);
    HeapFree(GetProcessHeap(), 0, search.part);
    search.part = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, path.size() + 1));
    search.outOfMemory = search.part == nullptr;
    if (search.outOfMemory) return;
    search.part[0] = '/';
    std::ranges::transform(path, search.part + 1, FISlash);
    search.partSize = path.size() + 1;
}

void FIDropTarget(FITargetSearch& search) {
    HeapFree(GetProcessHeap(), 0, search.part);
    search.part = nullptr;
}

void FIStartOver(FITargetSearch& search) {
    FIDropTarget(search);
    search = {std::size(mainRelationships), nullptr, 0, false};
}

bool FILookAtTag(FITargetSearch& search, const FITag& tag) {
    if (FINameOf(tag) != "Relationship") return true;
    const std::optional<std::string_view> type = FIFindAttribute(tag, "Type");
    const auto* const end = mainRelationships + search.best;
    const auto* const found = std::find(mainRelationships, end, type);
    if (found == end || FIFindAttribute(tag, "TargetMode") == "External") return true;
    search.best = static_cast<std::size_t>(found - mainRelationships);
    const std::optional<std::string_view> target = FIFindAttribute(tag, "Target");
    if (target) {
        FIKeepTarget(search, *target);
    } else {
        FIDropTarget(search);
    }
    return search.best > 0 && !search.outOfMemory;
}

// ---- Its content type ----------------------------------------------------------------------------------------------

struct FITypeSearch {
    std::string_view part;       // with the slash in front
    std::string_view extension;  // of the part
    bool hasExtension;
    bool found;  // whether a default of the extension was met
    bool outOfMemory;
    FIShortText* contentType;
};

// Takes what stands behind the last full stop of the last segment for the extension.
void FICutPartExtension(FITypeSearch& search) {
    const std::string_view segment = search.part.substr(search.part.rfind('/') + 1);
    const std::size_t stop = segment.rfind('.');
    search.hasExtension = stop != std::string_view::npos;
    if (search.hasExtension) search.extension = segment.substr(stop + 1);
}

void FIKeepContentType(FIShortText& text, const FITag& tag) {
    text = {};
    const std::string_view type = FIFindAttribute(tag, "ContentType").value_or("");
    for (const char character : type.substr(0, type.find(';'))) {
        if (!FIIsTypeSpace(character)) FIKeepCharacter(text, character);
    }
}

void FIStartOver(FITypeSearch& search) {
    search.found = false;
    *search.contentType = {};
}

bool FILookAtTag(FITypeSearch& search, const FITag& tag) {
    const std::string_view element = FINameOf(tag);
    if (element == "Override") {
        const std::optional<std::string_view> part = FIFindAttribute(tag, "PartName");
        if (!part || !FIEqualsAnyCase(*part, search.part)) return true;
        FIKeepContentType(*search.contentType, tag);
        return false;
    }
    if (element == "Default" && search.hasExtension && !search.found) {
        const std::optional<std::string_view> extension = FIFindAttribute(tag, "Extension");
        if (!extension || !FIEqualsAnyCase(*extension, search.extension)) return true;
        FIKeepContentType(*search.contentType, tag);
        search.found = true;
    }
    return true;
}

// Returns false when memory is exhausted.
bool FIFindContentType(UTHandle& archive, std::string_view part, FIShortText& contentType) {
    FITypeSearch search = {part, {}, false, false, false, &contentType};
    FICutPartExtension(search);
    UTHandle* const types = FIOpenPart(archive, "[Content_Types].xml", "/[Content_Types].xml");
    if (!FIReadTags(types, search)) contentType = {};
    return !search.outOfMemory;
}

}  // namespace

bool FIEqualsAnyCase(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, [](char a, char b) { return FILowerAscii(a) == FILowerAscii(b); });
}

bool FIFindMainPart(UTHandle& archive, FIMainPart& part) {
    part = {};
    FITargetSearch search = {std::size(mainRelationships), nullptr, 0, false};
    UTHandle* const relationships = FIOpenPart(archive, "_rels/.rels", "/_rels/.rels");
    if (FIReadTags(relationships, search) && search.part != nullptr) {
        part.relationship = static_cast<FIMainRelationship>(search.best);
        const std::string_view name(search.part, search.partSize);
        for (const char character : name.substr(1)) FIKeepCharacter(part.name, character);
        search.outOfMemory = !FIFindContentType(archive, name, part.contentType);
    }
    FIDropTarget(search);
    return !search.outOfMemory;
}
