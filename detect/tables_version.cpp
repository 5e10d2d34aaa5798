// tables_version.cpp - what the tables are called: the library's version and a hash, made by the compiler, over all that is
// data in both tables: the rows' bytecode, the alphabets behind it, and the catalogues.
//
// What routines look at is code, and so are the versions that are read in files: the hash does not see it. That is why the
// project's version is raised with every change of an answer.
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "catalogue/format_records.h"
#include "detect/tables_hash.h"
#include "fiid/detect.h"
#include "further/format_records.h"
#include "further/row_families.h"
#include "further/table.h"
#include "signatures/character_classes.h"
#include "signatures/class_rows.h"
#include "signatures/document_rows.h"
#include "signatures/media_rows.h"
#include "signatures/sheet_rows.h"
#include "signatures/table.h"

namespace {

static_assert(std::size(classRows) + std::size(documentRows) + std::size(mediaRows) + std::size(sheetRows) ==
                  signatureRowCount,
              "the rows that are hashed are all that the signature table has");

// One evaluation for each part keeps g++ and clang within their default limits.
template <const auto& rows>
inline constexpr auto codeOf = FIAssembleRows<rows>();

template <const auto& rows, std::uint32_t before>
inline constexpr std::uint32_t hashOfCode = FIHashBytes(before, codeOf<rows>.bytes);

constexpr std::uint32_t classesHash = hashOfCode<classRows, emptyTablesHash>;
constexpr std::uint32_t documentsHash = hashOfCode<documentRows, classesHash>;
constexpr std::uint32_t mediaHash = hashOfCode<mediaRows, documentsHash>;
constexpr std::uint32_t sheetsHash = hashOfCode<sheetRows, mediaHash>;
constexpr std::uint32_t alphabetsHash =
    FIHashBytes(FIHashBytes(FIHashBytes(sheetsHash, binHexClass), uuClass), xxClass);

consteval std::uint32_t FIHashFurtherRows(std::uint32_t hash) {
    FIVisitFurtherFamilies([&hash]<const auto & rows>() {
        hash = FIHashBytes(FIHashPlaces(hash, rows), FIFurtherFamily<rows>::code.bytes);
    });
    return hash;
}

constexpr std::uint32_t furtherRowsHash = FIHashFurtherRows(alphabetsHash);
constexpr std::uint32_t formatsHash = FIHashRecords(furtherRowsHash, formatRecords);
constexpr std::uint32_t tablesHash = FIHashRecords(formatsHash, furtherFormatRecords);

// The version, a hyphen, eight hexadecimal digits and a NUL.
constexpr std::size_t hexDigitCount = 8;
using FITablesName = std::array<char, sizeof(FIID_VERSION) + 1 + hexDigitCount>;

consteval FITablesName FINameTables() {
    constexpr std::string_view version = FIID_VERSION;
    constexpr std::string_view digits = "0123456789abcdef";
    FITablesName name = {};
    std::size_t size = version.copy(name.data(), version.size());
    name[size++] = '-';
    for (std::size_t digit = hexDigitCount; digit > 0; --digit)
        name[size++] = digits[tablesHash >> (digit - 1) * 4 & 15];
    return name;
}

constexpr FITablesName tablesName = FINameTables();
static_assert(std::size(tablesName) <= 40 + 1, "the header tells callers how much room it needs");

}  // namespace

extern "C" const char* fiid_tables_version(void) { return tablesName.data(); }
