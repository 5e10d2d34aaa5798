// Walks: what is met and how it is told, over file systems that tell no kinds of entries, over directories that fail or
// change, and at which cost. The linker wraps the calls below (see CMakeLists.txt).
#include "scan/walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <map>

#include "scan/interrupt.h"
#include "support/temporary_directory.h"

namespace {

bool kindsAreUnknown = false;
int fstatatReason = 0;  // what fstatat fails with
int listingReason = 0;  // what getdents64 fails with behind the entries, or at once
bool listingFailsAtOnce = false;
int interruptedListings = 0;
int fstatReason = 0;
bool spillFails = false;
std::map<ino_t, FileIdentity> identities;  // told by fstat instead of their own
std::map<std::string, int> openFailures;   // what openat of a name fails with
std::map<std::string, int> calls;

}  // namespace

extern "C" {

ssize_t __real_getdents64(int directory, void* entries, size_t size);
int __real_fstatat(int directory, const char* path, struct stat* status, int flags);
int __real_fstat(int descriptor, struct stat* status);
int __real_stat(const char* path, struct stat* status);
int __real_open(const char* path, int flags, ...);
int __real_openat(int directory, const char* path, int flags, ...);
ssize_t __real_pread(int descriptor, void* bytes, size_t size, off_t place);

ssize_t __wrap_getdents64(int directory, void* entries, size_t size) {
    ++calls["getdents64"];
    if (interruptedListings > 0) {
        --interruptedListings;
        errno = EINTR;
        return -1;
    }
    const ssize_t came = listingFailsAtOnce ? 0 : __real_getdents64(directory, entries, size);
    if (came == 0 && listingReason != 0) {
        errno = listingReason;
        return -1;
    }
    for (ssize_t at = 0; kindsAreUnknown && at < came;) {
        auto* const entry = reinterpret_cast<dirent64*>(static_cast<char*>(entries) + at);
        entry->d_type = DT_UNKNOWN;
        at += entry->d_reclen;
    }
    return came;
}
int __wrap_fstatat(int directory, const char* path, struct stat* status, int flags) {
    ++calls["fstatat"];
    if (fstatatReason == 0) return __real_fstatat(directory, path, status, flags);
    errno = fstatatReason;
    return -1;
}
int __wrap_fstat(int descriptor, struct stat* status) {
    ++calls["fstat"];
    errno = fstatReason;
    if (fstatReason != 0 || __real_fstat(descriptor, status) != 0) return -1;
    if (const auto told = identities.find(status->st_ino); told != identities.end()) {
        status->st_dev = told->second.device;
        status->st_ino = told->second.inode;
    }
    return 0;
}
int __wrap_stat(const char* path, struct stat* status) {
    ++calls["stat"];
    return __real_stat(path, status);
}
int __wrap_open(const char* path, int flags, ...) {
    ++calls["open"];
    return __real_open(path, flags, 0600);
}
int __wrap_openat(int directory, const char* path, int flags, ...) {
    ++calls["openat"];
    if (const auto failure = openFailures.find(path); failure != openFailures.end()) {
        errno = failure->second;
        return -1;
    }
    return __real_openat(directory, path, flags, 0600);
}
ssize_t __wrap_pread(int descriptor, void* bytes, size_t size, off_t place) {
    if (!spillFails) return __real_pread(descriptor, bytes, size, place);
    errno = EIO;
    return -1;
}

}  // extern "C"

namespace {

WalkOptions Unsorted() {
    WalkOptions options;
    options.sorted = false;
    return options;
}

WalkOptions UpToDepth(std::uint32_t depth, bool sorted) {
    WalkOptions options;
    options.maxDepth = depth;
    options.sorted = sorted;
    return options;
}

class WalkOf : public testing::Test {
 protected:
    WalkOf() {
        Make("d");
        Make("d/inner");
        directory_.Write("d/a", "GIF89a");
        directory_.Write("d/inner/b", "GIF89a");
        mkfifo(directory_.At("d/fifo").c_str(), 0600);
        Link("a", "d/link");
        Link("fifo", "d/link_to_fifo");
        Link("inner", "d/link_to_inner");
        Link("nowhere", "d/link_to_nothing");
    }
    ~WalkOf() override {
        kindsAreUnknown = listingFailsAtOnce = spillFails = false;
        fstatatReason = fstatReason = listingReason = interruptedListings = 0;
        identities.clear();
        openFailures.clear();
        unsetenv("TMPDIR");
    }

