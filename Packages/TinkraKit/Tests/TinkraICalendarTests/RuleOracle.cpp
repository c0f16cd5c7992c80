#include "RuleOracle.h"

#include <algorithm>
#include <array>
#include <map>

namespace Tinkra::ICalendar::Test {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::local_days;
using std::chrono::seconds;
using std::chrono::weekday;
using std::chrono::year;
using std::chrono::year_month_day;

using Day = local_days;

template <typename List, typename T> bool contains(const List& list, T value)
{
    return std::any_of(list.begin(), list.end(), [&](auto each) { return static_cast<T>(each) == value; });
}

int dayOfMonth(Day day)
{
    return static_cast<int>(static_cast<unsigned>(year_month_day{day}.day()));
}

int monthOf(Day day)
{
    return static_cast<int>(static_cast<unsigned>(year_month_day{day}.month()));
}

int yearOf(Day day)
{
    return static_cast<int>(year_month_day{day}.year());
}

/// The place of a day among those, `stride` apart, that share its period: from the beginning 1 and up, and
/// from the end -1 and down.
struct Places {
    int fromBegin = 0;
    int fromEnd = 0;
};

template <typename InSamePeriod> Places placesOf(Day day, int stride, InSamePeriod inSamePeriod)
{
    Places places;
    for (Day other = day; inSamePeriod(other); other -= days{stride})
        ++places.fromBegin;
    for (Day other = day; inSamePeriod(other); other += days{stride})
        --places.fromEnd;
    return places;
}

template <typename List> bool names(const List& list, Places places)
{
    return contains(list, places.fromBegin) || contains(list, places.fromEnd);
}

Day weekBegin(Day day, weekday weekStart)
{
    while (weekday{day} != weekStart)
        day -= days{1};
    return day;
}

/// A week belongs to the year of its fourth day.
Day fourthDay(Day day, weekday weekStart)
{
    return weekBegin(day, weekStart) + days{3};
}

bool fitsWeekNo(const RecurrenceRule& rule, Day day)
{
    const auto fourth = fourthDay(day, rule.weekStart);
    const auto ofYear = yearOf(fourth);
    return names(rule.byWeekNo, placesOf(fourth, 7, [&](Day other) { return yearOf(other) == ofYear; }));
}

bool fitsYearDay(const RecurrenceRule& rule, Day day)
{
    const auto ofYear = yearOf(day);
    return names(rule.byYearDay, placesOf(day, 1, [&](Day other) { return yearOf(other) == ofYear; }));
}

bool fitsMonthDay(const RecurrenceRule& rule, Day day)
{
    const auto ofMonth = monthOf(day);
    return names(rule.byMonthDay, placesOf(day, 1, [&](Day other) { return monthOf(other) == ofMonth; }));
}

bool fitsWeekday(const RecurrenceRule& rule, Day day)
{
    const bool inMonth = rule.frequency == Frequency::Monthly || !rule.byMonth.empty();
    const auto places = placesOf(day, 7, [&](Day other) {
        return yearOf(other) == yearOf(day) && (!inMonth || monthOf(other) == monthOf(day));
    });
    return std::any_of(rule.byDay.begin(), rule.byDay.end(), [&](const WeekdayNumber& wanted) {
        return wanted.weekday == weekday{day}
        && (wanted.number == 0 || wanted.number == places.fromBegin || wanted.number == places.fromEnd);
    });
}

bool fitsDay(const RecurrenceRule& rule, Day day, Day start)
{
    if (!rule.byMonth.empty() && !contains(rule.byMonth, monthOf(day)))
        return false;
    if (!rule.byMonthDay.empty() && !fitsMonthDay(rule, day))
        return false;
    if (!rule.byDay.empty() && !fitsWeekday(rule, day))
        return false;
    if (!rule.byWeekNo.empty() && !fitsWeekNo(rule, day))
        return false;
    if (!rule.byYearDay.empty() && !fitsYearDay(rule, day))
        return false;
    if (rule.frequency < Frequency::Weekly)
        return true;

    const bool saysDay = !rule.byYearDay.empty() || !rule.byMonthDay.empty() || !rule.byDay.empty();
    if (rule.frequency == Frequency::Weekly || !rule.byWeekNo.empty())
        return saysDay || weekday{day} == weekday{start};
    if (!saysDay && dayOfMonth(day) != dayOfMonth(start))
        return false;
    const bool monthIsOpen = rule.frequency == Frequency::Yearly && rule.byMonth.empty()
        && (!saysDay || (!rule.byMonthDay.empty() && rule.byYearDay.empty()));
    return !monthIsOpen || monthOf(day) == monthOf(start);
}

/// The number of the period that the day is in.
std::int64_t periodOf(const RecurrenceRule& rule, Day day)
{
    switch (rule.frequency) {
    case Frequency::Weekly:
        return weekBegin(day, rule.weekStart).time_since_epoch().count()
            / 7; // all on the same weekday, after 1970
    case Frequency::Monthly:
        return yearOf(day) * 12 + monthOf(day);
    case Frequency::Yearly:
        return yearOf(rule.byWeekNo.empty() ? day : fourthDay(day, rule.weekStart));
    default:
        return day.time_since_epoch().count();
    }
}

std::vector<int> listOr(const std::vector<std::uint8_t>& list, std::int64_t otherwise)
{
    return list.empty() ? std::vector<int>{static_cast<int>(otherwise)}
                        : std::vector<int>(list.begin(), list.end());
}

template <typename T> std::vector<T> chosen(const RecurrenceRule& rule, const std::vector<T>& set)
{
    if (rule.bySetPos.empty())
        return set;
    std::vector<T> result;
    const auto size = static_cast<int>(set.size());
    for (int i = 0; i < size; ++i) {
        if (contains(rule.bySetPos, i + 1) || contains(rule.bySetPos, i - size))
            result.push_back(set[static_cast<std::size_t>(i)]);
    }
    return result;
}

std::vector<LocalSeconds> calendarInstances(const RecurrenceRule& rule, const SeriesStart& start, Day lastDay)
{
    const auto startDay = floor<days>(start.local);
    const auto time = (start.local - startDay).count();
    const auto firstPeriod = periodOf(rule, startDay);
    std::map<std::int64_t, std::vector<LocalSeconds>> sets;
    for (Day day = startDay - days{370}; day <= lastDay + days{370}; day += days{1}) {
        const auto period = periodOf(rule, day);
        if (period < firstPeriod || (period - firstPeriod) % rule.interval != 0
            || !fitsDay(rule, day, startDay))
            continue;
        for (const int hour : start.isDate ? std::vector<int>{0} : listOr(rule.byHour, time / 3600)) {
            for (const int minute :
                start.isDate ? std::vector<int>{0} : listOr(rule.byMinute, time / 60 % 60)) {
                for (const int second : start.isDate ? std::vector<int>{0} : listOr(rule.bySecond, time % 60))
                    sets[period].push_back(day + seconds{(hour * 60 + minute) * 60 + second});
            }
        }
    }
    std::vector<LocalSeconds> result;
    for (const auto& [period, set] : sets) {
        const auto part = chosen(rule, set);
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

bool fitsList(const std::vector<std::uint8_t>& list, std::int64_t value)
{
    return list.empty() || contains(list, value);
}

std::vector<RuleInstance> elapsedInstances(
    const RecurrenceRule& rule, const SeriesStart& start, UtcSeconds until)
{
    const Zone& zone = start.isDate ? *utcZone() : *start.zone;
    const std::array<std::int64_t, 3> units{1, 60, 3600};
    const auto unit = units.at(static_cast<std::size_t>(rule.frequency));
    std::vector<RuleInstance> result;
    Day judgedDay = Day::min();
    bool dayFits = false;
    for (auto moment = zone.toUtc(start.local); moment <= until + days{2};
         moment += seconds{unit * rule.interval}) {
        const auto local = zone.toLocal(moment);
        const auto day = floor<days>(local);
        const auto time = (local - day).count();
        if (start.isDate && time != 0)
            continue;
        if (day != judgedDay) {
            judgedDay = day;
            dayFits = fitsDay(rule, day, floor<days>(start.local));
        }
        if (!dayFits)
            continue;
        if (start.isDate) {
            if (rule.bySetPos.empty() || contains(rule.bySetPos, 1) || contains(rule.bySetPos, -1))
                result.push_back({start.zone->toUtc(local), local});
            continue;
        }
        if (!fitsList(rule.byHour, time / 3600))
            continue;
        if (unit <= 60 && !fitsList(rule.byMinute, time / 60 % 60))
            continue;
        if (unit == 1 && !fitsList(rule.bySecond, time % 60))
            continue;
        std::vector<RuleInstance> set;
        for (const int minute : unit == 3600 ? listOr(rule.byMinute, time / 60 % 60)
                                             : std::vector<int>{static_cast<int>(time / 60 % 60)}) {
            for (const int second : unit >= 60 ? listOr(rule.bySecond, time % 60)
                                               : std::vector<int>{static_cast<int>(time % 60)}) {
                const auto within =
                    day + std::chrono::hours{time / 3600} + std::chrono::minutes{minute} + seconds{second};
                set.push_back({moment + (within - local), within});
            }
        }
        for (const auto& instance : chosen(rule, set)) {
            // Where the clock changes within an hour, the hands decide.
            const bool isThere = zone.toLocal(instance.utc) == instance.local;
            result.push_back({isThere ? instance.utc : zone.toUtc(instance.local), instance.local});
        }
    }
    return result;
}

bool isAfterUntil(const RecurrenceRule& rule, const SeriesStart& start, const RuleInstance& instance)
{
    if (!rule.until)
        return false;
    if (const auto* until = std::get_if<UtcSeconds>(&*rule.until)) {
        return start.isDate ? instance.local.time_since_epoch() > until->time_since_epoch()
                            : instance.utc > *until;
    }
    const auto end = std::get<LocalSeconds>(*rule.until) + (rule.untilIsDate ? seconds{86'399} : seconds{0});
    return instance.local > end;
}

}

std::vector<RuleInstance> plainExpansion(
    const RecurrenceRule& rule, const SeriesStart& start, UtcSeconds until)
{
    std::vector<RuleInstance> candidates;
    if (rule.frequency < Frequency::Daily) {
        candidates = elapsedInstances(rule, start, until);
    } else {
        const Day lastDay{floor<days>(until).time_since_epoch() + days{2}};
        for (const auto local : calendarInstances(rule, start, lastDay))
            candidates.push_back({start.zone->toUtc(local), local});
    }

    const RuleInstance first{start.zone->toUtc(start.local), start.local};
    std::vector<RuleInstance> result{first};
    const bool isElapsed = rule.frequency < Frequency::Daily;
    auto last = first.utc;
    for (const auto& candidate : candidates) {
        const bool isLater = isElapsed ? candidate.utc > last : candidate.local > start.local;
        if (!isLater || isAfterUntil(rule, start, candidate))
            continue;
        last = candidate.utc;
        result.push_back(candidate);
    }
    if (rule.count && result.size() > *rule.count)
        result.resize(*rule.count);
    return result;
}

namespace {

class Maker {
public:
    explicit Maker(std::mt19937_64& random)
        : m_random(random)
    {
    }

    int number(int least, int most) { return std::uniform_int_distribution(least, most)(m_random); }
    bool oneIn(int n) { return number(1, n) == 1; }

    /// Up to `most` values between the limits, 0 left out where the values may be negative.
    std::string list(int least, int most, int count)
    {
        std::string text;
        for (int i = number(1, count); i > 0; --i) {
            int value = number(least, most);
            if (value == 0 && least < 0)
                value = 1;
            text += (text.empty() ? "" : ",") + std::to_string(value);
        }
        return text;
    }

    std::string weekdays(int largestNumber)
    {
        constexpr std::array<const char*, 7> kNames{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
        std::string text;
        for (int i = number(1, 4); i > 0; --i) {
            const int n = largestNumber > 0 && oneIn(2) ? number(-largestNumber, largestNumber) : 0;
            text += (text.empty() ? "" : ",") + (n == 0 ? "" : std::to_string(n))
                + kNames.at(static_cast<std::size_t>(number(0, 6)));
        }
        return text;
    }

private:
    std::mt19937_64& m_random;
};

std::string textOf(LocalSeconds time, const char* suffix)
{
    const auto day = floor<days>(time);
    const auto clock = (time - day).count();
    const year_month_day date{day};
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d%02u%02uT%02d%02d%02d%s", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(clock / 3600), static_cast<int>(clock / 60 % 60), static_cast<int>(clock % 60),
        suffix);
    return buffer.data();
}

/// How long a span the plain expansion can look at, in days.
int spanOf(Frequency frequency, Maker& make)
{
    switch (frequency) {
    case Frequency::Secondly:
        return 1;
    case Frequency::Minutely:
        return make.number(1, 30);
    case Frequency::Hourly:
        return make.number(10, 500);
    case Frequency::Daily:
        return make.number(10, 1000);
    case Frequency::Weekly:
        return make.number(100, 2000);
    default:
        return make.number(300, 4000);
    }
}

void addDayParts(std::string& rule, Frequency frequency, Maker& make)
{
    const bool isYearly = frequency == Frequency::Yearly;
    const bool isMonthly = frequency == Frequency::Monthly;
    const bool isFine = frequency < Frequency::Daily;
    if (make.oneIn(3))
        rule += ";BYMONTH=" + make.list(1, 12, 4);
    const bool hasWeekNo = isYearly && make.oneIn(4);
    if (hasWeekNo)
        rule += ";BYWEEKNO=" + make.list(-53, 53, 5);
    if ((isYearly || isFine) && make.oneIn(5))
        rule += ";BYYEARDAY=" + make.list(-366, 366, 20);
    if (frequency != Frequency::Weekly && make.oneIn(3))
        rule += ";BYMONTHDAY=" + make.list(-31, 31, 8);
    if (make.oneIn(2))
        rule += ";BYDAY=" + make.weekdays(isMonthly ? 5 : isYearly && !hasWeekNo ? make.number(5, 53) : 0);
}

void addTimeParts(std::string& rule, Maker& make)
{
    if (make.oneIn(4))
        rule += ";BYHOUR=" + make.list(0, 23, 6);
    if (make.oneIn(4))
        rule += ";BYMINUTE=" + make.list(0, 59, 4);
    if (make.oneIn(6))
        rule += ";BYSECOND=" + make.list(0, 60, 3);
}

}

RandomSeries randomSeries(std::mt19937_64& random)
{
    return randomSeries(random, static_cast<Frequency>(std::uniform_int_distribution(0, 6)(random)));
}

RandomSeries randomSeries(std::mt19937_64& random, Frequency frequency)
{
    constexpr std::array<const char*, 7> kNames{
        "SECONDLY", "MINUTELY", "HOURLY", "DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
    constexpr std::array<const char*, 8> kZones{"UTC", "Europe/Zurich", "America/New_York",
        "Australia/Lord_Howe", "Africa/Casablanca", "Europe/Dublin", "Asia/Kathmandu", "America/Sao_Paulo"};
    constexpr std::array<const char*, 7> kWeekStarts{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    Maker make(random);

    RandomSeries series;
    series.zone = kZones.at(static_cast<std::size_t>(make.number(0, 7)));
    series.start =
        local_days{year{make.number(1975, 2060)} / make.number(1, 12) / 1} + days{make.number(0, 30)};
    series.isDate = make.oneIn(8);
    if (!series.isDate)
        series.start += seconds{make.oneIn(2) ? make.number(0, 23) * 3600 : make.number(0, 86'399)};

    series.rule = std::string("FREQ=") + kNames.at(static_cast<std::size_t>(frequency));
    if (make.oneIn(2)) {
        const bool isOdd = frequency < Frequency::Daily && make.oneIn(3);
        series.rule += ";INTERVAL=" + std::to_string(isOdd ? make.number(2, 100'000) : make.number(1, 5));
    }
    if (make.oneIn(3))
        series.rule += std::string(";WKST=") + kWeekStarts.at(static_cast<std::size_t>(make.number(0, 6)));
    addDayParts(series.rule, frequency, make);
    addTimeParts(series.rule, make);
    if (make.oneIn(4))
        series.rule += ";BYSETPOS=" + make.list(-5, 5, 3);

    const int span = spanOf(frequency, make);
    if (make.oneIn(4))
        series.rule += ";COUNT=" + std::to_string(make.number(1, 60));
    if (make.oneIn(4)) {
        const auto until = series.start + days{make.number(-1, span)} + seconds{make.number(0, 86'399)};
        series.rule += ";UNTIL="
            + (make.oneIn(3) ? textOf(until, "").substr(0, 8) : textOf(until, make.oneIn(2) ? "Z" : ""));
    }

    const UtcSeconds begin{series.start.time_since_epoch()};
    const auto skipped = make.oneIn(2) ? days{-3} : days{make.number(0, span)};
    series.range = {begin + skipped, begin + days{span} + days{1}};
    return series;
}

}
