// formats.h - the catalogue of the formats that the second table knows, from identifier 20000 up.
#pragma once

#include <cstdint>
#include <span>

#include "catalogue/format_catalogue.h"

// Identifiers of the second table begin here; those of the signature table lie below.
inline constexpr std::uint16_t firstFurtherFormat = 20000;

// In the order of their identifiers.
std::span<const FIFormatRecord> FIFurtherFormats();

// The record of an identifier; null when the second table has no such format.
const FIFormatRecord* FIFindFurtherFormat(std::uint16_t identifier);
