// name_filter.h - which of the names below a directory are looked at: --glob, --exclude, --hidden and --no-hidden.
//
// What a glob matches is told in scan/globs.h. Which files and directories stay in:
//
//   --exclude GLOB   What it matches is left out, whatever else is said: a file, or a directory with all that lies
//                    below.
//   --glob !GLOB     Likewise, if no later --glob matches too.
//   --glob GLOB      Is there one without !, then of the files only those stay in that match one. Directories stay in
//                    whether or not they match, as what lies below them may. A glob that ends in a slash takes the
//                    files below such a directory, however deep; src alone takes a file with this name, src/** what
//                    lies below.
//   --no-hidden      What begins with a full stop is left out, whatever else is said.
//
// Of several --glob the last that matches decides, for files and for directories. What lies below a directory that is
// left out is not looked at, so that no glob can take it back in: "!src" and "src/**" together leave src out.
//
// So it is with ripgrep's -g, but that a GLOB with a slash at its end takes no file there, that hidden files that match
// a GLOB are taken there, and that braces are as several globs here: {a,x/b} takes a file a wherever it lies.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scan/globs.h"

class NameFilter {
 public:
    // Takes the argument of one --glob or --exclude. Returns "", or the argument with what is wrong with it, and then
    // nothing has changed.
    std::string AddGlob(std::string_view glob);
    std::string AddExclude(std::string_view glob);

    // The later call wins; hidden names stay in by themselves.
    void SetHidden(bool hidden) { hidden_ = hidden; }

    // Whether a file is looked at, or a directory walked, which lies in a directory that is walked. Both are told by
    // their path below the directory where the walk began: names with one slash between two. Any number of threads may
    // ask.
    bool TakesFile(std::string_view path) const;
    bool EntersDirectory(std::string_view path) const;

 private:
    struct Rule {
        Glob glob;
        bool takes;
    };

    bool IsLeftOutHidden(std::string_view path) const;

    std::vector<Rule> globs_;  // in the order in which they were given
    std::vector<Glob> excludes_;
    bool takesOnlyMatches_ = false;  // one of globs_ takes
    bool hidden_ = true;
};
