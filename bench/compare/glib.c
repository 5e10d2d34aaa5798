/* glib.c - GLib's content types as a contestant: by content alone, from the first 4 KiB. */
#include <gio/gio.h>

#include "bench/compare/contestants.h"

static int Guess(const unsigned char* bytes, int count) {
    gchar* const type = g_content_type_guess(NULL, bytes, (gsize)count, NULL);
    const int status = type == NULL ? -1 : 0;
    g_free(type);
    return status;
}

/* The first guess loads the database. */
static int Start(void) { return Guess((const unsigned char*)"text", 4); }

static int Look(const char* path) {
    unsigned char bytes[firstBytes];
    const int count = ReadFirstBytes(path, bytes);
    return count < 0 ? -1 : Guess(bytes, count);
}

static void End(void) {}

const Contestant glibContestant = {"GLib", Start, Look, End};
