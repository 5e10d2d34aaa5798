// Kinds of ZIP archives and packages, and of compound storages: every line with what just misses it, and every step that
// leads to a package's main part.
#include "further/package_kinds.h"

#include <gtest/gtest.h>

#include <set>

#include "further/package_facts.h"
#include "further/storage_kinds.h"
#include "support/open_file.h"
#include "support/process_heap.h"
#include "support/storage_writer.h"
#include "support/zip_writer.h"

namespace {

constexpr FIID plainZip = 1802;
constexpr FIID word = 1312;

using Members = std::vector<ZipMember>;

// A look at bytes for which the signature table has given an answer.
class Look {
 public:
    explicit Look(const std::string& bytes, FIID fiid = plainZip, const char* name = "")
        : blocks_(FIHeapBlocks()), file_(bytes, name) {
        started_ = FIStartLook(look_, *UTFindHandle(file_.File()), fiid, 0);
        EXPECT_TRUE(started_);
    }
    ~Look() {
        if (started_) FIEndLook(look_);
        EXPECT_EQ(UTFindHandle(file_.File())->firstChild, nullptr) << "an archive or a member is still open";
        file_.Close();
        EXPECT_EQ(FIHeapBlocks(), blocks_);
    }
    Look(const Look&) = delete;
    Look& operator=(const Look&) = delete;

    FILook& operator*() { return look_; }

