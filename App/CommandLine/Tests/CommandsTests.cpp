#include "Desk.h"

#include "Session.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

namespace Tinkra::CommandLine {
namespace {

using System::CalendarAuthorization;
using Level = System::HealthFinding::Level;
using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::exception_ptr trouble(const char* sentence)
{
    return std::make_exception_ptr(std::runtime_error(sentence));
}

System::StoredEvent eventAt(Instant start, std::optional<std::string> title = std::nullopt)
{
    return {.details = System::EventDetails{.eventIdentifier = "event",
                .calendarItemIdentifier = "item",
                .calendarIdentifier = "Work/Team",
                .title = std::move(title)},
        .start = start,
        .end = start};
}

class CommandsTest : public testing::Test {
protected:
    static auto lines(const std::string& text) { return std::ranges::count(text, '\n'); }

    void loseService() const
    {
        desk.health->service = {
            "Notification service", Level::Failure, "Alarms are not armed: it is gone.", "Install it."};
    }

    Desk desk;
};

TEST_F(CommandsTest, WithoutACommandHelpIsPrintedAndTheProgramEndsWithTwo)
{
    EXPECT_EQ(desk.run({}), ExitCode::Usage);
    EXPECT_THAT(desk.error, HasSubstr("calendars"));
    EXPECT_THAT(desk.out, IsEmpty());
}

TEST_F(CommandsTest, HelpAndVersionGoToStandardOutAndNeedNoServices)
{
    EXPECT_EQ(desk.run({"--help"}), ExitCode::Success);
    EXPECT_THAT(desk.out, HasSubstr("occurrences"));
    EXPECT_EQ(desk.run({"--version"}), ExitCode::Success);
    EXPECT_THAT(desk.out, StartsWith("tinkra "));
    EXPECT_EQ(desk.run({"sync", "--help"}), ExitCode::Success);
    EXPECT_FALSE(desk.madeServices);
}

TEST_F(CommandsTest, HelpIsACommandToo)
{
    EXPECT_EQ(desk.run({"--help"}), ExitCode::Success);
    const auto help = desk.out;
    EXPECT_EQ(desk.run({"help"}), ExitCode::Success);
    EXPECT_EQ(desk.out, help);
    EXPECT_EQ(desk.run({"help", "upcoming"}), ExitCode::Success);
    EXPECT_THAT(desk.out, HasSubstr("--days"));
    EXPECT_FALSE(desk.madeServices);
}

TEST_F(CommandsTest, JsonMayBeAskedForBeforeTheCommandToo)
{
    EXPECT_EQ(desk.run({"calendars", "--json"}), ExitCode::Success);
    const auto behind = desk.json();
    EXPECT_EQ(desk.run({"--json", "calendars"}), ExitCode::Success);
    EXPECT_EQ(desk.json(), behind);
    EXPECT_EQ(desk.run({"--json", "select", "Work/Team"}), ExitCode::Usage);
    EXPECT_EQ(desk.defaults->data(Session::configurationKey), std::nullopt);
}

TEST_F(CommandsTest, AMisunderstoodCommandLineSaysWhatIsWrongAndWhatToWrite)
{
    const std::vector<std::pair<std::vector<std::string>, std::string>> answers{
        {{"x"}, "there is no command \"x\"; see \"tinkra --help\""},
        {{"-x"}, "there is no option \"-x\"; see \"tinkra --help\""},
        {{"sync", "now"}, "\"tinkra sync\" takes no \"now\"; see \"tinkra sync --help\""},
        {{"sync", "--hard"}, "\"tinkra sync\" has no option \"--hard\"; see \"tinkra sync --help\""},
        {{"select"},
            "which calendars? \"tinkra calendars\" lists their identifiers; see \"tinkra select --help\""},
        {{"occurrences"},
            "which calendar files? Name some, or - for standard input; see \"tinkra occurrences --help\""},
        {{"upcoming", "--days"},
            "--days takes a number of days, from 1 to 3653; see \"tinkra upcoming --help\""},
        {{"upcoming", "--days", "x"},
            "--days takes a number of days, from 1 to 3653; see \"tinkra upcoming --help\""},
        {{"occurrences", "f", "--from", ""},
            "--from takes a time, such as 2026-11-20 or 2026-11-20T09:00:00Z; see \"tinkra occurrences "
            "--help\""},
        {{"sync", "--json=maybe"}, "--json takes no value; see \"tinkra sync --help\""},
        {{"--json"}, "a command is missing; see \"tinkra --help\""},
    };
    for (const auto& [arguments, answer] : answers) {
        EXPECT_EQ(desk.run(arguments), ExitCode::Usage);
        EXPECT_EQ(desk.error, "tinkra: " + answer + "\n");
    }
}

TEST_F(CommandsTest, OfAnOptionGivenTwiceTheLastCounts)
{
    EXPECT_EQ(desk.run({"upcoming", "--days", "5", "--days", "3"}), ExitCode::Success) << desk.error;
}

TEST_F(CommandsTest, AMisunderstoodCommandLineIsAnsweredInOneLineAndDoesNothing)
{
    const std::vector<std::vector<std::string>> misunderstood{{"x"}, {"--json"}, {"sync", "x"}, {"select"},
        {"deselect"}, {"occurrences"}, {"upcoming", "--days"}, {"upcoming", "--days", "0"},
        {"upcoming", "--days", "4000"}, {"upcoming", "--days", "x"},
        {"upcoming", "--days", "99999999999999999999"}, {"pending", "--nope"}, {"sync", "calendars"},
        {"occurrences", "f", "--from", "yesterday"}, {"occurrences", "f", "--to", "2026-02-30"},
        {"occurrences", "f", "--from", "\x1B\n"}};
    for (const auto& arguments : misunderstood) {
        EXPECT_EQ(desk.run(arguments), ExitCode::Usage) << arguments.back();
        EXPECT_EQ(lines(desk.error), 1) << desk.error;
        EXPECT_THAT(desk.out, IsEmpty());
    }
    EXPECT_FALSE(desk.madeServices);
}

TEST_F(CommandsTest, CalendarsListsWhatThereIsAndWhatIsMonitored)
{
    desk.monitor({"Work/Team"});

    EXPECT_EQ(desk.run({"calendars"}), ExitCode::Success);

    EXPECT_EQ(desk.out,
        "MONITORED  ACCOUNT  CALENDAR  COLOUR   IDENTIFIER\n"
        "no         Home     Family             Home/Family\n"
        "yes        Work     Team      #FF8000  Work/Team\n");
}

TEST_F(CommandsTest, CalendarsInJsonLeaveAnAbsentColourOut)
{
    desk.run({"calendars", "--json"});

    EXPECT_EQ(desk.json(), json::parse(R"([
        {"id":"Home/Family","title":"Family","accountName":"Home","monitored":false},
        {"id":"Work/Team","title":"Team","accountName":"Work","colorHex":"#FF8000","monitored":false}])"));
}

TEST_F(CommandsTest, ListingCalendarsIsNoGrantOfAccess)
{
    desk.events->setAuthorization(CalendarAuthorization::NotDetermined);

    desk.run({"calendars"});

    EXPECT_THAT(desk.out, HasSubstr("Work/Team"));
    EXPECT_THAT(desk.events->log().calls(), IsEmpty());
}

TEST_F(CommandsTest, CalendarsNamesMonitoredOnesThatAreGone)
{
    desk.monitor({"Old/Gone"});

    EXPECT_EQ(desk.run({"calendars"}), ExitCode::Success);
    EXPECT_EQ(desk.error, "tinkra: Monitored, but not found: Old/Gone\n");
}

TEST_F(CommandsTest, AStoreThatFailsIsReportedInOneLine)
{
    desk.choice->failWith(trouble("the disk is on fire\nbadly"));

    EXPECT_EQ(desk.run({"calendars", "--json"}), ExitCode::Failure);
    EXPECT_EQ(desk.error, "tinkra: Couldn't read calendars: the disk is on fire\\nbadly\n");
    EXPECT_THAT(desk.out, IsEmpty());
}

TEST_F(CommandsTest, SelectGrantsAccessSavesAndArms)
{
    desk.events->setAuthorization(CalendarAuthorization::NotDetermined);

    EXPECT_EQ(desk.run({"select", "Work/Team"}), ExitCode::Success);

    EXPECT_EQ(desk.events->authorizationStatus(), CalendarAuthorization::FullAccess);
    EXPECT_EQ(desk.stored(), monitoring({"Work/Team"}));
    ASSERT_EQ(desk.center->pending().size(), 1U);
    EXPECT_EQ(desk.center->pending().front().identifier, "standup@1795179600#1795179600");
    EXPECT_EQ(desk.out,
        "Monitored: Work / Team\n"
        "       ALARM                 MEETING\n"
        "armed  Fri 2026-11-20 13:00  Stand-up\n"
        "1 alarm armed, 0 alarms cancelled.\n");
}

TEST_F(CommandsTest, SelectAddsToTheSelectionAndKeepsEverySettingAsItIsStored)
{
    auto configuration = monitoring({"Home/Family"});
    configuration.settings.leadTime = Seconds(1e300);
    configuration.settings.soundName = "../../x";
    desk.store(configuration);

    EXPECT_EQ(desk.run({"select", "Work/Team"}), ExitCode::Success);

    configuration.monitoring.selectedCalendarIDs.insert("Work/Team");
    EXPECT_EQ(desk.stored(), configuration);
}

TEST_F(CommandsTest, AnUnknownIdentifierChangesNothing)
{
    desk.events->setAuthorization(CalendarAuthorization::NotDetermined);

    EXPECT_EQ(desk.run({"select", "Work/Team", "No/Such\x1B"}), ExitCode::Failure);

    EXPECT_EQ(desk.error,
        "tinkra: There is no calendar \"No/Such\\u{1B}\"; \"tinkra calendars\" lists the identifiers. "
        "Nothing was changed.\n");
    EXPECT_EQ(desk.defaults->writeCount(), 0U);
    EXPECT_EQ(desk.events->authorizationStatus(), CalendarAuthorization::NotDetermined);
    EXPECT_THAT(desk.center->log().calls(), IsEmpty());
}

TEST_F(CommandsTest, DeselectTakesOutACalendarThatHasVanished)
{
    desk.monitor({"Old/Gone", "Work/Team"});

    EXPECT_EQ(desk.run({"deselect", "Old/Gone"}), ExitCode::Success);
    EXPECT_EQ(desk.stored(), monitoring({"Work/Team"}));
}

TEST_F(CommandsTest, DeselectingTheLastCalendarCancelsEverything)
{
    desk.monitor({"Work/Team"});
    desk.run({"sync"});

    EXPECT_EQ(desk.run({"deselect", "Work/Team"}), ExitCode::Success);

    EXPECT_THAT(desk.center->pending(), IsEmpty());
    EXPECT_THAT(desk.out, HasSubstr("cancelled  Fri 2026-11-20 13:00  Stand-up\n"));
}

TEST_F(CommandsTest, DeselectOfSomethingUnknownChangesNothing)
{
    desk.monitor({"Work/Team"});

    EXPECT_EQ(desk.run({"deselect", "Old/Gone"}), ExitCode::Failure);
    EXPECT_EQ(desk.defaults->writeCount(), 1U);
}

TEST_F(CommandsTest, ASelectionThatCannotBeSavedArmsNothing)
{
    desk.defaults->failWrites();

    EXPECT_EQ(desk.run({"select", "Work/Team"}), ExitCode::Failure);
    EXPECT_EQ(desk.error, "tinkra: The selection could not be saved, and no alarm was changed.\n");
    EXPECT_THAT(desk.center->pending(), IsEmpty());
}

TEST_F(CommandsTest, ARefusedAccessSavesNothing)
{
    desk.events->setAuthorization(CalendarAuthorization::NotDetermined);
    desk.events->answerRequestsWith(false);

    EXPECT_EQ(desk.run({"select", "Work/Team"}), ExitCode::Failure);
    EXPECT_EQ(desk.defaults->writeCount(), 0U);
    EXPECT_EQ(lines(desk.error), 1);
}

TEST_F(CommandsTest, SelectSaysWhenNothingCanShowNotificationsAndArmsNevertheless)
{
    desk.center->answerRequestsWith(false);

    EXPECT_EQ(desk.run({"select", "Work/Team"}), ExitCode::Success);
    EXPECT_THAT(desk.error, HasSubstr("tinkra doctor"));
    EXPECT_EQ(desk.center->pending().size(), 1U);
}

TEST_F(CommandsTest, SyncSaysThatNothingHasChanged)
{
    desk.monitor({"Work/Team"});
    desk.run({"sync"});

    EXPECT_EQ(desk.run({"sync"}), ExitCode::Success);
    EXPECT_EQ(desk.out, "Nothing has changed.\n");
}

TEST_F(CommandsTest, SyncInJsonNamesWhatWasAddedAndRemoved)
{
    desk.monitor({"Work/Team"});
    desk.center->setPending({System::NotificationRequest{.identifier = "stale"}});

    EXPECT_EQ(desk.run({"sync", "--json"}), ExitCode::Success);

    EXPECT_EQ(desk.json(), json::parse(R"({"added":[{"id":"standup@1795179600#1795179600","title":"Stand-up",
        "fireDate":"2026-11-20T13:00:00Z","meetingStart":"2026-11-20T13:00:00Z","meetingID":"standup@1795179600",
        "calendarID":"Work/Team"}],"removed":["stale"]})"));
}

