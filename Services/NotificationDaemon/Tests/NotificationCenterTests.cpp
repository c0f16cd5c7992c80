#include "World.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra::NotificationDaemon {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST(NotificationCenter, ShowsARequestWhenTheClockShowsItsComponents)
{
    World world;
    world.add("a", kNoon + 10);

    world.pass(9);
    EXPECT_THAT(world.server.calls, IsEmpty());
    world.pass(1);

    ASSERT_EQ(world.server.calls.size(), 1U);
    EXPECT_EQ(world.server.calls[0].notification.summary, "Meeting starting");
    EXPECT_EQ(world.server.calls[0].notification.body, "Body of a");
    EXPECT_TRUE(world.server.calls[0].notification.sound);
    EXPECT_FALSE(world.server.calls[0].notification.repeat);
}

TEST(NotificationCenter, TellsTheTimerTheEarliestInstant)
{
    World world;
    EXPECT_EQ(world.center->nextTrigger(), std::nullopt);
    world.add("later", kNoon + kDay);
    world.add("sooner", kNoon + 90);

    EXPECT_EQ(world.center->nextTrigger(), kNoon + 90);
}

TEST(NotificationCenter, CountsFarAheadWithoutOverflow)
{
    for (const std::int64_t days : {24, 25, 30, 400, 20000}) {
        World world;
        world.add("far", kNoon + days * kDay);
        EXPECT_EQ(world.center->nextTrigger(), kNoon + days * kDay);

        world.pass(days * kDay - 1);
        EXPECT_THAT(world.server.bodies(), Not(Contains("Body of far"))) << days;
        world.pass(1);
        EXPECT_THAT(world.server.bodies(), Contains("Body of far")) << days;
    }
}

TEST(NotificationCenter, ShowsARequestOfTheCurrentSecondAtOnce)
{
    World world;
    world.add("now", kNoon);

    EXPECT_EQ(world.server.calls.size(), 1U);
    EXPECT_THAT(world.pending(), IsEmpty());
}

TEST(NotificationCenter, NeverFiresWhatLayInThePastWhenAddedAndListsItUntilCancelled)
{
    World world;
    world.add("past", kNoon - 1);
    world.pass(kDay);
    world.restart();

    EXPECT_THAT(world.server.calls, IsEmpty());
    EXPECT_THAT(world.pending(), ElementsAre("past"));
    world.center->removePending({"past"}, world.now);
    EXPECT_THAT(world.pending(), IsEmpty());
    EXPECT_THAT(world.store.requests, IsEmpty());
}

TEST(NotificationCenter, ReplacesAPendingRequestOfTheSameIdentifier)
{
    World world;
    using Addition = NotificationCenter::Addition;
    EXPECT_EQ(world.center->add(world.request("a", kNoon + 10), world.now), Addition::Added);
    EXPECT_EQ(world.center->add(world.request("b", kNoon + 20), world.now), Addition::Added);
    EXPECT_EQ(world.center->add(world.request("a", kNoon + 30), world.now), Addition::Replaced);

    EXPECT_THAT(world.pending(), ElementsAre("a", "b"));
    EXPECT_EQ(world.store.requests.size(), 2U);
    world.pass(10);
    EXPECT_THAT(world.server.calls, IsEmpty());
    world.pass(20);
    EXPECT_THAT(world.server.bodies(), ElementsAre("Body of b", "Body of a"));
}

TEST(NotificationCenter, IgnoresTheCancellingOfUnknownIdentifiers)
{
    World world;
    world.add("a", kNoon + 10);

    world.center->removePending({"b", "", "../../a"}, world.now);

    EXPECT_THAT(world.pending(), ElementsAre("a"));
}

TEST(NotificationCenter, TakesIdentifiersAsOpaqueBytes)
{
    World world;
    const std::vector<std::string> odd{
        "../../x", "'; DROP TABLE request; --", "%n%s", "\xc3\xa9", "e\xcc\x81", "A", "a"};
    for (const auto& identifier : odd)
        world.add(identifier, kNoon + 10);

    EXPECT_EQ(world.pending(), odd);
    world.center->removePending({"%n%s", "a"}, world.now);
    EXPECT_EQ(world.pending().size(), odd.size() - 2);
}

