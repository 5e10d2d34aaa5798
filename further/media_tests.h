// media_tests.h - sound and video that a pattern can't tell.
#pragma once

#include "fiid.h"
#include "further/look.h"

// 20083 and 20084: an EBML header (RFC 8794) whose document type is "webm" or "matroska".
FIID FITellWebM(FILook& look);
FIID FITellMatroska(FILook& look);

// 20101: an AC-3 frame (ETSI TS 102 366) of a size that its rate tells, with another one behind it.
FIID FITellAc3(FILook& look);

// 20102: the same of enhanced AC-3 (annex E there), whose frames tell their size.
FIID FITellEnhancedAc3(FILook& look);

// 20103: three AAC frames with ADTS headers (ISO/IEC 13818-7) in a row.
FIID FITellAdts(FILook& look);

// 20108 and 20109: an ASF file with the GUID of a video or of an audio stream in the header objects.
FIID FITellWindowsMediaVideo(FILook& look);
FIID FITellWindowsMediaAudio(FILook& look);

// 20116: MPEG-2 video: a sequence header with a sequence extension behind it.
FIID FITellMpeg2Video(FILook& look);

// 20122 and 20123: FLC and FLI animations, whose header begins with the file's length.
FIID FITellFlc(FILook& look);
FIID FITellFli(FILook& look);