TEST_F(CommandsTest, SyncFailsInOneLineWhenTheServiceIsMissingAndTouchesNothing)
{
    desk.monitor({"Work/Team"});
    loseService();

    EXPECT_EQ(desk.run({"sync", "--json"}), ExitCode::Failure);

    EXPECT_EQ(desk.error, "tinkra: Sync failed: Alarms are not armed: it is gone. Install it.\n");
    EXPECT_THAT(desk.out, IsEmpty());
    EXPECT_THAT(desk.center->log().calls(), IsEmpty());
    EXPECT_EQ(desk.health->acknowledgements, 0);
}

TEST_F(CommandsTest, SyncPassesOnWhyAnAlarmWasNotArmed)
{
    desk.monitor({"Work/Team"});
    desk.center->failAddingWith(trouble("no space is left"));

    EXPECT_EQ(desk.run({"sync"}), ExitCode::Failure);
    EXPECT_EQ(desk.error, "tinkra: Sync failed: no space is left\n");
    EXPECT_EQ(desk.health->acknowledgements, 0);
}

TEST_F(CommandsTest, SyncCancelsNothingWhileCalendarsCannotBeRead)
{
    desk.monitor({"Work/Team"});
    desk.run({"sync"});
    desk.events->failWith(trouble("the folder is gone"));

    EXPECT_EQ(desk.run({"sync"}), ExitCode::Failure);
    EXPECT_EQ(desk.error, "tinkra: Sync failed: the folder is gone\n");
    EXPECT_EQ(desk.center->pending().size(), 1U);
}

