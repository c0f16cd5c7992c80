#include "TinkraCore/Models/Coding.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace Tinkra {
namespace {

const std::string plain = encode(monitoring({"work"}));
constexpr std::size_t hundredMegabytes = 100'000'000;

std::string repeated(std::string_view piece, std::size_t count)
{
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

/// A whole document with one more member.
std::string with(const std::string& name, const std::string& value)
{
    return R"({")" + name + R"(":)" + value + "," + plain.substr(1);
}

/// A whole document whose selection is this.
std::string selecting(const std::string& list)
{
    return R"({"masterEnabled":true,"settings":{},"monitoring":{"selectedCalendarIDs":)" + list + "}}";
}

bool isRefused(std::string_view document)
{
    try {
        decode<TinkraConfiguration>(document);
        return false;
    } catch (const DecodingError&) {
        return true;
    }
}

TEST(HostileDocument, IsRefusedWhenItIsNotJSON)
{
    for (const auto* document : {"", " ", "\n", "{", "}", "{]", "nul", "null", "true", "0", "\"text\"", "[]",
             "{}}", "{,}", "{\"a\"}", "{\"a\":}", "{\"a\":1,}", "{'a':1}", "/* */{}", "\xff\xfe", "\x00"})
        EXPECT_TRUE(isRefused(document)) << document;
    EXPECT_TRUE(isRefused(plain + "x"));
    EXPECT_TRUE(isRefused(plain + plain));
    EXPECT_TRUE(isRefused(plain + std::string(1, '\0')));
}

TEST(HostileDocument, IsRefusedWhenItIsCutShortAnywhere)
{
    for (std::size_t length = 0; length < plain.size(); ++length)
        EXPECT_TRUE(isRefused(plain.substr(0, length))) << length;
}

TEST(HostileDocument, NeverCrashesWithAnyByteChanged)
{
    std::mt19937 random(5);
    for (int round = 0; round < 20'000; ++round) {
        auto document = plain;
        for (auto changes = 1 + random() % 3; changes > 0; --changes)
            document[random() % document.size()] = static_cast<char>(random());
        try {
            const auto configuration = decode<TinkraConfiguration>(document);
            EXPECT_EQ(decode<TinkraConfiguration>(encode(configuration)), configuration);
        } catch (const DecodingError&) {
            // fine: no half of a record came back
        }
    }
}

TEST(HostileDocument, MayBeginWithAByteOrderMarkInUTF8)
{
    EXPECT_EQ(decode<TinkraConfiguration>("\xef\xbb\xbf" + plain), monitoring({"work"}));
    EXPECT_TRUE(isRefused("\xef\xbb" + plain));
    EXPECT_TRUE(isRefused("\xef\xbb\xbf\xef\xbb\xbf" + plain));
}

TEST(HostileDocument, IsRefusedInUTF16)
{
    std::string littleEndian = "\xff\xfe";
    std::string bigEndian = "\xfe\xff";
    for (const char character : plain) {
        littleEndian += {character, '\0'};
        bigEndian += {'\0', character};
    }

    EXPECT_TRUE(isRefused(littleEndian));
    EXPECT_TRUE(isRefused(bigEndian));
    EXPECT_TRUE(isRefused(littleEndian.substr(2)));
    EXPECT_TRUE(isRefused(bigEndian.substr(2)));
}

TEST(HostileDocument, IsRefusedForBrokenText)
{
    for (const auto* text : {R"("\ud800")", R"("\ud800x")", R"("\udc00")", R"("\ud800\ud800")", "\"\xff\"",
             "\"\xc0\x80\"", "\"\xed\xa0\x80\"", "\"\xf4\x90\x80\x80\"", "\"\n\"", R"("\x")", R"("\u12")"}) {
        EXPECT_TRUE(isRefused(selecting("[" + std::string(text) + "]"))) << text;
        EXPECT_TRUE(isRefused(with("unknown", text))) << text;
    }
}

TEST(HostileDocument, MayHoldEveryCharacterThatExists)
{
    const auto configuration =
        decode<TinkraConfiguration>(selecting(R"(["\ud83d\udd14","a\u0000b","\u202e","\ufffe"])"));

    EXPECT_EQ(configuration.monitoring.selectedCalendarIDs,
        (CalendarIDs{"\U0001f514", std::string("a\0b", 3), "\u202e", "\ufffe"}));
    EXPECT_EQ(decode<TinkraConfiguration>(encode(configuration)), configuration);
}

TEST(HostileDocument, IsRefusedForNumbersThatAreNone)
{
    for (const auto* number : {"NaN", "nan", "Infinity", "-Infinity", "inf", "1e999", "-1e999", "+1", "01",
             "1.", ".5", "0x10", "1e", "--1", "1_000"})
        EXPECT_TRUE(isRefused(R"({"masterEnabled":true,"settings":{"leadTime":)" + std::string(number)
            + R"(},"monitoring":{"selectedCalendarIDs":[]}})"))
            << number;
}

TEST(HostileDocument, MayNestAMillionListsWhereNobodyLooks)
{
    const auto deep = repeated("[", 1'000'000) + repeated("]", 1'000'000);

    EXPECT_EQ(decode<TinkraConfiguration>(with("unknown", deep)), monitoring({"work"}));
}

TEST(HostileDocument, MayNestAMillionObjectsWhereNobodyLooks)
{
    const auto deep = repeated(R"({"settings":)", 1'000'000) + "{}" + repeated("}", 1'000'000);

    EXPECT_EQ(decode<TinkraConfiguration>(with("unknown", deep)), monitoring({"work"}));
}

TEST(HostileDocument, IsRefusedWithAMillionListsWhereTextIsExpected)
{
    const auto deep = repeated("[", 1'000'000) + repeated("]", 1'000'000);

    EXPECT_TRUE(isRefused(selecting(deep)));
    EXPECT_TRUE(isRefused(deep));
    EXPECT_TRUE(isRefused(repeated("[", 1'000'000)));
}

TEST(HostileDocument, IsRefusedWithAMillionObjectsWhereNumbersAreExpected)
{
    const auto deep = repeated(R"({"leadTime":)", 1'000'000) + "1" + repeated("}", 1'000'000);

    EXPECT_TRUE(isRefused(
        R"({"masterEnabled":true,"settings":)" + deep + R"(,"monitoring":{"selectedCalendarIDs":[]}})"));
    EXPECT_TRUE(isRefused(deep));
    EXPECT_TRUE(isRefused(repeated(R"({"settings":)", 1'000'000)));
}

TEST(HostileDocument, IsRefusedForAMillionObjectsInTheSelection)
{
    EXPECT_TRUE(isRefused(selecting("[" + repeated("{},", 1'000'000) + "{}]")));
}

TEST(HostileDocument, MayRepeatAKeyAHundredThousandTimes)
{
    const auto document = "{" + repeated(R"("masterEnabled":false,)", 100'000) + plain.substr(1);

    EXPECT_EQ(decode<TinkraConfiguration>(document), monitoring({"work"}));
}

TEST(HostileDocument, MayHoldAHundredMegabytesOfTextWhereNobodyLooks)
{
    const auto document = with("unknown", "\"" + std::string(hundredMegabytes, 'x') + "\"");

    EXPECT_EQ(decode<TinkraConfiguration>(document), monitoring({"work"}));
}

TEST(HostileDocument, MaySelectOneCalendarAMillionTimes)
{
    const std::string_view piece = R"("work",)";
    const auto document = selecting("[" + repeated(piece, 1'000'000) + R"("work"])");

    EXPECT_EQ(decode<TinkraConfiguration>(document), monitoring({"work"}));
}

TEST(HostileDocument, IsRefusedAfterAHundredMegabytesOfSpace)
{
    EXPECT_TRUE(isRefused(std::string(hundredMegabytes, ' ')));
}

}
}
