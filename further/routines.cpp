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
    {20000, "FITellEmptyFile",            FIBasis::Structure,  FITellEmptyFile},
    {20011, "FITellAvifBrand",            FIBasis::Structure,  FITellAvifBrand},
    {20017, "FITellJpegXlCodestream",     FIBasis::Statistics, FITellJpegXlCodestream},
    {20041, "FITellPortableArbitraryMap", FIBasis::Signature,  FITellPortableArbitraryMap},
    {20042, "FITellFloatMap",             FIBasis::Signature,  FITellFloatMap},
    {20083, "FITellWebM",                 FIBasis::Signature,  FITellWebM},
    {20084, "FITellMatroska",             FIBasis::Signature,  FITellMatroska},
    {20101, "FITellAc3",                  FIBasis::Structure,  FITellAc3},
    {20102, "FITellEnhancedAc3",          FIBasis::Structure,  FITellEnhancedAc3},
    {20103, "FITellAdts",                 FIBasis::Structure,  FITellAdts},
    {20108, "FITellWindowsMediaVideo",    FIBasis::Signature,  FITellWindowsMediaVideo},
    {20109, "FITellWindowsMediaAudio",    FIBasis::Signature,  FITellWindowsMediaAudio},
    {20116, "FITellMpeg2Video",           FIBasis::Signature,  FITellMpeg2Video},
    {20122, "FITellFlc",                  FIBasis::Structure,  FITellFlc},
    {20123, "FITellFli",                  FIBasis::Structure,  FITellFli},
    {20136, "FITellLzma",                 FIBasis::Structure,  FITellLzma},
    {20139, "FITellNewCpio",              FIBasis::Structure,  FITellNewCpio},
    {20140, "FITellOldCpio",              FIBasis::Structure,  FITellOldCpio},
    {20141, "FITellBinaryCpio",           FIBasis::Structure,  FITellBinaryCpio},
    {20146, "FITellIso9660",              FIBasis::Signature,  FITellIso9660},
    {20147, "FITellUdf",                  FIBasis::Signature,  FITellUdf},
    {20148, "FITellArj",                  FIBasis::Structure,  FITellArj},
    {20152, "FITellAppleDiskImage",       FIBasis::Signature,  FITellAppleDiskImage},
    {20157, "FITellVirtualPcDisk",        FIBasis::Signature,  FITellVirtualPcDisk},
    {20166, "FITellWarc",                 FIBasis::Signature,  FITellWarc},
    {20168, "FITellTorrent",              FIBasis::Signature,  FITellTorrent},
    {20184, "FITellPythonBytecode",       FIBasis::Structure,  FITellPythonBytecode},
    {20191, "FITellParquet",              FIBasis::Signature,  FITellParquet},
    {20192, "FITellOrc",                  FIBasis::Signature,  FITellOrc},
    {20195, "FITellFeather",              FIBasis::Signature,  FITellFeather},
    {20218, "FITellMarc",                 FIBasis::Structure,  FITellMarc},
    {20224, "FITellInternetShortcut",     FIBasis::Signature,  FITellInternetShortcut},
    {20245, "FITellStlText",              FIBasis::Signature,  FITellStlText},
    {20246, "FITellStlBinary",            FIBasis::Structure,  FITellStlBinary},
    {20256, "FITellDvi",                  FIBasis::Signature,  FITellDvi},
    {20258, "FITellTrueType",             FIBasis::Structure,  FITellTrueType},
    {20267, "FITellCms",                  FIBasis::Signature,  FITellCms},
    {20268, "FITellPkcs12",               FIBasis::Signature,  FITellPkcs12},
    {20270, "FITellPemMessage",           FIBasis::Signature,  FITellPemMessage},
    {20276, "FITellPemPrivateKey",        FIBasis::Signature,  FITellPemPrivateKey},
    {20277, "FITellOtherPem",             FIBasis::Signature,  FITellOtherPem},
    {20278, "FITellWebVtt",               FIBasis::Signature,  FITellWebVtt},
    {20279, "FITellSubRip",               FIBasis::Structure,  FITellSubRip},
    {20281, "FITellInterpreter",          FIBasis::Signature,  FITellInterpreter},
    {20291, "FITellLatex",                FIBasis::Signature,  FITellLatex},
    {20293, "FITellDiff",                 FIBasis::Signature,  FITellDiff},
    {20294, "FITellJsonKind",             FIBasis::Structure,  FITellJsonKind},
    {20300, "FITellSvg",                  FIBasis::Signature,  FITellSvg},
    {20302, "FITellBatch",                FIBasis::Signature,  FITellBatch},
    {20303, "FITellDesktopEntry",         FIBasis::Signature,  FITellDesktopEntry},
    {20306, "FITellGraphviz",             FIBasis::Signature,  FITellGraphviz},
    {20308, "FITellByExtension",          FIBasis::Extension,  FITellByExtension},
    {20334, "FITellStarDraw",             FIBasis::Storage,    FITellStarDraw},
    {20335, "FITellSolidWorks",           FIBasis::Storage,    FITellSolidWorks},
    {20337, "FITellUtf16Text",            FIBasis::Text,       FITellUtf16Text},
    {20338, "FITellUtf8Text",             FIBasis::Text,       FITellUtf8Text},
    {20339, "FITellBinary",               FIBasis::None,       FITellBinary},
    {20382, "FITellMediaViewerBook",      FIBasis::Signature,  FITellMediaViewerBook},
    {20401, "FITellPackageKind",          FIBasis::Package,    FITellPackageKind},
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
    for (std::uint8_t index = 0; index < std::size(routines); ++index) {
        indices[static_cast<std::size_t>(routines[index].number - firstNumber)] = index;
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