TEST(NotificationCenter, DoesNotCancelWhatIsDueAndNotYetShown)
{
    World world;
    world.add("due", kNoon + 10);
    world.now.wall += 10; // the timer has not been served yet

    EXPECT_THAT(world.pending(), IsEmpty());
    world.center->removePending({"due"}, world.now);

    EXPECT_EQ(world.count(Phase::Due), 1U);
    world.serverTakesAll();
    EXPECT_THAT(world.observer.deliveredIDs, ElementsAre("due"));
}

TEST(NotificationCenter, DoesNotCancelWhatCameDueWhileTheDaemonWasAway)
{
    World world;
    world.add("due", kNoon + 10);
    world.now.wall += 60;
    world.restart();

    world.center->removePending({"due"}, world.now);

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, KeepsTheFireOrderOfManyAlarmsInOneSecond)
{
    World world;
    std::vector<std::string> expected;
    for (int i = 0; i < 40; ++i) {
        world.add("a" + std::to_string(i), kNoon + 10);
        expected.push_back("Body of a" + std::to_string(i));
    }

    world.pass(10);

    EXPECT_EQ(world.server.bodies(), expected);
}

TEST(NotificationCenter, ShowsAllOfAHundredsStrongCrowdAFewAtATime)
{
    World world;
    for (int i = 0; i < 350; ++i)
        world.add("a" + std::to_string(i), kNoon + 10);
    world.pass(10);
    EXPECT_EQ(world.server.calls.size(), 100U);

    for (int i = 0; i < 5; ++i) {
        world.serverTakesAll();
        world.turn();
    }

    EXPECT_EQ(world.observer.deliveredIDs.size(), 350U);
}

// --- clocks

TEST(NotificationCenter, FiresAtOnceWhenTheClockJumpsOverTheTime)
{
    World world;
    world.add("a", kNoon + kHour);

    world.setClock(kNoon + kHour + 1);

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, WaitsForTheWallClockThatWasSetBack)
{
    World world;
    world.add("a", kNoon + 10);
    world.setClock(kNoon - kHour);

    world.pass(10);
    EXPECT_THAT(world.server.calls, IsEmpty());
    world.pass(kHour);
    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, DoesNotShowAgainWhatWasShownBeforeTheClockWasSetBack)
{
    World world;
    world.add("a", kNoon + 10);
    const auto again = world.request("a", kNoon + 10);
    world.pass(10);
    world.serverTakesAll();

    world.setClock(kNoon);
    world.center->add(again, world.now);
    world.restart();
    world.center->add(again, world.now);
    world.pass(20);

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, ShowsAnIdentifierAgainThatIsArmedForAnotherTime)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.serverTakesAll();

    world.add("a", kNoon + 60);
    world.pass(60);

    EXPECT_EQ(world.server.calls.size(), 2U);
}

TEST(NotificationCenter, ForgetsWhatWasShownOnlyAfterTwoDays)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.serverTakesAll();

    world.pass(47 * kHour);
    EXPECT_EQ(world.count(Phase::Shown), 1U);
    world.pass(kHour + 20);
    world.pass(2 * kHour); // the leap was large: trusted again after an hour
    EXPECT_EQ(world.count(Phase::Shown), 0U);
    EXPECT_THAT(world.store.requests, IsEmpty());
}

TEST(NotificationCenter, DropsNothingAsPastUnderAClockThatWasNeverSet)
{
    World world;
    world.setClock(1000); // a second of 1970
    world.add("a", 2000);
    world.add("b", kNoon + 10);
    world.setClock(1000 + 40 * kDay);

    EXPECT_THAT(world.server.bodies(), ElementsAre("Body of a"));
    EXPECT_EQ(world.count(Phase::Missed), 0U);
    world.setClock(kNoon);
    EXPECT_THAT(world.pending(), ElementsAre("b"));
}

TEST(NotificationCenter, BringsBackWhatWasMissedUnderAClockFarAhead)
{
    constexpr std::int64_t kFarAhead = 4070908800; // 2099
    World world;
    world.add("ahead", kNoon + kHour);
    world.add("justNow", kNoon + 10);
    world.setClock(kFarAhead);
    EXPECT_EQ(world.count(Phase::Missed), 2U);
    EXPECT_THAT(world.server.calls, IsEmpty());
    world.restart();

    world.setClock(kNoon + 60);

    EXPECT_THAT(world.pending(), ElementsAre("ahead"));
    EXPECT_THAT(world.server.bodies(), ElementsAre("Body of justNow"));
}

