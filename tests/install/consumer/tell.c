/* A program in C99 that somebody else writes: it tells the format of the file that is named. */
#include <fiid/detect.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
    fiid_result result;
    if (argc != 2 || strcmp(fiid_version(), FIID_VERSION) != 0) return 2;
    if (fiid_detect_path(argv[1], NULL, &result) != FIID_OK) return 1;
    printf("%u %s\n", (unsigned)result.fiid, result.mime);
    return 0;
}
