# What `cmake --install` lays down, in three components: program, libraries (what runs) and development (what is built on).
# A prefix can be moved as a whole: nothing in it names its own place.
include(CMakePackageConfigHelpers)

option(FIID_PACKAGES "Add what Debian packages hold beside it: copyright, changelog" OFF)
set(FIID_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Where zsh looks for completions")
set(FIID_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/fiid)

# Installs a library both ways. CMake's packages call it fiid::NAME and fiid::NAME_static.
function(fiid_install_library name shared static)
    set_target_properties(${shared} PROPERTIES EXPORT_NAME ${name})
    set_target_properties(${static} PROPERTIES EXPORT_NAME ${name}_static)
    install(TARGETS ${shared} EXPORT fiid-shared LIBRARY COMPONENT libraries NAMELINK_COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    install(TARGETS ${static} EXPORT fiid-static ARCHIVE COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

install(TARGETS fiid_program COMPONENT program)
fiid_install_library(platform fiid_platform fiid_platform_static)
fiid_install_library(fiid fiid_shared fiid_static)
fiid_install_library(detect fiid_detect_shared fiid_detect_static)

install(FILES ${PROJECT_SOURCE_DIR}/include/fiid.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(FILES
    ${PROJECT_SOURCE_DIR}/include/fiid/detect.h
    ${PROJECT_SOURCE_DIR}/platform/base_utility.h
    ${PROJECT_SOURCE_DIR}/platform/package_library.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/fiid COMPONENT development)

foreach(linkage IN ITEMS shared static)
    install(EXPORT fiid-${linkage} NAMESPACE fiid:: DESTINATION ${FIID_CMAKE_DIR} COMPONENT development)
endforeach()
configure_package_config_file(${PROJECT_SOURCE_DIR}/packaging/fiid-config.cmake.in
    ${PROJECT_BINARY_DIR}/generated/fiid-config.cmake INSTALL_DESTINATION ${FIID_CMAKE_DIR}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/generated/fiid-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/generated/fiid-config.cmake ${PROJECT_BINARY_DIR}/generated/fiid-config-version.cmake
    DESTINATION ${FIID_CMAKE_DIR} COMPONENT development)

# The way from the folder of the .pc files up to the prefix.
file(RELATIVE_PATH FIID_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" FIID_PREFIX_FROM_PC "${FIID_PREFIX_FROM_PC}")
foreach(name IN ITEMS fiid fiid-detect fiid-platform)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/${name}.pc.in ${PROJECT_BINARY_DIR}/generated/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/generated/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
endforeach()

install(FILES ${PROJECT_SOURCE_DIR}/completions/fiid.bash RENAME fiid
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
install(FILES ${PROJECT_SOURCE_DIR}/completions/_fiid DESTINATION ${FIID_ZSH_COMPLETIONS} COMPONENT program)
install(FILES ${PROJECT_SOURCE_DIR}/completions/fiid.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT program)

include(cmake/man_pages.cmake)
if(FIID_PACKAGES)
    include(packaging/packages.cmake)
endif()