TEST(NotificationCenter, FiresWhatWasAddedAsPastUnderAClockFarAheadOnceItLiesAhead)
{
    World world;
    world.setClock(kNoon + 30 * kDay);
    world.add("a", kNoon + kHour);
    world.setClock(kNoon);

    world.pass(kHour);

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, CatchesUpInOrderAfterAStall)
{
    World world;
    world.add("second", kNoon + 20);
    world.add("first", kNoon + 10);

    world.pass(60);

    EXPECT_THAT(world.server.bodies(), ElementsAre("Body of first", "Body of second"));
}

TEST(NotificationCenter, ShowsLateUntilAQuarterOfAnHourPastTheMeetingsStart)
{
    const std::int64_t lastUse = kNoon + 10 + 5 * kMinute + 15 * kMinute;
    for (const auto& [wake, shown] : std::map<std::int64_t, bool>{
             {kNoon + 11, true}, {lastUse, true}, {lastUse + 1, false}, {kNoon + 2 * kDay, false}}) {
        World world;
        world.add("a", kNoon + 10);
        world.now.wall = wake;
        world.restart();

        EXPECT_EQ(world.server.calls.size(), shown ? 1U : 0U) << wake - kNoon;
        EXPECT_EQ(world.count(Phase::Missed), shown ? 0U : 1U);
        EXPECT_EQ(world.center->missed().size(), shown ? 0U : 1U);
    }
}

TEST(NotificationCenter, FilesFourHundredOldAlarmsSilently)
{
    World world;
    for (int i = 0; i < 400; ++i)
        world.add("a" + std::to_string(i), kNoon + 10 + i);
    world.now.wall += 14 * kDay;
    world.restart();

    EXPECT_THAT(world.server.calls, IsEmpty());
    EXPECT_EQ(world.count(Phase::Missed), 400U);
}

TEST(NotificationCenter, ForgetsMissedOnesAfterAWeek)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(kDay);
    EXPECT_EQ(world.count(Phase::Missed), 1U);

    world.pass(8 * kDay);
    world.pass(2 * kHour);

    EXPECT_EQ(world.count(Phase::Missed), 0U);
}

TEST(NotificationCenter, ForgetsASurplusInSessionsThatAreAllShort)
{
    World world;
    constexpr std::size_t kMostMissed = 1000;
    for (std::size_t i = 0; i <= kMostMissed; ++i)
        world.add("request " + std::to_string(i), kNoon + 10);
    world.setClock(kNoon + kDay);
    EXPECT_EQ(world.count(Phase::Missed), kMostMissed + 1);

    world.restart();

    EXPECT_EQ(world.count(Phase::Missed), kMostMissed);
    EXPECT_EQ(world.store.requests.size(), kMostMissed);
}

TEST(NotificationCenter, UsesTheFireTimeWhereTheMeetingsStartIsNoSensibleNumber)
{
    for (const double start : {-1.0, 0.0, 1e300, -1e300, double(INFINITY), double(NAN)}) {
        World world;
        auto request = world.request("a", kNoon + 10);
        request.userInfo["meetingStart"] = start;
        world.center->add(request, world.now);

        world.pass(10 + 15 * kMinute + 1);

        EXPECT_EQ(world.count(Phase::Missed), 1U) << start;
    }
}

TEST(NotificationCenter, SurvivesEveryKindOfFireDate)
{
    for (const double fireDate : {-1.0, 0.5, 1e300, -1e300, 9.3e18, double(INFINITY), double(NAN)}) {
        World world;
        auto request = world.request("a", kNoon + 10);
        request.userInfo["fireDate"] = fireDate;
        world.center->add(request, world.now);
        EXPECT_EQ(world.center->nextTrigger(), kNoon + 10) << fireDate;
    }
}

// --- zones

TEST(NotificationCenter, FiresByTheZoneThatIsInForceWhenItsTimeComes)
{
    World world;
    world.add("a", kNoon + 10 * kHour);

    world.travelTo(-5 * kHour); // six hours to the west
    world.pass(10 * kHour);
    EXPECT_THAT(world.server.calls, IsEmpty());
    world.pass(6 * kHour);

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, FiresAtOnceWhenANewZoneIsAlreadyPastTheTime)
{
    World world;
    world.add("a", kNoon + kHour);

    world.travelTo(3600 + 2 * kHour);

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, KeepsOneDeliveryWhenTheZoneChangesWhileItIsDue)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);

    world.travelTo(-kHour);
    world.serverTakesAll();
    world.pass(3 * kHour);

    EXPECT_EQ(world.server.calls.size(), 1U);
    EXPECT_THAT(world.observer.deliveredIDs, ElementsAre("a"));
}

