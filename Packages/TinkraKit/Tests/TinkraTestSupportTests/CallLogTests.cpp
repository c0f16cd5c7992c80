#include "TinkraTestSupport/CallLog.h"

#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace Tinkra {
namespace {

using Names = std::vector<std::string>;

TEST(CallLog, KeepsCallsInTheirOrder)
{
    CallLog log;

    run(log.record("a"));
    run(log.record("b"));
    run(log.record("a"));

    EXPECT_EQ(log.calls(), (Names{"a", "b", "a"}));
    EXPECT_EQ(log.count("a"), 2U);
    log.clear();
    EXPECT_TRUE(log.calls().empty());
}

TEST(CallLog, HoldsCallsUntilEachIsLetGo)
{
    TestLoop loop;
    CallLog log;
    log.hold();
    const auto first = loop.start(log.record("first"));
    const auto second = loop.start(log.record("second"));
    const auto third = loop.start(log.record("third"));
    EXPECT_EQ(log.waiting(), (Names{"first", "second", "third"}));

    log.letGo(1);
    loop.drain();
    EXPECT_TRUE(second.isDone());
    EXPECT_FALSE(first.isDone());

    log.letGo();
    loop.drain();
    EXPECT_TRUE(first.isDone());
    EXPECT_EQ(log.waiting(), Names{"third"});

    log.letAllGo();
    loop.drain();
    EXPECT_TRUE(third.isDone());
    EXPECT_TRUE(loop.start(log.record("fourth")).isDone());
}

TEST(CallLog, RefusesToLetGoWhenNothingWaits)
{
    CallLog log;

    EXPECT_THROW(log.letGo(), std::logic_error);
}

}
}
