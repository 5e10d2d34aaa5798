/* detect.h - libfiid-detect: what format is this file? One call, one answer.
 *
 *     fiid_result result;
 *     if (fiid_detect_path("letter.docx", NULL, &result) == FIID_OK) puts(result.name);
 *
 * C99 and C++. Any number of threads may call any function at the same time: the library has no state that changes, takes
 * no lock, and needs no start and no end. No function throws, prints, or changes the locale, a signal or the working
 * directory. Every structure is plain: integers of fixed width, pointers, arrays.
 *
 * Two tables tell formats. The signature table's answer is `fiid`; its identifiers lie from 1000 to 9999, and a file's
 * never changes from one version of this library to the next: archives have stored it. The further table looks on where
 * that answer leaves something open - nothing is known, some text, some ZIP archive - and tells formats and kinds from
 * 20000 up in `further`. It grows with each version, so this answer may become more precise.
 */
#ifndef FIID_DETECT_H
#define FIID_DETECT_H

#include <stdint.h>

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Version ----------------------------------------------------------------------------------------------------- */

/* Of this header. A larger major number breaks callers; a larger minor number adds to what is here. */
#define FIID_VERSION_MAJOR 1
#define FIID_VERSION_MINOR 1
#define FIID_VERSION_PATCH 0
#define FIID_VERSION "1.1.0"

/* The version of the library that runs, in the form of FIID_VERSION. Static. */
const char* fiid_version(void);

/* What the tables of the library that runs are called: printable ASCII without blanks, such as "1.1.0-89abcdef", of at
 * most 40 bytes. It is fiid_version(), a hyphen, and a hash over all that is data in the tables: patterns, identifiers,
 * names, MIME types, PRONOM identifiers, extensions, families. It is another one where any answer may be; so who stores
 * answers stores it with them, and asks again what FIID_FORMAT_IS_OPEN tells of. What routines look at is code, which the
 * hash does not see: that is why every change of an answer raises the version. Static. */
const char* fiid_tables_version(void);

/* ---- Statuses ---------------------------------------------------------------------------------------------------- */

/* What the functions return. More may be added: take any value but FIID_OK for a failure. */
enum {
    FIID_OK = 0,
    FIID_ERROR_ARGUMENT = 1,       /* a null pointer, an unknown flag, a size that can't be */
    FIID_ERROR_NOT_FOUND = 2,      /* nothing has this path */
    FIID_ERROR_ACCESS = 3,         /* the path may not be opened for reading */
    FIID_ERROR_DIRECTORY = 4,      /* the path or descriptor leads to a directory */
    FIID_ERROR_NOT_A_FILE = 5,     /* ... to a FIFO, a socket or a character device */
    FIID_ERROR_DESCRIPTOR = 6,     /* the descriptor is not open, not open for reading, or open with O_DIRECT */
    FIID_ERROR_OPEN = 7,           /* the path can't be opened, for another reason: see system_error */
    FIID_ERROR_READ = 8,           /* the first bytes can't be read: see system_error or source_error */
    FIID_ERROR_MEMORY = 9,         /* memory is exhausted */
    FIID_ERROR_UNKNOWN_FORMAT = 10 /* no format has this identifier or index */
};

/* A status in a few English words, such as "is a directory"; "unknown status" for a number that is none. Static. */
const char* fiid_error_text(int32_t status);

/* ---- Options ----------------------------------------------------------------------------------------------------- */

/* Bits of fiid_options.flags. */
enum {
    /* Do not tell text by its characters: what only they could tell is not known (1999) then. */
    FIID_NO_TEXT = 1,
    /* Leave out the further table and versions: further is 0, version "", and name, MIME type, PRONOM identifiers and
     * extensions are those of fiid. */
    FIID_NO_FURTHER = 2,
    /* Fill fiid_result.explanation. May read more of the file, but changes no other answer. */
    FIID_EXPLAIN = 4,
    /* fiid_detect_descriptor alone: the caller knows that the descriptor is open for reading, and not with O_DIRECT. It is
     * not asked, which spares a system call. */
    FIID_DESCRIPTOR_IS_READABLE = 8
};

/* Pass NULL for the defaults. size is the size of this structure as the caller knows it, so that it can grow: fields behind
 * size have their defaults, which is 0 for each. A size below that of the field size itself, or above 4,096, is
 * FIID_ERROR_ARGUMENT, and so are bits that the library does not know and bytes other than 0 in fields that it does not
 * know: it would not do what is asked for. */
typedef struct fiid_options {
    uint32_t size;  /* sizeof(fiid_options) */
    uint32_t flags; /* FIID_NO_TEXT and the like */
} fiid_options;

