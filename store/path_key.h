// path_key.h - the form in which a store holds a path.
#pragma once

#include <string>
#include <string_view>

// A path without what changes nothing about where it leads: no "." among its parts, no slash behind another or at the
// end. "./a//b/./c" is "a/b/c", "a/" is "a", "." and "/" stay. ".." stays too: behind a symbolic link it leads
// elsewhere than to the part in front of it. "" stays "".
std::string NormalisedPath(std::string_view path);

// A path as the two columns that are the key of a file. Text of SQLite is UTF-8 and ends, for many who read it, at a
// NUL byte. So a path that is UTF-8 without NUL bytes is `text` alone. Of any other one `text` has U+FFFD in the place
// of what can't stand there (one for each longest start of a character, or for each byte that starts none), and `hex`
// has its bytes in lower-case hexadecimal.
struct PathKey {
    std::string text;
    std::string hex;  // empty for a path that is text
};

// The key of a path that is normalised.
PathKey KeyOfPath(std::string path);

// The bytes of the path of a key; text and hex are as KeyOfPath made them. Where hex is none, the path is the text.
std::string PathOfKey(std::string_view text, std::string_view hex);

std::string HexOf(std::string_view bytes);

// The bytes of hexadecimal digits; empty where an odd number of them or another character stands in it.
std::string BytesOfHex(std::string_view hex);
