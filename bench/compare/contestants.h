/* contestants.h - what is measured side by side: each looks at one file, named by its path. */
#ifndef FIID_BENCH_CONTESTANTS_H
#define FIID_BENCH_CONTESTANTS_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Contestant {
    const char* name;
    int (*start)(void);            /* once, before the first file; 0, or -1 when it cannot start. Null: not built */
    int (*look)(const char* path); /* 0, or -1 when the file could not be looked at */
    void (*end)(void);
} Contestant;

extern const Contestant floorContestant;    /* open, fstat, pread of 4 KiB, close */
extern const Contestant libraryContestant;  /* FIIdFile with text identification */
extern const Contestant detectContestant;   /* fiid_detect_path */
extern const Contestant libmagicContestant; /* magic_file */
extern const Contestant glibContestant;     /* g_content_type_guess over the first 4 KiB, without a name */

/* Reads the first bytes of a file as the floor does: open, fstat, pread, close. Returns how many there are, at most
 * firstBytes, or -1. */
enum { firstBytes = 4096 };
int ReadFirstBytes(const char* path, unsigned char* bytes);

#ifdef __cplusplus
}
#endif

#endif
