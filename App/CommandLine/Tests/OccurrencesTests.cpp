#include "Desk.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

namespace Tinkra::CommandLine {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OccurrencesTest : public testing::Test {
protected:
    OccurrencesTest() { ::setenv("TZ", "Europe/Zurich", 1); }
    ~OccurrencesTest() override { ::unsetenv("TZ"); }

    /// A calendar of these events, each without its BEGIN and END.
    static std::string calendarOf(const std::vector<std::string>& events)
    {
        std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
        for (const auto& event : events)
            text += "BEGIN:VEVENT\r\n" + event + "\r\nEND:VEVENT\r\n";
        return text + "END:VCALENDAR\r\n";
    }

    std::string file(const std::string& name, const std::string& text) const
    {
        std::ofstream(folder.path() / name, std::ios::binary) << text;
        return folder.path() / name;
    }

    std::vector<std::string> all(const char* key) const
    {
        std::vector<std::string> found;
        for (const auto& occurrence : desk.json())
            found.push_back(occurrence[key]);
        return found;
    }

    TemporaryFolder folder;
    Desk desk;
};

TEST_F(OccurrencesTest, PrintsOneArrayOfObjects)
{
    const auto path = file("a.ics",
        calendarOf(
            {"UID:1\r\nDTSTART:20261120T090000Z\r\nDTEND:20261120T093000Z\r\nSUMMARY:Stand-up\\, daily",
                "UID:2\r\nDTSTART;VALUE=DATE:20261121"}));

    EXPECT_EQ(desk.run({"occurrences", path, "--json", "--from", "2026-11-20", "--to", "2026-11-22"}),
        ExitCode::Success);

    EXPECT_EQ(desk.json(), json::parse(R"([
        {"start":"2026-11-20T09:00:00Z","end":"2026-11-20T09:30:00Z","allDay":false,"title":"Stand-up, daily",
         "id":"1@1795165200"},
        {"start":"2026-11-20T23:00:00Z","end":"2026-11-21T23:00:00Z","allDay":true,"title":"Untitled meeting",
         "id":"2@1795215600"}])"));
    EXPECT_THAT(desk.error, IsEmpty());
    EXPECT_FALSE(desk.madeServices);
}

TEST_F(OccurrencesTest, TakesStartsFromTheFirstBoundAndBeforeTheSecond)
{
    const auto path = file("a.ics",
        calendarOf({"UID:1\r\nDTSTART:20261120T085959Z\r\nDTEND:20261120T120000Z\r\nSUMMARY:before",
            "UID:2\r\nDTSTART:20261120T090000Z\r\nSUMMARY:first",
            "UID:3\r\nDTSTART:20261120T095959Z\r\nSUMMARY:last",
            "UID:4\r\nDTSTART:20261120T100000Z\r\nSUMMARY:after"}));

    desk.run({"occurrences", path, "--json", "--from", "2026-11-20T09:00Z", "--to", "2026-11-20T10:00Z"});
    EXPECT_THAT(all("title"), ElementsAre("first", "last"));

    desk.run({"occurrences", path, "--json", "--from", "2026-11-20T08:59:59.5Z", "--to",
        "2026-11-20T09:00:00.5Z"});
    EXPECT_THAT(all("title"), ElementsAre("first"));
}

TEST_F(OccurrencesTest, ShowsThirtyDaysFromNowOrFromTheFirstBound)
{
    const auto path = file("a.ics", calendarOf({"UID:1\r\nDTSTART:20200101T120000Z\r\nRRULE:FREQ=DAILY"}));

    desk.run({"occurrences", path, "--json"});
    ASSERT_EQ(desk.json().size(), 30U);
    EXPECT_EQ(all("start").front(), "2026-11-20T12:00:00Z");

    desk.run({"occurrences", path, "--json", "--from", "2026-11-20T13:00Z"});
    ASSERT_EQ(desk.json().size(), 30U);
    EXPECT_EQ(all("start").front(), "2026-11-21T12:00:00Z");
}

TEST_F(OccurrencesTest, SortsByStartThenTitleThenIdentifierAcrossFiles)
{
    const std::string one = "\r\nDTSTART:20261120T130000Z\r\nSUMMARY:";
    const auto first = file("1.ics", calendarOf({"UID:2" + one + "b", "UID:3" + one + "a"}));
    const auto second =
        file("2.ics", calendarOf({"UID:1" + one + "b", "UID:9\r\nDTSTART:20261120T123000Z\r\nSUMMARY:z"}));

    desk.run({"occurrences", first, second, "--json"});

    EXPECT_THAT(all("id"), ElementsAre("9@1795177800", "3@1795179600", "1@1795179600", "2@1795179600"));
}

TEST_F(OccurrencesTest, AFileThatCannotBeReadFailsAndTheOthersArePrinted)
{
    const auto path = file("a.ics", calendarOf({"UID:1\r\nDTSTART:20261120T130000Z"}));

    EXPECT_EQ(desk.run({"occurrences", folder.path() / "missing.ics", path, folder.path(), "--json"}),
        ExitCode::Failure);

    EXPECT_EQ(desk.json().size(), 1U);
    EXPECT_THAT(desk.error, HasSubstr("missing.ics cannot be read: No such file or directory\n"));
    EXPECT_THAT(desk.error, HasSubstr(" cannot be read: Is a directory\n"));
}

TEST_F(OccurrencesTest, SaysNothingOfATimeWhenNoFileCouldBeRead)
{
    EXPECT_EQ(desk.run({"occurrences", folder.path() / "missing.ics"}), ExitCode::Failure);

    EXPECT_EQ(desk.out, "");
    EXPECT_THAT(desk.error, HasSubstr("cannot be read"));
}

TEST_F(OccurrencesTest, NamesWhatWasNotUnderstoodFileByFileAndGoesOn)
{
    const auto bad =
        file("bad.ics", calendarOf({"UID:1\r\nSUMMARY:no start", "UID:2\r\nDTSTART:20261120T130000Z"}));
    const auto cut =
        file("cut.ics", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:3\r\nDTSTART:20261120T130000Z\r\n");

    EXPECT_EQ(desk.run({"occurrences", bad, cut, "--json"}), ExitCode::Success);

    EXPECT_THAT(desk.error, HasSubstr("bad.ics: "));
    EXPECT_THAT(desk.error, HasSubstr("cut.ics: "));
    EXPECT_THAT(all("id"), testing::Contains("2@1795179600"));
}

TEST_F(OccurrencesTest, AnEmptyFileHasNoOccurrencesAndIsNamed)
{
    EXPECT_EQ(desk.run({"occurrences", file("empty.ics", ""), "--json"}), ExitCode::Success);
    EXPECT_EQ(desk.json(), json::array());
    EXPECT_THAT(desk.error, HasSubstr("empty.ics: "));
}

TEST_F(OccurrencesTest, ReadsStandardInput)
{
    desk.in = calendarOf({"UID:1\r\nDTSTART:20261120T130000Z\r\nSUMMARY:piped"});

    EXPECT_EQ(desk.run({"occurrences", "-", "--json"}), ExitCode::Success);
    EXPECT_THAT(all("title"), ElementsAre("piped"));
}

TEST_F(OccurrencesTest, AnEndlessFileEndsAtTheLimitOfTheReader)
{
    EXPECT_EQ(desk.run({"occurrences", "/dev/zero", "--json"}), ExitCode::Success);
    EXPECT_EQ(desk.json(), json::array());
    EXPECT_THAT(desk.error, HasSubstr("/dev/zero: "));
}

TEST_F(OccurrencesTest, AWindowOfAnyLengthHoldsUpToTenThousandOccurrencesOfAnEvent)
{
    const auto most =
        file("a.ics", calendarOf({"UID:1\r\nDTSTART:20000101T120000Z\r\nRRULE:FREQ=DAILY;COUNT=9999"}));
    desk.run({"occurrences", most, "--json", "--from", "1900-01-01", "--to", "9999-12-31"});
    EXPECT_EQ(desk.json().size(), 9999U);
    EXPECT_THAT(desk.error, IsEmpty());

    const auto endless = file("b.ics", calendarOf({"UID:1\r\nDTSTART:20000101T120000Z\r\nRRULE:FREQ=DAILY"}));
    desk.run({"occurrences", endless, "--json", "--from", "1900-01-01", "--to", "9999-12-31"});
    EXPECT_EQ(desk.json().size(), 10'000U);
    EXPECT_THAT(desk.error, HasSubstr("b.ics: "));
}

TEST_F(OccurrencesTest, ARangeThatIsTurnedAroundHoldsNothing)
{
    const auto path = file("a.ics", calendarOf({"UID:1\r\nDTSTART:20261120T130000Z"}));

    EXPECT_EQ(desk.run({"occurrences", path, "--json", "--from", "2026-12-01", "--to", "2026-11-01"}),
        ExitCode::Success);
    EXPECT_EQ(desk.json(), json::array());
}

TEST_F(OccurrencesTest, TheTableShowsLocalTimesAndEscapesTitles)
{
    const auto path = file("a.ics",
        calendarOf({"UID:1\r\nDTSTART:20261120T130000Z\r\nDTEND:20261120T140000Z\r\nSUMMARY:two\\nlines"}));

    desk.run({"occurrences", path});

    EXPECT_EQ(desk.out,
        "START                 END                   ALL DAY  TITLE       IDENTIFIER\n"
        "Fri 2026-11-20 14:00  Fri 2026-11-20 15:00  no       two\\nlines  1@1795179600\n");
}

}
}
