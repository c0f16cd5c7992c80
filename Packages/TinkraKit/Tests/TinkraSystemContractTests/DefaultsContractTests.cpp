#include "TinkraTestSupport/TemporaryFolder.h"

#include "TinkraSystemLinux/DefaultsLinux.h"
#include "TinkraTestSupport/FakeDefaults.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace Tinkra::System {
namespace {

/// One kind of preferences, and a way to put something else than data there.
struct InMemory {
    std::shared_ptr<FakeDefaults> defaults = std::make_shared<FakeDefaults>();

    void putSomethingElse(const char* key) const { defaults->setSomethingElse(key); }
};

struct OnDisk {
    TemporaryFolder folder;
    std::shared_ptr<DefaultsLinux> defaults = std::make_shared<DefaultsLinux>(folder.path());

    void putSomethingElse(const char* key) const
    {
        ASSERT_EQ(::mkfifo((folder.path() / key).c_str(), 0600), 0);
    }
};

template <typename Kind> class DefaultsContract : public testing::Test {
protected:
    Kind kind;
    Defaults& defaults = *kind.defaults;
};

using Kinds = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(DefaultsContract, Kinds);

TYPED_TEST(DefaultsContract, HoldsNothingAtFirst)
{
    EXPECT_EQ(this->defaults.data("key"), std::nullopt);
}

TYPED_TEST(DefaultsContract, GivesBackTheExactBytes)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));

    this->defaults.setData("key", bytes);

    EXPECT_EQ(this->defaults.data("key"), bytes);
}

TYPED_TEST(DefaultsContract, NoBytesAtAllAreDataToo)
{
    this->defaults.setData("key", "");

    EXPECT_EQ(this->defaults.data("key"), "");
}

TYPED_TEST(DefaultsContract, KeepsTheNewestValueAlone)
{
    this->defaults.setData("key", "a long first value");
    this->defaults.setData("key", "second");

    EXPECT_EQ(this->defaults.data("key"), "second");
}

TYPED_TEST(DefaultsContract, KeepsKeysApart)
{
    this->defaults.setData("tinkra.configuration", "one");
    this->defaults.setData("tinkra.configuration2", "two");

    EXPECT_EQ(this->defaults.data("tinkra.configuration"), "one");
    EXPECT_EQ(this->defaults.data("tinkra.configuration2"), "two");
}

TYPED_TEST(DefaultsContract, SomethingElseThanDataIsNothingUntilItIsOverwritten)
{
    this->kind.putSomethingElse("key");
    EXPECT_EQ(this->defaults.data("key"), std::nullopt);

    this->defaults.setData("key", "data");
    EXPECT_EQ(this->defaults.data("key"), "data");
}

}
}
