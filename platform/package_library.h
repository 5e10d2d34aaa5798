/* package_library.h - the package library: ZIP packages with relationships (ISO/IEC 29500-2), as the core imports it.
 *
 * C99 and C++; a status is 0 for success.
 */
#ifndef FIID_PACKAGE_LIBRARY_H
#define FIID_PACKAGE_LIBRARY_H

#include <stdint.h>

#include "fiid.h"

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct PKGPackage* HPKGPACKAGE;
typedef struct PKGPart* HPKGPART;

/* Opens the object behind a handle as a package: a ZIP archive whose central directory can be read and which holds a
 * member "_rels/.rels" (letters compared without case). The handle stays the caller's and must stay open until
 * PKGDeinit. Returns 0, or -1 with *package null. */
int16_t PKGInit(HIOFILE handle, HPKGPACKAGE* package);

/* Opens the part to which the package's first internal relationship of a type leads. reserved is 0. The part is ended
 * with PKGCloseFile before the package. Returns 0, or -1 with *part null when there is no such relationship or part,
 * the part can't be unpacked, or memory is exhausted.
 *
 * The first call for a package reads its relationships, of all types, and keeps them until PKGDeinit; the others only
 * look them up. What a relationships part may cost is bounded: relationships behind a bound are not there. */
int16_t PKGOpenFileByType(HPKGPART* part, uint32_t reserved, const char* relationshipType, HPKGPACKAGE package);

/* The part's bytes as a handle. It is the part's: the caller does not close it. */
HIOFILE PKGGetHIOFILE(HPKGPART part);

void PKGCloseFile(HPKGPART part);
void PKGDeinit(HPKGPACKAGE package);

#ifdef __cplusplus
}
#endif

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
