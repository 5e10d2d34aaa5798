# Writes the style and the script of the HTML report as C++ source, with the hashes under which the page's
# Content-Security-Policy lets them run: cmake -DSTYLE=... -DSCRIPT=... -DOUTPUT=... -P embed.cmake

# The SHA-256 of a file in base64, as a Content-Security-Policy has it.
function(hash_file path result)
    file(SHA256 ${path} digits)
    set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    string(APPEND digits "00")  # 33 bytes are 44 letters; the last one tells nothing and becomes the padding
    set(text "")
    foreach(group RANGE 10)
        math(EXPR place "6 * ${group}")
        string(SUBSTRING ${digits} ${place} 6 three_bytes)
        foreach(shift IN ITEMS 18 12 6 0)
            math(EXPR index "(0x${three_bytes} >> ${shift}) & 63")
            string(SUBSTRING ${alphabet} ${index} 1 letter)
            string(APPEND text ${letter})
        endforeach()
    endforeach()
    string(REGEX REPLACE ".$" "=" text "${text}")
    set(${result} "sha256-${text}" PARENT_SCOPE)
endfunction()

# A file as raw string literals: compilers limit the length of a single one.
function(quote_file path result)
    file(READ ${path} text)
    if(text MATCHES "</s|<!--|\\)page\"")
        message(FATAL_ERROR "${path} has what ends its element in the page, or its literal here")
    endif()
    string(LENGTH "${text}" length)
    set(literals "")
    set(place 0)
    while(place LESS length)
        string(SUBSTRING "${text}" ${place} 8000 piece)
        string(APPEND literals "    R\"page(${piece})page\"\n")
        math(EXPR place "${place} + 8000")
    endwhile()
    set(${result} "${literals}" PARENT_SCOPE)
endfunction()

hash_file(${STYLE} style_hash)
hash_file(${SCRIPT} script_hash)
quote_file(${STYLE} style)
quote_file(${SCRIPT} script)
file(WRITE ${OUTPUT} "// Made of ${STYLE} and ${SCRIPT} by embed.cmake.\n#include \"report/html/page.h\"\n\n"
    "const std::string_view pageStyle =\n${style};\n"
    "const std::string_view pageStyleHash = \"${style_hash}\";\n\n"
    "const std::string_view pageScript =\n${script};\n"
    "const std::string_view pageScriptHash = \"${script_hash}\";\n")
