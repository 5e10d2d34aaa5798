/* own_symbols.c - a host that defines names which libfiid-detect uses inside: each goes on with its own. */
#include <fiid/detect.h>
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

void* HeapAlloc(void* heap, uint32_t flags, size_t size);
int32_t IOOpen(void** handle, uint32_t type, const void* specification, uint32_t mode);
int16_t FIIdHandle(void* handle, uint32_t flags, uint16_t* fiid);

void* HeapAlloc(void* heap, uint32_t flags, size_t size) {
    (void)heap, (void)flags, (void)size;
    abort();
}

int32_t IOOpen(void** handle, uint32_t type, const void* specification, uint32_t mode) {
    (void)handle, (void)type, (void)specification, (void)mode;
    abort();
}

int16_t FIIdHandle(void* handle, uint32_t flags, uint16_t* fiid) {
    (void)handle, (void)flags, (void)fiid;
    abort();
}

int main(int argc, char** argv) {
    fiid_result result;
    if (argc < 1 || fiid_detect_path(argv[0], NULL, &result) != FIID_OK) return 1;
    return fiid_detect_memory("GIF89a", 6, NULL, NULL, &result) == FIID_OK && result.fiid == 1503 ? 0 : 1;
}
