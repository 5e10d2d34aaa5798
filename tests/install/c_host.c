/* A host in C: identifies a file through all ten entries, with the installed header and shared libraries. */
#include <fiid.h>
#include <fiid/base_utility.h>
#include <fiid/package_library.h>
#include <stdio.h>
#include <string.h>

static int failures = 0;

static void expect(int holds, const char* what) {
    if (holds) return;
    fprintf(stderr, "c_host: %s\n", what);
    ++failures;
}

static void identify_file(const char* path) {
    FIID fiid = 0;
    char name[100] = "";
    expect(FIIdFile(IOSpecNarrow, path, 0, &fiid) == 0 && fiid == 1503, "FIIdFile tells a GIF file");
    expect(FIIdFileEx(IOSpecNarrow, path, 0, &fiid, name, sizeof(name)) == 0 && fiid == 1503, "FIIdFileEx does too");
    expect(strlen(name) > 0, "and gives its name");
    expect(FIIdFile(IOSpecNarrow, "/nonexistent", 0, &fiid) == -1 && fiid == 0, "a missing file is a failure");
}

static void identify_handle(void) {
    static const char text[] = "only text\n";
    const IOMemorySpec memory = {text, sizeof(text) - 1, "a.txt"};
    HIOFILE handle = NULL;
    FIID fiid = 0;
    FIReader reader;
    expect(IOOpen(&handle, IOSpecMemory, &memory, IOOpenRead) == 0, "IOOpen opens memory");
    expect(FIIdHandle(handle, FIFlagExtendedText, &fiid) == 0 && fiid == 4022, "FIIdHandle tells text");
    expect(FIIdHandle(handle, 0, &fiid) == 0 && fiid == 1999, "and does not without the flag");
    expect(FIIdSpecial(handle, 4050) == 0, "FIIdSpecial finds no encoded text");
    reader.bytesLeft = 0;
    reader.bytesFilled = 0;
    reader.bufferPos = 0;
    reader.file = handle;
    expect(FIExtTextID(&reader, &fiid) == 0 && fiid == 4022, "FIExtTextID takes a reader of the host's");
    handle->operations.IOClose(handle);
}

static void list_formats(void) {
    uint16_t cursor = 0;
    FIID fiid = 0;
    char name[100] = "";
    int count = 0;
    int16_t found = FIGetFirstId(&cursor, &fiid, name, sizeof(name));
    expect(found == 1 && fiid == 1000, "the first identifier is 1000");
    for (; found == 1; found = FIGetNextId(&cursor, &fiid, name, sizeof(name))) ++count;
    expect(count > 400, "some four hundred identifiers have a name");
    expect(FIGetIDString(1999, name, sizeof(name)) == strlen(name), "FIGetIDString tells a length");
}

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    expect(FIInit(NULL) == 0, "FIInit");
    identify_file(argv[1]);
    identify_handle();
    list_formats();
    expect(FIDeInit(NULL) == 0, "FIDeInit");
    return failures == 0 ? 0 : 1;
}
