// Which document a ZIP file is: by the main part of a package, or by the member "mimetype" of another archive.
#include "package/package_probe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/base_utility.h"
#include "reader/reader.h"
#include "support/bytes.h"
#include "support/case_name.h"
#include "support/open_file.h"
#include "support/probe_case.h"
#include "support/relationships.h"
#include "support/zip_writer.h"

namespace {

using ::PrintTo;

constexpr std::uint16_t packageRow = 269_row;

const std::string standard = "http://schemas.openxmlformats.org";
const std::string microsoft = "http://schemas.microsoft.com";
const std::string mainPartType = standard + "/officeDocument/2006/relationships/officeDocument";
const std::string draftMainPartType = microsoft + "/office/2006/relationships/officeDocument";
const std::string fixedPagesType = microsoft + "/xps/2005/06/fixedrepresentation";

// The answer of the routine over a handle of the platform layer, which must leave the reader and the heap as they were.
FIID AnswerOfRoutine(const std::string& bytes) {
    const std::size_t blocks = FIHeapBlocks();
    OpenFile file(bytes);
    FIReader* const reader = FIReaderNew(file.File());
    EXPECT_EQ(FIReaderGetByte(*reader), 'P');
    const std::uint32_t filled = reader->bytesFilled;
    const FIID answer = FIProbePackage(*reader);
    EXPECT_EQ(FIReaderTell(*reader), 1U);
    EXPECT_EQ(reader->bytesFilled, filled);
    static_cast<void>(FIReaderFree(*reader));
    file.Close();
    EXPECT_EQ(FIHeapBlocks(), blocks);
    return answer;
}

// The same, and that of the whole system, which must come from the package row.
FIID AnswerOf(const std::string& bytes) {
    const FIID answer = AnswerOfRoutine(bytes);
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes(bytes, "file", FIFlagExtendedText, &row), answer);
    EXPECT_EQ(row, packageRow);
    return answer;
}

ZipMember Relationships(const std::string& content) {
    return {.name = "_rels/.rels",
            .bytes = "<?xml version='1.0' encoding='UTF-8'?>" + FIRelationships(content),
            .method = zipDeflated};
}

ZipMember Part(const std::string& name, const std::string& bytes) {
    return {.name = name, .bytes = bytes, .method = zipDeflated};
}

// A package whose main part holds these bytes.
std::string PackageOf(const std::string& mainPart, const std::string& type = mainPartType) {
    return FIWriteZip(
        {{"[Content_Types].xml", ""}, Relationships(FIRelationship(type, "main")), Part("main", mainPart)});
}

std::string Element(const std::string& namespaceUri, const std::string& name) {
    return "<x:" + name + " xmlns:x='" + namespaceUri + "'/>";
}

const std::string wordDocument = Element(standard + "/wordprocessingml/2006/main", "document");

// An archive without relationships, with such a member "mimetype" that is not the first.
std::string ArchiveOf(const std::string& mimetype) { return FIWriteZip({{"first", "x"}, {"mimetype", mimetype}}); }

constexpr const char prefix[] = "application/vnd.oasis.opendocument.";

// ---- Packages ------------------------------------------------------------------------------------------------------

struct TagCase {
    const char* name;
    std::string namespaceUri;
    std::vector<const char*> elements;
    FIID answer;
};

const TagCase tagCases[] = {
    // clang-format off
    {"Row1", standard + "/wordprocessingml/2006/2/main", {"document", "wordDocument", "wordTemplate"}, 1312},
    {"Row2", standard + "/wordprocessingml/2006/3/main", {"document", "wordDocument", "wordTemplate"}, 1312},
    {"Row3", standard + "/wordprocessingml/2006/main", {"document"}, 1312},
    {"Row4", standard + "/wordprocessingml/2006/6/main", {"document"}, 1312},
    {"Row5", standard + "/wordprocessingml/2006/5/main", {"document"}, 1312},
    {"Row6", microsoft + "/office/word/2005/10/wordml", {"wordTemplate"}, 1312},
    {"Row7", standard + "/presentationml/2006/main", {"presentation"}, 1635},
    {"Row8", standard + "/presentationml/2006/3/main", {"presentation"}, 1635},
    {"Row9", standard + "/spreadsheetml/2006/5/main", {"workbook"}, 1455},
    {"Row10", microsoft + "/office/excel/2006/2", {"workbook"}, 1455},
    {"Row11", standard + "/spreadsheetml/2006/main", {"workbook"}, 1455},
    {"Row12", standard + "/spreadsheetml/2006/7/main", {"workbook"}, 1455},
    // clang-format on
};

