#include "WakeHelper/FolderWatch.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

#include <poll.h>

namespace Tinkra::WakeHelper {
namespace {

class FolderWatchTest : public testing::Test {
protected:
    TemporaryFolder folder;
    FolderWatch watch{folder.path()};

    /// Changes are told of by the time that the call which makes them returns.
    bool hasChanged() const
    {
        pollfd descriptor{watch.descriptor(), POLLIN, 0};
        const bool isReadable = ::poll(&descriptor, 1, 0) > 0;
        watch.acknowledge();
        return isReadable;
    }
};

TEST_F(FolderWatchTest, TellsOfANewUserAndOfEachWriteOfAKnownOne)
{
    ASSERT_TRUE(watch.renew());
    EXPECT_FALSE(hasChanged());
    std::filesystem::create_directory(folder.path() / "1000");
    EXPECT_TRUE(hasChanged());

    ASSERT_TRUE(watch.renew());
    std::ofstream(folder.path() / "1000" / "part") << "1";
    EXPECT_TRUE(hasChanged());
    std::filesystem::rename(folder.path() / "1000" / "part", folder.path() / "1000" / "wake");
    EXPECT_TRUE(hasChanged());
    std::filesystem::remove(folder.path() / "1000" / "wake");
    EXPECT_TRUE(hasChanged());
}

TEST_F(FolderWatchTest, AnAcknowledgedChangeIsOver)
{
    ASSERT_TRUE(watch.renew());
    std::filesystem::create_directory(folder.path() / "1000");

    EXPECT_TRUE(hasChanged());
    EXPECT_FALSE(hasChanged());
}

TEST_F(FolderWatchTest, AFolderThatIsNotThereCannotBeWatched)
{
    EXPECT_FALSE(FolderWatch(folder.path() / "nowhere").renew());
}

}
}
