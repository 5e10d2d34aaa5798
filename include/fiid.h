/* fiid.h - the public interface of fiid, a file-format identification library.
 *
 * Give the library a file, by path or as an open handle, and it answers with one 16-bit format identifier, told by the
 * file's content. The ten entries below are all that libfiid.so exports. This header compiles as C99 and as C++.
 *
 * Conventions: a status is 0 for success and anything else for failure. The library keeps no state between calls, takes
 * no lock, and writes nothing to the files it looks at. Two threads may identify two different handles at once; a
 * handle and a reader belong to one thread for the duration of a call.
 */
#ifndef FIID_H
#define FIID_H

#include <stdint.h>

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A format identifier, from 1000 upward. 1999 means that the format is not known; 0 is no identifier at all. */
typedef uint16_t FIID;

/* ---- Who owns what ------------------------------------------------------------------------------------------------
 *
 *   Thing                               Whose it is, and how it ends
 *   a handle that IOOpen stores         the caller's; its IOClose ends it
 *   a host's own handle                 the host's; no entry closes it
 *   the handle in IOSpecHandle          stays the host's; the handle around it is the caller's, and is closed first
 *   a handle that IOOpenSub stores      the library's that asked for it, which closes it before the parent. One stays
 *                                       open: an archive whose setting is refused (IOSetInfo, base_utility.h). Handles
 *                                       of IOOpen end what was opened in them with themselves
 *   memory and name in IOMemorySpec     the caller's; the memory must stay until the handle is closed, the name is
 *                                       copied
 *   descriptor and name in              the caller's; the descriptor must stay open until the handle is closed, the
 *     IODescriptorSpec                  name is copied
 *   paths, names of formats, readers    the caller's; used during the call alone
 *
 * Where a handle stands: FIIdHandle leaves it at offset 0, FIIdSpecial and FIExtTextID wherever they stopped. A handle
 * in IOSpecHandle is sought before each read of the one around it and is left wherever the last of them ended.
 */

/* ---- Failures -----------------------------------------------------------------------------------------------------
 *
 *   What fails                          What the caller sees
 *   opening (FIIdFile, FIIdFileEx)      -1, *fiid 0, errno tells why
 *   memory for the reader               -1, *fiid 1999
 *   memory inside a routine, a          status 0: the format that needed it is not told, so a later row or 1999 is the
 *     storage, an archive or XML        answer
 *   memory for the reader (FIIdSpecial) 0
 *   reading or seeking                  status 0: what can't be read counts as the end of the file. An object of which
 *                                       nothing can be read is told by its name's extension, or 1999. With
 *                                       FIFlagExtendedText it is 4022 like an empty file, or 4005 when its handle tells
 *                                       a size of 2 bytes or more
 */

/* ---- The handle contract ----------------------------------------------------------------------------------------- */

/* An open I/O handle: a pointer to a record that starts with its table of operations. IOOpen (base_utility.h) makes
 * handles over files, memory and descriptors; a host may bring a record of its own that starts with an IOOperations. */
typedef struct IOFile* HIOFILE;

/* Where IOSeek counts from: the start, the current position, or the end. */
enum { IOOriginStart = 0, IOOriginCurrent = 1, IOOriginEnd = 2 };

/* The operations, in slot order. Each returns a 32-bit status: 0 is success, anything else is failure. */
typedef struct IOOperations {
    /* Slot 0. Closes the handle and ends its life. The result is ignored. */
    int32_t (*IOClose)(HIOFILE handle);
    /* Slot 1. Reads size bytes at the current position and stores how many came, never more than size: a larger count
     * is taken for size. All of them must come when the object has them, for some routines take a short count for the
     * end of the object; a count of 0 with status 0 is the end for all. With a failure status the count is ignored. */
    int32_t (*IORead)(HIOFILE handle, void* destination, uint32_t size, uint32_t* count);
    /* Slot 2. Never called by this library. */
    int32_t (*IOWrite)(HIOFILE handle, const void* source, uint32_t size, uint32_t* count);
    /* Slot 3. Moves the position, counted from an origin of the three above. From the start the offset's 32 bits are
     * unsigned, from the others signed. A position behind the end is no error. A target that an unsigned subtraction
     * wrapped to 2 GiB or more should fail unless the object is that large: a few probes make such ones. */
    int32_t (*IOSeek)(HIOFILE handle, uint16_t origin, int32_t offset);
    /* Slot 4. Stores the current position, 0xFFFFFFFF for a position of 4 GiB or more. */
    int32_t (*IOTell)(HIOFILE handle, uint32_t* position);
    /* Slot 5. Answers a question about the object: see the selectors below. */
    int32_t (*IOGetInfo)(HIOFILE handle, uint32_t selector, void* value);
    /* Slot 6. Opens an object inside another. It takes no handle: the parent travels in the record, for
     * IOSUB_ARCHIVE in *out on entry. *out receives a new handle, which the caller closes with its own IOClose before
     * it closes the parent. A handle without sub-objects returns a failure. */
    int32_t (*IOOpenSub)(HIOFILE* out, uint32_t kind, const void* specification, uint32_t flags);
} IOOperations;

