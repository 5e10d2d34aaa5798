/* base_utility.h - the base utility library: what the identification core imports for files, names and options.
 *
 * libfiid-platform implements it over POSIX. A host that has its own file access may replace that library by one with
 * the same functions. All functions of this header are part of that contract, with their names as they are: HeapAlloc,
 * lstrcmpiA and their like too, which the core calls for memory and for names. C99 and C++; a status is 0 for success.
 * No function throws.
 */
#ifndef FIID_BASE_UTILITY_H
#define FIID_BASE_UTILITY_H

#include <stddef.h>
#include <stdint.h>

#include "fiid.h"

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Start and end ----------------------------------------------------------------------------------------------- */

/* Starts the library. Calls nest; each takes one UTDeInit. The context is not used: pass null. Always returns 0. */
int16_t UTInit(void* context);

/* Ends the library; the last one forgets the options that were set. Returns -1 without a matching UTInit. */
int16_t UTDeInit(void* context);

/* ---- Opening ----------------------------------------------------------------------------------------------------- */

/* What IOOpen takes: the type of the description of an object and, behind the dash, what the pointer points to. */
enum {
    IOSpecNarrow = 2,     /* const char: a path, NUL-terminated, in the file system's own bytes (UTF-8 on POSIX) */
    IOSpecWide = 4,       /* const uint16_t: a path in UTF-16 units, ended by a 0 unit */
    IOSpecMemory = 5,     /* const IOMemorySpec: a block of memory */
    IOSpecDescriptor = 6, /* const IODescriptorSpec: an open file descriptor */
    IOSpecHandle = 7      /* struct IOFile, an HIOFILE itself: another handle, to see a storage or an archive in it */
};

/* A block of memory. It is not copied: it must stay as it is until the handle is closed. */
typedef struct IOMemorySpec {
    const void* data;
    uint64_t size;    /* bytes */
    const char* name; /* the name that IOInfoName reports, or null for none */
} IOMemorySpec;

/* An open descriptor of a regular file or a block device, readable; one of unbuffered reads (O_DIRECT) is refused with
 * EINVAL. It stays the caller's and must stay open until the handle is closed; its file position is neither used nor
 * moved. */
typedef struct IODescriptorSpec {
    int descriptor;
    const char* name; /* the name that IOInfoName reports, or null for none */
} IODescriptorSpec;

/* What the objects are opened for: the mode of IOOpen. */
enum { IOOpenRead = 1 };

/* Opens an object for reading and stores the new handle, which the caller closes with its IOClose. Regular files
 * (symbolic links followed) and block devices open; anything else, such as a directory, a FIFO, a socket or a character
 * device, is refused without blocking. To learn what a path leads to it is opened, so a FIFO has a reader for a moment
 * before it is refused: a writer that waits at it sees one come and go. mode is IOOpenRead. Returns 0, or -1 with *handle
 * null and errno telling the reason. */
int32_t IOOpen(HIOFILE* handle, uint32_t specificationType, const void* specification, uint32_t mode);

/* The one property of a handle that can be set: of an archive handle, a uint32_t of 0. */
enum { IOSetInfoArchive = 39, IOSetInfoArchiveMember = 2 };

/* Sets a property of a handle. Returns 0 for IOSetInfoArchive with its member IOSetInfoArchiveMember on the handle of
 * an archive, or -1. */
int32_t IOSetInfo(HIOFILE handle, uint32_t selector, uint32_t member, const void* value);

/* The start of an object that lies in memory. */
typedef struct UTHead {
    const uint8_t* bytes; /* the handle's own; they stay until it is closed */
    uint32_t size;        /* bytes: the whole object, or its first 8,192 */
    uint64_t objectSize;  /* bytes, at least size; UINT64_MAX when it is not known */
} UTHead;

/* Hands out the start of an object, reading it if need be, and returns 0. What it tells must be what reads would
 * deliver: with a size below 8,192 the object ends behind it. Returns -1 for a handle that has no such thing: one of a
 * host's own, one whose start can't be read, or one that was opened in another. The position is left alone.
 *
 * The one function of this header that a replacement may leave out: the identification is the same without it, and
 * slower. */
