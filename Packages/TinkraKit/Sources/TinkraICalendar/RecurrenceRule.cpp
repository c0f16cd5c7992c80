#include "TinkraICalendar/RecurrenceRule.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::local_days;
using std::chrono::weekday;

constexpr std::array<std::string_view, 7> kFrequencies{
    "SECONDLY", "MINUTELY", "HOURLY", "DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
constexpr std::array<std::string_view, 7> kWeekdays{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
constexpr std::size_t kLongestQuote = 60;
constexpr std::size_t kMostNotices = 10; // of one rule

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kSpace = " \t\r\n";
    const auto begin = text.find_first_not_of(kSpace);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

std::string uppered(std::string_view text)
{
    std::string result(text);
    for (char& c : result) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return result;
}

template <typename Visit> void forEachPiece(std::string_view text, char separator, Visit visit)
{
    while (true) {
        const auto end = text.find(separator);
        if (const auto piece = trimmed(text.substr(0, end)); !piece.empty())
            visit(piece);
        if (end == std::string_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

/// A whole number with an optional sign; one too large for the type is its limit.
std::optional<std::int64_t> numberIn(std::string_view text)
{
    if (text.starts_with('+') && text.size() > 1 && text[1] != '-')
        text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument)
        return std::nullopt;
    if (error == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<std::int64_t>;
        return text.starts_with('-') ? Limits::min() : Limits::max();
    }
    return value;
}

std::optional<weekday> weekdayIn(std::string_view text)
{
    const auto* const found = std::find(kWeekdays.begin(), kWeekdays.end(), text);
    if (found == kWeekdays.end())
        return std::nullopt;
    return weekday{static_cast<unsigned>(found - kWeekdays.begin())};
}

std::optional<WeekdayNumber> weekdayNumberIn(std::string_view text)
{
    if (text.size() < 2)
        return std::nullopt;
    const auto day = weekdayIn(text.substr(text.size() - 2));
    const auto digits = trimmed(text.substr(0, text.size() - 2));
    const auto number = digits.empty() ? std::optional<std::int64_t>(0) : numberIn(digits);
    if (!day || !number || *number < -53 || *number > 53 || (!digits.empty() && *number == 0))
        return std::nullopt;
    return WeekdayNumber{static_cast<std::int8_t>(*number), *day};
}

template <typename T> void makeSet(std::vector<T>& values)
{
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

void makeSet(std::vector<WeekdayNumber>& values)
{
    const auto key = [](const WeekdayNumber& day) { return std::pair(day.weekday.c_encoding(), day.number); };
    std::sort(values.begin(), values.end(), [&](auto& a, auto& b) { return key(a) < key(b); });
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

class Parser {
public:
    explicit Parser(std::vector<std::string>& notices)
        : m_notices(notices)
    {
    }

    std::optional<RecurrenceRule> parse(std::string_view value)
    {
        const auto upper = uppered(value);
        forEachPiece(upper, ';', [&](std::string_view part) { takePart(part); });
        if (!m_hasFrequency) {
            note("A recurrence rule without a known FREQ was left out: " + quoted(value));
            return std::nullopt;
        }
        dropMisplacedNumbers();
        noteUnusualParts();
        return std::move(m_rule);
    }

private:
    static std::string quoted(std::string_view text)
    {
        std::string result = "\"" + std::string(text.substr(0, kLongestQuote));
        return result + (text.size() > kLongestQuote ? "...\"" : "\"");
    }

    void note(std::string sentence)
    {
        if (m_noticeCount++ < kMostNotices)
            m_notices.push_back(std::move(sentence));
    }

    void noteBadValue(std::string_view part, std::string_view value)
    {
        note("In a recurrence rule, " + quoted(value) + " is no value of " + std::string(part)
            + " and was left out.");
    }

    void takePart(std::string_view part)
    {
        const auto equals = part.find('=');
        const auto name = trimmed(part.substr(0, equals));
        const auto value =
            equals == std::string_view::npos ? std::string_view() : trimmed(part.substr(equals + 1));
        if (std::find(m_seen.begin(), m_seen.end(), name) != m_seen.end()) {
            note("In a recurrence rule, only the first " + quoted(name) + " counts.");
            return;
        }
        if (takeKnownPart(name, value))
            m_seen.push_back(name);
        else
            note("A recurrence rule has an unknown part, which was left out: " + quoted(part));
    }

    bool takeKnownPart(std::string_view name, std::string_view value)
    {
        if (name == "FREQ")
            takeFrequency(value);
        else if (name == "INTERVAL")
            takeInterval(value);
        else if (name == "COUNT")
            takeCount(value);
        else if (name == "UNTIL")
            takeUntil(value);
        else if (name == "WKST")
            takeWeekStart(value);
        else if (name == "BYDAY")
            takeWeekdays(value);
        else if (name == "BYSECOND")
            takeSeconds(value);
        else if (name == "BYMINUTE")
            takeNumbers(name, value, m_rule.byMinute, 0, 59);
        else if (name == "BYHOUR")
            takeNumbers(name, value, m_rule.byHour, 0, 23);
        else if (name == "BYMONTHDAY")
            takeNumbers(name, value, m_rule.byMonthDay, -31, 31);
        else if (name == "BYYEARDAY")
            takeNumbers(name, value, m_rule.byYearDay, -366, 366);
        else if (name == "BYWEEKNO")
            takeNumbers(name, value, m_rule.byWeekNo, -53, 53);
        else if (name == "BYMONTH")
            takeNumbers(name, value, m_rule.byMonth, 1, 12);
        else if (name == "BYSETPOS")
            takeNumbers(name, value, m_rule.bySetPos, -366, 366);
        else if (name == "RSCALE" || name == "SKIP") // RFC 7529
            takeScale(name, value);
        else
            return false;
        return true;
    }

    void takeFrequency(std::string_view value)
    {
        const auto* const found = std::find(kFrequencies.begin(), kFrequencies.end(), value);
        m_hasFrequency = found != kFrequencies.end();
        if (m_hasFrequency)
            m_rule.frequency = static_cast<Frequency>(found - kFrequencies.begin());
    }

    void takeInterval(std::string_view value)
    {
        const auto number = numberIn(value);
        if (!number || *number < 1)
            note("In a recurrence rule, INTERVAL=" + quoted(value) + " is read as 1.");
        m_rule.interval = limited(number.value_or(1));
    }

    void takeCount(std::string_view value)
    {
        const auto number = numberIn(value);
        if (number && *number > 0)
            m_rule.count = limited(*number);
        else
            noteBadValue("COUNT", value); // programs write 0 for "no limit"
    }

    static std::uint32_t limited(std::int64_t number)
    {
        return static_cast<std::uint32_t>(
            std::clamp<std::int64_t>(number, 1, std::numeric_limits<std::uint32_t>::max()));
    }

    void takeUntil(std::string_view value)
    {
        const bool isDate = value.size() == 8;
        const bool isUtc = value.size() == 16 && value.back() == 'Z';
        if (!isDate && !isUtc && !(value.size() == 15))
            return noteBadValue("UNTIL", value);
        const auto digits = [&](std::size_t at, std::size_t count) -> int {
            int result = 0;
            for (const char c : value.substr(at, count))
                result = c >= '0' && c <= '9' && result >= 0 ? result * 10 + (c - '0') : -1;
            return result;
        };
        const int year = digits(0, 4);
        const int month = digits(4, 2);
        const int day = digits(6, 2);
        const int hour = isDate ? 0 : digits(9, 2);
        const int minute = isDate ? 0 : digits(11, 2);
        const int second = isDate ? 0 : digits(13, 2);
        if (year < 0 || month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 24 || minute < 0
            || minute > 59 || second < 0 || second > 60 || (!isDate && value[8] != 'T'))
            return noteBadValue("UNTIL", value);
        using namespace std::chrono;
        // A day that the month does not have is counted on, so that nothing before it is lost.
        const auto date = local_days{std::chrono::year{year} / month / 1} + days{day - 1};
        const LocalSeconds until = date + hours{hour} + minutes{minute} + seconds{std::min(second, 59)};
        m_rule.untilIsDate = isDate;
        if (isUtc)
            m_rule.until = UtcSeconds{until.time_since_epoch()};
        else
            m_rule.until = until;
    }

    void takeWeekStart(std::string_view value)
    {
        if (const auto day = weekdayIn(value))
            m_rule.weekStart = *day;
        else
            noteBadValue("WKST", value);
    }

    void takeWeekdays(std::string_view value)
    {
        forEachPiece(value, ',', [&](std::string_view piece) {
            if (const auto day = weekdayNumberIn(piece))
                m_rule.byDay.push_back(*day);
            else
                noteBadValue("BYDAY", piece);
        });
        makeSet(m_rule.byDay);
    }

    void takeSeconds(std::string_view value)
    {
        takeNumbers("BYSECOND", value, m_rule.bySecond, 0, 60);
        for (auto& second : m_rule.bySecond)
            second = std::min<std::uint8_t>(second, 59); // a leap second; our clocks have none
        makeSet(m_rule.bySecond);
    }

    template <typename T>
    void takeNumbers(
        std::string_view name, std::string_view value, std::vector<T>& numbers, int least, int most)
    {
        const bool countsFromEnd = least < 0;
        forEachPiece(value, ',', [&](std::string_view piece) {
            const auto number = numberIn(piece);
            if (!number || *number < least || *number > most || (countsFromEnd && *number == 0))
                noteBadValue(name, piece);
            else
                numbers.push_back(static_cast<T>(*number));
        });
        makeSet(numbers);
    }

    void takeScale(std::string_view name, std::string_view value)
    {
        const bool isUsual = name == "RSCALE" ? value == "GREGORIAN" || value == "GREGORY" : value == "OMIT";
        if (!isUsual)
            note("In a recurrence rule, " + std::string(name) + "=" + quoted(value)
                + " is not supported; the rule is read without it.");
    }

    /// "The second Tuesday" needs a month or a year to count in (RFC 5545, section 3.3.10).
    void dropMisplacedNumbers()
    {
        const bool countsInPeriod = m_rule.frequency == Frequency::Monthly
            || (m_rule.frequency == Frequency::Yearly && m_rule.byWeekNo.empty());
        if (countsInPeriod)
            return;
        bool hadNumbers = false;
        for (auto& day : m_rule.byDay) {
            hadNumbers |= day.number != 0;
            day.number = 0;
        }
        if (hadNumbers)
            note("In a recurrence rule, the numbers in BYDAY have no meaning here and were left out.");
        makeSet(m_rule.byDay);
    }

    /// Parts that RFC 5545 forbids with this FREQ; they limit the days, which is what their authors mean.
    void noteUnusualParts()
    {
        const auto frequency = m_rule.frequency;
        if (!m_rule.byWeekNo.empty() && frequency != Frequency::Yearly)
            note("In a recurrence rule, BYWEEKNO belongs to FREQ=YEARLY alone; here it limits the days.");
        if (!m_rule.byYearDay.empty() && frequency >= Frequency::Daily && frequency <= Frequency::Monthly)
            note("In a recurrence rule, BYYEARDAY does not belong to this FREQ; here it limits the days.");
        if (!m_rule.byMonthDay.empty() && frequency == Frequency::Weekly)
            note("In a recurrence rule, BYMONTHDAY does not belong to FREQ=WEEKLY; here it limits the days.");
    }

    std::vector<std::string>& m_notices;
    std::vector<std::string_view> m_seen; // names of parts, within the text that is being parsed
    RecurrenceRule m_rule;
    bool m_hasFrequency = false;
    std::size_t m_noticeCount = 0;
};

}

std::optional<RecurrenceRule> parseRecurrenceRule(std::string_view value, std::vector<std::string>& notices)
{
    return Parser(notices).parse(value);
}

}