/* What every handle starts with. */
typedef struct IOFile {
    IOOperations operations;
} IOFile;

/* Note for hosts with handles of their own: one routine, the one for FrameMaker interchange text (1168), reads on until
 * it meets a line end, '#', '>' or a digit and has no test for the end of the file. Handles made by IOOpen deliver one
 * line feed after 65,536 reads in a row that delivered nothing, at the end of the object or by a failure, so the call
 * comes back. A host whose handle reports the end or a failure for ever should do the same, or a file that ends behind
 * "<MIFFile" will keep the call busy. */

/* Selectors of IOGetInfo. No other selector is asked for. */
enum {
    /* value: buffer of IONameBytes, its first two bytes zeroed by the caller. Writes the file's name, NUL-terminated,
     * in the type that IOInfoNameType reports: at most 255 bytes, or 127 16-bit units, and the terminator. A name that
     * fills the buffer without one is cut there. An object without a name: write nothing and fail. */
    IOInfoName = 3,
    /* value: null. Status 0: the handle is a compound storage. Any other status: a plain stream of bytes. */
    IOInfoIsStorage = 4,
    /* value: buffer of IOClassIdBytes. Writes a storage's class identifier as in the file: a GUID in memory form. */
    IOInfoClassId = 5,
    /* value: uint32_t, set to IONameNarrow by the caller. Writes IONameNarrow or IONameWide. */
    IOInfoNameType = 14
};

/* The buffers for a name, with the room for its terminator, and for a class identifier. */
enum { IONameBytes = 256, IOClassIdBytes = 16 };

/* Types of a name. */
enum {
    IONameNarrow = 2, /* 8-bit characters */
    IONameWide = 4    /* 16-bit characters */
};

/* Kinds of sub-objects for IOOpenSub. */
enum {
    IOSUB_RANGE = 8,    /* a stretch of the parent; IOSubRangeSpec, flags IOSubOpenRead */
    IOSUB_STREAM = 11,  /* a stream of a compound storage; IOSubSpec, flags IOSubOpenRead */
    IOSUB_STORAGE = 12, /* a sub-storage of a compound storage; IOSubSpec, flags IOSubOpenRead */
    IOSUB_DERIVED = 19, /* a transformation of the parent, as a stream; IOSubDerivedSpec, flags IOSubOpenRead */
    IOSUB_ARCHIVE = 39, /* the file seen as a ZIP archive; null, flags 0; the file's handle in *out on entry */
    IOSUB_MEMBER = 40   /* a member of such an archive; IOSubMemberSpec, flags 0 */
};

/* What sub-objects other than archives and their members are opened for: the flags of IOOpenSub. */
enum { IOSubOpenRead = 1 };

/* Names a stream or a sub-storage: kinds 11 and 12. The name holds 8-bit characters and is NUL-terminated. */
typedef struct IOSubSpec {
    HIOFILE parent;
    char name[264];
} IOSubSpec;

/* Names a member of an archive: kind 40. */
typedef struct IOSubMemberSpec {
    HIOFILE parent;
    char name[512];
} IOSubMemberSpec;

/* Names a stretch of the parent, from start (included) to end (excluded), in bytes: kind 8. */
typedef struct IOSubRangeSpec {
    HIOFILE parent;
    uint32_t start;
    uint32_t end;
} IOSubRangeSpec;

/* Names a transformation of the parent: kind 19. */
typedef struct IOSubDerivedSpec {
    HIOFILE parent;
    uint32_t reserved;
    uint32_t method;
    uint8_t reserved2[24];
} IOSubDerivedSpec;

/* ---- The reader -------------------------------------------------------------------------------------------------- */