/* ---- The answer -------------------------------------------------------------------------------------------------- */

/* What the most precise answer stands on. */
enum {
    FIID_BASIS_NONE = 0,       /* nothing was found that tells the format */
    FIID_BASIS_SIGNATURE = 1,  /* bytes at known places */
    FIID_BASIS_STORAGE = 2,    /* a compound storage: its class identifier, its streams */
    FIID_BASIS_PACKAGE = 3,    /* a ZIP archive: its members, the types of its parts */
    FIID_BASIS_STRUCTURE = 4,  /* the structure behind the first bytes holds: lengths, checksums, records, a grammar */
    FIID_BASIS_STATISTICS = 5, /* how often which bytes or codes occur */
    FIID_BASIS_EXTENSION = 6,  /* the name's extension decides, and the contents do not speak against it */
    FIID_BASIS_TEXT = 7        /* the contents are text, of whatever kind */
};

/* A basis in one English word, such as "signature"; "" for a number that is none. Static. */
const char* fiid_basis_text(int32_t basis);

/* Bits of fiid_result.warnings. */
enum {
    FIID_WARN_EXTENSION = 1, /* the name has an extension, the format has usual ones, and it is none of them */
    FIID_WARN_CUT = 2,       /* the file ends in front of what its own structure tells of */
    FIID_WARN_SEVERAL = 4    /* several PRONOM identifiers remain possible */
};

/* A size that is not known. */
#define FIID_SIZE_UNKNOWN UINT64_MAX

/* The answer about one file. Every call fills all of it, also when it fails: then every number is 0, every string "" and
 * size FIID_SIZE_UNKNOWN, but for what system_error, source_error, bytes_read and calls tell of the failure, and size and
 * modified if the file was opened. Nothing of it is to be freed, and it may be copied: strings are NUL-terminated, never
 * null, and static, but for explanation, which lies in the result. All are ASCII.
 *
 * Its size and layout stay as they are within a major version; what is added takes the place of reserved fields, which
 * are filled with 0. */
typedef struct fiid_result {
    uint16_t fiid;        /* the signature table's identifier; 1999 when it knows none; 0 after a failure */
    uint16_t further;     /* the further table's more precise identifier, 0 if there is none */
    uint16_t row;         /* the signature table's deciding row; 0 when no row decided */
    uint16_t further_row; /* the further table's deciding row; 0 when further is 0 */
    int32_t basis;        /* FIID_BASIS_NONE and the like, of the most precise answer */
    uint32_t warnings;    /* FIID_WARN_EXTENSION and the like */

    /* Of the file, in bytes. FIID_SIZE_UNKNOWN for one that tells none, as under /proc, and does not end in what is read. */
    uint64_t size;

    /* When the file was last modified: seconds since 1970-01-01 UTC, maybe negative, and up to 999,999,999 nanoseconds
     * more. modified_known is 1 where that is told, for paths and descriptors, and else 0. */
    int64_t modified_seconds;
    uint32_t modified_nanoseconds;
    uint32_t modified_known;

    /* What the answer cost: bytes that were read, by the system or the source, and how many calls delivered them. Of
     * memory, which is looked at in place, both are 0. */
    uint64_t bytes_read;
    uint64_t calls;

    /* The errno of the system call that failed; 0 when none did, or it has no such number. */
    int32_t system_error;
    /* What the source's read_at returned first that was not 0; also with FIID_OK, where a part of the file could not be
     * read. */
    int32_t source_error;

    uint32_t reserved_numbers[6]; /* 0 */

    /* Of the most precise answer, which is that of further, or of fiid where that is 0: its name, such as "JPEG XL image,
     * codestream"; its media type, or "" where none is right for all of these files; the version as read in the file, such
     * as "1.7", or "" where none is read; PRONOM identifiers with one blank between two, the one that the version leaves or
     * all that are possible, or "" where none is right; and usual extensions of a name, in lower case without a full stop,
     * with one blank between two, or "" where there is none. */
    const char* name;
    const char* mime;
    const char* version;
    const char* puids;
    const char* extensions;

    /* Why: what row and further_row look for, in the tables' notation, or ""; and the name of the routine that decided,
     * where a row's pattern did not, else "". */
    const char* signature;
    const char* further_signature;
    const char* routine;

    const char* family; /* of the most precise answer: a word of fiid_format.family, or "" after a failure */

    const char* reserved_texts[3]; /* "" */

    /* With FIID_EXPLAIN: what was looked at, in plain words. What stems from the file, such as names of parts, has bytes
     * other than printable ASCII, and the backslash, escaped as \xHH. What is longer is cut. Else "". */
    char explanation[512];
} fiid_result;

