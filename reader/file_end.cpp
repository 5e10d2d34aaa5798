// file_end.cpp - places told from the end of the file.
#include "reader/file_end.h"

#include "reader/reader.h"

bool FITellFromEnd(HIOFILE file, std::int32_t offset, std::uint32_t& position) {
    return file->operations.IOSeek(file, IOOriginEnd, offset) == 0 && file->operations.IOTell(file, &position) == 0;
}

std::uint32_t FIGoToEnd(FIReader& reader) {
    std::uint32_t end = 0;
    if (FITellFromEnd(reader.file, 0, end)) static_cast<void>(FIReaderSeek(reader, end));
    return FIReaderTell(reader);
}
