// package_probe.cpp - ZIP files that are documents: Office Open XML, XPS and OpenDocument.
//
// A package with a relationships part is told by its main part, which a relationship of a known type leads to: by the
// first known element among its tags, or by its first bytes.
//
//   Main part, by its relationship                  Told by                               Answer
//   officeDocument, of the standard or the draft    element document, wordDocument         1312
//                                                   or wordTemplate
//                                                   element presentation                   1635
//                                                   element workbook                       1455
//                                                   bytes 83 01 00 80 01 at its start      1457
//   fixedrepresentation                             nothing more: it is not read           1636
//
// Any other ZIP file is told by its member "mimetype", 35 characters that name OpenDocument and up to 21 of the kind.
// Only the start of the kind counts, so that a template is told as its document.
//
// Whatever fails, the answer is the plain archive, 1802.
//
// Sources: ISO/IEC 29500-1 and -2 for the namespaces of the standard; OASIS OpenDocument 1.2, Packages, section 3.3,
// for the member "mimetype".
#include "package/package_probe.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

#include "platform/base_utility.h"
#include "platform/package_library.h"
#include "reader/handle_block.h"

namespace {

constexpr FIID plainArchive = 1802;
constexpr FIID wordDocument = 1312;
constexpr FIID presentation = 1635;
constexpr FIID workbook = 1455;
constexpr FIID binaryRecords = 1457;
constexpr FIID fixedPages = 1636;

// ---- Packages ------------------------------------------------------------------------------------------------------

// In the order in which they are tried.
constexpr const char* mainPartTypes[] = {
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument",
    "http://schemas.microsoft.com/office/2006/relationships/officeDocument",
};
constexpr const char fixedPagesType[] = "http://schemas.microsoft.com/xps/2005/06/fixedrepresentation";

constexpr std::uint32_t documentTag = 1501;
constexpr std::uint32_t templateTag = 1502;
constexpr std::uint32_t presentationTag = 2501;
constexpr std::uint32_t workbookTag = 3501;

constexpr UTXmlTagPair wordMap[] = {
    {documentTag, "document"},
    {documentTag, "wordDocument"},
    {templateTag, "wordTemplate"},
};
constexpr UTXmlTagPair documentMap[] = {{documentTag, "document"}};
constexpr UTXmlTagPair templateMap[] = {{templateTag, "wordTemplate"}};
constexpr UTXmlTagPair presentationMap[] = {{presentationTag, "presentation"}};
constexpr UTXmlTagPair workbookMap[] = {{workbookTag, "workbook"}};

struct FITagRow {
    const char* namespaceUri;
    std::uint32_t namespaceId;
    const UTXmlTagPair* pairs;
    std::uint32_t pairCount;
};

// In the order of registration: the namespaces of the standard and of its drafts.
constexpr FITagRow tagTable[] = {
    // clang-format off
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/2/main",  1001, wordMap,         std::size(wordMap)},
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/3/main",  1002, wordMap,         std::size(wordMap)},
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/main",    1000, documentMap,     std::size(documentMap)},
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/6/main",  1003, documentMap,     std::size(documentMap)},
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/5/main",  1005, documentMap,     std::size(documentMap)},
    {"http://schemas.microsoft.com/office/word/2005/10/wordml",         1004, templateMap,     std::size(templateMap)},
    {"http://schemas.openxmlformats.org/presentationml/2006/main",      2000, presentationMap, std::size(presentationMap)},
    {"http://schemas.openxmlformats.org/presentationml/2006/3/main",    2001, presentationMap, std::size(presentationMap)},
    {"http://schemas.openxmlformats.org/spreadsheetml/2006/5/main",     3002, workbookMap,     std::size(workbookMap)},
    {"http://schemas.microsoft.com/office/excel/2006/2",                3001, workbookMap,     std::size(workbookMap)},
    {"http://schemas.openxmlformats.org/spreadsheetml/2006/main",       3003, workbookMap,     std::size(workbookMap)},
    {"http://schemas.openxmlformats.org/spreadsheetml/2006/7/main",     3000, workbookMap,     std::size(workbookMap)},
    // clang-format on
};

// Start tags of unknown elements that are passed over.
constexpr std::uint32_t unknownElementLimit = 25;

// The start of a main part that is a run of binary records: the type 131, of the record that begins a workbook, its
// size of 0, and the type 128 of the next record.
constexpr std::uint8_t binaryRecordStart[] = {0x83, 0x01, 0x00, 0x80, 0x01};

bool FIRegisterTags(HUTXML& xml) {
    return std::ranges::all_of(tagTable, [&](const FITagRow& row) {
        return UTXMLAddTagMap(&xml, row.namespaceUri, row.namespaceId, 0, row.pairs, row.pairCount) == 0;
    });
}

FIID FIAnswerOfTag(std::uint32_t tagId) {
    switch (tagId) {
        case documentTag:
        case templateTag:
            return wordDocument;
        case presentationTag:
            return presentation;
        case workbookTag:
            return workbook;
        default:
            return plainArchive;
    }
}

FIID FIReadTags(HUTXML& xml) {
    std::uint32_t unknownElements = 0;
    UTXmlTag tag = {0, 0, 0};
    std::uint32_t other = 0;
    while (unknownElements < unknownElementLimit && UTXMLReadNextTag(&xml, &tag, &other) == 0) {
        const FIID answer = FIAnswerOfTag(tag.tagId);
        if (answer != plainArchive) return answer;
        if (tag.tagId == UTXmlUnknownTag && (tag.flags & UTXmlFlagEndTag) == 0) ++unknownElements;
    }
    return plainArchive;
}

bool FIStartsWithBinaryRecords(HIOFILE part) {
    std::uint8_t start[sizeof(binaryRecordStart)] = {};
    std::uint32_t count = 0;
    static_cast<void>(part->operations.IOSeek(part, IOOriginStart, 0));
    static_cast<void>(FIReadHandle(part, start, sizeof(start), count));
    return count == sizeof(start) && std::ranges::equal(start, binaryRecordStart);
}

FIID FIProbeMainPart(HPKGPART part) {
    HUTXML xml = nullptr;
    if (UTXMLInit(&xml, PKGGetHIOFILE(part)) != 0) return plainArchive;
    const FIID answer = FIRegisterTags(xml) ? FIReadTags(xml) : plainArchive;
    UTXMLDeInit(&xml);
    if (answer == plainArchive && FIStartsWithBinaryRecords(PKGGetHIOFILE(part))) return binaryRecords;
    return answer;
}

FIID FIProbeParts(HPKGPACKAGE package) {
    HPKGPART part = nullptr;
    FIID answer = plainArchive;
    const bool hasMainPart = std::ranges::any_of(
        mainPartTypes, [&](const char* type) { return PKGOpenFileByType(&part, 0, type, package) == 0; });
    if (hasMainPart) {
        answer = FIProbeMainPart(part);
        PKGCloseFile(part);
    } else if (PKGOpenFileByType(&part, 0, fixedPagesType, package) == 0) {
        answer = fixedPages;
        PKGCloseFile(part);
    }
    return answer;
}

// ---- Archives ------------------------------------------------------------------------------------------------------

constexpr char mimetypeMember[] = "mimetype";
constexpr char openDocumentPrefix[] = "application/vnd.oasis.opendocument.";
constexpr std::uint32_t prefixLength = sizeof(openDocumentPrefix) - 1;
static_assert(prefixLength == 35);
constexpr std::uint32_t kindCapacity = 21;
static_assert(kindCapacity <= prefixLength, "both are read into one buffer");

struct FIKindRow {
    std::string_view kind;
    FIID fiid;
};

constexpr FIKindRow kindTable[] = {
    {"text", 1309},
    {"spreadsheet", 1454},
    {"graphics", 1632},
    {"presentation", 1633},
};

FIID FIProbeMimetype(HIOFILE member) {
    char text[prefixLength + 1] = {};
    // Quirk: the statuses are not looked at, and the count of the first read stands where the second sets none.
    std::uint32_t count = 0;
    static_cast<void>(FIReadHandle(member, text, prefixLength, count));
    text[count] = '\0';
    if (lstrcmpiA(text, openDocumentPrefix) != 0) return plainArchive;
    static_cast<void>(FIReadHandle(member, text, kindCapacity, count));
    text[count] = '\0';
    for (const FIKindRow& row : kindTable) {
        if (std::strncmp(text, row.kind.data(), row.kind.size()) == 0) return row.fiid;
    }
    return plainArchive;
}

FIID FIProbeArchive(HIOFILE file) {
    HIOFILE archive = file;
    if (file->operations.IOOpenSub(&archive, IOSUB_ARCHIVE, nullptr, 0) != 0) return plainArchive;
    // A setting of the archive's handle, made once, before a member is opened.
    const std::uint32_t value = 0;
    // Quirk: where the setting is refused the archive's handle stays open. A handle of the platform layer frees it when
    // the file is closed.
    if (IOSetInfo(archive, IOSetInfoArchive, IOSetInfoArchiveMember, &value) != 0) return plainArchive;

    IOSubMemberSpec specification = {};
    static_assert(sizeof(specification) == sizeof(HIOFILE) + 512);
    specification.parent = archive;
    std::ranges::copy(mimetypeMember, specification.name);
    HIOFILE member = nullptr;
    FIID answer = plainArchive;
    if (archive->operations.IOOpenSub(&member, IOSUB_MEMBER, &specification, 0) == 0) {
        answer = FIProbeMimetype(member);
        static_cast<void>(member->operations.IOClose(member));
    }
    static_cast<void>(archive->operations.IOClose(archive));
    return answer;
}

}  // namespace

FIID FIProbePackage(FIReader& reader) {
    HPKGPACKAGE package = nullptr;
    if (PKGInit(reader.file, &package) != 0) return FIProbeArchive(reader.file);
    const FIID answer = FIProbeParts(package);
    PKGDeinit(package);
    return answer;
}