TEST(PackageTags, EachNamespaceKnowsItsElementsAndNoOthers) {
    const std::vector<std::string> names = {"document",     "wordDocument", "wordTemplate",
                                            "presentation", "workbook",     "Document"};
    for (const TagCase& tagCase : tagCases) {
        for (const std::string& name : names) {
            const bool known = std::ranges::find(tagCase.elements, name) != tagCase.elements.end();
            EXPECT_EQ(AnswerOf(PackageOf(Element(tagCase.namespaceUri, name))), known ? tagCase.answer : 1802)
                << tagCase.name << ' ' << name;
        }
    }
}

TEST(PackageTags, NoOtherNamespaceKnowsAny) {
    for (const std::string& other :
         {standard + "/wordprocessingml/2006/4/main", microsoft + "/wordprocessingml/2006/main",
          std::string("http://purl.oclc.org/ooxml/wordprocessingml/main")}) {
        EXPECT_EQ(AnswerOf(PackageOf(Element(other, "document"))), 1802) << other;
    }
    EXPECT_EQ(AnswerOf(PackageOf("<document/>")), 1802);
}

struct PackageCase {
    const char* name;
    std::string bytes;
    FIID answer;
};

std::string Unknown(int count) {
    std::string elements;
    for (int index = 0; index < count; ++index) elements += "<u/>";
    return elements;
}

std::string Damaged(const ZipMember& member, std::size_t goodBytes) {
    ZipMember damaged = member;
    damaged.method = zipDeflated;
    damaged.packed = FIStoredBlock(member.bytes.substr(0, goodBytes)) + "\x07";
    return FIWriteZip({Relationships(FIRelationship(mainPartType, "main")), damaged});
}

const std::string binaryStart = FIBytes("83 01 00 80 01");