 private:
    std::size_t blocks_;
    OpenFile file_;
    FILook look_ = {};
    bool started_;
};

FIID KindOfBytes(const std::string& bytes, FIID over = plainZip, const char* name = "") {
    return FITellPackageKind(*Look(bytes, over, name));
}

FIID KindOf(const Members& members, FIID over = plainZip, const char* name = "") {
    return KindOfBytes(FIWriteZip(members), over, name);
}

// ---- Content types -------------------------------------------------------------------------------------------------

const std::string office = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument";
const std::string officeDraft = "http://schemas.microsoft.com/office/2006/relationships/officeDocument";
const std::string officeStrict = "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument";
const std::string visio = "http://schemas.microsoft.com/visio/2010/relationships/document";
const std::string xps = "http://schemas.microsoft.com/xps/2005/06/fixedrepresentation";
const std::string openXps = "http://schemas.openxps.org/oxps/v1.0/fixedrepresentation";

const std::string relationshipsNamespace = "http://schemas.openxmlformats.org/package/2006/relationships";
const std::string typesNamespace = "http://schemas.openxmlformats.org/package/2006/content-types";

std::string Relationship(const std::string& type, const std::string& target, const std::string& more = "") {
    return "<Relationship Id='r' Type='" + type + "' Target='" + target + "' " + more + "/>";
}

std::string Relationships(const std::string& content) {
    return "<Relationships xmlns='" + relationshipsNamespace + "'>" + content + "</Relationships>";
}

std::string Override(const std::string& part, const std::string& type) {
    return "<Override PartName='" + part + "' ContentType='" + type + "'/>";
}

std::string Default(const std::string& extension, const std::string& type) {
    return "<Default Extension='" + extension + "' ContentType='" + type + "'/>";
}

std::string Types(const std::string& content) {
    return "<Types xmlns='" + typesNamespace + "'>" + content + "</Types>";
}

Members Parts(const std::string& relationships, const std::string& types) {
    return {{.name = "[Content_Types].xml", .bytes = types, .method = zipDeflated},
            {.name = "_rels/.rels", .bytes = relationships, .method = zipDeflated}};
}

// A package whose main part has a content type.
Members Package(const std::string& type, const std::string& relationship = office) {
    return Parts(Relationships(Relationship(relationship, "main.xml")), Types(Override("/main.xml", type)));
}

struct TypeLine {
    FIID identifier;
    FIID over;
    const char* type;
    std::string relationship = "";  // the only one with which the line holds; empty for any
};

const TypeLine typeLines[] = {
    // clang-format off
    {20401, 1312, "application/vnd.ms-word.document.macroEnabled.main+xml"},
    {20402, 1312, "application/vnd.openxmlformats-officedocument.wordprocessingml.template.main+xml"},
    {20403, 1312, "application/vnd.ms-word.template.macroEnabledTemplate.main+xml"},
    {20404, 1455, "application/vnd.ms-excel.sheet.macroEnabled.main+xml"},
    {20405, 1455, "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml"},
    {20406, 1455, "application/vnd.ms-excel.template.macroEnabled.main+xml"},
    {20407, 1455, "application/vnd.ms-excel.addin.macroEnabled.main+xml"},
    {20409, 1635, "application/vnd.ms-powerpoint.presentation.macroEnabled.main+xml"},
    {20410, 1635, "application/vnd.openxmlformats-officedocument.presentationml.slideshow.main+xml"},
    {20411, 1635, "application/vnd.ms-powerpoint.slideshow.macroEnabled.main+xml"},
    {20412, 1635, "application/vnd.openxmlformats-officedocument.presentationml.template.main+xml"},
    {20413, 1635, "application/vnd.ms-powerpoint.template.macroEnabled.main+xml"},
    {20414, 1635, "application/vnd.ms-powerpoint.addin.macroEnabled.main+xml"},
    {20417, 1802, "application/vnd.ms-visio.drawing.main+xml"},
    {20418, 1802, "application/vnd.ms-visio.drawing.macroEnabled.main+xml"},
    {20419, 1802, "application/vnd.ms-visio.stencil.main+xml"},
    {20420, 1802, "application/vnd.ms-visio.stencil.macroEnabled.main+xml"},
    {20421, 1802, "application/vnd.ms-visio.template.main+xml"},
    {20422, 1802, "application/vnd.ms-visio.template.macroEnabled.main+xml"},
    {20423, 1802, "application/vnd.openxmlformats-officedocument.themeManager+xml"},
    {20423, 1802, "application/vnd.ms-office.themeManager+xml"},
    {20424, 1802, "application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml", officeStrict},
    {20425, 1802, "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml", officeStrict},
    {20426, 1802, "application/vnd.openxmlformats-officedocument.presentationml.presentation.main+xml", officeStrict},
    {20427, 1802, "application/vnd.ms-package.xps-fixeddocumentsequence+xml", openXps},
    // clang-format on
};

const FIID allOvers[] = {1309, 1312, 1454, 1455, 1632, 1633, 1635, 1802, 1999, 1457, 1636};

TEST(ContentType, TellsTheKindOfItsAnswerAlone) {
    for (const TypeLine& line : typeLines) {
        SCOPED_TRACE(line.type);
        const std::string type = line.type;
        const std::string relationship = line.relationship.empty() ? office : line.relationship;
        for (const FIID over : allOvers) {
            EXPECT_EQ(KindOf(Package(type, relationship), over), over == line.over ? line.identifier : 0) << over;
        }
        for (const std::string& other : {type + "x", "x" + type, type.substr(0, type.size() - 1), type + "|"}) {
            EXPECT_EQ(KindOf(Package(other, relationship), line.over), 0) << other;
        }
        for (const std::string& other : {office, officeDraft, officeStrict, visio, xps, openXps}) {
            const bool holds = line.relationship.empty() || line.relationship == other;
            EXPECT_EQ(KindOf(Package(type, other), line.over), holds ? line.identifier : 0) << other;
        }
    }
}

TEST(ContentType, OfADocumentWithoutMacrosIsNoMorePrecise) {
    EXPECT_EQ(KindOf(Package("application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"), word),
              0);
    EXPECT_EQ(KindOf(Package(""), word), 0);
}

TEST(ContentType, IsComparedWithoutCaseParametersAndWhiteSpace) {
    for (const char* const type : {"APPLICATION/vnd.MS-WORD.document.macroenabled.MAIN+XML",
                                   "application/vnd.ms-word.document.macroEnabled.main+xml;charset=utf-8",
                                   "application/vnd.ms-word.document.macroEnabled.main+xml ; a=b; c=d",
                                   "&#9; application/vnd.ms-word.document.macroEnabled.main+xml&#13;&#10;",
                                   "application / vnd.ms-word.document.macroEnabled.main+xml"}) {
        EXPECT_EQ(KindOf(Package(type), word), 20401) << type;
    }
    const std::string spaces(200, ' ');
    EXPECT_EQ(KindOf(Package(spaces + "application/vnd.ms-word.document.macroEnabled.main+xml" + spaces), word), 20401);
    EXPECT_EQ(KindOf(Package(";application/vnd.ms-word.document.macroEnabled.main+xml"), word), 0);
    EXPECT_EQ(KindOf(Package("application/vnd.ms-word.document.macroEnabled.main+xml,x"), word), 0);
    EXPECT_EQ(KindOf(Package("application/vnd.ms-word.document.macroEnabled.main+xml&#xA0;"), word), 0);
}

TEST(ContentType, ComesBeforeTheMimetypeAndTheNames) {
    Members members = Package("application/vnd.ms-visio.drawing.main+xml", visio);
    members.insert(members.begin(), {{"mimetype", "application/epub+zip"}, {"META-INF/MANIFEST.MF", ""}});
    EXPECT_EQ(KindOf(members), 20417);
    members.pop_back();
    EXPECT_EQ(KindOf(members), 20340);
    members.erase(members.begin());
    EXPECT_EQ(KindOf(members), 20365);
}

// ---- The way to the main part --------------------------------------------------------------------------------------

std::string InUtf16(const std::string& text) {
    std::string wide = "\xFF\xFE";
    for (const char character : text) wide += {character, '\0'};
    return wide;
}

constexpr auto none = FIMainRelationship::None;
constexpr auto byOffice = FIMainRelationship::Office;
constexpr auto byDraft = FIMainRelationship::OfficeDraft;
constexpr auto byStrict = FIMainRelationship::OfficeStrict;
constexpr auto byVisio = FIMainRelationship::Visio;
constexpr auto byXps = FIMainRelationship::Xps;
constexpr auto byOpenXps = FIMainRelationship::OpenXps;

struct TargetCase {
    const char* name;
    std::string relationships;
    FIMainRelationship relationship;
    std::string part;  // without the slash
};

const TargetCase targetCases[] = {
    // clang-format off
    {"Office", Relationships(Relationship(office, "a/b.xml")), byOffice, "a/b.xml"},
    {"Draft", Relationships(Relationship(officeDraft, "a/b.xml")), byDraft, "a/b.xml"},
    {"Strict", Relationships(Relationship(officeStrict, "a/b.xml")), byStrict, "a/b.xml"},
    {"Visio", Relationships(Relationship(visio, "a/b.xml")), byVisio, "a/b.xml"},
    {"Xps", Relationships(Relationship(xps, "a/b.xml")), byXps, "a/b.xml"},
    {"OpenXps", Relationships(Relationship(openXps, "a/b.xml")), byOpenXps, "a/b.xml"},
    {"AnotherType", Relationships(Relationship(office + "s", "a") + Relationship("x", "b")), none, ""},
    {"ATypeOfOtherCase", Relationships(Relationship("HTTP" + office.substr(4), "a")), none, ""},
    {"ATypeWithSpace", Relationships(Relationship(office + " ", "a")), none, ""},
    {"NoType", Relationships("<Relationship Target='a'/>"), none, ""},
    {"NoRelationship", Relationships(""), none, ""},
    {"NoXml", "text", none, ""},
    {"NothingAtAll", "", none, ""},
    {"TheFirstOfAType", Relationships(Relationship(office, "a") + Relationship(office, "b")), byOffice, "a"},
    {"TheFirstTypeOfTheList", Relationships(Relationship(openXps, "f") + Relationship(xps, "e") + Relationship(visio, "d") +
        Relationship(officeStrict, "c") + Relationship(officeDraft, "b") + Relationship(office, "a")), byOffice, "a"},
    {"TheSecondTypeOfTheList", Relationships(Relationship(visio, "d") + Relationship(officeDraft, "b") +
        Relationship(openXps, "f") + Relationship(officeDraft, "x")), byDraft, "b"},
    {"ExternalIsPassedOver", Relationships(Relationship(office, "a", "TargetMode='External'") + Relationship(office, "b")), byOffice, "b"},
    {"ExternalAlone", Relationships(Relationship(office, "a", "TargetMode='External'")), none, ""},
    {"ExternalOfABetterType", Relationships(Relationship(office, "a", "TargetMode='External'") + Relationship(xps, "b")), byXps, "b"},
    {"ExternalInOtherCase", Relationships(Relationship(office, "a", "TargetMode='external'")), byOffice, "a"},
    {"Internal", Relationships(Relationship(office, "a", "TargetMode='Internal'")), byOffice, "a"},
    {"NoTarget", Relationships("<Relationship Type='" + office + "'/>" + Relationship(office, "b")), none, ""},
    {"NoTargetOfABetterType", Relationships(Relationship(xps, "a") + "<Relationship Type='" + visio + "'/>"), none, ""},
    {"LeadingSlash", Relationships(Relationship(office, "/a/b.xml")), byOffice, "a/b.xml"},
    {"LeadingDot", Relationships(Relationship(office, "./a/b.xml")), byOffice, "a/b.xml"},
    {"LeadingBackslash", Relationships(Relationship(office, "\\a\\b.xml")), byOffice, "a/b.xml"},
    {"LeadingDotAndBackslash", Relationships(Relationship(office, ".\\a\\b.xml")), byOffice, "a/b.xml"},
    {"SeveralInFront", Relationships(Relationship(office, "//.//././a//./b.xml")), byOffice, "a//./b.xml"},
    {"DotsAreNotWorkedOut", Relationships(Relationship(office, "../a/../b.xml")), byOffice, "../a/../b.xml"},
    {"PercentSignsAreNotWorkedOut", Relationships(Relationship(office, "a%2Fb.xml")), byOffice, "a%2Fb.xml"},
    {"ReferencesAre", Relationships(Relationship(office, "a&#x2F;b&amp;.xml")), byOffice, "a/b&.xml"},
    {"ADotAlone", Relationships(Relationship(office, ".")), byOffice, "."},
    {"AHiddenName", Relationships(Relationship(office, ".a")), byOffice, ".a"},
    {"AnEmptyTarget", Relationships(Relationship(office, "")), byOffice, ""},
    {"ASlashAlone", Relationships(Relationship(office, "/")), byOffice, ""},
    {"APrefix", "<p:Relationships xmlns:p='" + relationshipsNamespace + "'><p:Relationship Type='" + office + "' Target='a'/></p:Relationships>", byOffice, "a"},
    {"AnotherNamespace", "<Relationships xmlns='x'>" + Relationship(office, "a") + "</Relationships>", byOffice, "a"},
    {"NoNamespace", "<Relationships>" + Relationship(office, "a") + "</Relationships>", byOffice, "a"},
    {"PrefixedAttributes", "<R xmlns:p='x'><Relationship p:Type='" + office + "' p:Target='a'/></R>", byOffice, "a"},
    {"APrefixedTargetMode", "<R xmlns:p='x'>" + Relationship(office, "a", "p:TargetMode='External'") + "</R>", none, ""},
    {"AnotherElement", Relationships("<Relation Type='" + office + "' Target='a'/>"), none, ""},
    {"AnElementOfOtherCase", Relationships("<relationship Type='" + office + "' Target='a'/>"), none, ""},
    {"TheElementAlone", Relationship(office, "a"), byOffice, "a"},
    {"FarInside", Relationships("<x><y>" + Relationship(office, "a") + "</y></x>"), byOffice, "a"},
    {"AnErrorBehind", Relationships(Relationship(xps, "a") + "<wrong"), byXps, "a"},
    {"AnErrorBehindABetterOne", Relationships(Relationship(xps, "a") + Relationship(office, "b") + "</wrong>"), byOffice, "b"},
    {"AnErrorInFront", Relationships("&wrong;" + Relationship(office, "a")), none, ""},
    {"Utf16", InUtf16(Relationships(Relationship(office, "a"))), byOffice, "a"},
    {"AByteOrderMark", "\xEF\xBB\xBF" + Relationships(Relationship(office, "a")), byOffice, "a"},
    {"FarBehind", Relationships(std::string(100000, ' ') + Relationship(office, "a")), byOffice, "a"},
    // clang-format on
};

TEST(MainPart, IsWhereTheRelationshipLeads) {
    for (const TargetCase& targetCase : targetCases) {
        SCOPED_TRACE(targetCase.name);
        Look look(FIWriteZip(Parts(targetCase.relationships, "")));
        const FIMainPart& part = FIMainPartOf(*look);
        EXPECT_EQ(part.relationship, targetCase.relationship);
        EXPECT_EQ(FITextOf(part.name), targetCase.part);
        EXPECT_FALSE(part.name.cut);
        EXPECT_EQ(FITextOf(part.contentType), "");
    }
}

struct TypeCase {
    const char* name;
    std::string target;
    std::string types;
    std::string contentType;
};

const TypeCase typeCases[] = {
    // clang-format off
    {"AnOverride", "a/b.xml", Types(Override("/a/b.xml", "t/one")), "t/one"},
    {"AnOverrideOfOtherCase", "a/B.xml", Types(Override("/A/b.XML", "t/one")), "t/one"},
    {"OtherLettersHaveCase", "\xC3\x84.x", Types(Override("/\xC3\xA4.x", "t/one")), ""},
    {"AnOverrideWithoutItsSlash", "a/b.xml", Types(Override("a/b.xml", "t/one")), ""},
    {"AnOverrideOfAnotherPart", "a/b.xml", Types(Override("/a/b.xm", "t/one") + Override("/a/b.xmll", "t/two")), ""},
    {"AnOverrideOfABackslash", "a/b.xml", Types(Override("\\a\\b.xml", "t/one")), ""},
    {"TheFirstOverride", "a", Types(Override("/a", "t/one") + Override("/a", "t/two")), "t/one"},
    {"AnOverrideWithoutAType", "a.xml", Types("<Override PartName='/a.xml'/>" + Default("xml", "t/two")), ""},
    {"AnOverrideWithoutAPart", "a.xml", Types("<Override ContentType='t/one'/>" + Default("xml", "t/two")), "t/two"},
    {"ADefault", "a/b.xml", Types(Default("xml", "t/one")), "t/one"},
    {"ADefaultOfOtherCase", "a/b.xMl", Types(Default("XmL", "t/one")), "t/one"},
    {"ADefaultWithItsStop", "a/b.xml", Types(Default(".xml", "t/one")), ""},
    {"ADefaultOfAnotherExtension", "a/b.xml", Types(Default("xm", "t/one") + Default("b.xml", "t/two")), ""},
    {"ADefaultWithoutAnExtension", "a/b.xml", Types("<Default ContentType='t/one'/>"), ""},
    {"ADefaultWithoutAType", "b.xml", Types("<Default Extension='xml'/>" + Default("xml", "t/two")), ""},
    {"TheFirstDefault", "b.xml", Types(Default("xml", "t/one") + Default("xml", "t/two")), "t/one"},
    {"AnOverrideBehindADefault", "b.xml", Types(Default("xml", "t/one") + Override("/b.xml", "t/two")), "t/two"},
    {"AnOverrideInFrontOfADefault", "b.xml", Types(Override("/b.xml", "t/two") + Default("xml", "t/one")), "t/two"},
    {"TheLastStopCounts", "b.tar.gz", Types(Default("tar.gz", "t/one") + Default("gz", "t/two")), "t/two"},
    {"TheLastSegmentCounts", "a.xml/b", Types(Default("xml", "t/one") + Default("xml/b", "t/two")), ""},
    {"ATargetThatEndsWithAStop", "b.", Types(Default("", "t/one")), "t/one"},
    {"ATargetWithoutAStop", "b", Types(Default("", "t/one") + Default("b", "t/two")), ""},
    {"AHiddenName", ".xml", Types(Default("xml", "t/one")), "t/one"},
    {"APrefix", "a", "<p:T xmlns:p='x'><p:Override p:PartName='/a' p:ContentType='t/one'/></p:T>", "t/one"},
    {"NoNamespace", "a", "<Types>" + Override("/a", "t/one") + "</Types>", "t/one"},
    {"OtherElements", "a.xml", Types("<override PartName='/a.xml' ContentType='t/one'/><Defaults Extension='xml' ContentType='t/two'/>"), ""},
    {"AnErrorBehindAnOverride", "a", Types(Override("/a", "t/one") + "<"), "t/one"},
    {"AnErrorBehindADefault", "a.xml", Types(Default("xml", "t/one") + "</wrong>" + Override("/a.xml", "t/two")), "t/one"},
    {"AnErrorInFront", "a.xml", Types("&wrong;" + Default("xml", "t/one")), ""},
    {"CaseIsKept", "a", Types(Override("/a", " T/One ; x=y")), "T/One"},
    {"FarBehind", "a", Types(std::string(100000, ' ') + Override("/a", "t/one")), "t/one"},
    // clang-format on
};

TEST(MainPart, HasTheContentTypeThatThePackageTells) {
    for (const TypeCase& typeCase : typeCases) {
        SCOPED_TRACE(typeCase.name);
        Look look(FIWriteZip(Parts(Relationships(Relationship(office, typeCase.target)), typeCase.types)));
        const FIMainPart& part = FIMainPartOf(*look);
        EXPECT_EQ(part.relationship, byOffice);
        EXPECT_EQ(FITextOf(part.contentType), typeCase.contentType);
    }
}

FIMainRelationship RelationshipOf(const Members& members) {
    return FIMainPartOf(*Look(FIWriteZip(members))).relationship;
}

std::string ContentTypeOf(const Members& members) {
    Look look(FIWriteZip(members));
    return std::string(FITextOf(FIMainPartOf(*look).contentType));
}

TEST(MainPart, ItsPartsAreFoundWithoutCaseAndWithASlash) {
    for (const char* const slash : {"", "/"}) {
        Members members = Package("t/one");
        members[0].name = slash + std::string("[content_TYPES].XML");
        members[1].name = slash + std::string("_RELS/.Rels");
        EXPECT_EQ(ContentTypeOf(members), "t/one") << slash;
    }
    for (const char* const front : {"//", "./", "\\", "x/"}) {
        Members members = Package("t/one");
        members[1].name = std::string(front) + "_rels/.rels";
        EXPECT_EQ(RelationshipOf(members), none) << front;
        members = Package("t/one");
        members[0].name = std::string(front) + "[Content_Types].xml";
        EXPECT_EQ(ContentTypeOf(members), "") << front;
        EXPECT_EQ(RelationshipOf(members), byOffice) << front;
    }
}

TEST(MainPart, OfTwoPartsOfOneNameTheFirstInTheDirectoryCounts) {
    Members members = Package("t/one");
    members.push_back({"[content_types].xml", Types(Override("/main.xml", "t/two"))});
    EXPECT_EQ(ContentTypeOf(members), "t/one");
}

TEST(MainPart, IsNotThereWithoutReadableParts) {
    Members members = Package("t/one");
    EXPECT_EQ(RelationshipOf({members[0]}), none);
    EXPECT_EQ(RelationshipOf({members[1]}), byOffice);
    EXPECT_EQ(ContentTypeOf({members[1]}), "");
    for (std::size_t part = 0; part < 2; ++part) {
        for (const bool encrypted : {false, true}) {
            Members locked = members;
            if (encrypted) {
                locked[part].flags = zipEncryptedFlag;
            } else {
                locked[part].packed = locked[part].bytes;
                locked[part].method = 12;
            }
            EXPECT_EQ(ContentTypeOf(locked), "");
            EXPECT_EQ(RelationshipOf(locked), part == 0 ? byOffice : none);
        }
    }
}

TEST(MainPart, OfADamagedPartTheElementsInFrontCount) {
    Members members = Package("t/one");
    for (ZipMember& member : members) {
        const std::string text = member.bytes.substr(0, member.bytes.size() - 4);  // cut in the last tag
        member.packed = FIStoredBlock(text) + "\x07 damage";
    }
    EXPECT_EQ(ContentTypeOf(members), "t/one");
}

TEST(MainPart, IsToldInTextsThatAreCut) {
    const std::string longName(200, 'n');
    const std::string longType(128, 't');
    Look look(FIWriteZip(
        Parts(Relationships(Relationship(office, "/" + longName)), Types(Override("/" + longName, longType)))));
    const FIMainPart& part = FIMainPartOf(*look);
    EXPECT_EQ(FITextOf(part.name), longName.substr(0, 128));
    EXPECT_TRUE(part.name.cut);
    EXPECT_EQ(FITextOf(part.contentType), longType);
    EXPECT_FALSE(part.contentType.cut);
    Look longer(FIWriteZip(Package(longType + "t")));
    EXPECT_TRUE(FIMainPartOf(*longer).contentType.cut);
}

// ---- The member "mimetype" -----------------------------------------------------------------------------------------

struct MimetypeLine {
    FIID identifier;
    FIID over;
    const char* type;
};

const MimetypeLine mimetypeLines[] = {
    // clang-format off
    {20431, 1309, "application/vnd.oasis.opendocument.text-template"},
    {20432, 1454, "application/vnd.oasis.opendocument.spreadsheet-template"},
    {20433, 1633, "application/vnd.oasis.opendocument.presentation-template"},
    {20434, 1632, "application/vnd.oasis.opendocument.graphics-template"},
    {20441, 1802, "application/vnd.adobe.air-application-installer-package+zip"},
    {20442, 1802, "application/vnd.bdoc-1.0"},
    {20443, 1802, "application/vnd.makemusic.notation"},
    {20444, 1802, "application/vnd.recordare.musicxml"},
    {20340, 1802, "application/epub+zip"},
    {20341, 1802, "application/x-ibooks+zip"},
    {20342, 1802, "application/vnd.oasis.opendocument.base"},
    {20342, 1802, "application/vnd.oasis.opendocument.database"},
    {20343, 1802, "application/vnd.oasis.opendocument.formula"},
    {20344, 1802, "application/vnd.oasis.opendocument.chart"},
    {20345, 1802, "application/vnd.oasis.opendocument.image"},
    {20347, 1802, "application/vnd.adobe.indesign-idml-package"},
    {20348, 1802, "application/vnd.etsi.asic-e+zip"},
    {20349, 1802, "application/vnd.etsi.asic-s+zip"},
    {20350, 1802, "image/openraster"},
    {20351, 1802, "application/x-krita"},
    {20352, 1802, "application/hwp+zip"},
    // clang-format on
};

// What stays of an archive that has a member "mimetype" of which no line knows the text.
constexpr FIID Otherwise(FIID over) { return over == plainZip ? 20353 : 0; }

TEST(Mimetype, TellsTheKindOfItsAnswerAlone) {
    for (const MimetypeLine& line : mimetypeLines) {
        SCOPED_TRACE(line.type);
        const std::string type = line.type;
        for (const FIID over : allOvers) {
            EXPECT_EQ(KindOf({{"mimetype", type}}, over), over == line.over ? line.identifier : Otherwise(over));
        }
        for (const std::string& other :
             {type + "x", "x" + type, type.substr(0, type.size() - 1), "A" + type.substr(1), type + ";", type + "|"}) {
            EXPECT_EQ(KindOf({{"mimetype", other}}, line.over), Otherwise(line.over)) << other;
        }
    }
}

std::string MimetypeOf(const Members& members) {
    Look look(FIWriteZip(members));
    return std::string(FIMimetypeOf(*look));
}

TEST(Mimetype, IsTheTextWithoutTheWhiteSpaceAroundIt) {
    EXPECT_EQ(MimetypeOf({{"mimetype", "\t\n\v\f\r a b \t\n\v\f\r"}}), "a b");
    EXPECT_EQ(MimetypeOf({{"mimetype", std::string("\0a\x08", 3)}}), std::string("\0a\x08", 3));
    EXPECT_EQ(MimetypeOf({{"mimetype",
                           "\xEF\xBB\xBF"
                           "a"}}),
              "\xEF\xBB\xBF"
              "a");
    EXPECT_EQ(MimetypeOf({{"mimetype", " \r\n"}}), "");
    EXPECT_EQ(MimetypeOf({{"mimetype", ""}}), "");
    EXPECT_EQ(MimetypeOf({{.name = "mimetype", .bytes = "packed\n", .method = zipDeflated}}), "packed");
}

TEST(Mimetype, EndsBehind200Bytes) {
    EXPECT_EQ(MimetypeOf({{"mimetype", std::string(300, 'a')}}), std::string(200, 'a'));
    const std::string epub = "application/epub+zip";
    EXPECT_EQ(KindOf({{"mimetype", std::string(180, ' ') + epub + "xyz"}}), 20340);
    EXPECT_EQ(KindOf({{"mimetype", std::string(181, ' ') + epub}}), 20353);
    EXPECT_EQ(KindOf({{"mimetype", epub + std::string(180, ' ') + "x"}}), 20340);
    EXPECT_EQ(KindOf({{"mimetype", epub + std::string(179, ' ') + "x"}}), 20353);
}

TEST(Mimetype, IsTheFirstMemberOfExactlyThatName) {
    EXPECT_EQ(MimetypeOf({{"a", ""}, {"mimetype", "one"}, {"mimetype", "two"}}), "one");
    EXPECT_EQ(MimetypeOf({{"Mimetype", "one"}, {"/mimetype", "two"}, {"x/mimetype", "three"}, {"mimetype/", "four"}}),
              "");
    EXPECT_EQ(KindOf({{"Mimetype", "application/epub+zip"}, {"x/mimetype", "application/epub+zip"}}), 0);
}

TEST(Mimetype, OfADamagedMemberTheBytesInFrontCount) {
    const std::string epub = "application/epub+zip";
    EXPECT_EQ(KindOf({{.name = "mimetype", .method = zipDeflated, .packed = FIStoredBlock(epub) + "\x07 damage"}}),
              20340);
    EXPECT_EQ(KindOf({{.name = "mimetype", .method = zipDeflated, .packed = FIStoredBlock(epub)}}), 20340);
    EXPECT_EQ(KindOf({{.name = "mimetype", .method = zipDeflated, .packed = "\x07 damage"}}), 20353);
}

TEST(Mimetype, ThatCanNotBeUnpackedIsNone) {
    const std::string epub = "application/epub+zip";
    const Members second = {{"mimetype", epub}};
    for (const ZipMember& first : {ZipMember{.name = "mimetype", .bytes = epub, .flags = zipEncryptedFlag},
                                   ZipMember{.name = "mimetype", .method = 12, .packed = epub},
                                   ZipMember{.name = "mimetype", .bytes = epub, .headerOffsetTold = 1000000}}) {
        EXPECT_EQ(KindOf({first, second[0]}), 20353) << "it is there, and the second one does not count";
    }
}

// ---- Names ---------------------------------------------------------------------------------------------------------

struct NameCase {
    FIID kind;
    std::vector<std::string> names;
    const char* fileName = "";
};

const NameCase nameCases[] = {
    // clang-format off
    {0, {}},
    {0, {"a.txt", "b/"}},
    {20353, {"mimetype"}},
    {20353, {"META-INF/MANIFEST.MF", "AndroidManifest.xml", "classes.dex", "mimetype"}},
    {20361, {"AndroidManifest.xml", "classes.dex"}},
    {20361, {"resources.arsc", "META-INF/MANIFEST.MF", "AndroidManifest.xml"}},
    {0, {"AndroidManifest.xml"}},
    {0, {"classes.dex", "resources.arsc"}},
    {0, {"AndroidManifest.xml", "x/classes.dex", "Resources.arsc"}},
    {0, {"androidManifest.xml", "classes.dex"}},
    {20362, {"install.rdf"}},
    {20362, {"META-INF/MANIFEST.MF", "META-INF/mozilla.rsa"}},
    {0, {"x/install.rdf", "install.rd", "install.rdf2", "META-INF/mozilla.RSA", "mozilla.rsa"}},
    {20363, {"META-INF/MANIFEST.MF", "META-INF/application.xml"}},
    {20363, {"META-INF/application.xml"}},
    {0, {"META-INF/application.xm", "application.xml"}},
    {20365, {"META-INF/MANIFEST.MF"}},
    {20365, {"doc.kml", "META-INF/MANIFEST.MF"}},
    {0, {"META-INF/MANIFEST.M", "META-INF/MANIFEST.MF2", "meta-inf/manifest.mf", "META-INF/", "META-INF\\MANIFEST.MF"}},
    {20366, {"doc.kml"}},
    {20366, {"Index/Document.iwa", "doc.kml"}, "a.pages"},
    {0, {"Doc.kml", "doc.km", "files/doc.kml"}},
    {20367, {"Index/Document.iwa"}, "a.pages"},
    {20367, {"index.xml"}, "b.PAGES"},
    {0, {"index.xml"}, "pages"},
    {0, {"index.xml"}, "a.page"},
    {0, {"index.xml"}, "a.key"},
    {20368, {"Index/Document.iwa"}, "a.numbers"},
    {20368, {"index.xml", "thumbs/x"}, "a.numbers"},
    {0, {"index.xm"}, "a.numbers"},
    {20369, {"Index/Document.iwa"}, "a.key"},
    {20369, {"index.apxl"}},
    {20369, {"Index/Document.iwa", "index.apxl"}},
    {20367, {"Index/Document.iwa", "index.apxl"}, "a.pages"},
    {0, {"index.apx", "Index.apxl"}, "a.key"},
    {20370, {"Index/Document.iwa"}},
    {20370, {"Index/Document.iwa"}, "a.zip"},
    {20370, {"index.xml", "thumbs/"}},
    {20370, {"thumbs/PageCapThumbV2-1.tiff", "index.xml"}},
    {0, {"index.xml"}},
    {0, {"index.xml", "thumbs", "x/thumbs/a"}},
    {0, {"thumbs/"}},
    {20371, {"3D/3dmodel.model"}},
    {0, {"3d/3dmodel.model", "3D/3dmodel.models"}},
    {20372, {"datapackage.json", "archive/data.warc.gz"}},
    {20372, {"archive/", "datapackage.json"}},
    {0, {"datapackage.json", "archive", "x/archive/"}},
    {0, {"archive/data.warc.gz"}},
    {20374, {"six-1.0.dist-info/WHEEL"}},
    {20374, {".dist-info/WHEEL"}},
    {20374, {"x/a.dist-info/WHEEL.txt"}},
    {0, {"a.dist-info/WHEE", "a.dist-info/wheel", "dist-info/WHEEL"}},
    {20375, {"Payload/", "Payload/x.app/Info.plist"}},
    {20375, {"Payload/x", "y.app/Info.plist"}},
    {0, {"Payload", "Payload.app/Info.plist"}},
    {0, {"Payload/x.app/info.plist", "x/Payload/"}},
    // clang-format on
};

TEST(Names, TellTheKindInTheOrderOfTheLines) {
    for (const NameCase& nameCase : nameCases) {
        Members members;
        for (const std::string& name : nameCase.names) members.push_back({name});
        const std::string trace = nameCase.names.empty() ? "empty" : nameCase.names[0];
        EXPECT_EQ(KindOf(members, plainZip, nameCase.fileName), nameCase.kind) << trace << " " << nameCase.fileName;
        std::reverse(members.begin(), members.end());
        EXPECT_EQ(KindOf(members, plainZip, nameCase.fileName), nameCase.kind) << trace << ", last first";
        EXPECT_EQ(KindOf(members, word, nameCase.fileName), 0);
    }
}

TEST(Names, AreLookedAtInTheirWholeLength) {
    const std::string wheel = ".dist-info/WHEEL";
    for (const std::size_t front : {std::size_t{16368}, std::size_t{16375}, std::size_t{16384}, 65535 - wheel.size()}) {
        EXPECT_EQ(KindOf({{"a"}, {std::string(front, 'a') + wheel}, {"b"}}), 20374) << front;
    }
    EXPECT_EQ(KindOf({{std::string(65535 - wheel.size() + 1, 'a') + wheel.substr(0, wheel.size() - 1)}}), 0);
    EXPECT_EQ(KindOf({{wheel + std::string(65535 - wheel.size(), 'a')}}), 20374);
    EXPECT_EQ(KindOf({{"META-INF/MANIFEST.MF" + std::string(60000, 'F')}}), 0);
}

TEST(Names, OfAFileWithoutADirectoryTellNothing) {
    const std::string zip = FIWriteZip({{"META-INF/MANIFEST.MF"}, {"mimetype", "application/epub+zip"}});
    EXPECT_EQ(KindOfBytes(zip), 20340);
    EXPECT_EQ(KindOfBytes(zip.substr(0, zip.size() - 30)), 0);
    EXPECT_EQ(KindOfBytes("PK\3\4"), 0);
    EXPECT_EQ(KindOfBytes("PK\5\6"), 0);
    EXPECT_EQ(KindOfBytes(""), 0);
}

// ---- All together --------------------------------------------------------------------------------------------------

TEST(PackageLines, EachIsTriedHere) {
    std::set<FIID> tried;
    for (const TypeLine& line : typeLines) tried.insert(line.identifier);
    for (const MimetypeLine& line : mimetypeLines) tried.insert(line.identifier);
    for (const NameCase& nameCase : nameCases) tried.insert(nameCase.kind);
    tried.erase(0);
    std::set<FIID> lines;
    for (const FIPackageLine& line : FIPackageLines())
        EXPECT_TRUE(lines.insert(line.identifier).second) << line.identifier;
    EXPECT_EQ(lines, tried);
    EXPECT_EQ(lines.size(), 58U);
}

TEST(PackageFacts, TellWhatWasLookedAt) {
    Members members = Package("application/vnd.ms-visio.drawing.main+xml", visio);
    Look look(FIWriteZip(members));
    EXPECT_EQ(FIPackageFactsOf(*look), nullptr);
    EXPECT_EQ(FITellPackageKind(*look), 20417);
    const FIPackageFacts* const facts = FIPackageFactsOf(*look);
    ASSERT_NE(facts, nullptr);
    EXPECT_EQ(FITextOf(facts->main.name), "main.xml");
    EXPECT_EQ(FITextOf(facts->main.contentType), "application/vnd.ms-visio.drawing.main+xml");
    EXPECT_FALSE(facts->mimetypeRead);
    EXPECT_EQ(FIMimetypeOf(*look), "");
    EXPECT_TRUE(facts->mimetypeRead);
    EXPECT_EQ(FITellPackageKind(*look), 20417);
    EXPECT_EQ(FIPackageFactsOf(*look), facts);
}

TEST(PackageFacts, AreNotAskedForOverOtherAnswers) {
    Look look(FIWriteZip(Package("t/one")), 1999);
    EXPECT_EQ(FITellPackageKind(*look), 0);
    EXPECT_EQ(FIPackageFactsOf(*look), nullptr);
}

TEST(PackageFacts, LoseNoMemoryWhereItIsExhausted) {
    Members members = Package("application/vnd.ms-visio.drawing.main+xml", visio);
    members.push_back({std::string(20000, 'a') + ".dist-info/WHEEL"});
    const std::string zip = FIWriteZip(members);
    bool answered = false;
    for (std::uint32_t allocation = 0; !answered; ++allocation) {
        ASSERT_LT(allocation, 200U);
        Look look(zip);
        FIFailAllocationsFrom(allocation);
        const FIID kind = FITellPackageKind(*look);
        FIHeapNeverFails();
        answered = kind == 20417;
        EXPECT_EQ(kind, answered ? 20417 : 0);
    }
}

// A file whose reads are counted, of which nobody else sees how it is read.
struct CountedFile {
    UTHandle handle;  // first
    const std::string* bytes;
    std::uint64_t directory;  // where the archive's directory begins
    std::uint32_t reads;
    std::uint64_t bytesOfDirectory;  // that were read
};

std::int32_t ReadCounted(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                         std::uint32_t& count) {
    auto& file = UTRecordOf<CountedFile>(handle);
    const std::uint64_t end = file.bytes->size();
    const std::uint64_t start = std::min(offset, end);
    count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, end - start));
    std::copy_n(file.bytes->data() + start, count, static_cast<char*>(destination));
    ++file.reads;
    if (start + count > file.directory) file.bytesOfDirectory += start + count - std::max(start, file.directory);
    return 0;
}

