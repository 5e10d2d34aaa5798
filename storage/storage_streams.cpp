// storage_streams.cpp - the handle's operations on compound storages.
#include "storage/storage_streams.h"

#include <cstring>

bool FIIsStorage(HIOFILE handle) { return handle->operations.IOGetInfo(handle, IOInfoIsStorage, nullptr) == 0; }

HIOFILE FIOpenStorageObject(IOSubSpec& specification, std::uint32_t kind, const char* name) {
    std::strcpy(specification.name, name);  // all names are literals of this folder, far shorter than the field
    HIOFILE object = nullptr;
    const HIOFILE parent = specification.parent;
    return parent->operations.IOOpenSub(&object, kind, &specification, IOSubOpenRead) == 0 ? object : nullptr;
}

void FICloseStorageObject(HIOFILE object) { static_cast<void>(object->operations.IOClose(object)); }