// --- the server

TEST(NotificationCenter, CallsItShownOnlyWhenTheServerHasTakenIt)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    EXPECT_EQ(world.count(Phase::Due), 1U);

    world.serverTakesAll();

    EXPECT_EQ(world.count(Phase::Shown), 1U);
    EXPECT_EQ(world.store.requests.begin()->second.state, StoredState::Shown);
}

TEST(NotificationCenter, TriesARefusedNotificationAgainEveryFiveSecondsAndSoundsTheFallbackOnce)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.serverRefusesAll();
    EXPECT_THAT(world.observer.undeliverableIDs, ElementsAre("a"));
    EXPECT_EQ(world.center->nextRetry(), world.now.elapsed + 5000);

    world.pass(4);
    EXPECT_EQ(world.server.calls.size(), 1U);
    world.pass(1);
    ASSERT_EQ(world.server.calls.size(), 2U);
    EXPECT_FALSE(world.server.calls[1].notification.repeat) << "nobody has seen it yet";
    world.serverRefusesAll();
    EXPECT_THAT(world.observer.undeliverableIDs, ElementsAre("a"));
    world.pass(5);
    world.serverTakesAll();

    EXPECT_THAT(world.observer.deliveredIDs, ElementsAre("a"));
}

TEST(NotificationCenter, ShowsWhatIsDueAsSoonAsAServerAppears)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.serverRefusesAll();

    world.passMilliseconds(100);
    world.center->serverAppeared(world.now);

    EXPECT_EQ(world.server.calls.size(), 2U);
}

TEST(NotificationCenter, DoesNotDelayOthersForAServerThatHangs)
{
    World world;
    for (int i = 0; i < 10; ++i)
        world.add("a" + std::to_string(i), kNoon + 10);

    world.pass(10);

    EXPECT_EQ(world.server.calls.size(), 10U);
    EXPECT_EQ(world.center->nextRetry(), world.now.elapsed + 3000);
}

TEST(NotificationCenter, FallsBackAfterThreeSecondsOfSilenceAndOffersOnceMoreAfterFive)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);

    world.pass(3);
    EXPECT_THAT(world.observer.undeliverableIDs, ElementsAre("a"));
    EXPECT_EQ(world.server.calls.size(), 1U);
    world.pass(2);
    EXPECT_EQ(world.server.calls.size(), 2U);
    EXPECT_TRUE(world.server.calls[1].notification.repeat);
    world.pass(30);
    EXPECT_EQ(world.server.calls.size(), 2U) << "a server that is merely slow is not flooded";
    world.pass(40);
    EXPECT_EQ(world.server.calls.size(), 3U);
}

TEST(NotificationCenter, AcceptsTheAnswerOfASlowServer)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.pass(4);

    world.serverTakesAll();
    world.pass(120);

    EXPECT_EQ(world.server.calls.size(), 1U);
    EXPECT_THAT(world.observer.deliveredIDs, ElementsAre("a"));
}

TEST(NotificationCenter, ShowsAgainWhatAServerTookRightBeforeItDied)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.serverTakesAll();

    world.pass(9);
    world.center->serverVanished(world.now);
    world.center->serverAppeared(world.now);

    ASSERT_EQ(world.server.calls.size(), 2U);
    EXPECT_EQ(world.server.calls[1].notification.body, "Body of a");
}

TEST(NotificationCenter, LeavesAloneWhatAServerHadShownForLonger)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.serverTakesAll();

    world.pass(11);
    world.center->serverVanished(world.now);
    world.center->serverAppeared(world.now);

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, ShowsAtALateServerWhatIsNotTooOldAndFilesTheRest)
{
    World world;
    world.add("old", kNoon + 10);
    world.add("new", kNoon + kHour);
    world.pass(10);
    world.serverRefusesAll();
    world.pass(kHour);
    world.serverRefusesAll();
    const auto before = world.server.calls.size();

    world.center->serverAppeared(world.now);

    EXPECT_EQ(world.count(Phase::Missed), 1U);
    ASSERT_EQ(world.server.calls.size(), before + 1);
    EXPECT_EQ(world.server.calls.back().notification.body, "Body of new");
}

