/* heap_counter.c - takes the place of malloc and its like, counts, and passes on to those of the GNU C library. Only a
 * program that counts is linked with it: the one that measures time has the heap as it is. */
#include "bench/compare/heap_counter.h"

#include <errno.h>
#include <stddef.h>

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

void* malloc(size_t size);
void* calloc(size_t count, size_t size);
void* realloc(void* block, size_t size);
void* aligned_alloc(size_t alignment, size_t size);
int posix_memalign(void** block, size_t alignment, size_t size);

static unsigned long long blocks;
static unsigned long long bytes;

unsigned long long BlocksTaken(void) { return blocks; }

unsigned long long BytesTaken(void) { return bytes; }

static void Count(size_t size) {
    ++blocks;
    bytes += size;
}

void* malloc(size_t size) {
    Count(size);
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    Count(count * size);
    return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
    Count(size);
    return __libc_realloc(block, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
    Count(size);
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) {
    Count(size);
    *block = __libc_memalign(alignment, size);
    return *block == NULL ? ENOMEM : 0;
}
