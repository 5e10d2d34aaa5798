# One CMakeLists.txt per folder; these functions keep each of them to the list of its sources.

# Adds a folder of the identification core: the sources of the calling CMakeLists.txt as objects, without exceptions.
# core/ collects the objects of all folders into the libraries.
function(fiid_add_core_folder)
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    add_library(fiid_${folder}_objects OBJECT ${ARGN})
    target_link_libraries(fiid_${folder}_objects PUBLIC fiid_options)
    target_compile_options(fiid_${folder}_objects PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti>)
    set_property(GLOBAL APPEND PROPERTY FIID_CORE_OBJECTS $<TARGET_OBJECTS:fiid_${folder}_objects>)
endfunction()

# Makes a shared library export the symbols of its map alone and find its siblings beside itself.
function(fiid_finish_shared_library target name)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name}
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
    set(map ${CMAKE_CURRENT_SOURCE_DIR}/lib${name}.map)
    target_link_options(${target} PRIVATE -Wl,--version-script=${map} -Wl,--no-undefined)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${map})
endfunction()

# Tells what a static library needs beside itself, here and where it is installed, where the names of CMake's own modules
# are known, and a program in C does not link the standard library of C++ by itself.
function(fiid_link_static_library target)
    target_link_libraries(${target}
        PUBLIC $<BUILD_INTERFACE:PkgConfig::EXPAT> $<BUILD_INTERFACE:PkgConfig::ZLIB>
        INTERFACE $<INSTALL_INTERFACE:EXPAT::EXPAT> $<INSTALL_INTERFACE:ZLIB::ZLIB> $<INSTALL_INTERFACE:stdc++>)
endfunction()
