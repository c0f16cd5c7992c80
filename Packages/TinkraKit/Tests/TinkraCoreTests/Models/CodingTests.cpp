#include "TinkraCore/Models/Coding.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace Tinkra {
namespace {

/// A whole document with the "settings" object given.
std::string withSettings(const std::string& settings)
{
    return R"({"masterEnabled":true,"settings":)" + settings + R"(,"monitoring":{"selectedCalendarIDs":[]}})";
}

AlarmSettings settingsOf(const std::string& settings)
{
    return decode<TinkraConfiguration>(withSettings(settings)).settings;
}

bool isRefused(const std::string& document)
{
    try {
        decode<TinkraConfiguration>(document);
        return false;
    } catch (const DecodingError&) {
        return true;
    }
}

TinkraConfiguration unusualConfiguration()
{
    return {
        .masterEnabled = false,
        .settings =
            {
                .leadTime = Seconds{0.1 + 0.2},
                .style = AlarmStyle::notificationOnly,
                .ignoreAllDay = false,
                .soundName = "Gl\u00f6ckchen \"\\\n\U0001f514",
                .snoozeInterval = Seconds{1e-300},
                .raiseVolume = false,
                .keepAwake = false,
            },
        .monitoring = {.selectedCalendarIDs = {"work", "caf\u00e9", "", "a/b:c"}},
    };
}

TEST(Coding, FillsAnEmptySettingsObjectWithTheDefaults)
{
    const auto document = R"({"masterEnabled":false,"settings":{},"monitoring":{"selectedCalendarIDs":[]}})";

    auto expected = TinkraConfiguration{};
    expected.masterEnabled = false;
    EXPECT_EQ(decode<TinkraConfiguration>(document), expected);
}

TEST(Coding, KeepsEverySettingThatIsNotGivenAtItsDefault)
{
    auto expected = AlarmSettings{};
    expected.leadTime = Seconds{600};
    EXPECT_EQ(settingsOf(R"({"leadTime":600})"), expected);
}

TEST(Coding, ReadsEachSetting)
{
    EXPECT_EQ(settingsOf(R"({"leadTime":-1.5})").leadTime, Seconds{-1.5});
    EXPECT_EQ(settingsOf(R"({"style":"notificationOnly"})").style, AlarmStyle::notificationOnly);
    EXPECT_FALSE(settingsOf(R"({"ignoreAllDay":false})").ignoreAllDay);
    EXPECT_EQ(settingsOf(R"({"soundName":""})").soundName, Text(""));
    EXPECT_EQ(settingsOf(R"({"snoozeInterval":60})").snoozeInterval, Seconds{60});
    EXPECT_FALSE(settingsOf(R"({"raiseVolume":false})").raiseVolume);
    EXPECT_FALSE(settingsOf(R"({"keepAwake":false})").keepAwake);
}

TEST(Coding, TakesNullInSettingsForTheDefault)
{
    EXPECT_TRUE(settingsOf(R"({"raiseVolume":null})").raiseVolume);
    EXPECT_EQ(settingsOf(R"({"leadTime":null,"style":null,"ignoreAllDay":null,"soundName":null,
                            "snoozeInterval":null,"raiseVolume":null,"keepAwake":null})"),
        AlarmSettings{});
}

TEST(Coding, RefusesTheWholeDocumentForAStyleItDoesNotKnow)
{
    EXPECT_TRUE(isRefused(withSettings(R"({"style":"window"})")));
    EXPECT_TRUE(isRefused(withSettings(R"({"style":""})")));
}

TEST(Coding, RefusesTheWholeDocumentForAWrongTypeInSettings)
{
    for (const auto* settings : {R"({"leadTime":"600"})", R"({"leadTime":true})", R"({"leadTime":[600]})",
             R"({"leadTime":{}})", R"({"style":1})", R"({"style":["notificationOnly"]})",
             R"({"ignoreAllDay":1})", R"({"ignoreAllDay":"true"})", R"({"soundName":5})",
             R"({"soundName":{}})", R"({"soundName":[]})", R"({"snoozeInterval":false})",
             R"({"raiseVolume":0})", R"({"keepAwake":"yes"})", R"({"keepAwake":{}})"})
        EXPECT_TRUE(isRefused(withSettings(settings))) << settings;
}

