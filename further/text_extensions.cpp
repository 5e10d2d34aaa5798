// text_extensions.cpp - extensions of plain texts.
#include "further/text_extensions.h"

#include <algorithm>
#include <string_view>

#include "further/clean_text.h"
#include "further/csv_text.h"

namespace {

struct FITextExtension {
    std::string_view extension;
    FIID fiid;
};

constexpr FIID csvText = 20308;

// Sorted by extension.
constexpr FITextExtension textExtensions[] = {
    // clang-format off
    {"c",        20311},  // C source
    {"cc",       20313},  // C++ source
    {"cpp",      20313},
    {"cs",       20314},  // C# source
    {"css",      20323},  // CSS style sheet
    {"csv",      csvText},
    {"cxx",      20313},  // C++ source
    {"go",       20318},  // Go source
    {"h",        20312},  // C or C++ header
    {"hh",       20312},
    {"hpp",      20312},
    {"hxx",      20312},
    {"ini",      20326},  // configuration text
    {"java",     20310},  // Java source
    {"js",       20316},  // JavaScript source
    {"log",      20329},  // log text
    {"m4",       20330},  // M4 macros
    {"markdown", 20309},  // Markdown
    {"md",       20309},
    {"mjs",      20316},  // JavaScript source
    {"pl",       20320},  // Perl source
    {"pm",       20320},
    {"py",       20315},  // Python source
    {"rb",       20321},  // Ruby source
    {"rs",       20319},  // Rust source
    {"rst",      20331},  // reStructuredText
    {"sh",       20324},  // shell script
    {"sql",      20322},  // SQL text
    {"t",        20320},  // Perl source
    {"tab",      20328},  // tab-separated values
    {"ts",       20317},  // TypeScript source
    {"tsv",      20328},  // tab-separated values
    {"tsx",      20317},  // TypeScript source
    {"yaml",     20327},  // YAML text
    {"yml",      20327},
    // clang-format on
};
static_assert(std::ranges::is_sorted(textExtensions, {}, &FITextExtension::extension));

}  // namespace

FIID FITellByExtension(FILook& look) {
    const std::string_view extension = FIExtensionOf(look);
    const auto* const place = std::ranges::lower_bound(textExtensions, extension, {}, &FITextExtension::extension);
    if (place == std::end(textExtensions) || place->extension != extension) return 0;
    const bool isSuch = place->fiid == csvText ? FIIsCsv(look) : FIIsCleanText(look);
    return isSuch ? place->fiid : FIID{0};
}
