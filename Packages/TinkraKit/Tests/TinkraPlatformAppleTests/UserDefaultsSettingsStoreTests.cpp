#include "TinkraPlatformApple/UserDefaultsSettingsStore.h"

#include "TinkraCore/Models/Coding.h"
#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeDefaults.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tinkra {
namespace {

using System::FakeDefaults;

constexpr auto key = "tinkra.configuration";

class UserDefaultsSettingsStoreTest : public testing::Test {
protected:
    static TinkraConfiguration unlikeTheDefault()
    {
        auto configuration = monitoring({"work", "home"});
        configuration.masterEnabled = false;
        configuration.settings = {.leadTime = Seconds(-90.5),
            .style = AlarmStyle::notificationOnly,
            .ignoreAllDay = false,
            .soundName = "Glass",
            .snoozeInterval = Seconds(1e18),
            .raiseVolume = false,
            .keepAwake = false};
        return configuration;
    }

    std::shared_ptr<FakeDefaults> defaults = std::make_shared<FakeDefaults>();
    UserDefaultsSettingsStore store{defaults, key};
};

TEST_F(UserDefaultsSettingsStoreTest, AFirstStartGivesTheDefaultsAndWritesNothing)
{
    EXPECT_EQ(store.load(), TinkraConfiguration());
    EXPECT_TRUE(defaults->keys().empty());
    EXPECT_EQ(defaults->writeCount(), 0U);
}

TEST_F(UserDefaultsSettingsStoreTest, AValueThatIsNotDataGivesTheDefaults)
{
    defaults->setSomethingElse(key);

    EXPECT_EQ(store.load(), TinkraConfiguration());
    EXPECT_EQ(defaults->writeCount(), 0U);
}

TEST_F(UserDefaultsSettingsStoreTest, SaveFollowedByLoadGivesAnEqualRecord)
{
    store.save(unlikeTheDefault());

    EXPECT_EQ(store.load(), unlikeTheDefault());
}

TEST_F(UserDefaultsSettingsStoreTest, KeepsExactlyTheEncodedBytesUnderItsKey)
{
    store.save(unlikeTheDefault());

    EXPECT_EQ(defaults->data(key), encode(unlikeTheDefault()));
    EXPECT_EQ(defaults->keys(), std::vector<std::string>{key});
}

TEST_F(UserDefaultsSettingsStoreTest, TwoSavesLeaveOnlyTheSecond)
{
    store.save(unlikeTheDefault());
    store.save(monitoring({"work"}));

    EXPECT_EQ(defaults->data(key), encode(monitoring({"work"})));
}

TEST_F(UserDefaultsSettingsStoreTest, EachLoadReadsAgain)
{
    store.save(unlikeTheDefault());
    (void)store.load();
    defaults->setData(key, encode(monitoring({"work"})));

    EXPECT_EQ(store.load(), monitoring({"work"}));
}

TEST_F(UserDefaultsSettingsStoreTest, ARecordWithoutAJsonFormIsNotSavedAndThePreviousOneStays)
{
    store.save(monitoring({"work"}));
    auto impossible = unlikeTheDefault();
    impossible.settings.leadTime = Seconds(std::numeric_limits<double>::quiet_NaN());

    EXPECT_NO_THROW(store.save(impossible));
    EXPECT_EQ(store.load(), monitoring({"work"}));
}

TEST_F(UserDefaultsSettingsStoreTest, AFailedWriteIsSilent)
{
    defaults->failWrites();

    EXPECT_NO_THROW(store.save(unlikeTheDefault()));
    EXPECT_EQ(store.load(), TinkraConfiguration());
}

class BadDocument : public UserDefaultsSettingsStoreTest, public testing::WithParamInterface<std::string> { };

TEST_P(BadDocument, GivesTheDefaultsAndStaysUntilTheNextSave)
{
    defaults->setData(key, GetParam());

    EXPECT_EQ(store.load(), TinkraConfiguration());
    EXPECT_EQ(defaults->data(key), GetParam());

    store.save(unlikeTheDefault());
    EXPECT_EQ(store.load(), unlikeTheDefault());
}

INSTANTIATE_TEST_SUITE_P(All, BadDocument,
    testing::Values("", std::string(100, '\0'), "{", "null", "[]", "3", "\"text\"", "{}",
        R"({"masterEnabled":true,"settings":{}})", R"({"masterEnabled":1,"settings":{},"monitoring":{}})",
        R"({"masterEnabled":true,"settings":{"style":"loud"},"monitoring":{"selectedCalendarIDs":[]}})",
        R"({"masterEnabled":true,"settings":{"leadTime":"5"},"monitoring":{"selectedCalendarIDs":[]}})",
        R"({"masterEnabled":true,"settings":{},"monitoring":{"selectedCalendarIDs":"work"}})",
        std::string("\xFF\xFE{\0}\0", 6), "\xFF\xFF", std::string(100'000, '[')));

}
}
