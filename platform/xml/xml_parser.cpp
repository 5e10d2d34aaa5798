// xml_parser.cpp - feeding expat, and the bounds on what a document may cost.
//
// The bounds, and what each of them is for:
//   text          a small member of an archive may unpack to terabytes
//   token         expat scans a token from its start again when more of it has come
//   memory        millions of names or of elements that are open at once
//   tags          a declared default value is an attribute of every element of that name
//   declarations  expat follows a chain of entities by recursion, and searches a list of attributes from its start
//   amplification expat's own guard against entities that multiply, set more strictly
#include "platform/xml/xml_parser.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/base_utility.h"

namespace {

constexpr std::uint64_t smallestFeed = 4096;
// Text with its expanded entities may be so many times as long as the text alone, once it is longer than expat's own
// threshold of 8 MiB.
constexpr float largestAmplification = 4.0F;

// What expat may still allocate.
struct UTXmlBudget {
    std::uint64_t left;
};

}  // namespace

struct UTXmlParser {
    HIOFILE file;
    UTXmlHandlers handlers;
    void* context;
    XML_Parser expat;
    UTXmlBudget budget;
    std::uint64_t fed;  // bytes of text given to expat
    std::uint32_t tagsLeft;
    std::uint32_t declarationsLeft;
    bool paused;
    bool lastFed;  // expat was told that no more comes
    bool ended;
};

namespace {

// ---- Memory --------------------------------------------------------------------------------------------------------

// Expat's allocation functions are not told for which parser they work. This is the budget of the one that the thread
// is inside of; it is set for the time of a call to expat and never looked at outside one.
thread_local UTXmlBudget* currentBudget = nullptr;

class UTXmlBudgetScope {
 public:
    explicit UTXmlBudgetScope(UTXmlBudget& budget) : outer_(currentBudget) { currentBudget = &budget; }
    ~UTXmlBudgetScope() { currentBudget = outer_; }
    UTXmlBudgetScope(const UTXmlBudgetScope&) = delete;
    UTXmlBudgetScope& operator=(const UTXmlBudgetScope&) = delete;

 private:
    UTXmlBudget* outer_;
};

// In front of each block stands its size.
constexpr std::size_t blockHeader = alignof(std::max_align_t);
static_assert(blockHeader >= sizeof(std::size_t));

void* UTXmlAllocate(std::size_t size) {
    if (size > currentBudget->left || blockHeader > currentBudget->left - size) return nullptr;
    auto* const block = static_cast<std::byte*>(HeapAlloc(GetProcessHeap(), 0, size + blockHeader));
    if (block == nullptr) return nullptr;
    currentBudget->left -= size + blockHeader;
    std::memcpy(block, &size, sizeof(size));
    return block + blockHeader;
}

std::size_t UTXmlBlockSize(const void* place) {
    std::size_t size = 0;
    std::memcpy(&size, static_cast<const std::byte*>(place) - blockHeader, sizeof(size));
    return size;
}

void UTXmlRelease(void* place) {
    if (place == nullptr) return;
    currentBudget->left += UTXmlBlockSize(place) + blockHeader;
    HeapFree(GetProcessHeap(), 0, static_cast<std::byte*>(place) - blockHeader);
}

void* UTXmlReallocate(void* place, std::size_t size) {
    void* const larger = UTXmlAllocate(size);
    if (larger == nullptr || place == nullptr) return larger;
    std::memcpy(larger, place, std::min(size, UTXmlBlockSize(place)));
    UTXmlRelease(place);
    return larger;
}

constexpr XML_Memory_Handling_Suite memoryFunctions = {UTXmlAllocate, UTXmlReallocate, UTXmlRelease};

// ---- Handlers ------------------------------------------------------------------------------------------------------

void UTXmlTakeDeclaration(UTXmlParser& parser) {
    if (parser.declarationsLeft > 0) {
        --parser.declarationsLeft;
    } else {
        UTXmlStop(parser);
    }
}

void XMLCALL UTXmlOnEntity(void* context, const XML_Char*, int, const XML_Char*, int, const XML_Char*, const XML_Char*,
                           const XML_Char*, const XML_Char*) {
    UTXmlTakeDeclaration(*static_cast<UTXmlParser*>(context));
}

void XMLCALL UTXmlOnAttributeList(void* context, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*,
                                  int) {
    UTXmlTakeDeclaration(*static_cast<UTXmlParser*>(context));
}

void XMLCALL UTXmlOnStartTag(void* context, const XML_Char* name, const XML_Char** attributes) {
    UTXmlParser& parser = *static_cast<UTXmlParser*>(context);
    std::uint64_t cost = 1;
    for (const XML_Char** attribute = attributes; *attribute != nullptr; attribute += 2) ++cost;
    if (parser.ended || cost > parser.tagsLeft) {
        UTXmlStop(parser);
        return;
    }
    parser.tagsLeft -= static_cast<std::uint32_t>(cost);  // not above tagsLeft
    parser.handlers.startTag(parser.context, name, attributes);
}

void XMLCALL UTXmlOnEndTag(void* context, const XML_Char* name) {
    UTXmlParser& parser = *static_cast<UTXmlParser*>(context);
    if (!parser.ended) parser.handlers.endTag(parser.context, name);
}

// ---- Feeding -------------------------------------------------------------------------------------------------------

// Bytes that expat has and has not made anything of yet.
std::uint64_t UTXmlPendingBytes(const UTXmlParser& parser) {
    const XML_Index index = XML_GetCurrentByteIndex(parser.expat);
    return index > 0 ? parser.fed - std::min<std::uint64_t>(parser.fed, static_cast<std::uint64_t>(index)) : parser.fed;
}

// Gives expat the next bytes. With a long token the portions grow, for expat may scan it from its start for each.
XML_Status UTXmlFeed(UTXmlParser& parser) {
    const std::uint64_t pending = UTXmlPendingBytes(parser);
    std::uint64_t portion = 0;
    if (pending < xmlTokenLimit) portion = std::clamp(pending, smallestFeed, xmlTokenLimit);
    portion = std::min(portion, xmlTextLimit - parser.fed);
    std::uint32_t came = 0;
    if (portion > 0) {
        void* const buffer = XML_GetBuffer(parser.expat, static_cast<int>(portion));
        if (buffer == nullptr) return XML_STATUS_ERROR;
        if (parser.file->operations.IORead(parser.file, buffer, static_cast<std::uint32_t>(portion), &came) != 0)
            came = 0;
    }
    parser.fed += came;
    parser.lastFed = came == 0;
    // Also where a limit ends the text, expat is told so: it may have held tags back for more text to come.
    return XML_ParseBuffer(parser.expat, static_cast<int>(came), parser.lastFed ? 1 : 0);
}

}  // namespace