// --- the store

TEST(NotificationCenter, MarksARepeatAfterACrashBetweenShowingAndRecording)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);

    world.restart();

    ASSERT_EQ(world.server.calls.size(), 2U);
    EXPECT_TRUE(world.server.calls[1].notification.repeat);
    EXPECT_EQ(world.server.calls[1].notification.body, world.server.calls[0].notification.body);
}

TEST(NotificationCenter, DoesNotShowAgainWhatWasRecordedBeforeACrash)
{
    World world;
    world.add("a", kNoon + 10);
    world.pass(10);
    world.serverTakesAll();

    world.restart();

    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, SpendsOneDurableWriteOnAnAddition)
{
    World world;
    world.add("first", kNoon + 10);
    const int before = world.store.durableChanges;

    world.add("a", kNoon + 10);

    EXPECT_EQ(world.store.durableChanges, before + 1);
}

TEST(NotificationCenter, LeavesEverythingAsItWasWhenTheDiskIsFull)
{
    World world;
    world.add("a", kNoon + 10);
    world.store.failure = StoreError::Kind::Full;

    EXPECT_THROW(world.center->add(world.request("b", kNoon + 10), world.now), StoreError);
    EXPECT_THROW(world.center->add(world.request("a", kNoon + 99), world.now), StoreError);
    EXPECT_THROW(world.center->removePending({"a"}, world.now), StoreError);

    EXPECT_THAT(world.pending(), ElementsAre("a"));
    EXPECT_EQ(world.center->nextTrigger(), kNoon + 10);
    world.store.failure.reset();
    world.add("b", kNoon + 10);
    EXPECT_THAT(world.pending(), ElementsAre("a", "b"));
}

TEST(NotificationCenter, ShowsWhileTheDiskIsFullAndRecordsItLater)
{
    World world;
    world.add("a", kNoon + 10);
    world.store.failure = StoreError::Kind::Full;
    world.pass(10);
    world.serverTakesAll();
    EXPECT_THAT(world.observer.deliveredIDs, ElementsAre("a"));
    EXPECT_TRUE(world.center->isUnsettled());

    world.store.failure.reset();
    world.pass(30);

    EXPECT_FALSE(world.center->isUnsettled());
    world.restart();
    EXPECT_EQ(world.server.calls.size(), 1U);
}

TEST(NotificationCenter, WritesTheStoreAnewAfterAFailedSync)
{
    World world;
    world.add("a", kNoon + 10);
    world.store.requests.clear(); // what the failed pages may have become
    world.store.failure = StoreError::Kind::Broken;

    world.add("b", kNoon + 20);

    EXPECT_EQ(world.store.replacements, 1);
    EXPECT_EQ(world.store.requests.size(), 2U);
}

TEST(NotificationCenter, RefusesAdditionsUntilABrokenStoreCouldBeReplaced)
{
    World world;
    world.add("a", kNoon + 10);
    world.store.failure = StoreError::Kind::Broken;
    world.store.replacingFails = true;
    EXPECT_THROW(world.center->add(world.request("b", kNoon + 20), world.now), StoreError);

    // The old file would take writes again, but it is not to be trusted.
    world.store.failure.reset();
    EXPECT_THROW(world.center->add(world.request("b", kNoon + 20), world.now), StoreError);
    world.store.replacingFails = false;
    EXPECT_THROW(world.center->add(world.request("b", kNoon + 20), world.now), StoreError)
        << "not at every call";
    world.pass(5);
    world.add("b", kNoon + 20);

    EXPECT_EQ(world.store.replacements, 1);
    EXPECT_THAT(world.pending(), ElementsAre("a", "b"));
}

TEST(NotificationCenter, ReportsDamagedRecordsAndServesTheOthers)
{
    World world;
    world.add("a", kNoon + 10);
    world.add("b", kNoon + 20);
    world.store.requests.begin()->second.record.resize(9);

    world.restart();

    EXPECT_THAT(world.pending(), ElementsAre("b"));
    EXPECT_EQ(world.center->note("storeWasReset"), 1);
    EXPECT_EQ(world.center->note("lostRequests"), 1);
    world.restart();
    EXPECT_EQ(world.center->note("storeWasReset"), 1) << "until somebody has armed everything again";
    world.center->acknowledgeReset();
    world.turn();
    world.restart();
    EXPECT_EQ(world.center->note("storeWasReset"), 0);
}

