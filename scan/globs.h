// globs.h - patterns for names and paths, as gitignore files and ripgrep have them. Bytes are matched, not characters,
// and capitals differ from small letters.
//
//   *          any bytes but a slash, or none
//   ?          one byte but a slash
//   [a-z_]     one byte of these; [!a-z] and [^a-z] one byte but these and a slash. A ] that stands first is one of
//              them, so is a - that stands first or last. [:digit:] and its like, as in [[:digit:]_], are POSIX's
//              classes of ASCII
//   **         in place of a name between slashes: any names, or none; behind the last slash one at least, so that
//              src/** is all that lies below src, but not src. Elsewhere it is as *
//   {a,b{c,}}  a, bc or b: braces stand for as many globs, each with the rules below of its own
//   \*         the byte behind the backslash, whatever it is; also between brackets
//   a/         a directory with this name, and no file
//
// A glob with a slash in front of a name, such as src/*.c or /src, is held against the whole path below the directory
// that is scanned; any other against the name of a file or directory, wherever it lies, as if **/ stood in front of it.
// Names that begin with a full stop are as others. Slashes beside each other are as one, and names that are . are left
// out: ./src is as /src. A glob with .. is refused: it could match nothing.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What is beyond these is refused.
inline constexpr std::size_t longestGlob = 65536;         // in bytes
inline constexpr std::size_t mostExpandedGlobs = 10000;   // that the braces of one stand for
inline constexpr std::size_t mostExpandedBytes = 262144;  // of these together
inline constexpr std::size_t deepestBraces = 32;          // braces within braces

// What a glob with a slash at its end matches: the directory, or also every file and directory below it.
enum class TrailingSlash { Directory, DirectoryAndBelow };

// One name of a glob: the runs between its stars, each of tests for one byte. A test below 256 is that byte itself,
// anyByte takes each, and one above it has its set in Glob::sets_.
struct GlobName {
    using Run = std::vector<std::uint32_t>;
    std::vector<Run> runs;  // at least one; the first begins the name and the last ends it
};

// One glob without braces: the stretches of names between its double stars.
struct GlobPath {
    using Stretch = std::vector<GlobName>;
    std::vector<Stretch> stretches;  // at least one; the first begins the path and the last ends it
    bool directoriesOnly = false;
};

class Glob {
 public:
    // Takes a glob; called once. Returns "", or what is wrong with it, such as "[ has no ] that closes it", and then
    // the glob matches nothing.
    std::string Compile(std::string_view text, TrailingSlash trailingSlash = TrailingSlash::Directory);

    // Whether a file or a directory matches, told by its path below the directory that is scanned: names with one slash
    // between two. Takes no memory, and at most time in proportion to the length of the path times that of what the
    // glob stands for. Any number of threads may ask at the same time.
    bool MatchesFile(std::string_view path) const;
    bool MatchesDirectory(std::string_view path) const;

 private:
    std::vector<GlobPath> paths_;
    std::vector<std::bitset<256>> sets_;
};
