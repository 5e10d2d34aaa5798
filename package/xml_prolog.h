// xml_prolog.h - what the prolog of a text says about it: an XML declaration and the name in its DOCTYPE.
#pragma once

#include "fiid.h"

inline constexpr FIID xmlText = 1150;
inline constexpr FIID wmlDoctype = 1151;
inline constexpr FIID htmlDoctype = 1182;

// Walks white space, the XML declaration, comments, processing instructions and the DOCTYPE at the head of a text, in
// 8-bit or 16-bit characters, up to file offset 512 or the first thing that is none of these. Returns 1151 for a
// DOCTYPE whose name starts with "wml", 1182 for one whose name starts with "html", 1150 for any other text with an XML
// declaration, otherwise 0; 0 also when a seek fails. The reader is rewound first and left wherever the walk stopped.
FIID FIScanXmlProlog(FIReader& reader);
