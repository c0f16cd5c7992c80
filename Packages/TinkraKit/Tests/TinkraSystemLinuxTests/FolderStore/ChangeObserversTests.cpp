#include "TinkraSystemLinux/CalendarFolders/ChangeObservers.h"

#include <gtest/gtest.h>

#include <vector>

namespace Tinkra::System {
namespace {

TEST(ChangeObservers, MayDropTheirOwnObservationWhileTheyAreCalled)
{
    ChangeObservers observers;
    int calls = 0;
    Observation observation;
    observation = observers.add([&] {
        ++calls;
        observation.reset();
    });

    observers.notify();
    observers.notify();

    EXPECT_EQ(calls, 1);
}

TEST(ChangeObservers, MayDropAnotherOnesObservationWhileTheyAreCalled)
{
    ChangeObservers observers;
    int calls = 0;
    Observation other;
    const auto observation = observers.add([&] { other.reset(); });
    other = observers.add([&] { ++calls; });

    observers.notify();

    EXPECT_EQ(calls, 0);
}

TEST(ChangeObservers, MayAddAnotherOneWhileTheyAreCalled)
{
    ChangeObservers observers;
    int calls = 0;
    std::vector<Observation> added;
    const auto observation = observers.add([&] {
        if (added.empty())
            added.push_back(observers.add([&] { ++calls; }));
    });

    observers.notify();
    observers.notify();

    EXPECT_EQ(calls, 1);
}

}
}
