# Runs before the packages are made of what is installed: CPack strips programs and shared libraries, but no static ones.
file(GLOB_RECURSE archives ${CPACK_TEMPORARY_DIRECTORY}/*.a)
foreach(archive IN LISTS archives)
    execute_process(COMMAND strip --strip-debug --remove-section=.comment --enable-deterministic-archives ${archive}
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
