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

#include "platform/base_utility.h"
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

bool FIEqualsAnyCase(std::string_view one, std::string_view other) {
    return std::ranges::equal(
        one, other, {}, [](char letter) { return FILowerAscii(letter); },
        [](char letter) { return FILowerAscii(letter); });
}

void FIKeepCharacter(FIShortText& text, char character) {
    text.cut = text.cut || text.size == shortTextBytes;
    if (!text.cut) text.bytes[text.size++] = character;
}

// ---- XML -----------------------------------------------------------------------------------------------------------

std::string_view FILocalName(std::string_view name) {
    const std::size_t end = name.find(xmlNamespaceEnd);
    return end != std::string_view::npos ? name.substr(end + 1) : name;
}

// The value of the first attribute of a local name, or null.
const char* FIFindAttribute(const char** attributes, std::string_view localName) {
    for (; *attributes != nullptr; attributes += 2) {
        if (FILocalName(attributes[0]) == localName) return attributes[1];
    }
    return nullptr;
}

UTHandle* FIOpenPart(UTHandle& archive, std::string_view name, std::string_view rootedName) {
    return UTOpenMemberAnyCase(archive, UTHasMember(archive, name) ? name : rootedName);
}

// Reads the start tags of a part, up to its end, an error or damage. The search has the parser, to end the reading. Returns
// false when the part can't be opened or memory is exhausted.
template <typename Search>
bool FIReadTags(UTHandle* part, Search& search,
                void (*onTag)(void* search, const char* name, const char** attributes)) {
    if (part == nullptr) return false;
    bool read = false;
    search.parser = UTXmlNewParser(UTHandleFile(*part), {onTag, nullptr}, &search);
    if (search.parser != nullptr) {
        static_cast<void>(UTXmlGoOn(*search.parser));  // never pauses
        read = !UTXmlRanOutOfMemory(*search.parser);
        UTXmlFreeParser(*search.parser);
    }
    UTCloseHandle(*part);
    return read;
}

// ---- The main part's name ------------------------------------------------------------------------------------------

struct FITargetSearch {
    UTXmlParser* parser;
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

void FICheckRelationship(void* context, const char* name, const char** attributes) {
    auto& search = *static_cast<FITargetSearch*>(context);
    if (FILocalName(name) != "Relationship") return;
    const char* const type = FIFindAttribute(attributes, "Type");
    if (type == nullptr) return;
    const auto* const end = mainRelationships + search.best;
    const auto* const found = std::find(mainRelationships, end, std::string_view(type));
    if (found == end) return;
    const char* const mode = FIFindAttribute(attributes, "TargetMode");
    if (mode != nullptr && std::string_view(mode) == "External") return;
    search.best = static_cast<std::size_t>(found - mainRelationships);
    const char* const target = FIFindAttribute(attributes, "Target");
    if (target != nullptr) {
        FIKeepTarget(search, target);
    } else {
        FIDropTarget(search);
    }
    if (search.best == 0 || search.outOfMemory) UTXmlStop(*search.parser);
}

// ---- Its content type ----------------------------------------------------------------------------------------------

struct FITypeSearch {
    UTXmlParser* parser;
    std::string_view part;       // with the slash in front
    std::string_view extension;  // of the part
    bool hasExtension;
    bool found;  // whether a default of the extension was met
    FIShortText* contentType;
};

// Takes what stands behind the last full stop of the last segment for the extension.
void FICutPartExtension(FITypeSearch& search) {
    const std::string_view segment = search.part.substr(search.part.rfind('/') + 1);
    const std::size_t stop = segment.rfind('.');
    search.hasExtension = stop != std::string_view::npos;
    if (search.hasExtension) search.extension = segment.substr(stop + 1);
}

void FIKeepContentType(FIShortText& text, const char** attributes) {
    text = {};
    const char* type = FIFindAttribute(attributes, "ContentType");
    if (type == nullptr) return;
    for (; *type != '\0' && *type != ';'; ++type) {
        if (!FIIsTypeSpace(*type)) FIKeepCharacter(text, *type);
    }
}

void FICheckContentType(void* context, const char* name, const char** attributes) {
    auto& search = *static_cast<FITypeSearch*>(context);
    const std::string_view element = FILocalName(name);
    if (element == "Override") {
        const char* const part = FIFindAttribute(attributes, "PartName");
        if (part == nullptr || !FIEqualsAnyCase(part, search.part)) return;
        FIKeepContentType(*search.contentType, attributes);
        UTXmlStop(*search.parser);
    } else if (element == "Default" && search.hasExtension && !search.found) {
        const char* const extension = FIFindAttribute(attributes, "Extension");
        if (extension == nullptr || !FIEqualsAnyCase(extension, search.extension)) return;
        FIKeepContentType(*search.contentType, attributes);
        search.found = true;
    }
}

void FIFindContentType(UTHandle& archive, std::string_view part, FIShortText& contentType) {
    FITypeSearch search = {nullptr, part, {}, false, false, &contentType};
    FICutPartExtension(search);
    UTHandle* const types = FIOpenPart(archive, "[Content_Types].xml", "/[Content_Types].xml");
    if (!FIReadTags(types, search, FICheckContentType)) contentType = {};
}

}  // namespace

void FIFindMainPart(UTHandle& archive, FIMainPart& part) {
    part = {};
    FITargetSearch search = {nullptr, std::size(mainRelationships), nullptr, 0, false};
    UTHandle* const relationships = FIOpenPart(archive, "_rels/.rels", "/_rels/.rels");
    if (FIReadTags(relationships, search, FICheckRelationship) && search.part != nullptr) {
        part.relationship = static_cast<FIMainRelationship>(search.best);
        const std::string_view name(search.part, search.partSize);
        for (const char character : name.substr(1)) FIKeepCharacter(part.name, character);
        FIFindContentType(archive, name, part.contentType);
    }
    FIDropTarget(search);
}
