/* libmagic.c - libmagic as a contestant: its database is loaded once, each file is told by magic_file. */
#include <magic.h>
#include <stddef.h>

#include "bench/compare/contestants.h"

static magic_t cookie;

static int Start(void) {
    cookie = magic_open(MAGIC_MIME_TYPE);
    return cookie == NULL ? -1 : magic_load(cookie, NULL);
}

static int Look(const char* path) { return magic_file(cookie, path) == NULL ? -1 : 0; }

static void End(void) { magic_close(cookie); }

const Contestant libmagicContestant = {"libmagic", Start, Look, End};
