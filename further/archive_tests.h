// archive_tests.h - archives, packed files and disk images that a pattern can't tell.
#pragma once

#include "fiid.h"
#include "further/look.h"

// 20136: LZMA alone, without a mark: properties, a plausible dictionary size and unpacked size, and the range coder's first
// byte, which is 0.
FIID FITellLzma(FILook& look);

// 20139, 20140 and 20141: cpio archives by the digits of their first header, or by the length of its first name.
FIID FITellNewCpio(FILook& look);
FIID FITellOldCpio(FILook& look);
FIID FITellBinaryCpio(FILook& look);

// 20146 and 20147: disk images with a volume descriptor in sector 16 (ECMA-119, ECMA-167).
FIID FITellIso9660(FILook& look);
FIID FITellUdf(FILook& look);

// 20148: an ARJ archive whose main header has the checksum that it tells.
FIID FITellArj(FILook& look);

// 20152 and 20157: disk images that tell what they are in their last 512 bytes.
FIID FITellAppleDiskImage(FILook& look);
FIID FITellVirtualPcDisk(FILook& look);

// 20166: a WARC web archive of another version, by a header field.
FIID FITellWarc(FILook& look);

// 20168: BitTorrent metainfo: a dictionary that holds the key "info" with a dictionary.
FIID FITellTorrent(FILook& look);
