// formats.cpp - the catalogue of the second table.
#include "further/formats.h"

std::span<const FIFormatRecord> FIFurtherFormats() { return {}; }

const FIFormatRecord* FIFindFurtherFormat(std::uint16_t) { return nullptr; }