const PackageCase packageCases[] = {
    // clang-format off
    {"WithoutAnyRelationship", FIWriteZip({Relationships("")}), 1802},
    {"WithARelationshipOfAnotherType", FIWriteZip({Relationships(FIRelationship(standard + "/other", "main")), Part("main", wordDocument)}), 1802},
    {"OfTheStandardsType", PackageOf(wordDocument, mainPartType), 1312},
    {"OfTheDraftsType", PackageOf(wordDocument, draftMainPartType), 1312},
    {"OfTheStandardsTypeOnTheOtherHost", PackageOf(wordDocument, microsoft + "/officeDocument/2006/relationships/officeDocument"), 1802},
    {"OfTheDraftsTypeOnTheOtherHost", PackageOf(wordDocument, standard + "/office/2006/relationships/officeDocument"), 1802},
    {"OfFixedPages", PackageOf("<FixedDocumentSequence/>", fixedPagesType), 1636},
    {"FixedPagesAreNotLookedAt", PackageOf(wordDocument, fixedPagesType), 1636},
    {"FixedPagesMustBeThere", FIWriteZip({Relationships(FIRelationship(fixedPagesType, "main"))}), 1802},
    {"TheStandardsTypeComesFirst", FIWriteZip({Relationships(FIRelationship(fixedPagesType, "a") + FIRelationship(draftMainPartType, "a") + FIRelationship(mainPartType, "main")), Part("a", "<x/>"), Part("main", wordDocument)}), 1312},
    {"TheDraftsTypeComesSecond", FIWriteZip({Relationships(FIRelationship(fixedPagesType, "a") + FIRelationship(draftMainPartType, "main")), Part("a", "<x/>"), Part("main", wordDocument)}), 1312},
    {"APartThatIsMissingLetsTheNextTypeIn", FIWriteZip({Relationships(FIRelationship(mainPartType, "b") + FIRelationship(fixedPagesType, "a")), Part("a", "<x/>")}), 1636},
    {"APartThatIsThereKeepsTheNextTypeOut", FIWriteZip({Relationships(FIRelationship(mainPartType, "a") + FIRelationship(draftMainPartType, "main")), Part("a", "<x/>"), Part("main", wordDocument)}), 1802},
    {"TheElementMayStandDeep", PackageOf("<a><b>" + wordDocument + "</b></a>"), 1312},
    {"TheFirstKnownElementDecides", PackageOf("<a>" + Element(standard + "/spreadsheetml/2006/main", "workbook") + wordDocument + "</a>"), 1455},
    {"Behind24UnknownElementsItIsSeen", PackageOf("<a>" + Unknown(23) + wordDocument + "</a>"), 1312},
    {"Behind25UnknownElementsItIsNot", PackageOf("<a>" + Unknown(24) + wordDocument + "</a>"), 1802},
    {"InFrontOfAnErrorItCounts", PackageOf("<a>" + wordDocument + "<"), 1312},
    {"BehindAnErrorItDoesNot", PackageOf("<a></b>" + wordDocument), 1802},
    {"InFrontOfDamageItCounts", Damaged(Part("main", wordDocument + " text"), wordDocument.size()), 1312},
    {"BehindDamageItDoesNot", Damaged(Part("main", wordDocument), 20), 1802},
    {"BinaryRecords", PackageOf(binaryStart), 1457},
    {"BinaryRecordsAndMore", PackageOf(binaryStart + std::string(5000, 'x')), 1457},
    {"BinaryRecordsOfFourBytes", PackageOf(binaryStart.substr(0, 4)), 1802},
    {"BinaryRecordsWithAnotherFifthByte", PackageOf(FIBytes("83 01 00 80 02")), 1802},
    {"BinaryRecordsInFrontOfDamage", Damaged(Part("main", binaryStart), 5), 1457},
    {"BinaryRecordsThatDamageCuts", Damaged(Part("main", binaryStart), 4), 1802},
    {"BinaryRecordsOfFixedPages", PackageOf(binaryStart, fixedPagesType), 1636},
    {"AnEmptyMainPart", PackageOf(""), 1802},
    {"AMainPartOfText", PackageOf("text"), 1802},
    {"AMainPartThatIsEncrypted", FIWriteZip({Relationships(FIRelationship(mainPartType, "main")), {.name = "main", .bytes = wordDocument, .flags = zipEncryptedFlag}}), 1802},
    {"AMainPartThatIsStored", FIWriteZip({Relationships(FIRelationship(mainPartType, "/MAIN")), {"main", wordDocument}}), 1312},
    {"APackageAsksForNoMimetype", FIWriteZip({Relationships(""), {"mimetype", std::string(prefix) + "text"}}), 1802},
    // clang-format on
};

class ProbePackage : public testing::TestWithParam<PackageCase> {};

TEST_P(ProbePackage, Answers) { EXPECT_EQ(AnswerOf(GetParam().bytes), GetParam().answer); }

