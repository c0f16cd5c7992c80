#include "NotificationDaemonProtocol/Names.h"
#include "NotificationDaemonProtocol/RequestMessage.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <sdbus-c++/sdbus-c++.h>

namespace Tinkra::NotificationDaemonProtocol {
namespace {

using Dictionary = std::map<std::string, sdbus::Variant>;
using Components =
    sdbus::Struct<std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t>;

Dictionary standup()
{
    return {{"title", sdbus::Variant(std::string("Meeting starting"))},
        {"body", sdbus::Variant(std::string("Stand-up"))}, {"sound", sdbus::Variant(std::string("default"))},
        {"interruptionLevel", sdbus::Variant(std::int32_t{2})},
        {"userInfo",
            sdbus::Variant(Dictionary{{"meetingID", sdbus::Variant(std::string("m"))},
                {"fireDate", sdbus::Variant(1795175700.25)}})},
        {"components", sdbus::Variant(Components{2026, 11, 20, 12, 55, 0})},
        {"repeats", sdbus::Variant(false)}};
}

Request read(const Dictionary& dictionary)
{
    return sdbus::Variant(dictionary).get<Request>();
}

std::string refusalOf(const std::string& key, const sdbus::Variant& value)
{
    auto dictionary = standup();
    dictionary[key] = value;
    try {
        read(dictionary);
        return "";
    } catch (const sdbus::Error& error) {
        EXPECT_EQ(error.getName(), Error::kInvalidArgs);
        return error.getMessage();
    }
}

TEST(RequestMessage, ReadsEveryKey)
{
    const auto request = read(standup());

    EXPECT_EQ(request.title, "Meeting starting");
    EXPECT_EQ(request.body, "Stand-up");
    EXPECT_EQ(request.sound, Sound::Default);
    EXPECT_EQ(request.interruptionLevel, 2);
    EXPECT_EQ(request.userInfo, (UserInfo{{"meetingID", "m"}, {"fireDate", 1795175700.25}}));
    EXPECT_EQ(request.components, (WallClock{2026, 11, 20, 12, 55, 0}));
    EXPECT_FALSE(request.repeats);
}

TEST(RequestMessage, ReadsWhatItHasWritten)
{
    auto request = read(standup());
    request.identifier = "standup#1";
    const std::vector<Request> both{request, request};

    EXPECT_EQ(sdbus::Variant(both).get<std::vector<Request>>(), both);
}

TEST(RequestMessage, SkipsKeysOfNewerCallers)
{
    auto dictionary = standup();
    dictionary["attachments"] = sdbus::Variant(std::vector<sdbus::Variant>{sdbus::Variant(std::string("x"))});
    dictionary["aNumber"] = sdbus::Variant(std::uint64_t{1});

    EXPECT_EQ(read(dictionary), read(standup()));
}

TEST(RequestMessage, RefusesWrongTypesAndNamesTheKey)
{
    for (const auto* key :
        {"title", "body", "sound", "interruptionLevel", "userInfo", "components", "repeats"})
        EXPECT_NE(refusalOf(key, sdbus::Variant(std::uint8_t{1})).find(key), std::string::npos) << key;
    EXPECT_NE(refusalOf("components", sdbus::Variant(std::string("now"))), "");
    EXPECT_NE(refusalOf("components", sdbus::Variant(sdbus::Struct<std::int32_t>(2026))), "");
    EXPECT_NE(
        refusalOf("userInfo", sdbus::Variant(Dictionary{{"fireDate", sdbus::Variant(std::int32_t{1})}})), "");
    EXPECT_NE(refusalOf("sound", sdbus::Variant(std::string("../../x"))), "");
}

TEST(RequestMessage, RefusesComponentsThatAreNoMoment)
{
    constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
    for (const auto& components : {Components{2026, 2, 30, 0, 0, 0}, Components{2026, 13, 1, 0, 0, 0},
             Components{kMost, kMost, kMost, kMost, kMost, kMost}, Components{-1, -1, -1, -1, -1, -1}})
        EXPECT_NE(refusalOf("components", sdbus::Variant(components)), "");
    EXPECT_NE(refusalOf("interruptionLevel", sdbus::Variant(std::int32_t{4})), "");
    EXPECT_NE(refusalOf("interruptionLevel", sdbus::Variant(std::int32_t{-1})), "");
    auto dictionary = standup();
    dictionary.erase("components");
    EXPECT_THROW(read(dictionary), sdbus::Error);
}

TEST(RequestMessage, HasNoOpinionOnTexts)
{
    for (const auto& text : {std::string(), std::string(1 << 20, 'x'), std::string("<b>\xe2\x80\xae\n%n")})
        EXPECT_EQ(refusalOf("body", sdbus::Variant(text)), "");
}

}
}
