#include "TinkraCore/SyncReconciler.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace Tinkra {
namespace {

using Alarms = std::vector<ScheduledAlarm>;
using Texts = std::vector<Text>;

const auto first = alarmFor(standup(noon + Seconds{60}, "first"));
const auto second = alarmFor(standup(noon + Seconds{120}, "second"));

ReconcileResult reconcile(const Alarms& desired, const Texts& currentIDs)
{
    return SyncReconciler{}.reconcile(desired, currentIDs);
}

TEST(SyncReconciler, HasNothingToDoForNothing)
{
    EXPECT_TRUE(reconcile({}, {}).isNoOp());
}

TEST(SyncReconciler, AddsEverythingInItsOrderWhenNothingIsArmed)
{
    EXPECT_EQ(reconcile({second, first}, {}), (ReconcileResult{.toAdd = {second, first}, .toRemove = {}}));
}

TEST(SyncReconciler, RemovesEverythingInItsOrderWhenNothingIsWanted)
{
    EXPECT_EQ(reconcile({}, {"b", "a", "b"}), (ReconcileResult{.toAdd = {}, .toRemove = {"b", "a", "b"}}));
}

TEST(SyncReconciler, LeavesAlarmsAloneWhoseIdentifiersAreArmed)
{
    auto renamed = first;
    renamed.title = "Renamed";

    EXPECT_TRUE(reconcile({renamed, second}, {second.id, first.id}).isNoOp());
}

TEST(SyncReconciler, RemovesTheOldAlarmOfAMovedMeetingAndAddsTheNewOne)
{
    const auto moved = alarmFor(standup(noon + Seconds{360}, "first"));

    EXPECT_EQ(reconcile({second, moved}, {first.id, second.id}),
        (ReconcileResult{.toAdd = {moved}, .toRemove = {first.id}}));
}

TEST(SyncReconciler, RemovesRequestsThatAreNotOurs)
{
    EXPECT_EQ(reconcile({first}, {"", "somebody else's", first.id, "#", "first"}),
        (ReconcileResult{.toAdd = {}, .toRemove = {"", "somebody else's", "#", "first"}}));
}

TEST(SyncReconciler, KeepsDuplicatesOfWhatIsWanted)
{
    EXPECT_EQ(reconcile({first, first}, {}).toAdd, (Alarms{first, first}));
}

TEST(SyncReconciler, LeavesDuplicatesOfWhatIsArmedAndWantedAlone)
{
    EXPECT_TRUE(reconcile({first}, {first.id, first.id}).isNoOp());
}

TEST(SyncReconciler, ComparesWholeIdentifiersCanonically)
{
    const auto cafe = alarmFor(standup(noon + Seconds{60}, "cafe\u0301"));

    EXPECT_TRUE(reconcile({cafe}, {alarmID("caf\u00e9", cafe.fireDate)}).isNoOp());
    EXPECT_EQ(reconcile({first}, {Text(first.id.utf8() + "0")}).toRemove.size(), 1U);
}

TEST(SyncReconciler, AgreesWithThePlainestReadingOfItsRulesForRandomLists)
{
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        Alarms desired;
        Texts current;
        for (auto count = random() % 20; count > 0; --count)
            desired.push_back(alarmFor(standup(noon, std::to_string(random() % 20), std::to_string(count))));
        for (auto count = random() % 20; count > 0; --count)
            current.push_back(alarmID(std::to_string(random() % 20), noon));

        ReconcileResult expected;
        for (const auto& alarm : desired) {
            if (std::ranges::find(current, alarm.id) == current.end())
                expected.toAdd.push_back(alarm);
        }
        for (const auto& id : current) {
            if (std::ranges::find(desired, id, &ScheduledAlarm::id) == desired.end())
                expected.toRemove.push_back(id);
        }

        EXPECT_EQ(reconcile(desired, current), expected);
    }
}

}
}