TEST(Coding, NeedsAllThreeMembersOfTheDocument)
{
    EXPECT_TRUE(isRefused(R"({"masterEnabled":true,"settings":{}})"));
    EXPECT_TRUE(isRefused(R"({"masterEnabled":true,"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(isRefused(R"({"settings":{},"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(isRefused("{}"));
}

TEST(Coding, RefusesNullForTheThreeMembersOfTheDocument)
{
    EXPECT_TRUE(isRefused(R"({"masterEnabled":null,"settings":{},"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(
        isRefused(R"({"masterEnabled":true,"settings":null,"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(isRefused(R"({"masterEnabled":true,"settings":{},"monitoring":null})"));
}

TEST(Coding, RefusesWrongTypesOfTheThreeMembersOfTheDocument)
{
    EXPECT_TRUE(isRefused(R"({"masterEnabled":1,"settings":{},"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(
        isRefused(R"({"masterEnabled":"true","settings":{},"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(isRefused(R"({"masterEnabled":true,"settings":[],"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(isRefused(R"({"masterEnabled":true,"settings":{},"monitoring":[]})"));
    EXPECT_TRUE(isRefused(R"({"masterEnabled":true,"settings":{},"monitoring":true})"));
}

TEST(Coding, NeedsTheSelectionAsAListOfText)
{
    const auto withMonitoring = [](const std::string& monitoring) {
        return R"({"masterEnabled":true,"settings":{},"monitoring":)" + monitoring + "}";
    };
    for (const auto* monitoring :
        {"{}", R"({"selectedCalendarIDs":null})", R"({"selectedCalendarIDs":"work"})",
            R"({"selectedCalendarIDs":{}})", R"({"selectedCalendarIDs":[1]})",
            R"({"selectedCalendarIDs":[null]})", R"({"selectedCalendarIDs":["work",null]})",
            R"({"selectedCalendarIDs":["work",["home"]]})", R"({"selectedCalendarIDs":[{}]})",
            R"({"selectedCalendarIDs":[[]]})", R"({"selectedCalendarIDs":["work",true]})"})
        EXPECT_TRUE(isRefused(withMonitoring(monitoring))) << monitoring;

    EXPECT_FALSE(isRefused(withMonitoring(R"({"selectedCalendarIDs":["work"]})")));
}

TEST(Coding, CollapsesDuplicatesInTheSelection)
{
    const auto document =
        R"({"masterEnabled":true,"settings":{},"monitoring":{"selectedCalendarIDs":["b","a","b","caf\u00e9","cafe\u0301"]}})";

    EXPECT_EQ(decode<TinkraConfiguration>(document).monitoring.selectedCalendarIDs,
        (CalendarIDs{"a", "b", "caf\u00e9"}));
}

TEST(Coding, IgnoresKeysItDoesNotKnowAtEveryLevel)
{
    const auto document =
        R"({"version":7,"masterEnabled":false,"settings":{"leadTime":60,"colour":{"deep":[1,{}]}},
        "monitoring":{"selectedCalendarIDs":["work"],"excluded":[1,2]},"extra":[{"masterEnabled":true}]})";

    auto expected = monitoring({"work"});
    expected.masterEnabled = false;
    expected.settings.leadTime = Seconds{60};
    EXPECT_EQ(decode<TinkraConfiguration>(document), expected);
}

TEST(Coding, DoesNotMistakeAKeyAtAnotherLevelForItsOwn)
{
    EXPECT_TRUE(isRefused(R"({"settings":{"masterEnabled":true},"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(
        isRefused(R"({"masterEnabled":true,"settings":{},"monitoring":{},"selectedCalendarIDs":[]})"));
    EXPECT_EQ(
        decode<TinkraConfiguration>(
            R"({"leadTime":9,"masterEnabled":true,"settings":{},"monitoring":{"selectedCalendarIDs":[]}})")
            .settings.leadTime,
        Seconds{0});
}

TEST(Coding, MatchesKeysExactly)
{
    EXPECT_TRUE(isRefused(R"({"MasterEnabled":true,"settings":{},"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_EQ(settingsOf(R"({"leadtime":600,"LeadTime":600,"leadTime ":600})").leadTime, Seconds{0});
}

TEST(Coding, LetsTheLastOfTwoEqualKeysCount)
{
    EXPECT_EQ(settingsOf(R"({"leadTime":60,"leadTime":120})").leadTime, Seconds{120});
    EXPECT_EQ(settingsOf(R"({"leadTime":"text","leadTime":120})").leadTime, Seconds{120});
    EXPECT_TRUE(isRefused(withSettings(R"({"leadTime":120,"leadTime":"text"})")));
    EXPECT_EQ(
        decode<TinkraConfiguration>(
            R"({"masterEnabled":true,"settings":{"leadTime":1},"settings":{},"monitoring":{"selectedCalendarIDs":[]}})")
            .settings.leadTime,
        Seconds{0});
}

TEST(Coding, GivesTheDefaultConfigurationBack)
{
    EXPECT_EQ(decode<TinkraConfiguration>(encode(TinkraConfiguration{})), TinkraConfiguration{});
}

TEST(Coding, GivesEveryFieldOfAConfigurationBack)
{
    const auto configuration = unusualConfiguration();

    EXPECT_EQ(decode<TinkraConfiguration>(encode(configuration)), configuration);
}

TEST(Coding, WritesEveryKeyOnOneLineWithoutSpaces)
{
    EXPECT_EQ(encode(TinkraConfiguration{}),
        R"({"masterEnabled":true,"settings":{"leadTime":0.0,"style":"notificationAndWindow","ignoreAllDay":true,)"
        R"("soundName":"default","snoozeInterval":300.0,"raiseVolume":true,"keepAwake":true},)"
        R"("monitoring":{"selectedCalendarIDs":[]}})");
}

TEST(Coding, WritesEqualConfigurationsAsEqualDocuments)
{
    EXPECT_EQ(encode(monitoring({"a", "b", "c", "d", "e"})), encode(monitoring({"e", "d", "c", "b", "a"})));
}

TEST(Coding, GivesEveryDoubleBackExactly)
{
    std::mt19937_64 random(3);
    for (int round = 0; round < 20'000; ++round) {
        double number = 0;
        do {
            number = std::bit_cast<double>(random());
        } while (!std::isfinite(number));
        TinkraConfiguration configuration;
        configuration.settings.leadTime = Seconds{number};

        const auto back = decode<TinkraConfiguration>(encode(configuration)).settings.leadTime.count();

        EXPECT_EQ(back, number);
        EXPECT_EQ(std::signbit(back), std::signbit(number));
    }
}

TEST(Coding, ReadsNumbersInEveryForm)
{
    EXPECT_EQ(settingsOf(R"({"leadTime":6e2})").leadTime, Seconds{600});
    EXPECT_EQ(settingsOf(R"({"leadTime":600.0})").leadTime, Seconds{600});
    EXPECT_EQ(settingsOf(R"({"leadTime":-0})").leadTime, Seconds{0});
    EXPECT_EQ(settingsOf(R"({"leadTime":18446744073709551616})").leadTime, Seconds{18446744073709551616.0});
    EXPECT_EQ(settingsOf(R"({"leadTime":1e308})").leadTime, Seconds{1e308});
    EXPECT_EQ(settingsOf(R"({"leadTime":1e-999})").leadTime, Seconds{0});
}

TEST(Coding, RefusesToWriteANumberThatJSONCannotHold)
{
    for (const double number : {std::numeric_limits<double>::quiet_NaN(),
             std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        TinkraConfiguration configuration;
        configuration.settings.leadTime = Seconds{number};
        EXPECT_THROW(encode(configuration), EncodingError);
        configuration.settings = {};
        configuration.settings.snoozeInterval = Seconds{number};
        EXPECT_THROW(encode(configuration), EncodingError);
        EXPECT_THROW(encode(standup(instantAt(number))), EncodingError);
    }
}

TEST(Coding, WritesBrokenBytesAsReplacementCharactersThatCompareEqual)
{
    std::mt19937 random(4);
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes;
        for (auto count = random() % 8; count > 0; --count)
            bytes += static_cast<char>(random() % 2 == 0 ? 0x80 + random() % 0x80 : random() % 0x80);
        TinkraConfiguration configuration;
        configuration.settings.soundName = bytes;

        EXPECT_EQ(decode<TinkraConfiguration>(encode(configuration)), configuration);
    }
}

TEST(Coding, NamesTheKeyThatIsWrong)
{
    const auto messageOf = [](const std::string& document) -> std::string {
        try {
            decode<TinkraConfiguration>(document);
        } catch (const DecodingError& error) {
            return error.what();
        }
        return "no error";
    };

    EXPECT_EQ(messageOf(withSettings(R"({"leadTime":"x"})")), "settings.leadTime is of the wrong type");
    EXPECT_EQ(messageOf(withSettings(R"({"style":"x"})")), "settings.style is no alarm style");
    EXPECT_EQ(messageOf(R"({"settings":{},"monitoring":{}})"), "masterEnabled is missing");
    EXPECT_EQ(messageOf("[]"), "the document is not an object");
    EXPECT_EQ(messageOf("{"), "the document is not JSON");
}

TEST(Coding, GivesTheOtherRecordsBack)
{
    const CalendarRef calendar{"work", "Work", "Cloud", "#FF8000"};
    const auto meeting = standup(noon + Seconds{0.1});
    const auto alarm = alarmFor(meeting, Seconds{600});

    EXPECT_EQ(decode<CalendarRef>(encode(calendar)), calendar);
    EXPECT_EQ(decode<Meeting>(encode(meeting)), meeting);
    EXPECT_EQ(decode<ScheduledAlarm>(encode(alarm)), alarm);
}

TEST(Coding, NamesTheKeysOfTheOtherRecordsAsTheirFields)
{
    EXPECT_EQ(encode(CalendarRef{"a", "b", "c", "#FF8000"}),
        R"({"id":"a","title":"b","accountName":"c","colorHex":"#FF8000"})");
    EXPECT_EQ(encode(Meeting{"a", "b", "c", instantAt(1), instantAt(2.5), true}),
        R"({"id":"a","calendarID":"b","title":"c","start":1.0,"end":2.5,"isAllDay":true})");
    EXPECT_EQ(encode(ScheduledAlarm{"a", "b", "c", instantAt(1), instantAt(2), "d"}),
        R"({"id":"a","meetingID":"b","title":"c","fireDate":1.0,"meetingStart":2.0,"calendarID":"d"})");
}

TEST(Coding, LeavesAnAbsentColourOut)
{
    const CalendarRef colourless{"a", "b", "c", std::nullopt};

    EXPECT_EQ(encode(colourless), R"({"id":"a","title":"b","accountName":"c"})");
    EXPECT_EQ(decode<CalendarRef>(R"({"id":"a","title":"b","accountName":"c"})"), colourless);
    EXPECT_EQ(decode<CalendarRef>(R"({"id":"a","title":"b","accountName":"c","colorHex":null})"), colourless);
    EXPECT_THROW(
        decode<CalendarRef>(R"({"id":"a","title":"b","accountName":"c","colorHex":5})"), DecodingError);
}

TEST(Coding, NeedsEveryOtherKeyOfTheOtherRecords)
{
    const auto isEachKeyNeeded = [](std::string document, const auto& decodeOne) {
        // Each key in turn is renamed, and then its value becomes null.
        for (std::size_t at = document.find("\":"); at != std::string::npos;
             at = document.find("\":", at + 1)) {
            auto renamed = document;
            renamed.insert(at, "X");
            EXPECT_THROW(decodeOne(renamed), DecodingError) << renamed;

            auto nulled = document;
            const auto end = nulled.find_first_of(",}", at + 2);
            nulled.replace(at + 2, end - at - 2, "null");
            EXPECT_THROW(decodeOne(nulled), DecodingError) << nulled;
        }
    };
    isEachKeyNeeded(encode(CalendarRef{"a", "b", "c", std::nullopt}), decode<CalendarRef>);
    isEachKeyNeeded(encode(standup()), decode<Meeting>);
    isEachKeyNeeded(encode(alarmFor(standup())), decode<ScheduledAlarm>);
}

}
}
