// globs.cpp - patterns for names and paths: first their braces are replaced by what they stand for, then each glob is
// cut at its slashes and stars.
//
// What lies between two stars has a fixed length in bytes, and what lies between two double stars a fixed length in
// names. So the first stretch can only stand at the beginning and the last one only at the end, and of those between
// them each may take the first place where it fits: a later one would leave the rest less room. Nothing is ever taken
// back.
#include "scan/globs.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

using ByteSet = std::bitset<256>;

constexpr std::uint32_t anyByte = 256;
constexpr std::uint32_t firstSet = 257;

constexpr const char* openBracket = R"([ has no ] that closes it; \[ stands for the character itself)";
constexpr const char* openBrace = R"({ has no } that closes it; \{ stands for the character itself)";
constexpr const char* strayBrace = R"(} closes no {; \} stands for the character itself)";
constexpr const char* strayBackslash = R"(ends in a backslash; \\ stands for the character itself)";
constexpr const char* tooLong = "is longer than 65,536 bytes";
constexpr const char* tooDeep = "has braces within braces, more than 32 deep";
constexpr const char* tooMany = "has braces that stand for more than 10,000 globs, or for more than 256 KiB";
constexpr const char* noName = "names no file";
constexpr const char* parentName = "has a .. in it, which no path below a directory has";

std::uint8_t ByteAt(std::string_view text, std::size_t position) { return static_cast<std::uint8_t>(text[position]); }

// ---- Sets between brackets ------------------------------------------------------------------------------------------

bool IsDigit(unsigned c) { return c >= '0' && c <= '9'; }
bool IsUpper(unsigned c) { return c >= 'A' && c <= 'Z'; }
bool IsLower(unsigned c) { return c >= 'a' && c <= 'z'; }
bool IsLetter(unsigned c) { return IsUpper(c) || IsLower(c); }
bool IsLetterOrDigit(unsigned c) { return IsLetter(c) || IsDigit(c); }
bool IsVisible(unsigned c) { return c > ' ' && c < 0x7F; }

struct NamedClass {
    std::string_view name;
    bool (*holds)(unsigned c);
};

// POSIX's classes, in the POSIX locale.
constexpr NamedClass namedClasses[] = {
    // clang-format off
    {"alnum",  IsLetterOrDigit},
    {"alpha",  IsLetter},
    {"blank",  [](unsigned c) { return c == ' ' || c == '\t'; }},
    {"cntrl",  [](unsigned c) { return c < ' ' || c == 0x7F; }},
    {"digit",  IsDigit},
    {"graph",  IsVisible},
    {"lower",  IsLower},
    {"print",  [](unsigned c) { return c == ' ' || IsVisible(c); }},
    {"punct",  [](unsigned c) { return IsVisible(c) && !IsLetterOrDigit(c); }},
    {"space",  [](unsigned c) { return c == ' ' || (c >= '\t' && c <= '\r'); }},
    {"upper",  IsUpper},
    {"xdigit", [](unsigned c) { return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }},
    // clang-format on
};

// Reads a set of bytes, from behind its opening bracket to behind its closing one.
class SetParser {
 public:
    SetParser(std::string_view text, std::size_t& position) : text_(text), position_(position) {}

    // Returns "", or what is wrong.
    std::string Parse(ByteSet& set) {
        const bool negated = Next() == '!' || Next() == '^';
        if (negated) ++position_;
        for (bool first = true; first || Next() != ']'; first = false) {
            if (position_ == text_.size()) return openBracket;
            std::string failure = IsNamedClass() ? ParseNamedClass(set) : ParseRange(set);
            if (!failure.empty()) return failure;
        }
        ++position_;
        if (negated) set.flip();
        set.reset('/');
        return "";
    }

 private:
    // The byte that comes next, or NUL at the end: no argument of a program holds one.
    char Next(std::size_t ahead = 0) const {
        return ahead < text_.size() - position_ ? text_[position_ + ahead] : '\0';
    }

    std::string_view ClassName() const {
        const auto start = text_.begin() + static_cast<std::ptrdiff_t>(position_) + 2;
        return {start, std::find_if_not(start, text_.end(), [](char c) { return c >= 'a' && c <= 'z'; })};
    }

    bool IsNamedClass() const {
        if (Next() != '[' || Next(1) != ':') return false;
        return text_.substr(position_ + 2 + ClassName().size()).starts_with(":]");
    }

