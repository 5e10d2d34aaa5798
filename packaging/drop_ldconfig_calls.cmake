# Runs when the packages are made: CPack writes scripts that call ldconfig into a package of libraries. Debian wants the
# trigger instead (packaging/triggers), which runs it once, however many packages are installed.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(NOT package MATCHES "/libfiid1_")
        continue()
    endif()
    set(tree ${CPACK_TEMPORARY_DIRECTORY}/without_calls)
    file(REMOVE_RECURSE ${tree})
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
    execute_process(COMMAND dpkg-deb --root-owner-group --build ${tree} ${package}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