TEST_F(CommandsTest, SyncCancelsNothingWhenNoMonitoredCalendarIsThere)
{
    desk.monitor({"Work/Team", "Home/Family"});
    desk.run({"sync"});
    desk.events->setCalendars({});
    desk.events->setEvents({});

    EXPECT_EQ(desk.run({"sync"}), ExitCode::Failure);
    EXPECT_THAT(desk.error, HasSubstr("Sync failed: no monitored calendar is there"));
    EXPECT_EQ(desk.center->pending().size(), 1U);

    desk.monitor({});
    EXPECT_EQ(desk.run({"sync"}), ExitCode::Success);
    EXPECT_THAT(desk.center->pending(), IsEmpty());
}

TEST_F(CommandsTest, SyncNamesAMonitoredCalendarThatIsGoneAndGoesOnWithTheOthers)
{
    desk.monitor({"Work/Team", "Gone/Away"});

    EXPECT_EQ(desk.run({"sync"}), ExitCode::Success);
    EXPECT_EQ(desk.error, "tinkra: Monitored, but not found: Gone/Away\n");
    EXPECT_EQ(desk.center->pending().size(), 1U);
}

TEST_F(CommandsTest, SyncNamesFilesThatAreLeftOutUpToAHandful)
{
    desk.monitor({"Work/Team"});
    for (int i = 0; i < 7; ++i)
        desk.health->leftOut.push_back("/c/" + std::to_string(i) + ".ics: may not be read");

    EXPECT_EQ(desk.run({"sync"}), ExitCode::Success);
    EXPECT_THAT(desk.error, StartsWith("tinkra: Left out: /c/0.ics: may not be read\n"));
    EXPECT_THAT(desk.error, HasSubstr("Left out are 2 more files"));
    EXPECT_EQ(lines(desk.error), 6);
    EXPECT_EQ(desk.center->pending().size(), 1U);
}

