// set_info.cpp - IOSetInfo. The function stands in a file of its own, so that a program linked with the static library
// can bring its own.
#include "platform/base_utility.h"
#include "platform/zip/archive.h"

extern "C" std::int32_t IOSetInfo(HIOFILE handle, std::uint32_t selector, std::uint32_t member, const void*) {
    const UTHandle* const known = UTFindHandle(handle);
    const bool settable =
        known != nullptr && UTIsArchive(*known) && selector == IOSetInfoArchive && member == IOSetInfoArchiveMember;
    return settable ? 0 : -1;
}
