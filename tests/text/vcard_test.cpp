// The first line of a vCard or vCalendar.
#include "text/vcard.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/failing_seeks.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/whole_file.h"

namespace {

FIID CardAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeVCard, bytes); }

class ProbeVCard : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeVCard, Answers) { EXPECT_EQ(CardAnswer(FIBytes(GetParam().bytes)), GetParam().answer); }

TEST_P(ProbeVCard, AnswersInTheWholeTable) {
    FIExpectWholeFile(FIBytes(GetParam().bytes), GetParam().answer == 0 ? FIID{1999} : GetParam().answer, 354_row);
}

const ProbeCase cardCases[] = {
    // clang-format off
    {"EmptyFile",               "",                                          0},
    {"Card",                    R"("BEGIN:VCARD" 0D 0A)",                 1141},
    {"CardAlone",               R"("BEGIN:VCARD")",                       1141},
    {"CardInSmallLetters",      R"("begin:vcard" 0A)",                    1141},
    {"CardInMixedCase",         R"("bEgIn:VcArD" 0A)",                    1141},
    {"CardWithBlanks",          R"("begin : vCard")",                     1141},
    {"CardWithManyBlanks",      R"("Begin" 20 09 09 20 ":" 09 20 20 "vCard" 0A)", 1141},
    {"CardBehindLongBlanks",    R"("Begin" 20*3000 ":" 09*3000 "vCard" 0A)", 1141},
    {"Cards",                   R"("BEGIN:VCARDS" 0A)",                   1141},
    {"CardAndAnything",         R"("BEGIN:VCARD" 00 FF "x")",             1141},
    {"Calendar",                R"("BEGIN:VCALENDAR" 0D 0A)",             1196},
    {"CalendarAlone",           R"("BEGIN:VCALENDAR")",                   1196},
    {"CalendarInMixedCase",     R"("bEGIN:vcAlenDar" 0D 0A)",             1196},
    {"CalendarWithBlanks",      R"("begin :" 09 "Vcalendar")",            1196},
    {"Calendarx",               R"("BEGIN:VCALENDARX")",                  1196},
    {"Calenda",                 R"("BEGIN:VCALENDA")",                       0},
    {"CalendaAndALineEnd",      R"("BEGIN:VCALENDA" 0D 0A)",                 0},
    {"CalendaAndANul",          R"("BEGIN:VCALENDA" 00)",                    0},
    {"Calender",                R"("BEGIN:VCALENDER" 0D 0A)",                0},
    {"Car",                     R"("BEGIN:VCAR")",                           0},
    {"CarAndALineEnd",          R"("BEGIN:VCAR" 0D 0A)",                     0},
    {"CarAndALineEndMore",      R"("BEGIN:VCAR" 0D 0A "text")",              0},
    {"Cart",                    R"("BEGIN:VCART" 0D 0A)",                    0},
    {"CaldOnly",                R"("BEGIN:VCALD" 0D 0A)",                    0},
    {"Event",                   R"("BEGIN:VEVENT" 0D 0A)",                   0},
    {"NothingBehindV",          R"("BEGIN:V")",                              0},
    {"NoV",                     R"("BEGIN:CARD" 0D 0A)",                     0},
    {"BlankBehindV",            R"("BEGIN:V CARD" 0D 0A)",                   0},
    {"TwoV",                    R"("BEGIN:VVCARD" 0D 0A)",                   0},
    {"NoColon",                 R"("BEGIN VCARD" 0D 0A)",                    0},
    {"TwoColons",               R"("BEGIN::VCARD" 0D 0A)",                   0},
    {"Equals",                  R"("BEGIN=VCARD" 0D 0A)",                    0},
    {"LineEndInFrontOfColon",   R"("BEGIN" 0D 0A ":VCARD" 0D 0A)",           0},
    {"LineEndBehindColon",      R"("BEGIN:" 0D 0A "VCARD" 0D 0A)",           0},
    {"NulBehindColon",          R"("BEGIN:" 00 "VCARD" 0D 0A)",              0},
    {"BlankInFront",            R"(" BEGIN:VCARD" 0D 0A)",                   0},
    {"LineEndInFront",          R"(0D 0A "BEGIN:VCARD" 0D 0A)",              0},
    {"BlankInBegin",            R"("BE GIN:VCARD" 0D 0A)",                   0},
    {"LongerBegin",             R"("BEGINS:VCARD" 0D 0A)",                   0},
    {"ShorterBegin",            R"("BEGI:VCARD" 0D 0A)",                     0},
    {"End",                     R"("END:VCARD" 0D 0A)",                      0},
    {"TopBitBegin",             R"(C2 "EGIN:VCARD" 0D 0A)",                  0},
    {"TopBitV",                 R"("BEGIN:" D6 "CARD" 0D 0A)",               0},
    {"TopBitCard",              R"("BEGIN:VCAR" C4 0D 0A)",                  0},
    {"TopBitCalendar",          R"("BEGIN:VCALENDA" D2)",                    0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(FirstLines, ProbeVCard, testing::ValuesIn(cardCases), FICaseName);

TEST(VCard, HasEveryLetter) {
    for (const std::string_view file :
         {"BEGIN:VCARD\r\n", "begin:vcard\r\n", "BEGIN:VCALENDAR\r\n", "begin:vcalendar\r\n"}) {
        const FIID answer = file.size() == 13 ? 1141 : 1196;
        for (std::size_t index = 0; index + 2 < file.size(); ++index) {
            std::string changed(file);
            changed[index] = static_cast<char>(changed[index] ^ 0x20);
            EXPECT_EQ(CardAnswer(changed), file[index] == ':' ? 0 : answer)
                << file << " in the other case at " << index;
            for (const std::int32_t difference : {0x01, 0x40, 0x60, 0x80, 0xA0}) {
                changed = file;
                changed[index] = static_cast<char>(changed[index] ^ difference);
                EXPECT_EQ(CardAnswer(changed), 0) << file << " at " << index << " differing by " << difference;
            }
        }
    }
}

TEST(VCard, IsNothingWhenTheFileEndsInFrontOfItsLastLetter) {
    for (const std::string_view file : {"begin : vcard", "begin : vcalendar"}) {
        for (std::size_t size = 0; size < file.size(); ++size) EXPECT_EQ(CardAnswer(file.substr(0, size)), 0) << size;
        EXPECT_NE(CardAnswer(file), 0);
    }
}

TEST(VCard, TestsItsSeek) {
    FIExpectEverySeekIsTested(FIProbeVCard, "BEGIN:VCARD\r\n", 1141);
    EXPECT_EQ(FIAnswerOf(FIProbeVCard, "BEGIN:VCARD\r\n", 6), 1141) << "wherever the reader stands";
}

TEST(VCard, IsInNoOrdinaryFile) {
    for (const std::string& file : FIOrdinaryFiles()) {
        EXPECT_EQ(CardAnswer(file), 0);
    }
}

}  // namespace
