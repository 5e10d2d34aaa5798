// image_tests.h - pictures that a pattern can't tell.
#pragma once

#include "fiid.h"
#include "further/look.h"

// 20011: a HEIF file (ISO/IEC 23008-12) of the brand mif1 that has avif among its compatible brands.
FIID FITellAvifBrand(FILook& look);

// 20017: a bare JPEG XL codestream (ISO/IEC 18181). Its mark FF 0A may begin a text too; the size header, frame header and
// entropy-coded data behind it soon hold a byte that texts do not.
FIID FITellJpegXlCodestream(FILook& look);

// 20041: a portable arbitrary map (Netpbm), whose header lines may stand in any order.
FIID FITellPortableArbitraryMap(FILook& look);