    void Make(const std::string& name) const {
        if (mkdir(directory_.At(name).c_str(), 0700) != 0) ADD_FAILURE() << name;
    }
    void Link(const char* target, const std::string& name) const {
        if (symlink(target, directory_.At(name).c_str()) != 0) ADD_FAILURE() << name;
    }
    FileIdentity IdentityOf(const std::string& name) const {
        struct stat status = {};
        EXPECT_EQ(__real_stat(directory_.At(name).c_str(), &status), 0) << name;
        return {status.st_dev, status.st_ino};
    }
    // An item as a line such as "file d/a". A file can be opened the way it is told.
    std::string LineOf(const WalkItem& item) const {
        const std::string top = directory_.At("");
        std::string_view path = item.path;
        if (path.starts_with(top)) path.remove_prefix(top.size());
        if (item.met == Met::File) {
            EXPECT_EQ(item.reason, "");
            EXPECT_TRUE(item.nameStart > 0 && item.path[item.nameStart - 1] == '/') << path;
            struct stat told = {};
            struct stat opened = {};
            const std::string name = item.path.substr(item.nameStart);
            EXPECT_EQ(lstat(item.path.c_str(), &told),
                      __real_fstatat(item.directory->Descriptor(), name.c_str(), &opened, AT_SYMLINK_NOFOLLOW));
            EXPECT_EQ(told.st_ino, opened.st_ino) << path;
            return "file " + std::string(path) + "\n";
        }
        EXPECT_EQ(item.directory, nullptr);
        if (item.met == Met::Named) return "named " + std::string(path) + "\n";
        return (item.met == Met::Note ? "note " : "failure ") + std::string(path) + ": " + item.reason + "\n";
    }
    std::string RestOf(Walk& walk) const {
        std::string lines;
        for (WalkItem item; walk.Next(item);) lines += LineOf(item);
        WalkItem item;
        EXPECT_FALSE(walk.Next(item));
        return lines;
    }
    std::string AllOf(const std::string& path, const WalkOptions& options = {}) const {
        Walk walk(options);
        walk.Start(path);
        return RestOf(walk);
    }
    std::string AllBelow(const std::string& name, const WalkOptions& options = {}) const {
        return AllOf(directory_.At(name), options);
    }
    static std::string Sorted(const std::string& lines) {
        std::istringstream stream(lines);
        std::vector<std::string> all;
        for (std::string line; std::getline(stream, line);) all.push_back(line + "\n");
        std::ranges::sort(all);
        std::string sorted;
        for (const std::string& line : all) sorted += line;
        return sorted;
    }

