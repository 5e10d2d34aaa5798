// package.cpp - ZIP packages: an archive with a relationships part, and the parts to which the relationships lead.
#include <cstdint>
#include <string_view>

#include "platform/base_utility.h"
#include "platform/byte_objects.h"
#include "platform/operations.h"
#include "platform/package_library.h"
#include "platform/xml/relationships.h"
#include "platform/zip/archive.h"

struct PKGPackage {
    UTHandle* wrapper;  // around a handle of the host's own; null for a handle of this layer
    UTHandle* archive;
};

struct PKGPart {
    UTHandle* member;
};

namespace {

constexpr std::int16_t success = 0;
constexpr std::int16_t failure = -1;
constexpr std::string_view relationshipsPart = "_rels/.rels";

void* PKGAllocate(std::size_t size) { return HeapAlloc(GetProcessHeap(), 0, size); }

void PKGFree(void* block) { HeapFree(GetProcessHeap(), 0, block); }

// Finds the archive behind a handle. What was opened is in the package, also after a failure.
bool PKGFindArchive(HIOFILE handle, PKGPackage& package) {
    UTHandle* file = UTFindHandle(handle);
    if (file == nullptr) {
        package.wrapper = UTOpenForeign(handle);
        if (package.wrapper != nullptr) UTGiveOperations(*package.wrapper);
        file = package.wrapper;
    }
    if (file == nullptr) return false;
    package.archive = UTOpenArchive(*file);
    return package.archive != nullptr && UTHasMember(*package.archive, relationshipsPart);
}

// The name of the part to which the package's own relationships lead by a type.
UTPartName PKGFindPart(PKGPackage& package, const char* relationshipType) {
    UTHandle* const relationships = UTOpenMemberAnyCase(*package.archive, relationshipsPart);
    if (relationships == nullptr) return {nullptr, 0};
    const UTPartName name = UTFindRelationshipTarget(UTHandleFile(*relationships), relationshipType);
    UTCloseHandle(*relationships);
    return name;
}

UTHandle* PKGOpenPart(PKGPackage& package, const char* relationshipType) {
    const UTPartName name = PKGFindPart(package, relationshipType);
    if (name.text == nullptr) return nullptr;
    UTHandle* const member = UTOpenMemberAnyCase(*package.archive, std::string_view(name.text, name.length));
    UTFreePartName(name);
    return member;
}

}  // namespace

extern "C" {

std::int16_t PKGInit(HIOFILE handle, HPKGPACKAGE* package) {
    *package = nullptr;
    if (handle == nullptr) return failure;
    auto* const opened = static_cast<PKGPackage*>(PKGAllocate(sizeof(PKGPackage)));
    if (opened == nullptr) return failure;
    *opened = {nullptr, nullptr};
    if (!PKGFindArchive(handle, *opened)) {
        PKGDeinit(opened);
        return failure;
    }
    *package = opened;
    return success;
}

std::int16_t PKGOpenFileByType(HPKGPART* part, std::uint32_t, const char* relationshipType, HPKGPACKAGE package) {
    *part = nullptr;
    UTHandle* const member = PKGOpenPart(*package, relationshipType);
    if (member == nullptr) return failure;
    auto* const opened = static_cast<PKGPart*>(PKGAllocate(sizeof(PKGPart)));
    if (opened == nullptr) {
        UTCloseHandle(*member);
        return failure;
    }
    opened->member = member;
    *part = opened;
    return success;
}

HIOFILE PKGGetHIOFILE(HPKGPART part) { return UTHandleFile(*part->member); }

void PKGCloseFile(HPKGPART part) {
    if (part == nullptr) return;
    UTCloseHandle(*part->member);
    PKGFree(part);
}

void PKGDeinit(HPKGPACKAGE package) {
    if (package == nullptr) return;
    if (package->archive != nullptr) UTCloseHandle(*package->archive);
    if (package->wrapper != nullptr) UTCloseHandle(*package->wrapper);
    PKGFree(package);
}

}  // extern "C"
