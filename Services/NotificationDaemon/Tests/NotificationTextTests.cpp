#include "NotificationDaemon/Log.h"
#include "NotificationDaemon/NotificationText.h"

#include <gtest/gtest.h>

namespace Tinkra::NotificationDaemon {
namespace {

constexpr std::size_t kPlenty = 1000;

TEST(NotificationText, EscapesWhatAServerWouldReadAsMarkup)
{
    EXPECT_EQ(escapeMarkup("<b>bold</b>"), "&lt;b&gt;bold&lt;/b&gt;");
    EXPECT_EQ(escapeMarkup(R"(<a href="x">)"), "&lt;a href=&quot;x&quot;&gt;");
    EXPECT_EQ(escapeMarkup("<img src='x'>"), "&lt;img src=&#39;x&#39;&gt;");
    EXPECT_EQ(escapeMarkup("&amp; < R&D"), "&amp;amp; &lt; R&amp;D");
}

TEST(NotificationText, IsOneLine)
{
    EXPECT_EQ(oneLine("a\nb\r\nc\td\x1b[31me\x7f"
                      "f",
                  kPlenty),
        "a b  c d [31me f");
    EXPECT_EQ(oneLine("next\xc2\x85line\xe2\x80\xa8sep\xe2\x80\xa9para", kPlenty), "next line sep para");
    EXPECT_EQ(oneLine(std::string_view("nul\0here", 8), kPlenty), "nul here");
}

TEST(NotificationText, DropsBidirectionalControlsAndInvisibleCharacters)
{
    // override, embeddings, isolates, marks; zero-width space, word joiner, byte order mark, soft hyphen
    EXPECT_EQ(oneLine("a\xe2\x80\xae"
                      "b\xe2\x80\xaa\xe2\x81\xa6"
                      "c\xe2\x81\xa9\xe2\x80\x8e\xd8\x9c",
                  kPlenty),
        "abc");
    EXPECT_EQ(oneLine("a\xe2\x80\x8b"
                      "b\xe2\x81\xa0"
                      "c\xef\xbb\xbf"
                      "d\xc2\xad"
                      "e",
                  kPlenty),
        "abcde");
}

TEST(NotificationText, KeepsRightToLeftLettersAndJoinedEmoji)
{
    const std::string hebrew = "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d";
    const std::string family = "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x91\xa7";
    EXPECT_EQ(oneLine(hebrew, kPlenty), hebrew);
    EXPECT_EQ(oneLine(family, kPlenty), family);
}

TEST(NotificationText, LetsCombiningMarksNotPileUp)
{
    std::string stack = "e";
    std::string eight = "e";
    for (int i = 0; i < 500; ++i)
        stack += "\xcc\x81";
    for (int i = 0; i < 8; ++i)
        eight += "\xcc\x81";

    EXPECT_EQ(oneLine(stack + "x", kPlenty), eight + "x");
}

TEST(NotificationText, IsValidUtf8WhateverItWas)
{
    const std::string replaced = "\xef\xbf\xbd";
    EXPECT_EQ(oneLine("a\xff"
                      "b",
                  kPlenty),
        "a" + replaced + "b");
    EXPECT_EQ(oneLine("\xc3", kPlenty), replaced);
    EXPECT_EQ(oneLine("\xc0\xaf", kPlenty), replaced + replaced);
    EXPECT_EQ(oneLine("\xed\xa0\x80", kPlenty), replaced);
    EXPECT_EQ(oneLine("\xf5\x80\x80\x80", kPlenty), replaced + replaced + replaced + replaced);
}

TEST(NotificationText, IsCutWithAnEllipsis)
{
    EXPECT_EQ(oneLine("abcdef", 6), "abcdef");
    EXPECT_EQ(oneLine("abcdefg", 6), "abcde\xe2\x80\xa6");
}

TEST(NotificationText, IsNeverCutInsideAGrapheme)
{
    const std::string ellipsis = "\xe2\x80\xa6";
    const std::string eAcute = "e\xcc\x81";
    EXPECT_EQ(oneLine("abc" + eAcute + "def", 5), "abc" + ellipsis);

    const std::string family = "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x91\xa7\xe2\x80\x8d\xf0\x9f\x91\xa6";
    EXPECT_EQ(oneLine("abc" + family + "def", 7), "abc" + ellipsis);

    const std::string wave = "\xf0\x9f\x91\x8b\xf0\x9f\x8f\xbd"; // with a skin tone
    EXPECT_EQ(oneLine("abc" + wave + "def", 5), "abc" + ellipsis);

    const std::string flag = "\xf0\x9f\x87\xa8\xf0\x9f\x87\xad";
    EXPECT_EQ(oneLine("ab" + flag + flag + flag, 6), "ab" + flag + ellipsis);

    const std::string heart = "\xe2\x9d\xa4\xef\xb8\x8f"; // with a variation selector
    EXPECT_EQ(oneLine("abc" + heart + "def", 5), "abc" + ellipsis);
}

TEST(NotificationText, CutsAMegabyteAndTenThousandEmoji)
{
    EXPECT_EQ(oneLine(std::string(1 << 20, 'x'), 200).size(), 199 + 3U);
    std::string emoji;
    for (int i = 0; i < 10000; ++i)
        emoji += "\xf0\x9f\x98\x80";
    EXPECT_EQ(oneLine(emoji, 200).size(), 199 * 4 + 3U);
}

TEST(NotificationText, IsCutAnywhereRatherThanLost)
{
    std::string joined;
    for (int i = 0; i < 1000; ++i)
        joined += "\xe2\x80\x8d";
    EXPECT_FALSE(oneLine(joined, 100).empty());
}

TEST(LogText, IsOneLineOfPlainCharacters)
{
    EXPECT_EQ(inQuotes("a#1"), "\"a#1\"");
    EXPECT_EQ(inQuotes("x\n\x1b[0m\xc3\xa9\\"), R"("x\x0a\x1b[0m\xc3\xa9\x5c")");
    EXPECT_EQ(inQuotes(std::string(1000, 'x')), "\"" + std::string(200, 'x') + "\"...");
}

}
}