enum { FIReaderBufferSize = 2048 };

/* A buffered byte reader over a handle. Its layout is public so that a host can make one for FIExtTextID: set
 * bytesLeft, bytesFilled and bufferPos to 0 and file to the handle; the other fields need no value. */
typedef struct FIReader {
    int16_t bytesLeft;    /* bytes of the buffer not yet delivered; -1 at end of file */
    uint32_t bytesFilled; /* valid bytes in buffer; 0 after a flush and at end of file */
    uint32_t bufferPos;   /* file offset of buffer[0] */
    uint8_t* cursor;      /* the next byte to deliver, inside buffer */
    HIOFILE file;         /* the handle read from; not owned */
    void* self;           /* the allocation that holds this record, null if it is the host's own */
    uint8_t buffer[FIReaderBufferSize];
} FIReader;

/* ---- The entries ------------------------------------------------------------------------------------------------- */

/* Flags of an identification: bit 0 asks for extended text identification, so that a file which no signature claims is
 * told as text (4022, 4005, 1184) or not (1999) by its characters. No other bit has a meaning. Text identification can
 * also be allowed for all calls by the global option UTOptionTextIdentification (base_utility.h). */
enum { FIFlagExtendedText = 1 };

/* Starts the base utility library: passes context on to UTInit and returns its status. Call it before any other entry.
 * The base utility library of this project takes a null context. */
int16_t FIInit(void* context);

/* Ends it again: passes context on to UTDeInit and returns its status. Call it last. */
int16_t FIDeInit(void* context);

/* Identifies the file that a path specification names; specificationType and specification are those of IOOpen
 * (base_utility.h). Returns 0 with *fiid set, or -1 with *fiid 0 and errno set when the file can't be opened, or -1 with
 * *fiid 1999 when memory is exhausted. */
int16_t FIIdFile(uint32_t specificationType, const void* specification, uint32_t flags, FIID* fiid);

/* The same, and writes the format's display name, NUL-terminated and cut to nameSize bytes, into name (may be null). */
int16_t FIIdFileEx(uint32_t specificationType, const void* specification, uint32_t flags, FIID* fiid, char* name,
                   uint16_t nameSize);

/* Identifies the object behind an open handle. The handle stays open and the caller's; with status 0 it stands at
 * offset 0 again. Returns 0 with *fiid set, or -1 with *fiid 1999 when memory is exhausted.
 *
 * A host's own handle that knows bytes and no more is told by its bytes alone: what is in a storage or an archive is
 * seen through its IOGetInfo and IOOpenSub. To have this library see storages and archives in it, wrap it:
 * IOOpen(&around, IOSpecHandle, handle, IOOpenRead), then FIIdHandle(around, ...), then close around. */
int16_t FIIdHandle(HIOFILE handle, uint32_t flags, FIID* fiid);

/* Runs one named test on an open handle. The only test is 4050, encoded text: returns 4050 to 4057 for uuencode,
 * xxencode, yEnc and BinHex text, otherwise 0. The handle is left wherever the test stopped. */
FIID FIIdSpecial(HIOFILE handle, int16_t test);

/* Tells text by its characters: looks at up to 4,096 bytes through the reader and stores 4022 (text), 4005 (text with
 * high bytes), 1184 or 1999 (not text). Always returns 0. The reader is left wherever the test stopped. */
int16_t FIExtTextID(FIReader* reader, FIID* fiid);

/* Lists the identifiers that have a display name. Start with FIGetFirstId and go on with FIGetNextId; each returns 1
 * with *fiid and the name (NUL-terminated, cut to nameSize bytes) set, or 0 at the end of the list. name may be null, with
 * a nameSize of 0. The cursor is the caller's; do not go on behind the end. */
int16_t FIGetFirstId(uint16_t* cursor, FIID* fiid, char* name, uint16_t nameSize);
int16_t FIGetNextId(uint16_t* cursor, FIID* fiid, char* name, uint16_t nameSize);

/* Writes the display name of an identifier from 1000 to 5015 and returns its length in bytes. Returns 0 for a null
 * buffer, and 0 with an empty name for an identifier out of that range. An identifier in the range that has no name
 * leaves the buffer as it was, so pass one with a defined content. */
uint16_t FIGetIDString(FIID fiid, char* name, uint16_t nameSize);

#ifdef __cplusplus
}
#endif

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
