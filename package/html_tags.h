// html_tags.h - HTML text, told by the tags at its head, and the applications that exported it.
#pragma once

#include "fiid.h"

// Looks at the first 256 bytes. Returns 1101 for HTML in 8-bit text, 1181 for HTML in 16-bit text, 1147, 1148 or 1149
// for an html tag that declares the namespace of Word, Excel or PowerPoint, otherwise 0; 0 also when a seek fails. The
// reader is rewound first and left wherever the scan stopped.
FIID FIScanHtmlTags(FIReader& reader);
