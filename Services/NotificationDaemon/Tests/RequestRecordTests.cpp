#include "NotificationDaemon/RequestRecord.h"

#include <cmath>
#include <gtest/gtest.h>

namespace Tinkra::NotificationDaemon {
namespace {

using NotificationDaemonProtocol::Request;
using NotificationDaemonProtocol::Sound;

Request standup()
{
    return {.identifier = "standup@1795176000#1795175700",
        .title = "Meeting starting",
        .body = "Stand-up \xc3\xa9",
        .sound = Sound::Default,
        .interruptionLevel = 2,
        .userInfo = {{"meetingID", "standup"}, {"title", "Stand-up"}, {"fireDate", 1795175700.25},
            {"meetingStart", 1795176000.0}},
        .components = {2026, 11, 20, 12, 55, 0},
        .repeats = true};
}

TEST(RequestRecord, GivesBackWhatWasPutIn)
{
    EXPECT_EQ(decodeRecord(encodeRecord(standup())), standup());
    Request plain{.identifier = "x", .components = {1, 1, 1, 0, 0, 0}};
    EXPECT_EQ(decodeRecord(encodeRecord(plain)), plain);
}

TEST(RequestRecord, KeepsNumbersThatAreNone)
{
    auto request = standup();
    request.userInfo["fireDate"] = double(NAN);
    request.userInfo["meetingStart"] = -double(INFINITY);

    const auto read = decodeRecord(encodeRecord(request));

    EXPECT_TRUE(std::isnan(std::get<double>(read.userInfo.at("fireDate"))));
    EXPECT_EQ(std::get<double>(read.userInfo.at("meetingStart")), -double(INFINITY));
}

TEST(RequestRecord, IsRefusedWhenItIsCutAnywhere)
{
    const auto whole = encodeRecord(standup());
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(decodeRecord(whole.substr(0, length)), DamagedRecord) << length;
    EXPECT_THROW(decodeRecord(whole + "x"), DamagedRecord);
}

TEST(RequestRecord, IsReadOrRefusedWhateverByteIsDamaged)
{
    const auto whole = encodeRecord(standup());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const int flip : {0x01, 0x80, 0xff}) {
            auto damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            try {
                EXPECT_TRUE(isValid(decodeRecord(damaged).components));
            } catch (const DamagedRecord&) {
                SUCCEED();
            }
            EXPECT_NE(checksum(damaged), checksum(whole));
        }
    }
}

}
}
