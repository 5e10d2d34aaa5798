// xml_parser.cpp - feeding expat, and the bounds on what a document may cost.
//
// The bounds, and what each of them is for:
//   text          a small member of an archive may unpack to terabytes
//   token         expat scans a token from its start again when more of it has come
//   memory        millions of names or of elements that are open at once
//   tags          a declared default value is an attribute of every element of that name
//   declarations  expat follows a chain of entities by recursion, and searches a list of attributes from its start
//   expansion     from here on expat guards against entities that multiply, and more strictly than by itself
//   address       expat puts a namespace's address in front of the name of each prefixed attribute
//   work          so it does with shorter addresses, and it goes through the open elements and the declared attributes
#include "platform/xml/xml_parser.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/base_utility.h"
#include "platform/heap_allocator.h"
#include "platform/repeated_read.h"
#include "reader/handle_block.h"

namespace {

constexpr std::uint64_t smallestFeed = 4096;
// Text with its expanded entities may be so many times as long as the text alone, once it is longer than the limit of
// expansion.
constexpr float largestAmplification = 4.0F;

// What expat may still allocate, and what became of it.
struct UTXmlBudget {
    std::uint64_t left = 0;
    const void* lastBlock = nullptr;  // allocated last; only compared, never looked into
    bool heapExhausted = false;
};

// What the DTD declares of attributes. Expat goes through all of it for a tag of the element that they belong to.
struct UTXmlDeclared {
    std::uint64_t attributes = 0;
    std::uint64_t bytes = 0;  // of names and values
};

}  // namespace

