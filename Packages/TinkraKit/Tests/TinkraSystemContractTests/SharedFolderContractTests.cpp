#include "TinkraSystemLinux/SharedFolderLinux.h"
#include "TinkraSystemMac/SharedFolderMac.h"
#include "TinkraTestSupport/FakeSharedFolder.h"
#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include <unistd.h>

namespace Tinkra::System {
namespace {

struct InMemory {
    std::shared_ptr<FakeSharedFolder> folder = std::make_shared<FakeSharedFolder>();

    std::string content(const char* name) const { return folder->files.at(name); }
};

struct OnDisk {
    TemporaryFolder base;
    std::filesystem::path path = base.path() / "CalendarMurkel" / "1000";
    std::shared_ptr<SharedFolderLinux> folder =
        std::make_shared<SharedFolderLinux>(path, ::geteuid(), [](const std::string&) {});

    std::string content(const char* name) const
    {
        std::ifstream file(path / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

/// What macOS uses; it calls nothing that is not here.
struct OnMacsDisk {
    TemporaryFolder base;
    std::filesystem::path path = base.path() / "CalendarMurkel";
    std::shared_ptr<SharedFolderMac> folder = std::make_shared<SharedFolderMac>(path);

    std::string content(const char* name) const
    {
        std::ifstream file(path / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

template <typename Kind> class SharedFolderContract : public testing::Test {
protected:
    Kind kind;
    SharedFolder& folder = *kind.folder;
};

using Kinds = testing::Types<InMemory, OnDisk, OnMacsDisk>;
TYPED_TEST_SUITE(SharedFolderContract, Kinds);

TYPED_TEST(SharedFolderContract, IsNotThereAtFirstAndTakesNothing)
{
    EXPECT_FALSE(this->folder.exists());
    EXPECT_FALSE(this->folder.holds("wake"));
    EXPECT_FALSE(this->folder.replace("wake", "0"));
}

TYPED_TEST(SharedFolderContract, IsThereOnceMadeAndEmpty)
{
    EXPECT_TRUE(this->folder.create(kSharedFolderPermissions));

    EXPECT_TRUE(this->folder.exists());
    EXPECT_FALSE(this->folder.holds("wake"));
}

TYPED_TEST(SharedFolderContract, HoldsTheNewestContentWhole)
{
    this->folder.create(kSharedFolderPermissions);

    EXPECT_TRUE(this->folder.replace("wake", "1700053140"));
    EXPECT_TRUE(this->folder.replace("wake", "0"));

    EXPECT_TRUE(this->folder.holds("wake"));
    EXPECT_EQ(this->kind.content("wake"), "0");
}

}
}
