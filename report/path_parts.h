// path_parts.h - names, extensions and absolute forms of paths, by their letters alone: no file is looked at.
#pragma once

#include <string>
#include <string_view>

// What stands behind the last slash.
std::string_view NameOf(std::string_view path);

// What stands behind the last full stop of the name, or "" if there is none.
std::string_view ExtensionOf(std::string_view path);

// The absolute form of a path, without empty components, "." and "..", and without a slash at its end: the root is "". A
// relative path starts at workingDirectory, which is of that form itself.
std::string AbsolutePath(std::string_view workingDirectory, std::string_view path);

// The program's working directory in that form; the root where it has none any more.
std::string WorkingDirectory();

// Appends the "file:" URI of an absolute path of that form. All bytes that may not stand in the path of a URI as they are
// (RFC 3986) are escaped, also those of characters outside of ASCII.
void AppendFileUri(std::string& out, std::string_view absolutePath);
