// Our expansion beside libical's, over random rules in floating time. Where they differ, one of the named
// reasons below must hold; they are explained in docs/decisions/0005-where-libical-expands-otherwise.md.

#include "LibicalChild.h"
#include "RuleOracle.h"
#include "RuleTestSupport.h"

#include <algorithm>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace Tinkra::ICalendar::Test {

namespace {

constexpr std::size_t kCompared = 30;
constexpr std::array<const char*, 7> kWeekdays{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

struct Case {
    RecurrenceRule rule;
    std::string text;
    std::string start;
};

/// The rule with its lists in rising order, which libical needs.
std::string sortedText(const RecurrenceRule& rule)
{
    constexpr std::array<const char*, 7> kFrequencies{
        "SECONDLY", "MINUTELY", "HOURLY", "DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
    std::ostringstream text;
    text << "FREQ=" << kFrequencies.at(static_cast<std::size_t>(rule.frequency))
         << ";INTERVAL=" << rule.interval;
    const auto addList = [&](const char* name, const auto& values, const auto& write) {
        const char* separator = "=";
        for (const auto& value : values) {
            text << (*separator == '=' ? std::string(";") + name : "") << separator;
            write(value);
            separator = ",";
        }
    };
    const auto number = [&](int value) { text << value; };
    addList("BYMONTH", rule.byMonth, number);
    addList("BYWEEKNO", rule.byWeekNo, number);
    addList("BYYEARDAY", rule.byYearDay, number);
    addList("BYMONTHDAY", rule.byMonthDay, number);
    addList("BYDAY", rule.byDay, [&](const WeekdayNumber& day) {
        text << (day.number == 0 ? "" : std::to_string(day.number)) << kWeekdays.at(day.weekday.c_encoding());
    });
    addList("BYHOUR", rule.byHour, number);
    addList("BYMINUTE", rule.byMinute, number);
    addList("BYSECOND", rule.bySecond, number);
    addList("BYSETPOS", rule.bySetPos, number);
    text << ";WKST=" << kWeekdays.at(rule.weekStart.c_encoding());
    return text.str();
}

Case caseOf(const RandomSeries& series)
{
    Case result{.rule = rule(series.rule), .text = "", .start = written(series.start)};
    result.rule.count.reset();
    result.rule.until.reset();
    result.text = sortedText(result.rule);
    return result;
}

bool hasNegative(const auto& list)
{
    return std::any_of(list.begin(), list.end(), [](int value) { return value < 0; });
}

bool isFine(const Case& each)
{
    return each.rule.frequency < Frequency::Daily;
}

bool hasDayOrTimeParts(const RecurrenceRule& rule)
{
    return !rule.byMonth.empty() || !rule.byYearDay.empty() || !rule.byMonthDay.empty() || !rule.byDay.empty()
        || !rule.byHour.empty() || !rule.byMinute.empty() || !rule.bySecond.empty();
}

/// Its INTERVAL is a 16-bit number.
bool intervalIsBeyond16Bits(const Case& each)
{
    return each.rule.interval > 32'767;
}

/// It counts BYSETPOS from DTSTART on, and not at all in rules finer than MONTHLY; of several times a day it
/// counts only some.
bool positionsAreCountedOtherwise(const Case& each)
{
    return !each.rule.bySetPos.empty();
}

/// Where the rule limits, it compares a day with the numbers as they stand, and -1 is no day's number.
bool negativeNumbersLimitNothing(const Case& each)
{
    return each.rule.frequency <= Frequency::Daily
        && (hasNegative(each.rule.byMonthDay) || hasNegative(each.rule.byYearDay));
}

bool negativeWeeksAreMisplaced(const Case& each)
{
    return hasNegative(each.rule.byWeekNo);
}

/// Fine rules lose their phase when a part moves them on, and the rest of a period that DTSTART does not fit.
bool finePhaseIsLost(const Case& each)
{
    return isFine(each) && hasDayOrTimeParts(each.rule);
}

/// Its weeks end with the year, and a week 53 that a year does not have is the first of the next.
bool weeksEndWithTheYear(const Case& each)
{
    return std::any_of(
        each.rule.byWeekNo.begin(), each.rule.byWeekNo.end(), [](int week) { return week < 2 || week > 51; });
}

/// The rest of DTSTART's week is lost when DTSTART itself does not fit.
bool firstWeekIsLost(const Case& each)
{
    const std::chrono::weekday startDay{std::chrono::floor<std::chrono::days>(local(each.start))};
    return each.rule.frequency == Frequency::Weekly && each.rule.interval > 1
        && std::none_of(each.rule.byDay.begin(), each.rule.byDay.end(),
            [&](const WeekdayNumber& day) { return day.weekday == startDay; });
}

struct Reason {
    const char* name;
    std::function<bool(const Case&)> holds;
};

const std::vector<Reason>& reasons()
{
    static const std::vector<Reason> all{{"interval is beyond 16 bits", intervalIsBeyond16Bits},
        {"positions are counted otherwise", positionsAreCountedOtherwise},
        {"negative numbers limit nothing", negativeNumbersLimitNothing},
        {"negative weeks are misplaced", negativeWeeksAreMisplaced},
        {"weeks end with the year", weeksEndWithTheYear}, {"fine phase is lost", finePhaseIsLost},
        {"first week is lost", firstWeekIsLost}};
    return all;
}

/// True when libical's times are ours, but for a DTSTART that does not fit the rule, which it leaves out.
bool areAlike(std::vector<std::string> ours, const std::vector<std::string>& theirs)
{
    if (!ours.empty() && (theirs.empty() || theirs.front() != ours.front()))
        ours.erase(ours.begin());
    ours.resize(std::min(ours.size(), kCompared));
    return ours == theirs;
}

using Tally = std::map<std::string, int>;

void compare(const Case& each, Tally& tally)
{
    const auto answer = askLibical(each.start, each.text, kCompared);
    if (answer.kind != LibicalAnswer::Kind::Gave) {
        constexpr std::array<const char*, 4> kNames{
            "", "libical refused", "libical took too long", "libical crashed"};
        ++tally[kNames.at(static_cast<std::size_t>(answer.kind))];
        return;
    }
    const auto ours =
        localTimes({.start = each.start, .rule = each.text, .zone = "UTC", .atMost = kCompared + 1});
    if (areAlike(ours, answer.times)) {
        ++tally["same"];
        return;
    }
    for (const auto& reason : reasons()) {
        if (reason.holds(each)) {
            ++tally[reason.name];
            return;
        }
    }
    ADD_FAILURE() << each.text << " from " << each.start << "\nours:    " << testing::PrintToString(ours)
                  << "\nlibical: " << testing::PrintToString(answer.times);
}

void print(const Tally& tally)
{
    for (const auto& [name, count] : tally)
        std::printf("%6d %s\n", count, name.c_str());
}

/// Rules such as people make them: what the dialogs of calendar programs offer, and a little more.
Case ordinaryCase(std::mt19937_64& random)
{
    const auto number = [&](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    const auto oneIn = [&](int n) { return number(1, n) == 1; };
    const auto list = [&](int least, int most, int count) {
        std::string text = std::to_string(number(least, most));
        for (int i = number(1, count); i > 1; --i)
            text += "," + std::to_string(number(least, most));
        return text;
    };
    const auto day = [&] { return std::string(kWeekdays.at(static_cast<std::size_t>(number(0, 6)))); };
    const auto numberedDay = [&] { return std::to_string(oneIn(3) ? -number(1, 4) : number(1, 4)) + day(); };
    const auto days = [&] {
        auto text = day();
        for (int i = number(1, 5); i > 1; --i)
            text += "," + day();
        return text;
    };

    std::string text;
    switch (number(0, 10)) {
    case 0:
        text = "FREQ=DAILY";
        break;
    case 1:
        text = "FREQ=DAILY;BYDAY=" + days() + (oneIn(2) ? ";BYMONTH=" + list(1, 12, 5) : "");
        break;
    case 2:
        text = "FREQ=WEEKLY;BYDAY=" + days();
        break;
    case 3:
        text = "FREQ=MONTHLY;BYMONTHDAY=" + list(1, 31, 4);
        break;
    case 4:
        text = "FREQ=MONTHLY;BYDAY=" + numberedDay() + (oneIn(2) ? "," + numberedDay() : "");
        break;
    case 5:
        text = "FREQ=MONTHLY;BYMONTHDAY=" + std::to_string(-number(1, 28));
        break;
    case 6:
        text = "FREQ=YEARLY" + (oneIn(2) ? ";BYMONTH=" + list(1, 12, 3) : std::string());
        break;
    case 7:
        text = "FREQ=YEARLY;BYMONTH=" + list(1, 12, 3) + ";BYDAY=" + numberedDay();
        break;
    case 8:
        text = "FREQ=YEARLY;BYYEARDAY=" + list(1, 366, 4);
        break;
    case 9:
        text = "FREQ=MONTHLY;BYDAY=" + days()
            + ";BYSETPOS=" + std::to_string(oneIn(2) ? number(1, 3) : -number(1, 3));
        break;
    default:
        text = "FREQ=YEARLY;BYWEEKNO=" + list(1, 53, 3) + ";BYDAY=" + days();
    }
    if (oneIn(2))
        text += ";INTERVAL=" + std::to_string(number(2, 4));
    const bool hasPositions = text.find("BYSETPOS") != std::string::npos;
    if (!hasPositions && oneIn(4))
        text += ";BYHOUR=" + list(0, 23, 3);

    const auto start = std::chrono::local_days{std::chrono::year{number(1975, 2040)} / number(1, 12) / 1}
        + std::chrono::days{hasPositions ? 0 : number(0, 30)} + std::chrono::seconds{number(0, 86'399)};
    const auto parsed = rule(text);
    return {.rule = parsed, .text = sortedText(parsed), .start = written(start)};
}

TEST(Libical, GivesTheSameForOrdinaryRules)
{
    Tally tally;
    for (std::uint64_t seed = 1; seed <= 1000; ++seed) {
        std::mt19937_64 random(seed);
        compare(ordinaryCase(random), tally);
    }
    print(tally);
    EXPECT_GT(tally["same"], 900);
}

TEST(Libical, DiffersForNamedReasonsOnly)
{
    Tally tally;
    for (std::uint64_t seed = 1; seed <= 500; ++seed) {
        std::mt19937_64 random(seed);
        compare(caseOf(randomSeries(random)), tally);
    }
    print(tally);
    EXPECT_GT(tally["same"], 100);
}

// What stands in the decision about an own reader.
TEST(Libical, CrashesOrHangsOnRulesThatOursEnds)
{
    const auto crash = askLibical("20110101", "FREQ=YEARLY;BYWEEKNO=-53,-2,-1;WKST=WE", 5);
    EXPECT_NE(crash.kind, LibicalAnswer::Kind::Gave);
    EXPECT_EQ(
        localTimes({.start = "20110101", .rule = "FREQ=YEARLY;BYWEEKNO=-53,-2,-1;WKST=WE", .atMost = 3}),
        daysAt("20110101", "2011 Jan 1 Dec 24,31"));

    const auto hang = askLibical("20240101T000000", "FREQ=MINUTELY;BYDAY=1TU", 5);
    EXPECT_EQ(hang.kind, LibicalAnswer::Kind::TookTooLong);
}

}

}