struct UTXmlParser {
    HIOFILE file = nullptr;
    UTXmlHandlers handlers = {};
    void* context = nullptr;
    UTXmlLimits limits = {};
    XML_Parser expat = nullptr;
    UTXmlBudget budget = {};
    std::uint64_t fed = 0;  // bytes of text given to expat
    std::uint64_t work = 0;
    std::uint64_t openElements = 0;
    UTXmlDeclared declared = {};
    std::uint32_t tagsLeft = 0;
    std::uint32_t declarationsLeft = 0;
    bool paused = false;
    bool lastFed = false;  // expat was told that no more comes
    bool ended = false;
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
    if (block == nullptr) {
        currentBudget->heapExhausted = true;
        return nullptr;
    }
    currentBudget->left -= size + blockHeader;
    std::memcpy(block, &size, sizeof(size));
    currentBudget->lastBlock = block + blockHeader;
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

// ---- Work ----------------------------------------------------------------------------------------------------------

std::uint64_t UTXmlWorkLeft(const UTXmlParser& parser) {
    return parser.limits.work - std::min(parser.work, parser.limits.work);
}

// Counts work that expat has done or is about to do. Where it goes beyond the limit, the document ends.
void UTXmlCountWork(UTXmlParser& parser, std::uint64_t work) {
    if (work > UTXmlWorkLeft(parser)) UTXmlStop(parser);
    parser.work += work;
}

std::uint64_t UTXmlLength(const XML_Char* text) { return text != nullptr ? std::strlen(text) : 0; }

// The name behind its namespace. Expat does not copy the namespace of an element's name.
const XML_Char* UTXmlLocalName(const XML_Char* name) {
    const XML_Char* const end = std::strchr(name, xmlNamespaceEnd);
    return end != nullptr ? end + 1 : name;
}

// Expat tells an element's name in the buffer that holds the address of its namespace. A longer name may need a larger
// buffer: then expat goes through all open elements for those that point to the old one. The new one is the last block
// that was allocated in front of the tag.
bool UTXmlMovedAddress(const UTXmlParser& parser, const XML_Char* name, const XML_Char* localName) {
    return localName != name && name == parser.budget.lastBlock;
}

std::uint64_t UTXmlWorkOfStart(const UTXmlParser& parser, const XML_Char* name, const XML_Char** attributes) {
    const XML_Char* const localName = UTXmlLocalName(name);
    const auto own = static_cast<std::uint64_t>(XML_GetSpecifiedAttributeCount(parser.expat)) / 2;
    std::uint64_t work = UTXmlLength(localName) + parser.declared.bytes;
    work += parser.declared.attributes * (own + 1) * xmlStepWork;
    if (UTXmlMovedAddress(parser, name, localName)) work += parser.openElements * xmlStepWork;
    for (; *attributes != nullptr; ++attributes) work += UTXmlLength(*attributes);
    return work;
}

// ---- Handlers ------------------------------------------------------------------------------------------------------

void UTXmlTakeDeclaration(UTXmlParser& parser, std::uint64_t work) {
    UTXmlCountWork(parser, work);
    if (parser.declarationsLeft > 0) {
        --parser.declarationsLeft;
    } else {
        UTXmlStop(parser);
    }
}

void XMLCALL UTXmlOnEntity(void* context, const XML_Char* name, int, const XML_Char*, int length, const XML_Char*,
                           const XML_Char*, const XML_Char*, const XML_Char*) {
    const auto valueLength = static_cast<std::uint64_t>(std::max(length, 0));
    UTXmlTakeDeclaration(*static_cast<UTXmlParser*>(context), UTXmlLength(name) + valueLength);
}

void XMLCALL UTXmlOnAttributeList(void* context, const XML_Char* element, const XML_Char* attribute,
                                  const XML_Char* type, const XML_Char* value, int) {
    UTXmlParser& parser = *static_cast<UTXmlParser*>(context);
    const std::uint64_t bytes = UTXmlLength(attribute) + UTXmlLength(value);
    UTXmlTakeDeclaration(parser, UTXmlLength(element) + UTXmlLength(type) + bytes);
    ++parser.declared.attributes;
    parser.declared.bytes += bytes;
}

// Called in front of the start tag that the declaration stands in.
void XMLCALL UTXmlOnNamespace(void* context, const XML_Char* prefix, const XML_Char* address) {
    UTXmlParser& parser = *static_cast<UTXmlParser*>(context);
    const std::uint64_t length = UTXmlLength(address);
    UTXmlCountWork(parser, UTXmlLength(prefix) + length + parser.declared.attributes * xmlStepWork);
    if (length > parser.limits.address) UTXmlStop(parser);
}

void XMLCALL UTXmlOnStartTag(void* context, const XML_Char* name, const XML_Char** attributes) {
    UTXmlParser& parser = *static_cast<UTXmlParser*>(context);
    if (parser.ended) return;
    std::uint64_t tags = 1;
    for (const XML_Char** attribute = attributes; *attribute != nullptr; attribute += 2) ++tags;
    UTXmlCountWork(parser, UTXmlWorkOfStart(parser, name, attributes));
    parser.budget.lastBlock = nullptr;  // counted for this tag
    if (tags > parser.tagsLeft) UTXmlStop(parser);
    if (parser.ended) return;
    parser.tagsLeft -= static_cast<std::uint32_t>(tags);  // not above tagsLeft
    ++parser.openElements;
    parser.handlers.startTag(parser.context, name, attributes);
}

void XMLCALL UTXmlOnEndTag(void* context, const XML_Char* name) {
    UTXmlParser& parser = *static_cast<UTXmlParser*>(context);
    if (parser.ended) return;
    --parser.openElements;
    UTXmlCountWork(parser, UTXmlLength(UTXmlLocalName(name)));
    if (!parser.ended && parser.handlers.endTag != nullptr) parser.handlers.endTag(parser.context, name);
}

// ---- Feeding -------------------------------------------------------------------------------------------------------

// Bytes that expat has and has not made anything of yet.
std::uint64_t UTXmlPendingBytes(const UTXmlParser& parser) {
    const XML_Index index = XML_GetCurrentByteIndex(parser.expat);
    return index > 0 ? parser.fed - std::min<std::uint64_t>(parser.fed, static_cast<std::uint64_t>(index)) : parser.fed;
}

// The size of the next portion; 0 where a limit ends the text. With a long token the portions grow, for expat may scan
// it from its start for each.
std::uint64_t UTXmlNextPortion(const UTXmlParser& parser, std::uint64_t pending) {
    const UTXmlLimits& limits = parser.limits;
    if (pending >= limits.token) return 0;
    const std::uint64_t wanted = std::max(pending, std::min(smallestFeed, limits.token));
    const std::uint64_t portion = std::min(wanted, limits.text - parser.fed);
    return pending + portion <= UTXmlWorkLeft(parser) ? portion : 0;
}

// Reads up to size bytes, in as many reads as it takes: a handle that delivers little at a time must not make a long
// token be scanned for each read. Returns less at the end, or where a read fails.
std::uint32_t UTXmlRead(HIOFILE file, std::byte* buffer, std::uint32_t size) {
    std::uint32_t filled = 0;
    static_cast<void>(UTRepeatRead(size, filled, [=](std::uint32_t at, std::uint32_t wanted, std::uint32_t& came) {
        return FIReadHandle(file, buffer + at, wanted, came);
    }));
    return filled;
}

// Gives expat the next bytes.
XML_Status UTXmlFeed(UTXmlParser& parser) {
    const std::uint64_t pending = UTXmlPendingBytes(parser);
    const auto portion = static_cast<std::uint32_t>(UTXmlNextPortion(parser, pending));  // not above the token limit
    std::uint32_t came = 0;
    if (portion > 0) {
        void* const buffer = XML_GetBuffer(parser.expat, static_cast<int>(portion));
        if (buffer == nullptr) return XML_STATUS_ERROR;
        came = UTXmlRead(parser.file, static_cast<std::byte*>(buffer), portion);
        UTXmlCountWork(parser, pending + came);
    }
    parser.fed += came;
    // Also where a limit ends the text, expat is told so: it may have held tags back for more text to come.
    parser.lastFed = portion == 0 || came < portion;
    return XML_ParseBuffer(parser.expat, static_cast<int>(came), parser.lastFed ? 1 : 0);
}

// Makes expat, for a parser of which all else is set.
bool UTXmlMakeExpat(UTXmlParser& parser) {
    const UTXmlBudgetScope scope(parser.budget);
    const XML_Char separator[] = {xmlNamespaceEnd, '\0'};
    parser.expat = XML_ParserCreate_MM(nullptr, &memoryFunctions, separator);
    if (parser.expat == nullptr) return false;
    XML_SetUserData(parser.expat, &parser);
    XML_SetElementHandler(parser.expat, UTXmlOnStartTag, UTXmlOnEndTag);
    XML_SetStartNamespaceDeclHandler(parser.expat, UTXmlOnNamespace);
    XML_SetEntityDeclHandler(parser.expat, UTXmlOnEntity);
    XML_SetAttlistDeclHandler(parser.expat, UTXmlOnAttributeList);
    static_cast<void>(XML_SetParamEntityParsing(parser.expat, XML_PARAM_ENTITY_PARSING_NEVER));
    static_cast<void>(XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser.expat, largestAmplification));
    static_cast<void>(XML_SetBillionLaughsAttackProtectionActivationThreshold(parser.expat, parser.limits.expansion));
    return true;
}

}  // namespace

UTXmlParser* UTXmlNewParser(HIOFILE file, const UTXmlHandlers& handlers, void* context, const UTXmlLimits& limits) {
    auto* const parser = UTNewRecord<UTXmlParser>();
    if (parser == nullptr) return nullptr;
    parser->file = file;
    parser->handlers = handlers;
    parser->context = context;
    parser->limits = limits;
    parser->budget.left = limits.memory;
    parser->tagsLeft = limits.tags;
    parser->declarationsLeft = limits.declarations;
    if (UTXmlMakeExpat(*parser)) return parser;
    UTDeleteRecord(*parser);
    return nullptr;
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

std::uint64_t UTXmlWorkOf(const UTXmlParser& parser) { return parser.work; }

bool UTXmlRanOutOfMemory(const UTXmlParser& parser) { return parser.budget.heapExhausted; }

void UTXmlFreeParser(UTXmlParser& parser) {
    {
        const UTXmlBudgetScope scope(parser.budget);
        XML_ParserFree(parser.expat);
    }
    UTDeleteRecord(parser);
}
