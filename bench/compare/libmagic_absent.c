/* libmagic_absent.c - stands for libmagic where it is not installed. */
#include <stddef.h>

#include "bench/compare/contestants.h"

const Contestant libmagicContestant = {"libmagic", NULL, NULL, NULL};