TEST_F(CommandsTest, ACompletePassIsAcknowledged)
{
    desk.monitor({"Work/Team"});
    desk.run({"sync"});

    EXPECT_EQ(desk.health->acknowledgements, 1);
}

TEST_F(CommandsTest, SyncArmsThirtyDaysAheadAndNoFurther)
{
    desk.monitor({"Work/Team"});
    desk.events->setEvents({eventAt(Desk::today + std::chrono::days(30) - Seconds(1)),
        eventAt(Desk::today + std::chrono::days(31))});

    desk.run({"sync", "--json"});

    ASSERT_EQ(desk.json()["added"].size(), 1U);
    EXPECT_EQ(desk.json()["added"][0]["title"], "Untitled meeting");
}

TEST_F(CommandsTest, AStoredLeadTimeOutOfReachNeitherStopsTheProgramNorIsRewritten)
{
    for (const double leadTime : {1e308, -1e308}) {
        auto configuration = monitoring({"Work/Team"});
        configuration.settings.leadTime = Seconds(leadTime);
        configuration.settings.snoozeInterval = Seconds(-1);
        desk.store(configuration);

        EXPECT_EQ(desk.run({"sync"}), ExitCode::Success);
        EXPECT_EQ(desk.run({"upcoming"}), ExitCode::Success);
        EXPECT_EQ(desk.run({"doctor"}), ExitCode::Success);
        EXPECT_THAT(desk.out, HasSubstr("out of reach"));
        EXPECT_EQ(desk.stored(), configuration);
    }
}