    TemporaryDirectory directory_{QuickDirectory()};
};

constexpr const char* allOfD =
    "file d/a\n"
    "note d/fifo: is a FIFO, not a file\n"
    "file d/inner/b\n"
    "file d/link\n"
    "note d/link_to_fifo: is a FIFO, not a file\n"
    "note d/link_to_inner: is a symbolic link to a directory\n"
    "note d/link_to_nothing: is a symbolic link that leads nowhere\n";

// ---- Kinds of entries -----------------------------------------------------------------------------------------------

TEST_F(WalkOf, TellsWhatItMeets) { EXPECT_EQ(AllBelow("d"), allOfD); }

TEST_F(WalkOf, LooksWhereTheEntryTellsNoKind) {
    kindsAreUnknown = true;
    EXPECT_EQ(AllBelow("d"), allOfD);
    EXPECT_EQ(Sorted(AllBelow("d", Unsorted())), Sorted(allOfD));
}

TEST_F(WalkOf, EntryOfUnknownKindThatCantBeLookedAtIsAFile) {
    kindsAreUnknown = true;
    fstatatReason = EACCES;
    EXPECT_EQ(AllBelow("d"),
              "file d/a\nfile d/fifo\nfile d/inner\nfile d/link\nfile d/link_to_fifo\nfile d/link_to_inner\n"
              "file d/link_to_nothing\n");
}

TEST_F(WalkOf, LinkThatCantBeFollowedIsAFileWhoseFailureShowsWhenItIsOpened) {
    Make("links");
    Link("loop", "links/loop");
    EXPECT_EQ(AllBelow("links"), "note links/loop: is a symbolic link that leads nowhere\n");
    for (const int reason : {EACCES, ELOOP, ENOENT}) {  // the last: the link itself is gone
        fstatatReason = reason;
        EXPECT_EQ(AllBelow("links"), "file links/loop\n");
    }
}

TEST_F(WalkOf, SocketsAndDevicesAreToldFromFiles) {
    Make("kinds");
    ASSERT_EQ(mknod(directory_.At("kinds/socket").c_str(), S_IFSOCK | 0600, 0), 0);
    Link("/dev/null", "kinds/null");
    EXPECT_EQ(AllBelow("kinds"),
              "note kinds/null: is a character device, not a file\nnote kinds/socket: is a socket, not a file\n");
}

// ---- Named paths ----------------------------------------------------------------------------------------------------

TEST_F(WalkOf, NamedPathIsOneItemUnlessItIsADirectory) {
    EXPECT_EQ(AllBelow("d/a"), "named d/a\n");
    EXPECT_EQ(AllBelow("d/fifo"), "named d/fifo\n");
    EXPECT_EQ(AllBelow("d/link_to_nothing"), "named d/link_to_nothing\n");
    EXPECT_EQ(AllBelow("missing"), "named missing\n");
    EXPECT_EQ(AllBelow("d/a/"), "named d/a/\n");
    EXPECT_EQ(AllOf(""), "named \n");
    EXPECT_EQ(AllBelow("d/a", UpToDepth(0, true)), "named d/a\n");
}

TEST_F(WalkOf, PathsBelowBeginWithTheNamedOne) {
    EXPECT_EQ(AllBelow("d/link_to_inner"), "file d/link_to_inner/b\n");
    EXPECT_EQ(AllBelow("d/inner/"), "file d/inner/b\n");
    EXPECT_EQ(AllBelow("d/link_to_inner//"), "file d/link_to_inner//b\n");
    EXPECT_EQ(AllBelow("d/../d/./inner"), "file d/../d/./inner/b\n");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(directory_.At("d/inner"));
    EXPECT_EQ(AllOf("."), "file ./b\n");
    EXPECT_EQ(AllOf("./"), "file ./b\n");
    EXPECT_EQ(AllOf("../inner"), "file ../inner/b\n");
    std::filesystem::current_path(before);
}

TEST_F(WalkOf, NothingIsBetweenTheRootAndItsNames) {
    WalkOptions options;
    options.maxDepth = 1;
    options.takes = [](std::string_view path, bool) {
        EXPECT_EQ(path.find('/'), std::string_view::npos);
        return true;
    };
    Walk walk(options);
    walk.Start("/");
    for (WalkItem item; walk.Next(item);) EXPECT_EQ(item.path.rfind('/'), 0U) << item.path;
}

TEST_F(WalkOf, PathWithNulIsAFailureOf4096BytesAtMost) {
    const std::string reason = ": a path can't hold a NUL byte; -0 reads a list that is separated by them\n";
    const std::string path("a\0b", 3);
    EXPECT_EQ(AllOf(path), "failure " + path + reason);
    const std::string longest = path + std::string(4093, 'x');
    EXPECT_EQ(AllOf(longest), "failure " + longest + reason);
    EXPECT_EQ(AllOf(longest + "y"), "failure " + longest + reason);
}

TEST_F(WalkOf, NamedPathMayHave65536Bytes) {
    const std::string longest(65536, 'x');
    EXPECT_EQ(AllOf(longest), "named " + longest + "\n");
    EXPECT_EQ(AllOf(longest + "x"), "failure " + longest.substr(0, 4096) + ": is too long for a path\n");
}

TEST_F(WalkOf, OnePathAfterTheOther) {
    Walk walk({});
    WalkItem item;
    EXPECT_FALSE(walk.Next(item));
    walk.Start(directory_.At("d/a"));
    EXPECT_EQ(RestOf(walk), "named d/a\n");
    walk.Start(directory_.At("d"));
    EXPECT_TRUE(walk.Next(item));
    walk.Start(directory_.At("d/inner"));
    EXPECT_EQ(RestOf(walk), "file d/inner/b\n");
}

// ---- Order ----------------------------------------------------------------------------------------------------------

TEST_F(WalkOf, NamesAreInTheOrderOfTheirBytes) {
    Make("names");
    for (const char* const name : {"names/\xC3\xA9", "names/z", "names/a", "names/a\x01", "names/aa", "names/\n"}) {
        directory_.Write(name, "");
    }
    EXPECT_EQ(AllBelow("names"),
              "file names/\n\nfile names/a\nfile names/a\x01\nfile names/aa\nfile names/z\nfile names/\xC3\xA9\n");
}

TEST_F(WalkOf, DirectoryComesInThePlaceOfItsName) {
    Make("names");
    Make("names/b");
    for (const char* const name : {"names/a", "names/b/z", "names/b.gif", "names/c"}) directory_.Write(name, "");
    EXPECT_EQ(AllBelow("names"), "file names/a\nfile names/b/z\nfile names/b.gif\nfile names/c\n");
}

TEST_F(WalkOf, UnsortedHasFilesInTheirOrderAndThenDirectories) {
    Make("names");
    for (const char* const name : {"names/b", "names/e"}) Make(name);
    for (const char* const name : {"names/a", "names/c", "names/d", "names/b/z", "names/e/y"})
        directory_.Write(name, "");
    std::string files;
    std::string below;
    DIR* const directory = opendir(directory_.At("names").c_str());
    while (const dirent* const entry = readdir(directory)) {
        const std::string name = entry->d_name;
        if (name == "b") below += "file names/b/z\n";
        if (name == "e") below += "file names/e/y\n";
        if (name == "a" || name == "c" || name == "d") files += "file names/" + name + "\n";
    }
    closedir(directory);
    EXPECT_EQ(AllBelow("names", Unsorted()), files + below);
}

// ---- What is left out -----------------------------------------------------------------------------------------------

TEST_F(WalkOf, DepthIsThatBelowTheNamedDirectory) {
    Make("depth");
    Make("depth/1");
    Make("depth/1/2");
    for (const char* const name : {"depth/a", "depth/1/b", "depth/1/2/c"}) directory_.Write(name, "");
    const std::string first = "file depth/a\n";
    const std::string second = "file depth/1/b\n";
    const std::string third = "file depth/1/2/c\n";
    EXPECT_EQ(AllBelow("depth", UpToDepth(0, true)), "");
    EXPECT_EQ(AllBelow("depth", UpToDepth(1, true)), first);
    EXPECT_EQ(AllBelow("depth", UpToDepth(2, true)), second + first);
    EXPECT_EQ(AllBelow("depth", UpToDepth(3, true)), third + second + first);
    EXPECT_EQ(AllBelow("depth", UpToDepth(0, false)), "");
    EXPECT_EQ(AllBelow("depth", UpToDepth(1, false)), first);
    EXPECT_EQ(AllBelow("depth", UpToDepth(2, false)), first + second);
    EXPECT_EQ(AllBelow("depth", UpToDepth(3, false)), first + second + third);
}

TEST_F(WalkOf, AsksForEachEntryAndEntersNoDirectoryThatIsNotTaken) {
    WalkOptions options;
    std::string asked;
    options.takes = [&](std::string_view path, bool isDirectory) {
        asked += std::string(path) + (isDirectory ? "/ " : " ");
        return path.starts_with("link") || path == "inner/b";
    };
    EXPECT_EQ(Sorted(AllBelow("d/", options)),
              Sorted("file d/link\n"
                     "note d/link_to_fifo: is a FIFO, not a file\n"
                     "note d/link_to_inner: is a symbolic link to a directory\n"
                     "note d/link_to_nothing: is a symbolic link that leads nowhere\n"));
    EXPECT_EQ(asked, "a fifo inner/ link link_to_fifo link_to_inner link_to_nothing ");
    options.takes = [](std::string_view path, bool isDirectory) { return isDirectory || path == "inner/b"; };
    EXPECT_EQ(AllBelow("d", options), "file d/inner/b\n");
    options.sorted = false;
    EXPECT_EQ(AllBelow("d", options), "file d/inner/b\n");
    EXPECT_EQ(AllBelow("d/a", options), "named d/a\n") << "not asked for what is named";
}

TEST_F(WalkOf, OneFileSystemEndsAtAnother) {
    WalkOptions options;
    options.oneFileSystem = true;
    const FileIdentity inner = IdentityOf("d/inner");
    EXPECT_EQ(AllBelow("d", options), allOfD);
    identities[inner.inode] = {inner.device + 1, inner.inode};
    EXPECT_EQ(AllBelow("d", options),
              "file d/a\nnote d/fifo: is a FIFO, not a file\nnote d/inner: is on another file system\nfile d/link\n"
              "note d/link_to_fifo: is a FIFO, not a file\nnote d/link_to_inner: is a symbolic link to a directory\n"
              "note d/link_to_nothing: is a symbolic link that leads nowhere\n");
    EXPECT_EQ(AllBelow("d/inner", options), "file d/inner/b\n") << "the one of what is named counts";
    EXPECT_EQ(AllBelow("d"), allOfD);
}

// ---- Failures -------------------------------------------------------------------------------------------------------

TEST_F(WalkOf, DirectoryThatFailsTellsWhatCameBefore) {
    listingReason = EIO;
    EXPECT_EQ(AllBelow("d/inner"), "failure d/inner: Input/output error\nfile d/inner/b\n");
    EXPECT_EQ(AllBelow("d/inner/", Unsorted()), "file d/inner/b\nfailure d/inner/: Input/output error\n");
    Make("up");
    Make("up/1");
    Make("up/2");
    listingFailsAtOnce = true;
    EXPECT_EQ(AllBelow("up", Unsorted()), "failure up: Input/output error\n");
    listingFailsAtOnce = false;
    EXPECT_EQ(AllBelow("up"),
              "failure up: Input/output error\nfailure up/1: Input/output error\nfailure up/2: Input/output error\n");
}

TEST_F(WalkOf, RemovedDirectoryHasNoEntries) {
    listingFailsAtOnce = true;
    listingReason = ENOENT;
    EXPECT_EQ(AllBelow("d"), "");
}

TEST_F(WalkOf, InterruptedListingIsContinued) {
    interruptedListings = 2;
    EXPECT_EQ(AllBelow("d"), allOfD);
}

TEST_F(WalkOf, DirectoryThatCantBeLookedAtIsAFailure) {
    fstatReason = EIO;
    EXPECT_EQ(AllBelow("d"), "failure d: Input/output error\n");
}

TEST_F(WalkOf, UnreadableDirectoryIsAFailureAndTheWalkGoesOn) {
    Make("closed");
    Make("closed/1");
    Make("closed/2");
    directory_.Write("closed/2/a", "");
    openFailures = {{"1", EACCES}};
    EXPECT_EQ(AllBelow("closed"), "failure closed/1: Permission denied\nfile closed/2/a\n");
    EXPECT_EQ(AllBelow("closed", Unsorted()).size(), AllBelow("closed").size());
    openFailures = {{directory_.At("closed"), EACCES}};
    EXPECT_EQ(AllBelow("closed"), "failure closed: Permission denied\n");
}

TEST_F(WalkOf, DirectoryAboveItselfIsALoop) {
    Make("d/inner/deeper");
    Make("d/inner/deeper/d");
    directory_.Write("d/inner/deeper/c", "");
    identities[IdentityOf("d/inner/deeper/d").inode] = IdentityOf("d");
    EXPECT_EQ(AllBelow("d/inner"), "file d/inner/b\nfile d/inner/deeper/c\n") << "not above";
    const std::string loop = "failure d/inner/deeper/d: is a loop: it is a directory that it lies in\n";
    const std::string all = AllBelow("d");
    EXPECT_NE(all.find("file d/inner/b\nfile d/inner/deeper/c\n" + loop + "file d/link\n"), std::string::npos) << all;
    const FileIdentity d = IdentityOf("d");
    identities[IdentityOf("d/inner/deeper/d").inode] = {d.device + 1, d.inode};
    EXPECT_EQ(AllBelow("d").find("loop"), std::string::npos) << "the inode of another device";
}

TEST_F(WalkOf, SameDirectoryTwiceIsNoLoop) {
    Make("twice");
    Make("twice/1");
    Make("twice/2");
    directory_.Write("twice/1/a", "");
    directory_.Write("twice/2/b", "");
    identities[IdentityOf("twice/2").inode] = IdentityOf("twice/1");
    EXPECT_EQ(AllBelow("twice"), "file twice/1/a\nfile twice/2/b\n");
}

// ---- Changing trees -------------------------------------------------------------------------------------------------

TEST_F(WalkOf, DirectoryThatIsGoneWhenItsTurnComesIsAFailure) {
    Make("change");
    for (const char* const name : {"change/1", "change/2", "change/3", "change/4"}) Make(name);
    directory_.Write("change/0", "");
    directory_.Write("change/4/a", "");
    for (const bool sorted : {true, false}) {
        Walk walk(UpToDepth(9, sorted));
        walk.Start(directory_.At("change"));
        WalkItem item;
        while (walk.Next(item) && item.path != directory_.At("change/0")) continue;
        std::filesystem::remove(directory_.At("change/1"));
        std::filesystem::remove(directory_.At("change/2"));
        directory_.Write("change/2", "");  // a file in its place
        std::filesystem::remove(directory_.At("change/3"));
        Link("4", "change/3");
        std::string rest = RestOf(walk);
        if (sorted) {
            EXPECT_EQ(rest,
                      "failure change/1: No such file or directory\nfile change/2\n"
                      "note change/3: is a symbolic link to a directory\nfile change/4/a\n");
        }
        for (const char* const name : {"change/2", "change/3"}) std::filesystem::remove(directory_.At(name));
        for (const char* const name : {"change/1", "change/2", "change/3"}) Make(name);
    }
}

TEST_F(WalkOf, FileThatIsGoneIsStillToBeOpened) {
    Walk walk({});
    walk.Start(directory_.At("d"));
    WalkItem item;
    ASSERT_TRUE(walk.Next(item));
    std::filesystem::remove(directory_.At("d/inner/b"));
    std::filesystem::remove(directory_.At("d/link"));
    std::filesystem::remove(directory_.At("d/link_to_nothing"));
    EXPECT_EQ(RestOf(walk),
              "note d/fifo: is a FIFO, not a file\nfile d/link\nnote d/link_to_fifo: is a FIFO, not a file\n"
              "note d/link_to_inner: is a symbolic link to a directory\nfile d/link_to_nothing\n");
}

TEST_F(WalkOf, EndsWithASignal) {
    EXPECT_EXIT(
        {
            CatchInterrupts();
            Walk walk({});
            walk.Start(directory_.At("d"));
            WalkItem item;
            const bool began = walk.Next(item);
            raise(SIGTERM);
            const bool went = walk.Next(item);
            walk.Start(directory_.At("d/a"));
            _exit(began && !went && !walk.Next(item) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

// ---- Memory ---------------------------------------------------------------------------------------------------------

class LargeWalk : public WalkOf {
 protected:
    // Three directories in each other, of 300 files and as many empty directories each.
    LargeWalk() {
        std::string name = "large";
        for (int level = 0; level < 3; ++level) {
            Make(name);
            for (int number = 100; number < 400; ++number) {
                directory_.Write(name + "/f" + std::to_string(number), "");
                Make(name + "/e" + std::to_string(number));
            }
            name += "/e250";
            std::filesystem::remove(directory_.At(name));
        }
        Make(name);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory_.At("large"))) {
            if (entry.is_regular_file())
                files_.push_back("file " + entry.path().string().substr(directory_.At("").size()));
        }
        std::ranges::sort(files_);
        for (const std::string& file : files_) expected_ += file + "\n";
    }

    std::string Through(std::size_t memory, bool sorted) const {
        WalkOptions options;
        options.memory = memory;
        options.sorted = sorted;
        return AllBelow("large", options);
    }

    std::vector<std::string> files_;
    std::string expected_;
};

TEST_F(LargeWalk, AnyMemoryGivesTheSame) {
    for (const std::size_t memory : {10000000, 30000, 20000, 9000, 1000, 0}) {
        EXPECT_EQ(Through(memory, true), expected_) << memory;
        EXPECT_EQ(Sorted(Through(memory, false)), expected_) << memory;
    }
}

TEST_F(LargeWalk, WithoutATemporaryDirectoryTheListsStayInMemory) {
    setenv("TMPDIR", directory_.At("missing").c_str(), 1);
    EXPECT_EQ(Through(1000, true), expected_);
    EXPECT_EQ(Sorted(Through(1000, false)), expected_);
}

TEST_F(LargeWalk, ListThatCantBeReadAgainIsAFailure) {
    spillFails = true;
    EXPECT_EQ(Through(1000, true),
              "failure large: its list can't be read from the temporary file: Input/output error\n");
}

// ---- Cost -----------------------------------------------------------------------------------------------------------

TEST_F(WalkOf, FilesCostNoCallAndDirectoriesFive) {
    Make("cost");
    Make("cost/inner");
    for (int number = 0; number < 50; ++number) directory_.Write("cost/inner/" + std::to_string(number), "");
    for (const bool sorted : {true, false}) {
        Walk walk(UpToDepth(9, sorted));
        walk.Start(directory_.At("cost"));
        calls.clear();
        WalkItem item;
        int files = 0;
        while (walk.Next(item)) ++files;
        EXPECT_EQ(files, 50);
        // Besides, each is closed. The named one is opened through openat too.
        const std::map<std::string, int> expected = {{"stat", 1}, {"openat", 2}, {"fstat", 2}, {"getdents64", 4}};
        EXPECT_EQ(calls, expected);
    }
}

TEST_F(WalkOf, LinksAndUnknownKindsCostACall) {
    calls.clear();
    Walk walk({});
    walk.Start(directory_.At("d"));
    WalkItem item;
    while (walk.Next(item)) continue;
    EXPECT_EQ(calls["fstatat"], 5) << "two for the link that leads nowhere";
    kindsAreUnknown = true;
    calls.clear();
    walk.Start(directory_.At("d"));
    while (walk.Next(item)) continue;
    EXPECT_EQ(calls["fstatat"], 8 + 5);
}

TEST_F(WalkOf, LeavesNoDescriptorOpen) {
    const std::ptrdiff_t before = CountOpenDescriptors();
    AllBelow("d");
    AllBelow("d", Unsorted());
    listingReason = EIO;
    AllBelow("d");
    fstatReason = EIO;
    AllBelow("d");
    EXPECT_EQ(CountOpenDescriptors(), before);
}

}  // namespace
