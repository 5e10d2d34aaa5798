/* glib_absent.c - stands for GLib where it is not installed. */
#include <stddef.h>

#include "bench/compare/contestants.h"

const Contestant glibContestant = {"GLib", NULL, NULL, NULL};