TEST(NotificationCenter, ForgetsDamagedRowsOnceTheyAreReported)
{
    World world;
    world.add("a", kNoon + 10);
    world.add("b", kNoon + 20);
    world.center->storeWasDamaged(1, {1});
    world.turn();

    EXPECT_THAT(world.store.requests, testing::SizeIs(1));
    EXPECT_EQ(world.store.notes["storeWasReset"], 1);
}

TEST(NotificationCenter, KeepsARequestThatTakesTheNumberOfADamagedRowBeforeThatIsErased)
{
    World world;
    world.add("a", kNoon + 10);
    world.add("b", kNoon + 20);
    world.store.requests.rbegin()->second.record.resize(9);
    world.store.failure = StoreError::Kind::Full;
    world.restart();
    world.store.failure.reset();

    world.add("c", kNoon + 30);
    world.pass(9);
    world.restart();

    EXPECT_THAT(world.pending(), ElementsAre("a", "c"));
}

TEST(NotificationCenter, SetsAsideWhatItCrashedOnAndServesTheRest)
{
    World world;
    world.add("bad", kNoon + 10);
    world.add("good", kNoon + 10);

    world.restart({1});
    world.pass(10);

    EXPECT_THAT(world.server.bodies(), ElementsAre("Body of good"));
    EXPECT_THAT(world.center->quarantined(), ElementsAre("bad"));
    world.restart();
    EXPECT_THAT(world.center->quarantined(), ElementsAre("bad"));
}

TEST(NotificationCenter, KeepsTextsWholeWhateverTheirSize)
{
    World world;
    auto request = world.request("a", kNoon + 10);
    request.body = std::string(1 << 20, 'x');
    world.center->add(request, world.now);
    world.restart();

    EXPECT_THAT(world.center->pending(world.now), ElementsAre(request));
}

TEST(NotificationCenter, RefusesMoreThanItCanHoldAndStillReplacesAndFires)
{
    World world;
    for (std::size_t i = 0; i < NotificationCenter::kMostRequests; ++i)
        world.center->add(
            world.request("a" + std::to_string(i), kNoon + 10 + static_cast<std::int64_t>(i)), world.now);

    EXPECT_THROW(world.center->add(world.request("one more", kNoon + 5), world.now), LimitExceeded);
    EXPECT_NO_THROW(world.center->add(world.request("a7", kNoon + 5), world.now));
    world.pass(5);

    EXPECT_THAT(world.server.bodies(), ElementsAre("Body of a7"));
}

TEST(NotificationCenter, RefusesTextsThatAreTooLargeAltogether)
{
    World world;
    auto request = world.request("a", kNoon + 10);
    request.body = std::string(20 << 20, 'x');
    int added = 0;
    EXPECT_THROW(
        for (int i = 0; i < 10; ++i) {
            request.identifier = std::to_string(i);
            world.center->add(request, world.now);
            ++added;
        },
        LimitExceeded);
    EXPECT_EQ(added, 3);
}

// --- the silent application

TEST(NotificationCenter, TellsTheUserOnceBeforeTheLastAlarmHasRungThatNobodyArmsAnyMore)
{
    World world;
    for (int day = 1; day <= 30; ++day)
        world.add("a" + std::to_string(day), kNoon + day * kDay);
    const auto notices = [&] {
        return std::count_if(world.server.calls.begin(), world.server.calls.end(), [](const auto& call) {
            return call.notification.summary == "Calendar Murkel has not run for a while";
        });
    };
    const auto passHours = [&](int hours) {
        for (int i = 0; i < hours; ++i) {
            world.pass(kHour);
            world.serverTakesAll();
        }
    };

    passHours(24 * 24);
    EXPECT_EQ(notices(), 0);
    passHours(30);
    EXPECT_EQ(notices(), 1);
    EXPECT_GT(world.count(Phase::Pending), 0U) << "there is still time to open it";
    passHours(24 * 10);
    world.restart();
    passHours(24);
    EXPECT_EQ(notices(), 1);
}

TEST(NotificationCenter, SaysNothingAboutSilenceWhereNothingWasEverArmed)
{
    World world;
    EXPECT_THAT(world.pending(), IsEmpty()); // a caller was here
    for (int i = 0; i < 24 * 40; ++i)
        world.pass(kHour);

    EXPECT_THAT(world.server.calls, IsEmpty());
}

}
}