/* ---- Identification ---------------------------------------------------------------------------------------------- */

/* Each of the four identifies one file and fills the result; options may be NULL. Returns FIID_OK, also for a file of a
 * format that is not known, or a failure. A file that opens and whose first bytes can't be read is a failure; where later
 * bytes can't be read the answer is that of what can be. The same bytes under the same name have the same answer through
 * each of them.
 *
 * A name is the file's name or path, NUL-terminated bytes, of which what stands behind the last slash counts; NULL or ""
 * for none. For a few formats its extension decides, and it is what FIID_WARN_EXTENSION speaks of. */

/* The file at a path, in the file system's own bytes, whatever they are. Symbolic links are followed; regular files and
 * block devices are read. Anything else is refused without waiting for it; to be told apart it is opened, so a writer
 * that waits at a FIFO sees a reader come and go. */
int32_t fiid_detect_path(const char* path, const fiid_options* options, fiid_result* result);

/* size bytes of memory, which must stay as they are during the call; data may be null with a size of 0. */
int32_t fiid_detect_memory(const void* data, uint64_t size, const char* name, const fiid_options* options,
                           fiid_result* result);

/* The file of an open descriptor, which stays the caller's and open; its position is neither used nor moved. */
int32_t fiid_detect_descriptor(int descriptor, const char* name, const fiid_options* options, fiid_result* result);

/* Anything that delivers bytes at an offset: an object in a store, a member of an archive, a file in a browser. */
typedef struct fiid_source {
    void* context; /* for read_at alone */

    /* Reads up to size bytes (1 to 65,536) at an offset below the source's size into buffer, stores in *count how many came,
     * and returns 0. Fewer than size may come: the library asks on for the rest. A count of 0 says that the source ends
     * here, sooner than its size told. Any other return value is a failure, which result.source_error tells; the buffer and
     * *count are then not looked at. A count above size is taken for a failure, with a source_error of -1. It is called in
     * the caller's thread, during the call alone, and must not throw. */
    int32_t (*read_at)(void* context, uint64_t offset, void* buffer, uint32_t size, uint32_t* count);

    uint64_t size;    /* in bytes. It must be known: FIID_SIZE_UNKNOWN is FIID_ERROR_ARGUMENT */
    const char* name; /* as above */

    /* The bytes that one call should fetch at least where reads ahead are made, which is for small reads behind the first
     * 8,192 bytes: raised to a power of two from 4,096 to 65,536; 0 is 4,096. Blocks grow to 65,536 by doubling while
     * reads go on behind each other; at the source's end they are of 8,192 bytes at most. More bytes make fewer calls for
     * large packages, and are read in vain for others. */
    uint32_t preferred_block;
    uint32_t reserved; /* 0 */
} fiid_source;

int32_t fiid_detect_source(const fiid_source* source, const fiid_options* options, fiid_result* result);

/* ---- The formats ------------------------------------------------------------------------------------------------- */

/* Bits of fiid_format.flags. */
enum {
    /* Another version of the tables may answer otherwise about a file of which this format is the most precise answer.
     * So it is of every format of the further table, and of those of the signature table over whose answer the further
     * table has rows, or in whose files a version is read. About files of all others there is nothing to ask again: fiid
     * stays as it is, further stays 0, and what is told of the format stands in fiid_format. */
    FIID_FORMAT_IS_OPEN = 1
};

/* One format. The strings are as in fiid_result, but that puids are all identifiers of the format. */
typedef struct fiid_format {
    uint16_t id;       /* as in fiid (below 20000) or further (from 20000 up) */
    uint16_t reserved; /* 0 */
    uint32_t flags;    /* FIID_FORMAT_IS_OPEN, or 0 */
    const char* name;
    const char* mime;
    const char* puids;
    const char* extensions;
    const char* family; /* "document", "spreadsheet", "presentation", "database", "image", "drawing", "audio", "video",
                           "archive", "mail", "text", "code", "system" or "unknown"; "" where there is no format */
    const char* reserved_texts[3]; /* "" */
} fiid_format;

/* How many formats there are in both tables together. */
uint32_t fiid_format_count(void);

/* The format of an index from 0 to fiid_format_count() - 1, in ascending order of identifiers. Returns FIID_OK, or
 * FIID_ERROR_UNKNOWN_FORMAT with *format filled with 0 and "" for another index, or FIID_ERROR_ARGUMENT for a null
 * pointer. */
int32_t fiid_format_at(uint32_t index, fiid_format* format);

/* The format of an identifier of either table, likewise. */
int32_t fiid_format_find(uint16_t id, fiid_format* format);

#ifdef __cplusplus
}
#endif

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
