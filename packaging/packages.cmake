# Debian packages: fiid (the program), libfiid1 (what runs) and libfiid-dev (what is built on). scripts/package makes them.
set(FIID_PACKAGE_OF_program fiid)
set(FIID_PACKAGE_OF_libraries libfiid1)
set(FIID_PACKAGE_OF_development libfiid-dev)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "${PROJECT_NAME}")
set(CPACK_PACKAGE_CONTACT "fiid maintainers <maintainers@fiid.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL program libraries development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME fiid)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "tell the format of files by their content
fiid opens each file and answers with one of several hundred format
identifiers, its name, MIME type, PRONOM identifiers and version: bytes at
scattered offsets, compound storages, ZIP packages, XML and HTML, mail,
encoded text and statistics decide.

It costs little more than opening the file, sums up, keeps scans of millions
of files in SQLite, writes text, JSON, CSV, TSV or an HTML report, and is made
for archives, e-discovery, search indexers and mail gateways.")

set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME libfiid1)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/platform)  # libfiid needs libfiid-platform
set(CPACK_DEBIAN_LIBRARIES_DESCRIPTION "libraries that tell the format of files by their content
libfiid-detect answers in one call, for a path, memory, a descriptor or
anything that delivers bytes at an offset. libfiid is the same for hosts that
bring handles of their own, and libfiid-platform what it stands on.

This package holds the shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libfiid-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libfiid1 (= ${PROJECT_VERSION}-1), libexpat1-dev, zlib1g-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "libraries that tell the format of files by their content (development)
libfiid-detect answers in one call, for a path, memory, a descriptor or
anything that delivers bytes at an offset. libfiid is the same for hosts that
bring handles of their own, and libfiid-platform what it stands on.

This package holds the headers, the static libraries, the files for CMake and
pkg-config, and the manual page fiid_detect(3).")

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/strip_archives.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/drop_ldconfig_calls.cmake)

# What Debian wants in each package beside its files.
set(changelog ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz)
add_custom_command(OUTPUT ${changelog}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/packaging
    COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/packaging/changelog > ${changelog}
    DEPENDS ${PROJECT_SOURCE_DIR}/packaging/changelog VERBATIM)
add_custom_target(debian_changelog ALL DEPENDS ${changelog})
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright ${changelog}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${FIID_PACKAGE_OF_${component}} COMPONENT ${component})
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/lintian/${FIID_PACKAGE_OF_${component}}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
endforeach()

include(CPack)
