# What every target of the project is compiled with. fiid_options carries it, so that nothing of it reaches a user.
add_library(fiid_options INTERFACE)
target_compile_options(fiid_options INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
target_compile_options(fiid_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Wnon-virtual-dtor>)
# What is inline stays a symbol that a library can hide: g++ marks some as one for the whole process otherwise.
target_compile_options(fiid_options INTERFACE
    $<$<AND:$<COMPILE_LANG_AND_ID:CXX,GNU>,$<NOT:$<BOOL:$<TARGET_PROPERTY:FIID_TEST>>>>:-fno-gnu-unique>)
target_include_directories(fiid_options INTERFACE
    ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/generated)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Sizes of files have 64 bits all the same, and their times go on behind 2038.
    target_compile_definitions(fiid_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

if(FIID_SANITIZE)
    # Undefined behaviour is looked for in what is tested: in the tests themselves, which have the property FIID_TEST, the
    # checks would cost two fifths of the compiler's time.
    string(REPLACE ",undefined" "" sanitize_tests ${FIID_SANITIZE})
    string(REPLACE "," "$<COMMA>" sanitize_tested ${FIID_SANITIZE})
    target_compile_options(fiid_options INTERFACE -fno-omit-frame-pointer
        -fsanitize=$<IF:$<BOOL:$<TARGET_PROPERTY:FIID_TEST>>,${sanitize_tests},${sanitize_tested}>)
    target_link_options(fiid_options INTERFACE -fsanitize=${FIID_SANITIZE})
    # With sanitizers g++ 12 takes members of the standard library's std::function for uninitialised.
    target_compile_options(fiid_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    if(FIID_SANITIZE MATCHES "undefined")
        target_compile_options(fiid_options INTERFACE -fno-sanitize-recover=all)
    endif()
endif()
if(FIID_COVERAGE)
    # Threads count too: an increment that is not atomic is lost, and gcovr refuses the counters that result.
    target_compile_options(fiid_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(fiid_options INTERFACE --coverage)
endif()
