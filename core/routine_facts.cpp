// routine_facts.cpp - the special routines in words.
//
// A routine that weighs how often codes occur stands on statistics; one that opens the storage's streams or the package's
// members on these; every other one on the structure that it follows: fields, records, lines.
#include "core/routine_facts.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "catalogue/format_not_known.h"
#include "signatures/routine_needs.h"
#include "signatures/table.h"

namespace {

constexpr FIRoutineFacts routineFacts[] = {
    // clang-format off
    {1003, "FIProbeHighBitWords",         FIBasis::Statistics, "words whose last character has its top bit set, in the first 1,026 bytes"},
    {1007, "FIProbeBlockHeader",          FIBasis::Structure,  "the header of 512 bytes and the marker that its block number leads to"},
    {1010, "FIProbeWordChecksum",         FIBasis::Structure,  "the header's range of words and its check value"},
    {1018, "FIProbeMirroredLengths",      FIBasis::Structure,  "records with their length at both ends"},
    {1019, "FIProbeEscapeHeader",         FIBasis::Structure,  "the escape sequence at 0"},
    {1020, "FIProbeLayoutTrailer",        FIBasis::Structure,  "the last 5,121 bytes, for a fill and the mark of a layout"},
    {1021, "FIProbePipeCodes",            FIBasis::Structure,  "three codes in the 100 bytes from offset 120"},
    {1023, "FIProbeFunctionCodes",        FIBasis::Statistics, "function codes between the text, in the first 3,072 bytes"},
    {1025, "FIProbeBlockList",            FIBasis::Structure,  "the list of blocks at 256 and their first bytes"},
    {1034, "FIProbeCommandCounts",        FIBasis::Statistics, "how often the codes of three formats occur in the first 4,096 bytes"},
    {1041, "FIProbeEntryTable",           FIBasis::Structure,  "the table of entries and the place that one of them leads to"},
    {1057, "FIProbeVersionSections",      FIBasis::Structure,  "the sections of version and styles at 0"},
    {1077, "FIProbePipeCodes",            FIBasis::Structure,  "three codes in the 100 bytes from offset 118"},
    {1082, "FIProbeBookStorage",          FIBasis::Storage,    "the streams of the storage"},
    {1108, "FIProbeWordPro",              FIBasis::Structure,  "the version fields behind the file's name of itself"},
    {1132, "FIProbeMemoHeader",           FIBasis::Structure,  "the first lines, for those of a memo's head"},
    {1141, "FIProbeVCard",                FIBasis::Structure,  "the first line, which begins an object"},
    {1146, "FIProbeWordStorage",          FIBasis::Storage,    "the streams of the storage"},
    {1168, "FIProbeMif",                  FIBasis::Structure,  "the version in the first tag"},
    {1187, "FIProbeMail",                 FIBasis::Structure,  "the header lines of a mail or news article"},
    {1190, "FIProbeMarkup",               FIBasis::Structure,  "the prolog and the first tags of a markup text"},
    {1201, "FIProbeXBaseTable",           FIBasis::Structure,  "the table header: date, lengths and the fields' records"},
    {1206, "FIProbeFieldTable",           FIBasis::Structure,  "the table header and its list of field types"},
    {1210, "FIProbeLinkedRecords",        FIBasis::Structure,  "two records that link to each other"},
    {1212, "FIProbeRepeatedName",         FIBasis::Structure,  "the header's name, which stands twice"},
    {1213, "FIProbeSlotMarker",           FIBasis::Structure,  "the slots of the first 504 bytes"},
    {1416, "FIProbeWorksheetRecords",     FIBasis::Structure,  "the worksheet's records"},
    {1445, "FIProbeNativeContentStorage", FIBasis::Storage,    "the streams of the storage"},
    {1446, "FIProbeWorkbookStorage",      FIBasis::Storage,    "the streams of the storage"},
    {1447, "FIProbePerfectOfficeStorage", FIBasis::Storage,    "the streams of the storage"},
    {1450, "FIProbePerfectOfficeStorage", FIBasis::Storage,    "the streams of the storage"},
    {1453, "FIProbePerfectOfficeStorage", FIBasis::Storage,    "the streams of the storage"},
    {1504, "FIProbeEpsPreview",           FIBasis::Structure,  "the header with the places of PostScript and preview"},
    {1505, "FIProbeRawFax",               FIBasis::Structure,  "rows of fax codes, decoded, in the first 2,048 bytes"},
    {1515, "FIProbeIconFile",             FIBasis::Structure,  "the list of images and the first bitmap's header"},
    {1518, "FIProbeMacPaint",             FIBasis::Structure,  "the first scan lines, unpacked"},
    {1528, "FIProbeCgm",                  FIBasis::Structure,  "the first elements of the metafile"},
    {1535, "FIProbeJpeg",                 FIBasis::Structure,  "the segments in front of the image data"},
    {1544, "FIProbeDxf",                  FIBasis::Structure,  "the first lines, group codes and values"},
    {1557, "FIProbePdf",                  FIBasis::Structure,  "the first kilobyte, for the header's line"},
    {1569, "FIProbeIges",                 FIBasis::Structure,  "records of 80 columns and their sequence numbers"},
    {1570, "FIProbeMarkedRecords",        FIBasis::Structure,  "a chain of marked records in the first 2,000 bytes"},
    {1571, "FIProbeXbm",                  FIBasis::Structure,  "the first words, those of an image in C"},
    {1572, "FIProbeXpm",                  FIBasis::Structure,  "the first words, those of a pixmap in C"},
    {1575, "FIProbeXwd",                  FIBasis::Structure,  "the dump's header and its fields"},
    {1579, "FIProbeDesignerStorage",      FIBasis::Storage,    "the streams of the storage"},
    {1580, "FIProbePostScript",           FIBasis::Structure,  "the first ten lines"},
    {1588, "FIProbeNetpbm",               FIBasis::Structure,  "the first words: kind, width, height and largest value"},
    {1597, "FIProbeVisioStorage",         FIBasis::Storage,    "the streams of the storage"},
    {1598, "FIProbeCorelRiff",            FIBasis::Structure,  "the version in the form's type"},
    {1601, "FIProbeClassRecords",         FIBasis::Structure,  "three records of three classes"},
    {1631, "FIProbeVisioStorage",         FIBasis::Storage,    "the streams of the storage"},
    {1705, "FIProbeQuickTime",            FIBasis::Structure,  "the first two atoms"},
    {1708, "FIProbeId3Trailer",           FIBasis::Structure,  "the tag at the end and the first frame"},
    {1709, "FIProbeId3Header",            FIBasis::Structure,  "the tag at 0 and the first frame behind it"},
    {1710, "FIProbeMpegAudio",            FIBasis::Structure,  "the first frame, and the end for a tag"},
    {1802, "FIProbePackage",              FIBasis::Package,    "the members of the archive"},
    {1803, "FIProbeZipStub",              FIBasis::Structure,  "the places where self-extractors put an archive"},
    {1807, "FIProbeTar",                  FIBasis::Structure,  "the header of 512 bytes and its check sum"},
    {1814, "FIProbeLhaStub",              FIBasis::Structure,  "the first 4,096 bytes, for an archive's header"},
    {1999, "FIProbeStorage",              FIBasis::Storage,    "the names of the storage's streams"},
    {4050, "FIProbeEncodedText",          FIBasis::Structure,  "the first lines, for those of encoded files"},
    // clang-format on
};

static_assert(std::ranges::equal(routineFacts, routineNeeds, {}, &FIRoutineFacts::number, &FIRoutineNeeds::number),
              "the same routines as the index has, in its order");

// Whether a row's test holds the operation that a word of the notation begins, outside of text.
bool FIRowHolds(std::string_view signature, std::string_view word) {
    if (signature.find(word) == std::string_view::npos) return false;  // as in most rows: told at once
    bool inText = false;
    for (std::size_t index = 0; index < signature.size(); ++index) {
        if (signature[index] == '"') inText = !inText;
        if (!inText && signature.substr(index).starts_with(word)) return true;
    }
    return false;
}

}  // namespace

std::span<const FIRoutineFacts> FIAllRoutineFacts() { return routineFacts; }

const FIRoutineFacts* FIFactsOfRow(const FISignatureRow& row) {
    if (row.result.opcode != FIOpcode::Call) return nullptr;
    const auto place = std::ranges::lower_bound(routineFacts, row.result.number, {}, &FIRoutineFacts::number);
    return place != std::end(routineFacts) && place->number == row.result.number ? place : nullptr;
}

FIBasis FIBasisOfSignature(std::string_view signature, FIBasis otherwise) {
    if (FIRowHolds(signature, "{")) return FIBasis::Storage;
    return FIRowHolds(signature, "ext") ? FIBasis::Extension : otherwise;
}

FIBasis FIBasisOfVerdict(const FIVerdict& verdict) {
    if (verdict.fiid == 0 || verdict.fiid == formatNotKnown) return FIBasis::None;
    const FISignatureRow* const row = FIFindSignatureRow(verdict.row);
    if (row == nullptr) return FIBasis::Text;
    const FIRoutineFacts* const facts = FIFactsOfRow(*row);
    return FIBasisOfSignature(row->signature, facts != nullptr ? facts->basis : FIBasis::Signature);
}