std::uint64_t CountedSize(UTHandle& handle) { return UTRecordOf<CountedFile>(handle).bytes->size(); }

bool CountedHead(UTHandle& handle, UTHead& head) {
    const std::string& bytes = *UTRecordOf<CountedFile>(handle).bytes;
    const auto size = static_cast<std::uint32_t>(std::min<std::size_t>(bytes.size(), UTHeadBytes));
    head = {reinterpret_cast<const std::uint8_t*>(bytes.data()), size, bytes.size()};
    return true;
}

constexpr UTHandleKind countedKind = {ReadCounted, CountedSize, nullptr, CountedHead, true};

// The reads that tell a kind once the archive is open, and the bytes of the directory among them.
std::pair<std::uint32_t, std::uint64_t> CostOf(const std::string& zip, FIID over, FIID kind) {
    auto* const file = UTNewHandleRecord<CountedFile>(countedKind, nullptr);
    file->bytes = &zip;
    file->directory = zip.find("PK\1\2");
    FILook look;
    EXPECT_TRUE(FIStartLook(look, file->handle, over, 0));
    EXPECT_NE(FIArchiveOf(look), nullptr);
    file->reads = 0;
    file->bytesOfDirectory = 0;
    EXPECT_EQ(FITellPackageKind(look), kind);
    const std::pair<std::uint32_t, std::uint64_t> cost = {file->reads, file->bytesOfDirectory};
    FIEndLook(look);
    UTCloseHandle(file->handle);
    return cost;
}