    std::string ParseNamedClass(ByteSet& set) {
        const std::string_view name = ClassName();
        const auto* const found = std::ranges::find(namedClasses, name, &NamedClass::name);
        if (found == std::end(namedClasses)) return "has a class that is not known: [:" + std::string(name) + ":]";
        for (unsigned c = 0; c < 0x80; ++c) {
            if (found->holds(c)) set.set(c);
        }
        position_ += name.size() + 4;
        return "";
    }

    std::string ParseRange(ByteSet& set) {
        const std::size_t start = position_;
        const std::uint8_t low = TakeByte();
        std::uint8_t high = low;
        if (Next() == '-' && Next(1) != ']' && Next(1) != '\0') {
            ++position_;
            high = TakeByte();
        }
        if (high < low) {
            return "has a range that runs backwards: " + std::string(text_.substr(start, position_ - start));
        }
        for (std::size_t byte = low; byte <= high; ++byte) set.set(byte);
        return "";
    }

    // Of a backslash at the end nothing is left that could close the set.
    std::uint8_t TakeByte() {
        if (Next() == '\\' && position_ + 1 < text_.size()) ++position_;
        return ByteAt(text_, position_++);
    }

    std::string_view text_;
    std::size_t& position_;
};

// ---- Braces ---------------------------------------------------------------------------------------------------------

struct Expansion {
    std::vector<std::string> globs;
    std::size_t bytes = 0;

    bool Add(std::string glob) {
        bytes += glob.size();
        if (globs.size() == mostExpandedGlobs || bytes > mostExpandedBytes) return false;
        globs.push_back(std::move(glob));
        return true;
    }
};

// Puts each end behind each beginning. Returns false if that is too much.
bool Combine(Expansion& beginnings, const std::vector<std::string>& ends) {
    if (ends.size() == 1 && ends.front().empty()) return true;
    Expansion combined;
    for (const std::string& beginning : beginnings.globs) {
        for (const std::string& end : ends) {
            if (!combined.Add(beginning + end)) return false;
        }
    }
    beginnings = std::move(combined);
    return true;
}

// Replaces a glob with braces by all that it stands for. What is behind a backslash and between brackets stays as it
// is.
class BraceParser {
 public:
    explicit BraceParser(std::string_view text) : text_(text) {}

    // Returns "", or what is wrong.
    std::string Parse(Expansion& expansion) {
        std::string failure = ParseSequence(0, expansion);
        if (failure.empty() && position_ < text_.size()) failure = strayBrace;
        return failure;
    }

 private:
    // Ends at the end, at a closing brace, and between braces at a comma.
    std::string ParseSequence(std::size_t depth, Expansion& expansion) {
        expansion.Add("");
        while (position_ < text_.size() && text_[position_] != '}' && (depth == 0 || text_[position_] != ',')) {
            Expansion next;
            std::string failure = text_[position_] == '{' ? ParseBraces(depth + 1, next) : ParsePlain(depth, next);
            if (!failure.empty()) return failure;
            if (!Combine(expansion, next.globs)) return tooMany;
        }
        return "";
    }

    std::string ParseBraces(std::size_t depth, Expansion& expansion) {
        if (depth > deepestBraces) return tooDeep;
        do {
            ++position_;  // the opening brace, or a comma
            Expansion choice;
            std::string failure = ParseSequence(depth, choice);
            if (!failure.empty()) return failure;
            for (std::string& glob : choice.globs) {
                if (!expansion.Add(std::move(glob))) return tooMany;
            }
        } while (position_ < text_.size() && text_[position_] == ',');
        if (position_ == text_.size()) return openBrace;
        ++position_;
        return "";
    }

