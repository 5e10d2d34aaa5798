# The manual pages, made by asciidoctor of the sources in man/ where it is there.
find_program(FIID_ASCIIDOCTOR asciidoctor)
if(NOT FIID_ASCIIDOCTOR)
    if(FIID_PACKAGES)
        message(FATAL_ERROR "asciidoctor is not installed: packages need the manual pages")
    endif()
    message(STATUS "asciidoctor is not installed: there will be no manual pages")
    return()
endif()

file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/man)

# Makes the page NAME(SECTION), compressed as the installed pages are.
function(fiid_add_man_page name section component)
    set(source ${PROJECT_SOURCE_DIR}/man/${name}.${section}.adoc)
    set(page ${PROJECT_BINARY_DIR}/man/${name}.${section})
    add_custom_command(OUTPUT ${page}.gz
        COMMAND ${FIID_ASCIIDOCTOR} -b manpage -a reproducible -a "manmanual=fiid"
            -a "mansource=fiid ${PROJECT_VERSION}" -o ${page} ${source}
        COMMAND gzip -9nf ${page}
        DEPENDS ${source} VERBATIM)
    add_custom_target(man_${name} ALL DEPENDS ${page}.gz)
    install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
endfunction()

fiid_add_man_page(fiid 1 program)
fiid_add_man_page(fiid_detect 3 development)

# A name for each function of fiid/detect.h, which leads to the page of all.
file(STRINGS ${PROJECT_SOURCE_DIR}/include/fiid/detect.h declarations REGEX "^(int32_t|uint32_t|const char\\*) fiid_")
foreach(declaration IN LISTS declarations)
    string(REGEX MATCH "fiid_[a-z_]+" function "${declaration}")
    set(page ${PROJECT_BINARY_DIR}/man/${function}.3.gz)
    file(CREATE_LINK fiid_detect.3.gz ${page} SYMBOLIC)
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
endforeach()
