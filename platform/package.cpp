// package.cpp - ZIP packages: an archive with a relationships part, and the parts to which the relationships lead.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/byte_objects.h"
#include "platform/heap_allocator.h"
#include "platform/operations.h"
#include "platform/package_library.h"
#include "platform/xml/plain_tags.h"
#include "platform/xml/relationships.h"
#include "platform/zip/archive.h"

struct PKGPackage {
    UTHandle* wrapper = nullptr;  // around a handle of the host's own; null for a handle of this layer
    UTHandle* archive = nullptr;
    UTRelationships* relationships = nullptr;  // once read; null before
    bool startRead = false;                    // whether start tells the truth
    std::uint32_t startFilled = 0;
    char start[plainTagBytes];  // of the relationships part
};

struct PKGPart {
    UTHandle* member = nullptr;
};

namespace {

constexpr std::int16_t success = 0;
constexpr std::int16_t failure = -1;
constexpr std::string_view relationshipsPart = "_rels/.rels";

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

// The package's own relationships. They are read when they are first asked for, and kept: to read them may cost much,
// and a package is asked for parts of several types. Returns null when they can't be read.
const UTRelationships* PKGFindRelationships(PKGPackage& package) {
    if (package.relationships != nullptr) return package.relationships;
    UTHandle* const part = UTOpenMemberAnyCase(*package.archive, relationshipsPart);
    if (part == nullptr) return nullptr;
    package.relationships = UTReadRelationships(UTHandleFile(*part));
    UTCloseHandle(*part);
    return package.relationships;
}

// Reads the start of the relationships part, which often is all of it. Returns false when there is no such part.
bool PKGReadStart(PKGPackage& package) {
    if (package.startRead) return true;
    UTHandle* const part = UTOpenMemberAnyCase(*package.archive, relationshipsPart);
    if (part == nullptr) return false;
    if (UTReadAt(*part, 0, package.start, plainTagBytes, package.startFilled) != 0) package.startFilled = 0;
    UTCloseHandle(*part);
    package.startRead = true;
    return true;
}

UTHandle* PKGOpenTarget(PKGPackage& package, std::string_view target) {
    char name[plainTagBytes];
    std::ranges::copy(target, name);
    return UTOpenMemberAnyCase(*package.archive, {name, UTResolveTarget(name, target.size())});
}

UTHandle* PKGOpenPart(PKGPackage& package, const char* relationshipType) {
    // Where nobody sees it, a plain part is searched as it lies there.
    if (UTIsUnseen(*package.archive) && package.relationships == nullptr) {
        if (!PKGReadStart(package)) return nullptr;
        std::string_view target;
        switch (UTPlainFindRelationship({package.start, package.startFilled}, relationshipType, target)) {
            case UTPlainFind::Found:
                return PKGOpenTarget(package, target);
            case UTPlainFind::Absent:
            case UTPlainFind::NoTarget:
                return nullptr;
            case UTPlainFind::NotPlain:
                break;
        }
    }
    const UTRelationships* const relationships = PKGFindRelationships(package);
    if (relationships == nullptr) return nullptr;
    const std::optional<std::string_view> name = UTFindTarget(*relationships, relationshipType);
    return name ? UTOpenMemberAnyCase(*package.archive, *name) : nullptr;
}

}  // namespace

extern "C" {

std::int16_t PKGInit(HIOFILE handle, HPKGPACKAGE* package) {
    *package = nullptr;
    if (handle == nullptr) return failure;
    auto* const opened = UTNewRecord<PKGPackage>();
    if (opened == nullptr) return failure;
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
    auto* const opened = UTNewRecord<PKGPart>();
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
    UTDeleteRecord(*part);
}

void PKGDeinit(HPKGPACKAGE package) {
    if (package == nullptr) return;
    if (package->relationships != nullptr) UTFreeRelationships(*package->relationships);
    if (package->archive != nullptr) UTCloseHandle(*package->archive);
    if (package->wrapper != nullptr) UTCloseHandle(*package->wrapper);
    UTDeleteRecord(*package);
}

}  // extern "C"