    std::string ParsePlain(std::size_t depth, Expansion& expansion) {
        const std::string_view ends = depth == 0 ? "{}" : "{},";
        const std::size_t start = position_;
        while (position_ < text_.size() && ends.find(text_[position_]) == std::string_view::npos) {
            const char byte = text_[position_++];
            if (byte == '\\' && position_++ == text_.size()) return strayBackslash;
            if (byte != '[') continue;
            ByteSet ignored;
            std::string failure = SetParser(text_, position_).Parse(ignored);
            if (!failure.empty()) return failure;
        }
        return expansion.Add(std::string(text_.substr(start, position_ - start))) ? "" : tooMany;
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

// ---- Names and slashes ----------------------------------------------------------------------------------------------

GlobName AnyName() { return {std::vector<GlobName::Run>(2)}; }

// Cuts a glob without braces, whose backslashes and brackets are known to be in order, into names.
class PathParser {
 public:
    PathParser(std::string_view text, std::vector<ByteSet>& sets) : text_(text), sets_(sets) {}

    // Returns "", or what is wrong.
    std::string Parse(GlobPath& path) {
        path.stretches.resize(1);
        while (position_ < text_.size()) {
            if (IsSlash()) {
                EndName(path);
                position_ += text_[position_] == '\\' ? 2 : 1;
                path.directoriesOnly = true;
                continue;
            }
            anchored_ = anchored_ || path.directoriesOnly;
            path.directoriesOnly = false;
            ParseByte();
        }
        EndName(path);
        if (parentNamed_) return parentName;
        if (!named_) return noName;
        if (!anchored_ && path.stretches.size() == 1) path.stretches.emplace(path.stretches.begin());
        if (path.stretches.back().empty()) path.stretches.back().push_back(AnyName());
        return "";
    }

 private:
    bool IsSlash() const {
        const std::string_view rest = text_.substr(position_);
        return rest.starts_with('/') || rest.starts_with("\\/");
    }

    void ParseByte() {
        const std::uint8_t byte = ByteAt(text_, position_++);
        if (byte == '*') {
            ++stars_;
            if (name_.runs.size() == 1 || !name_.runs.back().empty()) name_.runs.emplace_back();
            return;
        }
        ++tests_;
        name_.runs.back().push_back(byte == '[' ? TakeSet() : byte == '?' ? anyByte : TakeLiteral(byte));
    }

    // The set has been read once before, among the braces, and is in order.
    std::uint32_t TakeSet() {
        static_cast<void>(SetParser(text_, position_).Parse(sets_.emplace_back()));
        return firstSet + static_cast<std::uint32_t>(sets_.size() - 1);
    }

    std::uint32_t TakeLiteral(std::uint8_t byte) { return byte == '\\' ? ByteAt(text_, position_++) : byte; }

    void EndName(GlobPath& path) {
        const bool plain = stars_ == 0;
        const bool dots =
            plain && std::ranges::all_of(name_.runs.front(), [](std::uint32_t test) { return test == '.'; });
        parentNamed_ = parentNamed_ || (dots && tests_ == 2);
        if (tests_ == 0 && stars_ >= 2) {
            named_ = true;
            if (path.stretches.size() == 1 || !path.stretches.back().empty()) path.stretches.emplace_back();
        } else if (!(plain && tests_ == 0) && !(dots && tests_ == 1)) {
            named_ = true;
            path.stretches.back().push_back(std::move(name_));
        }
        name_ = {std::vector<GlobName::Run>(1)};
        stars_ = tests_ = 0;
    }

    std::string_view text_;
    std::vector<ByteSet>& sets_;
    std::size_t position_ = 0;
    GlobName name_ = {std::vector<GlobName::Run>(1)};  // under way, with how many stars and tests
    std::size_t stars_ = 0;
    std::size_t tests_ = 0;
    bool anchored_ = false;  // something stands behind a slash
    bool named_ = false;
    bool parentNamed_ = false;
};

// ---- Matching -------------------------------------------------------------------------------------------------------

bool RunFits(const GlobName::Run& run, const std::vector<ByteSet>& sets, std::string_view bytes) {
    for (std::size_t index = 0; index < run.size(); ++index) {
        const std::uint32_t test = run[index];
        const std::uint8_t byte = ByteAt(bytes, index);
        if (test < anyByte ? test != byte : test >= firstSet && !sets[test - firstSet][byte]) return false;
    }
    return true;
}

// Takes a run that lies somewhere in bytes, and what stands before it, from their beginning.
bool TakeRun(const GlobName::Run& run, const std::vector<ByteSet>& sets, std::string_view& bytes) {
    for (; bytes.size() >= run.size(); bytes.remove_prefix(1)) {
        if (!RunFits(run, sets, bytes)) continue;
        bytes.remove_prefix(run.size());
        return true;
    }
    return false;
}

bool NameFits(const GlobName& glob, const std::vector<ByteSet>& sets, std::string_view name) {
    const GlobName::Run& first = glob.runs.front();
    if (glob.runs.size() == 1) return name.size() == first.size() && RunFits(first, sets, name);
    const GlobName::Run& last = glob.runs.back();
    if (name.size() < first.size() + last.size()) return false;
    if (!RunFits(last, sets, name.substr(name.size() - last.size())) || !RunFits(first, sets, name)) return false;
    name = name.substr(first.size(), name.size() - first.size() - last.size());
    return std::all_of(glob.runs.begin() + 1, glob.runs.end() - 1,
                       [&](const GlobName::Run& run) { return TakeRun(run, sets, name); });
}

std::string_view TakeFirstName(std::string_view& path) {
    const std::string_view name = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(name.size() + 1, path.size()));
    return name;
}

std::string_view LastNameOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view TakeLastName(std::string_view& path) {
    const std::string_view name = LastNameOf(path);
    path.remove_suffix(std::min(name.size() + 1, path.size()));
    return name;
}

// Takes a stretch from the beginning of a path; on false the path is undefined.
bool TakeFront(const GlobPath::Stretch& stretch, const std::vector<ByteSet>& sets, std::string_view& path) {
    return std::ranges::all_of(
        stretch, [&](const GlobName& name) { return !path.empty() && NameFits(name, sets, TakeFirstName(path)); });
}

// Likewise from its end.
bool TakeBack(const GlobPath::Stretch& stretch, const std::vector<ByteSet>& sets, std::string_view& path) {
    return std::all_of(stretch.rbegin(), stretch.rend(),
                       [&](const GlobName& name) { return !path.empty() && NameFits(name, sets, TakeLastName(path)); });
}

// Takes a stretch that lies somewhere in a path, and what stands before it, from its beginning.
bool TakeStretch(const GlobPath::Stretch& stretch, const std::vector<ByteSet>& sets, std::string_view& path) {
    for (; stretch.empty() || !path.empty(); TakeFirstName(path)) {
        std::string_view rest = path;
        if (!TakeFront(stretch, sets, rest)) continue;
        path = rest;
        return true;
    }
    return false;
}

// name is the last one of the path. Most paths are told apart by it, and it is cut out once for all globs of a list.
bool PathFits(const GlobPath& glob, const std::vector<ByteSet>& sets, std::string_view path, std::string_view name) {
    if (!NameFits(glob.stretches.back().back(), sets, name)) return false;
    if (!TakeFront(glob.stretches.front(), sets, path)) return false;
    if (glob.stretches.size() == 1) return path.empty();
    if (!TakeBack(glob.stretches.back(), sets, path)) return false;
    return std::all_of(glob.stretches.begin() + 1, glob.stretches.end() - 1,
                       [&](const GlobPath::Stretch& stretch) { return TakeStretch(stretch, sets, path); });
}

}  // namespace