TEST(PackageFacts, CostAHeaderAndTheDataOfEachPartAndAtMostOneWalk) {
    using Cost = std::pair<std::uint32_t, std::uint64_t>;
    const Members others(1000, {"a name of a member that nobody asks for"});
    const auto with = [&](Members members) {
        members.insert(members.end(), others.begin(), others.end());
        return FIWriteZip(members);
    };
    const std::string workbook = with(Package("application/vnd.ms-excel.sheet.macroEnabled.main+xml"));
    EXPECT_EQ(CostOf(workbook, 1455, 20404), Cost(4, 0));
    EXPECT_EQ(CostOf(with({{"mimetype", "application/epub+zip"}}), plainZip, 20340), Cost(2, 0));
    // What names tell takes the whole walk; a piece is read of 16 KiB less what is left of the one in front.
    const std::string plain = with({{"META-INF/MANIFEST.MF"}});
    const std::size_t directory = plain.size() - 22 - plain.find("PK\1\2");
    const Cost cost = CostOf(plain, plainZip, 20365);
    EXPECT_EQ(cost.second, directory);
    EXPECT_LE(cost.first, directory / 16000 + 1);
    // "mimetype" goes before all other names.
    EXPECT_EQ(CostOf(with({{"mimetype", "x"}}), plainZip, 20353), Cost(3, 16384));
}