TEST_F(CommandsTest, UpcomingShowsAlarmsAndArmsNothing)
{
    desk.monitor({"Work/Team"});

    EXPECT_EQ(desk.run({"upcoming"}), ExitCode::Success);
    EXPECT_EQ(desk.out,
        "ALARM                 MEETING STARTS        MEETING   CALENDAR\n"
        "Fri 2026-11-20 13:00  Fri 2026-11-20 13:00  Stand-up  Team\n");
    EXPECT_THAT(desk.center->log().calls(), IsEmpty());
}

TEST_F(CommandsTest, UpcomingLooksAsManyDaysAheadAsAskedFor)
{
    desk.monitor({"Work/Team"});
    desk.events->setEvents({eventAt(Desk::today + std::chrono::days(1)),
        eventAt(Desk::today + std::chrono::days(3)), eventAt(Desk::today + std::chrono::days(15))});

    for (const auto& [days, count] : std::map<std::string, std::size_t>{{"2", 1}, {"4", 2}, {"16", 3}}) {
        desk.run({"upcoming", "--json", "--days", days});
        EXPECT_EQ(desk.json().size(), count) << days;
    }
    desk.run({"upcoming", "--json"});
    EXPECT_EQ(desk.json().size(), 2U);
}

TEST_F(CommandsTest, UpcomingIsEmptyWhileAlarmsAreSwitchedOffAndSaysSo)
{
    auto configuration = monitoring({"Work/Team"});
    configuration.masterEnabled = false;
    desk.store(configuration);

    EXPECT_EQ(desk.run({"upcoming", "--json"}), ExitCode::Success);
    EXPECT_EQ(desk.out, "[]\n");
    EXPECT_THAT(desk.error, HasSubstr("switched off"));
}

TEST_F(CommandsTest, TimesAreShownInTheUsersZone)
{
    desk.calendar->setOffset(std::chrono::hours(9));
    desk.monitor({"Work/Team"});

    desk.run({"upcoming"});
    EXPECT_THAT(desk.out, HasSubstr("Fri 2026-11-20 22:00"));
}

TEST_F(CommandsTest, PendingShowsWhatTheServiceHoldsWhoeverAddedIt)
{
    desk.center->setPending(
        {{.identifier = "late", .content = {.body = "B"}, .trigger = {{2026, 12, 1, 9, 0, 0}}},
            {.identifier = "soon", .content = {.body = "A\nB"}, .trigger = {{2026, 11, 30, 9, 0, 0}}}});

    EXPECT_EQ(desk.run({"pending"}), ExitCode::Success);
    EXPECT_EQ(desk.out,
        "ALARM                 MEETING  IDENTIFIER\n"
        "Mon 2026-11-30 09:00  A\\nB     soon\n"
        "Tue 2026-12-01 09:00  B        late\n");
}