std::string Glob::Compile(std::string_view text, TrailingSlash trailingSlash) {
    if (text.size() > longestGlob) return tooLong;
    Expansion expansion;
    std::string failure = BraceParser(text).Parse(expansion);
    for (std::size_t index = 0; index < expansion.globs.size() && failure.empty(); ++index) {
        const std::string& glob = expansion.globs[index];
        if (glob.empty() && expansion.globs.size() > 1) continue;  // of {a,} a is left
        GlobPath& path = paths_.emplace_back();
        failure = PathParser(glob, sets_).Parse(path);
        if (failure.empty() && path.directoriesOnly && trailingSlash == TrailingSlash::DirectoryAndBelow) {
            GlobPath below = {path.stretches, false};
            below.stretches.push_back({AnyName()});
            paths_.push_back(std::move(below));
        }
    }
    if (failure.empty() && paths_.empty()) failure = noName;
    if (!failure.empty()) paths_.clear();
    return failure;
}

bool Glob::MatchesFile(std::string_view path) const {
    const std::string_view name = LastNameOf(path);
    return std::ranges::any_of(
        paths_, [&](const GlobPath& glob) { return !glob.directoriesOnly && PathFits(glob, sets_, path, name); });
}

bool Glob::MatchesDirectory(std::string_view path) const {
    const std::string_view name = LastNameOf(path);
    return std::ranges::any_of(paths_, [&](const GlobPath& glob) { return PathFits(glob, sets_, path, name); });
}
