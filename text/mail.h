// mail.h - mail and news articles, told by their header lines.
#pragma once

#include "fiid.h"

struct FIHead;

// Routine 1187. Scores the header block at the start of a text, up to the first empty line and 300 lines at most.
// extension is upper case, at most 4 characters and a NUL. Returns
//   1132  addressing headers, and hardly any of MIME       1195  mail in a file with extension EML
//   1187  MIME mail without addressing headers              1198  HTML mail
//   1192  mail with MIME and addressing headers             1817  a mailbox: the first line is an envelope line
//   1193  a news article, 1194 with extension NWS
// or 0 for no mail, when a seek fails, and when memory is exhausted. The reader is left wherever the probe stopped.
FIID FIProbeMail(FIReader& reader, const char* extension);

// Its gate: whether the header block scores enough, as far as the head tells.
bool FIMayBeMail(FIHead& head);
