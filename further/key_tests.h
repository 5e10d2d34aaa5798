// key_tests.h - documents, fonts and keys that a pattern can't tell.
#pragma once

#include "fiid.h"
#include "further/look.h"

// 20256: a DVI document: its preamble, and at the end of the file the padding of the postamble.
FIID FITellDvi(FILook& look);

// 20258: a TrueType font, by its table directory.
FIID FITellTrueType(FILook& look);

// 20267: PKCS #7 or CMS data in DER (RFC 5652, or RFC 5544): the content type's object identifier.
FIID FITellCms(FILook& look);

// 20268: a PKCS #12 store (RFC 7292): version 3, then data of PKCS #7.
FIID FITellPkcs12(FILook& look);

// 20278: WebVTT: behind the mark the line ends, or a blank.
FIID FITellWebVtt(FILook& look);