TEST_P(ProbePackage, AnswersTheSameOverAHostsHandle) {
    EXPECT_EQ(FIAnswerOf(FIProbePackage, GetParam().bytes), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Packages, ProbePackage, testing::ValuesIn(packageCases), FICaseName);

TEST(ProbePackage, AnswersThePlainArchiveWhereverMemoryIsExhausted) {
    const std::size_t blocks = FIHeapBlocks();
    for (const std::string& bytes : {PackageOf(wordDocument), PackageOf(binaryStart), PackageOf("", fixedPagesType),
                                     ArchiveOf(std::string(prefix) + "text")}) {
        const FIID whole = AnswerOf(bytes);
        for (std::uint32_t allocation = 1;; ++allocation) {  // the first is the reader
            ASSERT_LT(allocation, 2000U);
            OpenFile file(bytes);
            FIReader* const reader = FIReaderNew(file.File());
            FIFailAllocationsFrom(allocation - 1);
            const FIID answer = FIProbePackage(*reader);
            FIHeapNeverFails();
            static_cast<void>(FIReaderFree(*reader));
            file.Close();
            EXPECT_EQ(FIHeapBlocks(), blocks);
            if (answer == whole) break;
            EXPECT_EQ(answer, 1802);
        }
    }
}

// ---- Other archives ------------------------------------------------------------------------------------------------

struct MimetypeCase {
    const char* name;
    std::string mimetype;
    FIID answer;
};

const MimetypeCase mimetypeCases[] = {
    // clang-format off
    {"Text", "application/vnd.oasis.opendocument.text", 1309},
    {"Spreadsheet", "application/vnd.oasis.opendocument.spreadsheet", 1454},
    {"Graphics", "application/vnd.oasis.opendocument.graphics", 1632},
    {"Presentation", "application/vnd.oasis.opendocument.presentation", 1633},
    {"TextTemplate", "application/vnd.oasis.opendocument.text-template", 1309},
    {"SpreadsheetTemplateOf21Characters", "application/vnd.oasis.opendocument.spreadsheet-template-", 1454},
    {"PresentationTemplateOfMore", "application/vnd.oasis.opendocument.presentation-template-and-more", 1633},
    {"TextAndALineEnd", "application/vnd.oasis.opendocument.text\r\n", 1309},
    {"TextAndANul", std::string(prefix) + std::string("text\0x", 6), 1309},
    {"ThePrefixIgnoresCase", "APPLICATION/VND.Oasis.OpenDocument.text", 1309},
    {"TheKindDoesNot", "application/vnd.oasis.opendocument.TEXT", 1802},
    {"NorOneLetterOfIt", "application/vnd.oasis.opendocument.Text", 1802},
    {"ThePrefixAlone", "application/vnd.oasis.opendocument.", 1802},
    {"ThePrefixWithoutItsLastByte", "application/vnd.oasis.opendocument", 1802},
    {"ThePrefixWithAnotherLastByte", "application/vnd.oasis.opendocument-text", 1802},
    {"ThePrefixWithABlankInFront", " application/vnd.oasis.opendocument.text", 1802},
    {"ThePrefixWithANulInIt", std::string("application/vnd.oasis\0opendocument.text", 39), 1802},
    {"ThePrefixWithANulForItsLastByte", std::string("application/vnd.oasis.opendocument\0text", 39), 1802},
    {"TheKindCut", "application/vnd.oasis.opendocument.tex", 1802},
    {"PresentationCut", "application/vnd.oasis.opendocument.presentatio", 1802},
    {"Formula", "application/vnd.oasis.opendocument.formula", 1802},
    {"Base", "application/vnd.oasis.opendocument.base", 1802},
    {"ABlankInFrontOfTheKind", "application/vnd.oasis.opendocument. text", 1802},
    {"AnotherType", "application/epub+zip", 1802},
    {"Nothing", "", 1802},
    // clang-format on
};

class ProbeMimetype : public testing::TestWithParam<MimetypeCase> {};

TEST_P(ProbeMimetype, Answers) {
    EXPECT_EQ(AnswerOf(ArchiveOf(GetParam().mimetype)), GetParam().answer);
    EXPECT_EQ(AnswerOf(FIWriteZip({{"first", "x"}, Part("mimetype", GetParam().mimetype)})), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Archives, ProbeMimetype, testing::ValuesIn(mimetypeCases), FICaseName);

TEST(ProbeMimetype, NeedsTheMemberByItsExactName) {
    const std::string text = std::string(prefix) + "text";
    EXPECT_EQ(AnswerOf(FIWriteZip({{"first", "x"}})), 1802);
    EXPECT_EQ(AnswerOf(FIWriteZip({{"first", "x"}, {"Mimetype", text}})), 1802);
    EXPECT_EQ(AnswerOf(FIWriteZip({{"first", "x"}, {"dir/mimetype", text}})), 1802);
    EXPECT_EQ(AnswerOf(FIWriteZip({{"first", "x"}, {"mimetype ", text}})), 1802);
    EXPECT_EQ(AnswerOf(FIWriteZip({{"first", "x"}, {.name = "mimetype", .bytes = text, .flags = zipEncryptedFlag}})),
              1802);
}

TEST(ProbeMimetype, TakesItWhereverItStands) {
    const std::vector<ZipMember> members = {{"first", "x"}, {"mimetype", std::string(prefix) + "text"}, {"last", "y"}};
    for (const std::vector<std::size_t>& order : {std::vector<std::size_t>{0, 1, 2}, {1, 0, 2}, {2, 0, 1}}) {
        EXPECT_EQ(AnswerOf(FIWriteZip(members, {.directoryOrder = order})), 1309);
    }
    // As the first member of the file it is what the signature rows look at, but the routine takes it too.
    EXPECT_EQ(AnswerOfRoutine(FIWriteZip({{"mimetype", std::string(prefix) + "text"}})), 1309);
}

TEST(ProbeMimetype, DamageCutsWhatIsCompared) {
    const std::string text = std::string(prefix) + "text";
    const auto cutAt = [&](std::size_t size) {
        return FIWriteZip(
            {{"first", "x"},
             {.name = "mimetype", .method = zipDeflated, .packed = FIStoredBlock(text.substr(0, size)) + "\x07"}});
    };
    EXPECT_EQ(AnswerOf(cutAt(39)), 1309);
    EXPECT_EQ(AnswerOf(cutAt(38)), 1802);
    EXPECT_EQ(AnswerOf(cutAt(35)), 1802);
    EXPECT_EQ(AnswerOf(cutAt(34)), 1802);
    EXPECT_EQ(AnswerOf(cutAt(0)), 1802);
}

TEST(ProbePackage, AFileThatIsNoArchiveIsThePlainOne) {
    EXPECT_EQ(AnswerOf(FIBytes(R"("PK" 03 04)")), 1802);
    EXPECT_EQ(AnswerOf(FIBytes(R"("PK" 03 04)") + std::string(100000, 'x')), 1802);
    std::string cut = PackageOf(wordDocument);
    cut.pop_back();
    EXPECT_EQ(AnswerOf(cut), 1802);
}

TEST(ProbePackage, AnArchiveBehindAnotherArchiveIsNotTheOneMeant) {
    EXPECT_EQ(AnswerOf(ArchiveOf(std::string(prefix) + "text") + PackageOf(wordDocument)), 1309);
    EXPECT_EQ(AnswerOf(PackageOf(wordDocument) + ArchiveOf(std::string(prefix) + "text")), 1312);
}

TEST(ProbePackage, AnArchiveThatWasCutIsNotWhatAPackageInsideItIs) {
    const std::string inner = PackageOf(wordDocument);
    const std::string outer = FIWriteZip({{"front", "x"}, {"inner", inner}, {"behind", "y"}});
    const std::size_t behindInner = outer.find(inner) + inner.size();
    EXPECT_EQ(AnswerOf(outer), 1802);
    EXPECT_EQ(AnswerOf(outer.substr(0, behindInner)), 1802);
    EXPECT_EQ(AnswerOf(outer.substr(0, behindInner + 10)), 1802);
}

TEST(ProbePackage, AnArchiveThatLostOrGainedBytesIsStillTold) {
    const std::string text = std::string(prefix) + "text";
    const std::string archive = FIWriteZip({{"x", "some bytes"}, {"mimetype", text}}, {.comment = "comment"});
    EXPECT_EQ(AnswerOf(archive), 1309);
    EXPECT_EQ(AnswerOf(archive.substr(0, archive.size() - 3)), 1309);
    EXPECT_EQ(AnswerOf(archive.substr(0, 33) + archive.substr(36)), 1309);
    EXPECT_EQ(AnswerOf(archive.substr(0, 33) + "gained" + archive.substr(33)), 1309);
}

}  // namespace
