#include "AppWorld.h"

#include "TinkraSystem/WakeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Tinkra {
namespace {

using System::wakeFileText;
using System::wakeSecondsFrom;
using testing::ElementsAre;
using testing::IsEmpty;

std::string secondsText(Instant instant)
{
    return std::to_string(static_cast<std::int64_t>(secondsSince1970(instant)));
}

class WakeFile : public testing::Test, protected AppWorld { };

TEST_F(WakeFile, HoldsTheNextFireTimeLessAMinuteAfterARefresh)
{
    setMeetings({standup(noon + hours(2), "b"), standup(noon + hours(1), "a")});

    launch();

    EXPECT_EQ(wakeFile(), secondsText(noon + hours(1) - seconds(60)));
}

TEST_F(WakeFile, IsCutOffToWholeSeconds)
{
    setMeetings({standup(noon + Seconds{3600.9})});

    launch();

    EXPECT_EQ(wakeFile(), secondsText(noon + seconds(3540)));
}

TEST_F(WakeFile, WithoutUpcomingAlarmsHoldsZero)
{
    launch();

    EXPECT_EQ(wakeFile(), "0");
}

TEST_F(WakeFile, AnAlarmInHalfAMinuteWritesATimeThatIsPastAndNotZero)
{
    setMeetings({standup(noon + seconds(30))});

    launch();

    EXPECT_EQ(wakeFile(), secondsText(noon - seconds(30)));
}

TEST_F(WakeFile, AfterAWakeHoldsTheNextOneOrZero)
{
    setMeetings({standup(noon + minutes(10)), standup(noon + hours(8), "late")});
    launch();
    clock->suspendMachine(hours(1));
    wakeMachine();
    EXPECT_EQ(wakeFile(), secondsText(noon + hours(8) - seconds(60)));

    clock->suspendMachine(hours(8));
    wakeMachine();
    EXPECT_EQ(wakeFile(), "0");
    clock->advance(Seconds{0});
}

TEST_F(WakeFile, TheFolderIsMadeWithItsPermissionsAndAFileThatHoldsZero)
{
    launch(TinkraConfiguration{});

    EXPECT_EQ(folder->permissions, 493U);
    EXPECT_EQ(folder->written.front(), "0");
}

TEST_F(WakeFile, StartUpLeavesWhatIsThereWhenNoSyncHasWritten)
{
    folder->permissions = 0755;
    folder->files.emplace("wake", "1700053140");
    provider->failWith(std::make_exception_ptr(std::runtime_error("out of order")));

    launch();

    EXPECT_EQ(wakeFile(), "1700053140");
    EXPECT_THAT(folder->written, IsEmpty());
}

TEST_F(WakeFile, AFolderThatVanishedIsMadeAgainWithTheNextSchedule)
{
    launch();
    folder->vanish();

    sync();

    EXPECT_EQ(folder->permissions, 493U);
    EXPECT_EQ(wakeFile(), "0");
}

TEST_F(WakeFile, AFailureToWriteIsSilent)
{
    folder->refuses = true;
    setMeetings({standup(noon + hours(1))});

    launch();

    EXPECT_EQ(model->statusMessage(), "Next: Stand-up");
    EXPECT_THAT(workspace->logged, IsEmpty());
}

class WakeHelper : public testing::Test, protected AppWorld { };

TEST_F(WakeHelper, ThatIsNotRegisteredOrNotFoundIsRegistered)
{
    for (const auto status : {System::ServiceStatus::NotRegistered, System::ServiceStatus::NotFound,
             static_cast<System::ServiceStatus>(9)}) {
        AppWorld world;
        world.helper->current = status;
        world.launch();
        EXPECT_EQ(world.helper->registrations, 1);
        EXPECT_THAT(world.workspace->logged, IsEmpty());
    }
}

TEST_F(WakeHelper, ThatIsEnabledIsLeftAlone)
{
    helper->current = System::ServiceStatus::Enabled;

    launch();

    EXPECT_EQ(helper->registrations, 0);
    EXPECT_THAT(workspace->logged, IsEmpty());
}

TEST_F(WakeHelper, ThatRequiresApprovalIsLoggedAndNotRegistered)
{
    helper->current = System::ServiceStatus::RequiresApproval;

    launch();

    EXPECT_EQ(helper->registrations, 0);
    EXPECT_THAT(
        workspace->logged, ElementsAre("CalendarMurkel: wake helper requires approval in Login Items"));
}

TEST_F(WakeHelper, ThatCannotBeRegisteredIsLoggedWithTheReason)
{
    helper->refusal = "Operation not permitted";

    launch();

    EXPECT_THAT(workspace->logged,
        ElementsAre("CalendarMurkel: wake helper register failed: Operation not permitted"));
    EXPECT_EQ(model->statusMessage(), "Watching 1 calendar(s)");
}

TEST(WakeFileText, IsWholeSecondsCutOffAndNeverNegative)
{
    EXPECT_EQ(wakeFileText(1'700'053'140.9), "1700053140");
    EXPECT_EQ(wakeFileText(0.9), "0");
    EXPECT_EQ(wakeFileText(-5), "0");
    EXPECT_EQ(wakeFileText(std::nan("")), "0");
    EXPECT_EQ(wakeFileText(1e300), "9007199254740992");
    EXPECT_EQ(wakeFileText(std::numeric_limits<double>::infinity()), "9007199254740992");
}

TEST(WakeFileText, IsReadBack)
{
    EXPECT_EQ(wakeSecondsFrom("1700053140", 1'700'049'600), 1'700'053'140);
    EXPECT_EQ(wakeSecondsFrom(wakeFileText(1'700'053'140.9), 1'700'049'600), 1'700'053'140);
    EXPECT_EQ(wakeSecondsFrom("1700049570", 1'700'049'600), 1'700'049'570) << "half a minute ago";
    EXPECT_EQ(wakeSecondsFrom("00000000001700053140", 1'700'049'600), 1'700'053'140);
}

TEST(WakeFileText, AnythingElseMeansThatNoWakeIsWanted)
{
    for (const char* text :
        {"", "0", "00", "-1700053140", "+1700053140", " 1700053140", "1700053140\n", "1700053140.5", "0x10",
            "1e9", "wake", "9223372036854775808", "99999999999999999999", "000000000001700053140", "٣"})
        EXPECT_EQ(wakeSecondsFrom(text, 1'700'049'600), std::nullopt) << text;
    EXPECT_EQ(wakeSecondsFrom(std::string_view("17000\0"
                                               "53140",
                                  11),
                  1'700'049'600),
        std::nullopt);
}

TEST(WakeFileText, AWakeMoreThanAYearAheadIsNotWanted)
{
    constexpr std::int64_t now = 1'700'049'600;
    EXPECT_EQ(wakeSecondsFrom(std::to_string(now + 366LL * 86'400), now), now + 366LL * 86'400);
    EXPECT_EQ(wakeSecondsFrom(std::to_string(now + 366LL * 86'400 + 1), now), std::nullopt);
}

}
}