int16_t UTGetHead(HIOFILE handle, UTHead* head);

/* ---- Strings and options ----------------------------------------------------------------------------------------- */

/* Key of the display name of a format identifier: the identifier with this bit set. */
enum { UTStringKeyFormat = 0x10000 };

/* Writes the string of a key, NUL-terminated and cut to size bytes with the NUL. The last argument is 0. Returns 0 when
 * the key has a string, also when there is no room for any of it (buffer null, or size 0: nothing is written), and -1
 * with the buffer untouched when it has none. */
int16_t UTGetString(uint32_t key, char* buffer, uint16_t size, uint32_t reserved);

typedef struct UTOptionSet UTOptionSet;

/* Number of the option for extended text identification: a 4-byte value, bit 0 allows it for every identification. */
enum { UTOptionTextIdentification = 338486 };

/* The option set that holds for the whole process, or null before UTInit. */
UTOptionSet* UTGetGlobalOptionSet(void);

/* Copies the value of an option. *valueSize is the room in bytes on entry, the value's size on return. Returns 0, or -1
 * with the value untouched when the option was not set, is not known, or the room is too small. */
int16_t UTGetOption(UTOptionSet* set, uint32_t option, void* value, uint32_t* valueSize);

/* Sets an option; safe to call while other threads identify files. Returns 0, or -1 for an option that is not known or
 * a size that is not the option's. */
int16_t UTSetOption(UTOptionSet* set, uint32_t option, const void* value, uint32_t valueSize);

/* Compares two NUL-terminated strings without regard to the case of ASCII letters: below 0, 0, or above 0. */
int32_t lstrcmpiA(const char* first, const char* second);

/* ---- The process heap -------------------------------------------------------------------------------------------- */

/* The heap of the process; malloc's. */
void* GetProcessHeap(void);

/* Allocates size bytes, not cleared, or returns null. flags is 0. */
void* HeapAlloc(void* heap, uint32_t flags, size_t size);

/* Frees a block of HeapAlloc; null is let pass. Returns 1. */
int32_t HeapFree(void* heap, uint32_t flags, void* block);

/* ---- XML --------------------------------------------------------------------------------------------------------- */

/* An XML reader. */
typedef struct UTXmlReader* HUTXML;

/* An element name and the identifier that stands for it. */
typedef struct UTXmlTagPair {
    uint32_t tagId;
    const char* name; /* local name, NUL-terminated */
} UTXmlTagPair;

/* The tag identifier of an element that no map knows. */
enum { UTXmlUnknownTag = 0xFFFF };

/* The bit of UTXmlTag::flags that marks an end tag, also the one that an empty-element tag implies. */
enum { UTXmlFlagEndTag = 0x1000 };

typedef struct UTXmlTag {
    uint32_t namespaceId; /* of the pair that matched; 0 for an unknown tag */
    uint32_t tagId;
    uint16_t flags;
} UTXmlTag;

/* Starts an XML reader on a handle, which stays the caller's and must stay open until UTXMLDeInit. Returns 0, or -1. */
int16_t UTXMLInit(HUTXML* xml, HIOFILE handle);

/* Registers the element names of a namespace. The pairs and the namespace are not copied: they must stay as they are
 * until UTXMLDeInit. The first registered pair that fits an element gives its identifier. Returns 0, or -1. */
int16_t UTXMLAddTagMap(HUTXML* xml, const char* namespaceUri, uint32_t namespaceId, uint32_t reserved,
                       const UTXmlTagPair* pairs, uint32_t pairCount);

/* Delivers the next start or end tag in document order. other is not used and may be null. Returns 0, or non-zero at
 * the end of the document or where it stops being well-formed XML. No external entity is ever loaded. */
int16_t UTXMLReadNextTag(HUTXML* xml, UTXmlTag* tag, uint32_t* other);

/* Ends the reader. */
void UTXMLDeInit(HUTXML* xml);

#ifdef __cplusplus
}
#endif

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