// ---- Compound storages ---------------------------------------------------------------------------------------------

struct StorageCase {
    const char16_t* name;
    FIID kind;
};

const StorageCase storageCases[] = {
    // clang-format off
    {u"StarDrawDocument3", 20334},
    {u"StarDrawDocument", 20334},
    {u"StarDrawDocument2", 0},
    {u"StarDrawDocumen", 0},
    {u"starDrawDocument3", 0},
    {u"StarWriterDocument", 0},
    {u"SwDocMgrTempStorage", 20335},
    {u"ISolidWorksInformation.xml", 20335},
    {u"SwDocContentMgr", 20335},
    {u"SwDocContentMg", 0},
    {u"SwDocContentMgrs", 0},
    {u"swDocContentMgr", 0},
    {u"\u0153SwDocContentMgr", 0},
    // clang-format on
};

void ExpectStorageKind(const std::string& bytes, FIID kind) {
    Look look(bytes, 1999);
    EXPECT_EQ(FITellStarDraw(*look), kind == 20334 ? kind : 0);
    EXPECT_EQ(FITellSolidWorks(*look), kind == 20335 ? kind : 0);
}

TEST(StorageKinds, AreToldByANameDirectlyUnderTheRoot) {
    for (const StorageCase& storageCase : storageCases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(storageCase.name)));
        for (const bool isStream : {false, true}) {
            const auto add = [&](StorageWriter& writer, std::uint32_t parent) {
                if (isStream) {
                    writer.AddStream(storageCase.name, "bytes", parent);
                } else {
                    writer.AddStorage(storageCase.name, parent);
                }
            };
            StorageWriter there;
            there.AddStream(u"A", "stream");
            there.AddStorage(u"B");
            add(there, 0);
            ExpectStorageKind(there.Write().bytes, storageCase.kind);
            StorageWriter inside;
            add(inside, inside.AddStorage(u"C"));
            ExpectStorageKind(inside.Write().bytes, 0);
        }
    }
    StorageWriter both;
    both.AddStorage(u"StarDrawDocument3");
    WrittenStorage broken = both.Write();
    ExpectStorageKind(broken.bytes, 20334);
    broken.Put16(storage_offsets::byteOrder, 0);
    ExpectStorageKind(broken.bytes, 0);
    ExpectStorageKind("StarDrawDocument3", 0);
}

}  // namespace