TEST_F(CommandsTest, PendingInJsonHoldsTheWholeRequest)
{
    desk.monitor({"Work/Team"});
    desk.run({"sync"});

    EXPECT_EQ(desk.run({"pending", "--json"}), ExitCode::Success);
    EXPECT_EQ(desk.json(), json::parse(R"([{"id":"standup@1795179600#1795179600","title":"Meeting starting",
        "body":"Stand-up","localTime":"2026-11-20T13:00:00","repeats":false,"userInfo":{"fireDate":1795179600.0,
        "meetingID":"standup@1795179600","meetingStart":1795179600.0,"title":"Stand-up"}}])"));
}

TEST_F(CommandsTest, PendingFailsRatherThanShowAnEmptyListWhenTheServiceIsMissing)
{
    loseService();

    EXPECT_EQ(desk.run({"pending", "--json"}), ExitCode::Failure);
    EXPECT_THAT(desk.out, IsEmpty());
    EXPECT_EQ(lines(desk.error), 1);
}

TEST_F(CommandsTest, JsonIsValidForTitlesThatAreNotUtf8)
{
    desk.monitor({"Work/Team"});
    desk.events->setEvents({eventAt(Desk::today + Seconds(60), "caf\xE9 \"\x01")});

    desk.run({"upcoming", "--json"});
    EXPECT_EQ(desk.json()[0]["title"], "caf\xEF\xBF\xBD \"\x01");
}

TEST_F(CommandsTest, DoctorSucceedsWithWarningsAndFailsWithFailures)
{
    desk.monitor({"Work/Team"});
    desk.health->findings = {{"Login entry", Level::Warning, "It is missing.", "Install it."}};
    EXPECT_EQ(desk.run({"doctor"}), ExitCode::Success);
    EXPECT_THAT(desk.out, HasSubstr("warning  Login entry: It is missing.\n         -> Install it.\n"));

    desk.health->findings = {{"Session bus", Level::Failure, "It is missing.", "Log in."}};
    EXPECT_EQ(desk.run({"doctor", "--json"}), ExitCode::Failure);
    EXPECT_EQ(desk.json().back(),
        json::parse(
            R"({"subject":"Session bus","level":"failure","finding":"It is missing.","remedy":"Log in."})"));
}

TEST_F(CommandsTest, DoctorReportsAConfigurationThatCannotBeReadAndLeavesIt)
{
    desk.defaults->setData(Session::configurationKey, "{");

    EXPECT_EQ(desk.run({"doctor"}), ExitCode::Failure);
    EXPECT_THAT(desk.out, HasSubstr("failure  Configuration: "));
    EXPECT_EQ(desk.defaults->data(Session::configurationKey), "{");
}

TEST_F(CommandsTest, DoctorReportsAnImplausibleClock)
{
    desk.clock->advance(Seconds(100.0 * 365 * 86400));

    EXPECT_EQ(desk.run({"doctor"}), ExitCode::Failure);
    EXPECT_THAT(desk.out, HasSubstr("failure  Clock: "));
}

TEST_F(CommandsTest, DoctorReportsCalendarsThatAreGoneOrCannotBeRead)
{
    desk.monitor({"Old/Gone"});
    EXPECT_EQ(desk.run({"doctor"}), ExitCode::Success);
    EXPECT_THAT(desk.out, HasSubstr("The monitored calendar \"Old/Gone\" is not there."));

    desk.events->failWith(trouble("the folder is gone"));
    EXPECT_EQ(desk.run({"doctor"}), ExitCode::Failure);
    EXPECT_THAT(desk.out, HasSubstr("failure  Calendars: Couldn't read calendars: the folder is gone"));
}

TEST_F(CommandsTest, DoctorChangesNothing)
{
    desk.events->setAuthorization(CalendarAuthorization::NotDetermined);

    EXPECT_EQ(desk.run({"doctor"}), ExitCode::Success);
    EXPECT_EQ(desk.defaults->writeCount(), 0U);
    EXPECT_THAT(desk.center->log().calls(), IsEmpty());
    EXPECT_THAT(desk.events->log().calls(), Not(Contains("requestFullAccess")));
}

}
}