UTXmlParser* UTXmlNewParser(HIOFILE file, const UTXmlHandlers& handlers, void* context) {
    auto* const parser = static_cast<UTXmlParser*>(HeapAlloc(GetProcessHeap(), 0, sizeof(UTXmlParser)));
    if (parser == nullptr) return nullptr;
    *parser = {file,  handlers, context, nullptr, {xmlMemoryLimit}, 0, xmlTagLimit, xmlDeclarationLimit,
               false, false,    false};
    const UTXmlBudgetScope scope(parser->budget);
    const XML_Char separator[] = {xmlNamespaceEnd, '\0'};
    parser->expat = XML_ParserCreate_MM(nullptr, &memoryFunctions, separator);
    if (parser->expat == nullptr) {
        HeapFree(GetProcessHeap(), 0, parser);
        return nullptr;
    }
    XML_SetUserData(parser->expat, parser);
    XML_SetStartElementHandler(parser->expat, UTXmlOnStartTag);
    if (handlers.endTag != nullptr) XML_SetEndElementHandler(parser->expat, UTXmlOnEndTag);
    XML_SetEntityDeclHandler(parser->expat, UTXmlOnEntity);
    XML_SetAttlistDeclHandler(parser->expat, UTXmlOnAttributeList);
    static_cast<void>(XML_SetParamEntityParsing(parser->expat, XML_PARAM_ENTITY_PARSING_NEVER));
    static_cast<void>(XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser->expat, largestAmplification));
    return parser;
}

bool UTXmlGoOn(UTXmlParser& parser) {
    const UTXmlBudgetScope scope(parser.budget);
    XML_Status status = XML_STATUS_OK;
    if (parser.paused && !parser.ended) {
        parser.paused = false;
        status = XML_ResumeParser(parser.expat);
    }
    while (status == XML_STATUS_OK && !parser.ended && !parser.lastFed) status = UTXmlFeed(parser);
    if (status == XML_STATUS_SUSPENDED) return true;
    parser.ended = true;
    return false;
}

void UTXmlPause(UTXmlParser& parser) {
    if (parser.paused) return;
    parser.paused = true;
    static_cast<void>(XML_StopParser(parser.expat, XML_TRUE));
}

void UTXmlStop(UTXmlParser& parser) {
    if (parser.ended) return;
    parser.ended = true;
    static_cast<void>(XML_StopParser(parser.expat, XML_FALSE));
}

void UTXmlFreeParser(UTXmlParser& parser) {
    {
        const UTXmlBudgetScope scope(parser.budget);
        XML_ParserFree(parser.expat);
    }
    HeapFree(GetProcessHeap(), 0, &parser);
}
