// mpeg_audio.h - MPEG audio of versions 1 and 2, all layers, with and without ID3 tags.
#pragma once

#include "fiid.h"

// Routine 1710, a file that starts with a frame: 1710 to 1715 by version and layer, 1706 for MPEG-1 Layer III with an
// ID3v1 tag at the end, or 0.
FIID FIProbeMpegAudio(FIReader& reader);

// Routine 1709, a file that starts with an ID3v2 tag: 1707 when MPEG-1 Layer III without CRC follows, otherwise 1709; 0
// when a seek fails.
FIID FIProbeId3Header(FIReader& reader);

// Routine 1708, a file that ends in an ID3v1 tag: 1706 when it starts with MPEG-1 Layer III without CRC, otherwise
// 1708; 0 when a seek fails.
FIID FIProbeId3Trailer(FIReader& reader);
