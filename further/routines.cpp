// routines.cpp - the index of the second table's routines.
#include "further/routines.h"

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>

#include "further/archive_tests.h"
#include "further/clean_text.h"
#include "further/data_tests.h"
#include "further/image_tests.h"
#include "further/json_kinds.h"
#include "further/key_tests.h"
#include "further/media_tests.h"
#include "further/package_kinds.h"
#include "further/storage_kinds.h"
#include "further/text_extensions.h"
#include "further/text_starts.h"

namespace {

FIID FITellEmptyFile(FILook& look) { return look.size == 0 ? FIID{20000} : FIID{0}; }

constexpr FIFurtherRoutine routines[] = {
    // clang-format off
    {20000, "FITellEmptyFile",            FIBasis::Structure,  FITellEmptyFile,               "the file's size"},
    {20011, "FITellAvifBrand",            FIBasis::Structure,  FITellAvifBrand,               "the compatible brands of the file type box"},
    {20017, "FITellJpegXlCodestream",     FIBasis::Structure,  FITellJpegXlCodestream,        "bytes 2 to 33 for one that texts do not hold"},
    {20041, "FITellPortableArbitraryMap", FIBasis::Signature,  FITellPortableArbitraryMap,    "the header's lines"},
    {20042, "FITellFloatMap",             FIBasis::Signature,  FITellFloatMap,                "the header's three lines"},
    {20083, "FITellWebM",                 FIBasis::Signature,  FITellWebM,                    "the document type of the EBML header"},
    {20084, "FITellMatroska",             FIBasis::Signature,  FITellMatroska,                "the document type of the EBML header"},
    {20101, "FITellAc3",                  FIBasis::Structure,  FITellAc3,                     "the frame's length and the mark behind it"},
    {20102, "FITellEnhancedAc3",          FIBasis::Structure,  FITellEnhancedAc3,             "the frame's length and the mark behind it"},
    {20103, "FITellAdts",                 FIBasis::Structure,  FITellAdts,                    "three frame headers in a row"},
    {20108, "FITellWindowsMediaVideo",    FIBasis::Signature,  FITellWindowsMediaVideo,       "the objects of the ASF header"},
    {20109, "FITellWindowsMediaAudio",    FIBasis::Signature,  FITellWindowsMediaAudio,       "the objects of the ASF header"},
    {20116, "FITellMpeg2Video",           FIBasis::Signature,  FITellMpeg2Video,              "the sequence header's extension"},
    {20122, "FITellFlc",                  FIBasis::Structure,  FITellFlc,                     "the length that the file begins with"},
    {20123, "FITellFli",                  FIBasis::Structure,  FITellFli,                     "the length that the file begins with"},
    {20136, "FITellLzma",                 FIBasis::Structure,  FITellLzma,                    "the properties and sizes of the header"},
    {20139, "FITellNewCpio",              FIBasis::Structure,  FITellNewCpio,                 "the digits of the first header"},
    {20140, "FITellOldCpio",              FIBasis::Structure,  FITellOldCpio,                 "the digits of the first header"},
    {20141, "FITellBinaryCpio",           FIBasis::Structure,  FITellBinaryCpio,              "the first name and its length"},
    {20146, "FITellIso9660",              FIBasis::Signature,  FITellIso9660,                 "bytes at 32769"},
    {20147, "FITellUdf",                  FIBasis::Signature,  FITellUdf,                     "bytes at 32769, 34817"},
    {20148, "FITellArj",                  FIBasis::Structure,  FITellArj,                     "the main header and its checksum"},
    {20152, "FITellAppleDiskImage",       FIBasis::Signature,  FITellAppleDiskImage,          "bytes at the end - 512"},
    {20157, "FITellVirtualPcDisk",        FIBasis::Signature,  FITellVirtualPcDisk,           "bytes at the end - 512"},
    {20166, "FITellWarc",                 FIBasis::Signature,  FITellWarc,                    "the first record's fields"},
    {20168, "FITellTorrent",              FIBasis::Signature,  FITellTorrent,                 "the key info in the first 64 KiB"},
    {20184, "FITellPythonBytecode",       FIBasis::Structure,  FITellPythonBytecode,          "the magic number"},
    {20191, "FITellParquet",              FIBasis::Signature,  FITellParquet,                 "bytes at the end - 4"},
    {20192, "FITellOrc",                  FIBasis::Signature,  FITellOrc,                     "bytes at the end - 4"},
    {20195, "FITellFeather",              FIBasis::Signature,  FITellFeather,                 "bytes at the end - 4"},
    {20218, "FITellMarc",                 FIBasis::Structure,  FITellMarc,                    "the leader, and the terminators that it leads to"},
    {20224, "FITellInternetShortcut",     FIBasis::Signature,  FITellInternetShortcut,        "the first 53 bytes for a section's name"},
    {20245, "FITellStlText",              FIBasis::Signature,  FITellStlText,                 "the first 411 bytes for a facet"},
    {20246, "FITellStlBinary",            FIBasis::Structure,  FITellStlBinary,               "the number of facets and the file's size"},
    {20256, "FITellDvi",                  FIBasis::Signature,  FITellDvi,                     "bytes at the end - 4"},
    {20258, "FITellTrueType",             FIBasis::Structure,  FITellTrueType,                "the table directory"},
    {20267, "FITellCms",                  FIBasis::Signature,  FITellCms,                     "the content type's object identifier"},
    {20268, "FITellPkcs12",               FIBasis::Signature,  FITellPkcs12,                  "the version and the content type's object identifier"},
    {20270, "FITellPemMessage",           FIBasis::Signature,  FITellPemMessage,              "the label of the first line"},
    {20276, "FITellPemPrivateKey",        FIBasis::Signature,  FITellPemPrivateKey,           "the label of the first line"},
    {20277, "FITellOtherPem",             FIBasis::Signature,  FITellOtherPem,                "the label of the first line"},
    {20278, "FITellWebVtt",               FIBasis::Signature,  FITellWebVtt,                  "the byte behind the mark"},
    {20279, "FITellSubRip",               FIBasis::Structure,  FITellSubRip,                  "the first number line and time range"},
    {20281, "FITellInterpreter",          FIBasis::Signature,  FITellInterpreter,             "the interpreter line"},
    {20291, "FITellLatex",                FIBasis::Signature,  FITellLatex,                   "the first command"},
    {20293, "FITellDiff",                 FIBasis::Signature,  FITellDiff,                    "the first two lines"},
    {20294, "FITellJsonKind",             FIBasis::Structure,  FITellJsonKind,                "the whole file as JSON"},
    {20300, "FITellSvg",                  FIBasis::Signature,  FITellSvg,                     "the first element"},
    {20302, "FITellBatch",                FIBasis::Signature,  FITellBatch,                   "the first command"},
    {20303, "FITellDesktopEntry",         FIBasis::Signature,  FITellDesktopEntry,            "the first section"},
    {20306, "FITellGraphviz",             FIBasis::Signature,  FITellGraphviz,                "the first statement"},
    {20308, "FITellByExtension",          FIBasis::Extension,  FITellByExtension,             "the extension, and the first 64 KiB for bytes that texts do not hold"},
    {20334, "FITellStarDraw",             FIBasis::Storage,    FITellStarDraw,                "the names under the root"},
    {20335, "FITellSolidWorks",           FIBasis::Storage,    FITellSolidWorks,              "the names under the root"},
    {20337, "FITellUtf16Text",            FIBasis::Text,       FITellUtf16Text,               "the characters of the first 64 KiB"},
    {20338, "FITellUtf8Text",             FIBasis::Text,       FITellUtf8Text,                "the characters of the first 64 KiB"},
    {20339, "FITellBinary",               FIBasis::None,       FITellBinary,                  "the first 64 KiB for bytes that texts do not hold"},
    {20382, "FITellMediaViewerBook",      FIBasis::Signature,  FITellMediaViewerBook,         "the first 64 KiB for a media database's mark"},
    {20401, "FITellPackageKind",          FIBasis::Package,    FITellPackageKind,             "the members of the archive"},
    // clang-format on
};

static_assert(std::ranges::adjacent_find(routines, std::ranges::greater_equal(), &FIFurtherRoutine::number) ==
              std::ranges::end(routines));

constexpr std::uint16_t firstNumber = routines[0].number;
constexpr std::uint8_t noRoutine = 0xFF;
static_assert(std::size(routines) < noRoutine);

// The index of each routine by its number, so that a row's call costs one look.
constexpr auto routineOfNumber = [] {
    std::array<std::uint8_t, routines[std::size(routines) - 1].number - firstNumber + std::size_t{1}> indices = {};
    for (std::uint8_t& index : indices) index = noRoutine;
    for (std::size_t index = 0; index < std::size(routines); ++index) {
        indices[static_cast<std::size_t>(routines[index].number - firstNumber)] = static_cast<std::uint8_t>(index);
    }
    return indices;
}();

}  // namespace

std::span<const FIFurtherRoutine> FIFurtherRoutines() { return routines; }

const FIFurtherRoutine* FIFindFurtherRoutine(std::uint16_t number) {
    const std::size_t place = static_cast<std::size_t>(number) - firstNumber;
    if (number < firstNumber || place >= routineOfNumber.size()) return nullptr;
    const std::uint8_t index = routineOfNumber[place];
    return index != noRoutine ? &routines[index] : nullptr;
}
