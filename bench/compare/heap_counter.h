/* heap_counter.h - a process that counts the blocks it takes from the heap. */
#ifndef FIID_BENCH_HEAP_COUNTER_H
#define FIID_BENCH_HEAP_COUNTER_H

#ifdef __cplusplus
extern "C" {
#endif

/* Blocks and bytes asked for since the process began. */
unsigned long long BlocksTaken(void);
unsigned long long BytesTaken(void);

#ifdef __cplusplus
}
#endif

#endif
