// Packages: what is one, and which part a relationship type leads to.
#include <gtest/gtest.h>

#include <string>

#include "platform/base_utility.h"
#include "platform/package_library.h"
#include "support/open_file.h"
#include "support/process_heap.h"
#include "support/relationships.h"
#include "support/test_handle.h"
#include "support/zip_writer.h"

namespace {

ZipMember Packed(const std::string& name, const std::string& bytes) {
    return {.name = name, .bytes = bytes, .method = zipDeflated};
}

bool IsPackage(HIOFILE file) {
    HPKGPACKAGE package = nullptr;
    const bool accepted = PKGInit(file, &package) == 0;
    EXPECT_EQ(package != nullptr, accepted);
    PKGDeinit(package);
    return accepted;
}

bool IsPackage(const std::string& bytes) {
    const std::size_t blocks = FIHeapBlocks();
    OpenFile file(bytes);
    const bool accepted = IsPackage(file.File());
    file.Close();
    EXPECT_EQ(FIHeapBlocks(), blocks);
    return accepted;
}

// What the part of type "t" delivers; a part that can't be opened is a failure without bytes.
ReadResult ReadPart(HIOFILE file, const char* type = "t") {
    HPKGPACKAGE package = nullptr;
    HPKGPART part = nullptr;
    ReadResult result = {"", true};
    EXPECT_EQ(PKGInit(file, &package), 0);
    const std::int16_t status = PKGOpenFileByType(&part, 0, type, package);
    EXPECT_EQ(part != nullptr, status == 0);
    if (status == 0) result = FIReadAll(PKGGetHIOFILE(part));
    PKGCloseFile(part);
    PKGDeinit(package);
    return result;
}

ReadResult ReadPart(const std::string& bytes, const char* type = "t") {
    const std::size_t blocks = FIHeapBlocks();
    OpenFile file(bytes);
    const ReadResult result = ReadPart(file.File(), type);
    file.Close();
    EXPECT_EQ(FIHeapBlocks(), blocks);
    return result;
}

ReadResult ReadPart(const std::vector<ZipMember>& members, const char* type = "t") {
    return ReadPart(FIWriteZip(members), type);
}

const ZipMember toPart = Packed("_rels/.rels", FIRelationships(FIRelationship("t", "part.xml")));
const ReadResult notOpened = {"", true};

// ---- What is a package ---------------------------------------------------------------------------------------------

TEST(Package, IsAnArchiveWithARelationshipsPart) {
    EXPECT_TRUE(IsPackage(FIWriteZip({{"_rels/.rels", ""}})));
    EXPECT_TRUE(IsPackage(FIWriteZip({{"a", "b"}, Packed("_rels/.rels", "not even XML")})));
    EXPECT_TRUE(IsPackage(FIWriteZip({{"_RELS/.Rels", ""}})));
    EXPECT_TRUE(IsPackage("front" + FIWriteZip({{"_rels/.rels", ""}})));
}

TEST(Package, IsOneWithoutTheEndOfItsComment) {
    EXPECT_TRUE(IsPackage(FIWriteZip({{"_rels/.rels", ""}}, {.comment = "com", .commentLengthTold = 7})));
}

TEST(Package, ThatWasCutIsNotTheOneInsideIt) {
    // A presentation holds a workbook, stored; the file ends behind it or in the member that follows.
    const std::string book = FIWriteZip({toPart, Packed("part.xml", "book")});
    const std::string slides = FIWriteZip(
        {toPart, Packed("part.xml", "slides"), {"ppt/embeddings/book.xlsx", book}, {"ppt/last.xml", "behind"}});
    const std::size_t behindBook = slides.find(book) + book.size();
    EXPECT_EQ(ReadPart(slides).bytes, "slides");
    EXPECT_FALSE(IsPackage(slides.substr(0, behindBook)));
    EXPECT_FALSE(IsPackage(slides.substr(0, behindBook + 36)));
    EXPECT_TRUE(IsPackage(slides.substr(slides.find(book), book.size() + 36)));
}

TEST(Package, IsNoOtherArchive) {
    EXPECT_FALSE(IsPackage(FIWriteZip({})));
    EXPECT_FALSE(IsPackage(FIWriteZip({{"[Content_Types].xml", ""}, {"rels/.rels", ""}, {"/_rels/.rels", ""}})));
    EXPECT_FALSE(IsPackage(FIWriteZip({{"_rels\\.rels", ""}, {"_rels/.rels/", ""}, {"word/_rels/.rels", ""}})));
}

TEST(Package, IsNothingElse) {
    EXPECT_FALSE(IsPackage(std::string("")));
    EXPECT_FALSE(IsPackage(std::string("PK\3\4")));
    std::string cut = FIWriteZip({{"_rels/.rels", ""}});
    cut.pop_back();
    EXPECT_FALSE(IsPackage(cut));
    HPKGPACKAGE package = nullptr;
    EXPECT_EQ(PKGInit(nullptr, &package), -1);
    EXPECT_EQ(package, nullptr);
}

TEST(Package, NeedsNoListOfContentTypes) { EXPECT_EQ(ReadPart({toPart, {"part.xml", "bytes"}}).bytes, "bytes"); }

TEST(Package, LeavesTheHandleToItsOwner) {
    const OpenFile file(FIWriteZip({toPart, {"part.xml", "bytes"}}));
    for (int round = 0; round < 3; ++round) EXPECT_EQ(ReadPart(file.File()).bytes, "bytes");
}

TEST(Package, OpensInAHostsHandle) {
    const std::size_t blocks = FIHeapBlocks();
    for (const std::uint32_t bytesPerRead : {1U, 100U, testNever}) {
        const auto host = FIMakeTestHandle(FIWriteZip({toPart, Packed("part.xml", "bytes")}));
        host->bytesPerRead = bytesPerRead;
        EXPECT_EQ(ReadPart(FIFileOf(*host)), (ReadResult{"bytes", false}));
    }
    const auto plain = FIMakeTestHandle("no package");
    EXPECT_FALSE(IsPackage(FIFileOf(*plain)));
    const auto failing = FIMakeTestHandle(FIWriteZip({toPart}));
    failing->failReadsFrom = 0;
    EXPECT_FALSE(IsPackage(FIFileOf(*failing)));
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(Package, EndsWithoutOneToo) {
    const std::size_t blocks = FIHeapBlocks();
    PKGCloseFile(nullptr);
    PKGDeinit(nullptr);
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

// ---- Parts ---------------------------------------------------------------------------------------------------------

TEST(Part, IsWhereTheFirstRelationshipOfTheTypeLeads) {
    const ZipMember relationships = Packed(
        "_rels/.rels", FIRelationships(FIRelationship("s", "a") + FIRelationship("t", "b") + FIRelationship("t", "c")));
    const std::vector<ZipMember> members = {relationships, {"a", "1"}, {"b", "2"}, {"c", "3"}};
    EXPECT_EQ(ReadPart(members, "s").bytes, "1");
    EXPECT_EQ(ReadPart(members, "t").bytes, "2");
    EXPECT_EQ(ReadPart(members, "u"), notOpened);
    EXPECT_EQ(ReadPart(members, ""), notOpened);
}

TEST(Part, ThatIsMissingIsNotMadeUpForByTheNext) {
    const ZipMember relationships = {"_rels/.rels",
                                     FIRelationships(FIRelationship("t", "a") + FIRelationship("t", "b"))};
    EXPECT_EQ(ReadPart({relationships, {"b", "2"}}), notOpened);
}

TEST(Part, IsFoundWithAsciiLettersComparedWithoutCase) {
    EXPECT_EQ(ReadPart({toPart, {"PART.Xml", "bytes"}}).bytes, "bytes");
    const ZipMember toUmlaut = {"_rels/.rels", FIRelationships(FIRelationship("t", "%c3%84"))};
    EXPECT_EQ(ReadPart({toUmlaut, {"\xC3\x84", "bytes"}}).bytes, "bytes");
    EXPECT_EQ(ReadPart({toUmlaut, {"\xC3\xA4", "bytes"}}), notOpened);
}

TEST(Part, OfTwoOfOneNameIsTheFirstInTheDirectory) {
    const std::vector<ZipMember> members = {toPart, {"Part.xml", "first"}, {"part.xml", "second"}};
    EXPECT_EQ(ReadPart(members).bytes, "first");
    OpenFile file(FIWriteZip(members, {.directoryOrder = {2, 1, 0}}));
    EXPECT_EQ(ReadPart(file.File()).bytes, "second");
}

TEST(Part, OfTheFirstRelationshipsPartIsMeant) {
    const ZipMember other = {"_RELS/.RELS", FIRelationships(FIRelationship("t", "other.xml"))};
    const std::vector<ZipMember> members = {toPart, other, {"part.xml", "first"}, {"other.xml", "second"}};
    EXPECT_EQ(ReadPart(members).bytes, "first");
    OpenFile file(FIWriteZip(members, {.directoryOrder = {1, 0, 2, 3}}));
    EXPECT_EQ(ReadPart(file.File()).bytes, "second");
}

TEST(Part, IsResolvedAgainstTheRoot) {
    const ZipMember relationships = {"_rels/.rels", FIRelationships(FIRelationship("t", "/x/../word/./my%20part.xml"))};
    EXPECT_EQ(ReadPart({relationships, {"word/my part.xml", "bytes"}}).bytes, "bytes");
    EXPECT_EQ(ReadPart({relationships, {"_rels/word/my part.xml", "bytes"}}), notOpened);
}

TEST(Part, IsNeverOutsideThePackage) {
    const ZipMember relationships = {
        "_rels/.rels", FIRelationships("<Relationship Type='t' TargetMode='External' Target='part.xml'/>")};
    EXPECT_EQ(ReadPart({relationships, {"part.xml", "bytes"}}), notOpened);
}

TEST(Part, MayHaveTheLongestNameThereIs) {
    const std::string name(65535, 'n');
    const ZipMember relationships = Packed("_rels/.rels", FIRelationships(FIRelationship("t", name)));
    EXPECT_EQ(ReadPart({relationships, {name, "bytes"}}).bytes, "bytes");
    const ZipMember beyond = Packed("_rels/.rels", FIRelationships(FIRelationship("t", name + "n")));
    EXPECT_EQ(ReadPart({beyond, {name, "bytes"}}), notOpened);
}

TEST(Part, ThatCanNotBeUnpackedDoesNotOpen) {
    EXPECT_EQ(ReadPart({toPart, {.name = "part.xml", .bytes = "bytes", .flags = zipEncryptedFlag}}), notOpened);
    EXPECT_EQ(ReadPart({toPart, {.name = "part.xml", .bytes = "bytes", .method = 77}}), notOpened);
    ZipMember relationships = toPart;
    relationships.flags = zipEncryptedFlag;
    EXPECT_EQ(ReadPart({relationships, {"part.xml", "bytes"}}), notOpened);
}

TEST(Part, IsFoundByRelationshipsInFrontOfAnErrorOrOfDamage) {
    const std::string text = FIRelationships(FIRelationship("t", "part.xml"));
    const std::string wrong = text.substr(0, text.size() - 5) + "<<<";
    EXPECT_EQ(ReadPart({{"_rels/.rels", wrong}, {"part.xml", "bytes"}}).bytes, "bytes");
    const ZipMember damaged = {.name = "_rels/.rels",
                               .bytes = text,
                               .method = zipDeflated,
                               .packed = FIStoredBlock(text.substr(0, text.size() - 5)) + "\x07"};
    EXPECT_EQ(ReadPart({damaged, {"part.xml", "bytes"}}).bytes, "bytes");
}

// ---- One pass ------------------------------------------------------------------------------------------------------

// Packages whose relationships part has a namespace's address of 900,000 bytes and many prefixed attributes, behind one
// relationship.
std::string LongAddress(std::size_t tags) {
    std::string content = FIRelationship("t", "part.xml") + "<x xmlns:p='" + std::string(900000, 'n') + "'>";
    for (std::size_t tag = 0; tag < tags; ++tag) content += "<x p:a='' p:b='' p:c='' p:d='' p:e='' p:f=''/>";
    return FIWriteZip({Packed("_rels/.rels", FIRelationships(content + "</x>")), {"part.xml", "bytes"}});
}

bool Opens(HPKGPACKAGE package, const char* type) {
    HPKGPART part = nullptr;
    const bool opened = PKGOpenFileByType(&part, 0, type, package) == 0;
    PKGCloseFile(part);
    return opened;
}

TEST(OnePass, FindsEveryTypeAndReadsTheRelationshipsOnce) {
    const ZipMember relationships = {"_rels/.rels",
                                     FIRelationships(FIRelationship("t", "a") + FIRelationship("u", "b"))};
    const auto host = FIMakeTestHandle(FIWriteZip({relationships, {"a", "1"}, {"b", "2"}}));
    HPKGPACKAGE package = nullptr;
    ASSERT_EQ(PKGInit(FIFileOf(*host), &package), 0);
    EXPECT_FALSE(Opens(package, "v"));
    const std::uint32_t reads = host->reads;
    EXPECT_FALSE(Opens(package, "w"));
    EXPECT_FALSE(Opens(package, ""));
    EXPECT_EQ(host->reads, reads) << "the types that are not there cost nothing more";
    EXPECT_TRUE(Opens(package, "t"));
    EXPECT_TRUE(Opens(package, "u"));
    EXPECT_TRUE(Opens(package, "t"));
    PKGDeinit(package);
}

TEST(OnePass, EndsAtALongAddress) {
    for (const std::size_t tags : {std::size_t{2000}, std::size_t{600000}}) {
        const std::string bytes = LongAddress(tags);
        EXPECT_LT(bytes.size(), 100000U);
        const auto host = FIMakeTestHandle(bytes);
        HPKGPACKAGE package = nullptr;
        ASSERT_EQ(PKGInit(FIFileOf(*host), &package), 0);
        const std::uint64_t before = host->bytesDelivered;
        EXPECT_FALSE(Opens(package, "u"));
        EXPECT_FALSE(Opens(package, "v"));
        EXPECT_TRUE(Opens(package, "t"));
        EXPECT_LE(host->bytesDelivered - before, 2 * bytes.size());
        PKGDeinit(package);
    }
}

TEST(OnePass, IsDoneAgainWhenMemoryWasExhausted) {
    const OpenFile file(FIWriteZip({toPart, Packed("part.xml", "bytes")}));
    HPKGPACKAGE package = nullptr;
    ASSERT_EQ(PKGInit(file.File(), &package), 0);
    for (std::uint32_t allocation = 0;; ++allocation) {
        ASSERT_LT(allocation, 1000U);
        FIFailAllocationsFrom(allocation);
        const bool opened = Opens(package, "t");
        FIHeapNeverFails();
        if (opened) break;
    }
    PKGDeinit(package);
}

// ---- What a host sees ----------------------------------------------------------------------------------------------

// The operations that a host's handle has seen: "s" a seek's target from the start, "e" one to the end, "t" a tell, "r" a
// read's size. They are part of what a host relies on.
std::string& seenByHost = *new std::string;
IOOperations plainOperations;

std::int32_t SeenRead(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    seenByHost += "r" + std::to_string(size) + " ";
    return plainOperations.IORead(file, destination, size, count);
}

std::int32_t SeenSeek(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    seenByHost += (origin == IOOriginEnd ? "e" : "s") + std::to_string(offset) + " ";
    return plainOperations.IOSeek(file, origin, offset);
}

std::int32_t SeenTell(HIOFILE file, std::uint32_t* position) {
    seenByHost += "t ";
    return plainOperations.IOTell(file, position);
}

// Reads a part of type "t" from a package in a host's handle, and tells the operations.
std::string SeenOf(const std::string& bytes) {
    const auto host = FIMakeTestHandle(bytes);
    plainOperations = host->file.operations;
    host->file.operations.IORead = SeenRead;
    host->file.operations.IOSeek = SeenSeek;
    host->file.operations.IOTell = SeenTell;
    seenByHost.clear();
    HPKGPACKAGE package = nullptr;
    if (PKGInit(FIFileOf(*host), &package) != 0) return seenByHost;
    HPKGPART part = nullptr;
    static_cast<void>(PKGOpenFileByType(&part, 0, "t", package));
    seenByHost += "| ";
    HUTXML xml = nullptr;
    UTXmlTag tag = {};
    EXPECT_EQ(UTXMLInit(&xml, PKGGetHIOFILE(part)), 0);
    static_cast<void>(UTXMLReadNextTag(&xml, &tag, nullptr));
    UTXMLDeInit(&xml);
    PKGCloseFile(part);
    PKGDeinit(package);
    return seenByHost;
}

TEST(HostOfAPackage, SeesEachWalkAndEachPiece) {
    const ZipMember relationships = {"_rels/.rels", FIRelationships(FIRelationship("t", "part.xml"))};
    EXPECT_EQ(SeenOf(FIWriteZip({relationships, {"part.xml", "<a xmlns='n'/>"}})),
              // The search: the last bytes, the end record, no zip64 locator in front of it, the directory.
              "e0 t s0 r357 s353 r22 s333 r20 s242 r111 "
              // The walk for the relationships part, and again to open it.
              "s242 r111 s242 r111 s0 r30 e0 t s41 r149 "
              // The walk for the part, and its first portion.
              "s242 r111 s190 r30 e0 t | s228 r14 ");
    EXPECT_EQ(SeenOf(std::string(9000, 'x')), "e0 t s4883 r4099 s787 r4099 s0 r790 ") << "pieces of 4,096 places";
}

TEST(Part, HasAHandleThatSeeks) {
    const OpenFile file(FIWriteZip({toPart, Packed("part.xml", "0123456789")}));
    HPKGPACKAGE package = nullptr;
    HPKGPART part = nullptr;
    ASSERT_EQ(PKGInit(file.File(), &package), 0);
    ASSERT_EQ(PKGOpenFileByType(&part, 0, "t", package), 0);
    const HIOFILE bytes = PKGGetHIOFILE(part);
    EXPECT_EQ(FIReadAll(bytes).bytes, "0123456789");
    EXPECT_EQ(bytes->operations.IOSeek(bytes, 0, 3), 0);
    EXPECT_EQ(FIReadAll(PKGGetHIOFILE(part)).bytes, "3456789");
    PKGCloseFile(part);
    PKGDeinit(package);
}

TEST(Part, FailsWhenMemoryIsExhaustedAndLosesNone) {
    const OpenFile file(FIWriteZip({toPart, Packed("part.xml", "bytes")}));
    const std::size_t blocks = FIHeapBlocks();
    for (std::uint32_t allocation = 0;; ++allocation) {
        ASSERT_LT(allocation, 1000U);
        HPKGPACKAGE package = nullptr;
        HPKGPART part = nullptr;
        FIFailAllocationsFrom(allocation);
        if (PKGInit(file.File(), &package) == 0) static_cast<void>(PKGOpenFileByType(&part, 0, "t", package));
        FIHeapNeverFails();
        const bool opened = part != nullptr;
        PKGCloseFile(part);
        PKGDeinit(package);
        EXPECT_EQ(FIHeapBlocks(), blocks);
        if (opened) break;
    }
}

}  // namespace
