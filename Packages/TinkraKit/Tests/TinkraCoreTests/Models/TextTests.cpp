#include "TinkraCore/Models/Text.h"

#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

namespace Tinkra {
namespace {

const Text composed = "caf\u00e9";
const Text decomposed = "cafe\u0301";

std::size_t hashOf(const Text& text)
{
    return std::hash<Text>{}(text);
}

TEST(Text, IsEqualInComposedAndDecomposedForm)
{
    EXPECT_EQ(composed, decomposed);
    EXPECT_EQ(composed <=> decomposed, std::strong_ordering::equal);
    EXPECT_NE(composed.utf8(), decomposed.utf8());
}

TEST(Text, HashesEquallyInComposedAndDecomposedForm)
{
    EXPECT_EQ(hashOf(composed), hashOf(decomposed));
    EXPECT_TRUE((std::unordered_set<Text>{composed}.contains(decomposed)));
}

TEST(Text, TreatsMarksInEitherOrderAsOneText)
{
    const Text dotBelowFirst = "q\u0323\u0307";
    const Text dotAboveFirst = "q\u0307\u0323";

    EXPECT_EQ(dotBelowFirst, dotAboveFirst);
    EXPECT_EQ(hashOf(dotBelowFirst), hashOf(dotAboveFirst));
}

TEST(Text, ComposesHangulSyllables)
{
    EXPECT_EQ(Text("\ud55c"), Text("\u1112\u1161\u11ab"));
}

TEST(Text, KnowsThatACharacterBeyondASCIIMayBeCanonicallyASCII)
{
    const Text kelvin = "\u212a";
    const Text greekQuestionMark = "\u037e";

    EXPECT_EQ(kelvin, Text("K"));
    EXPECT_EQ(hashOf(kelvin), hashOf(Text("K")));
    EXPECT_EQ(greekQuestionMark, Text(";"));
}

TEST(Text, KeepsCompatibilityFormsApart)
{
    EXPECT_NE(Text("\ufb01"), Text("fi")); // a ligature is another text
    EXPECT_NE(Text("\u2460"), Text("1"));
}

TEST(Text, IsCaseSensitiveAndKnowsNoLocale)
{
    EXPECT_NE(Text("work"), Text("Work"));
    EXPECT_LT(Text("Zeta"), Text("alpha"));
}

TEST(Text, SortsByScalarValuesOfTheCanonicalForm)
{
    EXPECT_LT(composed, Text("caff")); // as "cafe" and a mark, not as the letter U+00E9
    EXPECT_LT(Text("cafe"), composed);
    EXPECT_LT(Text("a"), Text("aa"));
    EXPECT_LT(Text(""), Text("a"));
}

TEST(Text, SortsCharactersBeyondTheBasicPlaneAfterAllOthers)
{
    const Text privateUse = "\ue000";
    const Text replacement = "\ufffd";
    const Text emoji = "\U0001f600"; // as UTF-16 it would begin with 0xD83D and come first

    EXPECT_LT(privateUse, emoji);
    EXPECT_LT(replacement, emoji);
}

TEST(Text, KeepsItsBytesAsTheyWereGiven)
{
    EXPECT_EQ(decomposed.utf8(), "cafe\u0301");
    EXPECT_EQ(Text(std::string("a\xff"
                               "b"))
                  .utf8(),
        "a\xff"
        "b");
}

TEST(Text, ComparesBytesThatAreNotUTF8AsReplacementCharacters)
{
    const Text broken = std::string("a\xff"
                                    "b");

    EXPECT_EQ(broken,
        Text("a\ufffd"
             "b"));
    EXPECT_EQ(hashOf(broken),
        hashOf(Text("a\ufffd"
                    "b")));
    EXPECT_NE(broken, Text("ab"));
}

TEST(Text, HoldsNulCharacters)
{
    const Text left = std::string("a\0b", 3);
    const Text right = std::string("a\0c", 3);

    EXPECT_NE(left, right);
    EXPECT_LT(left, right);
    EXPECT_NE(left, Text("a"));
}

TEST(Text, IsMadeOfAnythingThatHoldsUTF8)
{
    const std::string string = "work";
    const std::string_view view = string;

    EXPECT_EQ(Text("work"), Text(string));
    EXPECT_EQ(Text(view), Text(string));
    EXPECT_TRUE(Text().isEmpty());
    EXPECT_EQ(Text(), Text(""));
}

/// Short texts over an alphabet of troublemakers: marks, Hangul, surrogate pairs, broken bytes.
std::string randomBytes(std::mt19937& random)
{
    static const std::vector<std::string> pieces{"a", "K", "\u212a", "\u00e9", "e\u0301", "\u0301", "\u0323",
        "\u0307", "\u1112", "\u1161", "\u11ab", "\ud55c", "\U0001d15e", "\ue000", "\xc3", "\xff",
        "\xed\xa0\x80", "\xf4\x90", std::string(1, '\0')};
    std::string bytes;
    for (auto count = random() % 6; count > 0; --count)
        bytes += pieces[random() % pieces.size()];
    return bytes;
}

TEST(Text, OrdersEqualityAndHashAgreeWithEachOtherForRandomBytes)
{
    std::mt19937 random(1);
    for (int round = 0; round < 20'000; ++round) {
        const Text left = randomBytes(random);
        const Text right = randomBytes(random);

        EXPECT_EQ(left == right, std::is_eq(left <=> right));
        EXPECT_EQ((left < right), (right > left));
        if (left == right) {
            EXPECT_EQ(hashOf(left), hashOf(right));
        }
    }
}

TEST(Text, SortsRandomBytesConsistently)
{
    std::mt19937 random(2);
    std::vector<Text> texts;
    for (int i = 0; i < 500; ++i)
        texts.emplace_back(randomBytes(random));

    std::ranges::sort(texts);

    for (std::size_t i = 0; i + 1 < texts.size(); ++i)
        EXPECT_LE(texts[i], texts[i + 1]);
}

}
}
