// What the expansion of recurrence rules costs, and the same work in libical where it can do it.

#include "TinkraICalendar/RuleExpansion.h"

#include <benchmark/benchmark.h>
#include <libical/ical.h>
#include <string>

using namespace Tinkra::ICalendar;

namespace {

using std::chrono::sys_days;
using std::chrono::year;

const UtcSeconds kEnd{sys_days{year{10'000} / 1 / 1}};
constexpr int kOccurrences = 20'000;

LocalSeconds startIn(int of)
{
    return std::chrono::local_days{year{of} / 1 / 5} + std::chrono::hours{9};
}

RecurrenceRule parsed(const std::string& text)
{
    std::vector<std::string> notices;
    return parseRecurrenceRule(text, notices).value();
}

std::size_t expand(const RecurrenceRule& rule, int startYear, TimeRange range)
{
    std::size_t count = 0;
    expandRule(rule, {.local = startIn(startYear), .zone = findZone("Europe/Zurich")}, range,
        {.occurrences = 100'000'000, .time = std::chrono::seconds{100}}, [&](const RuleInstance& instance) {
            benchmark::DoNotOptimize(instance.utc);
            ++count;
        });
    return count;
}

const std::vector<std::string>& busyRules()
{
    static const std::vector<std::string> rules{"FREQ=DAILY", "FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR",
        "FREQ=MONTHLY;BYDAY=2TU", "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1",
        "FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU", "FREQ=HOURLY;BYHOUR=9,17", "FREQ=MINUTELY;INTERVAL=15"};
    return rules;
}

const std::vector<std::string>& emptyRules()
{
    static const std::vector<std::string> rules{"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30",
        "FREQ=YEARLY;BYYEARDAY=366;BYMONTH=1", "FREQ=MONTHLY;BYDAY=6MO", "FREQ=WEEKLY;BYDAY=MO;BYSETPOS=2",
        "FREQ=DAILY;INTERVAL=7;BYDAY=WE", "FREQ=DAILY;BYSETPOS=2", "FREQ=HOURLY;INTERVAL=24;BYHOUR=5",
        "FREQ=MINUTELY;BYMONTH=2;BYMONTHDAY=30", "FREQ=MINUTELY;INTERVAL=60;BYMINUTE=7",
        "FREQ=SECONDLY;INTERVAL=2;BYSECOND=31", "FREQ=SECONDLY;INTERVAL=90061;BYMONTH=2;BYMONTHDAY=30"};
    return rules;
}

/// The first 20,000 occurrences of an endless rule in a zone.
void ours(benchmark::State& state)
{
    const auto& text = busyRules().at(static_cast<std::size_t>(state.range(0)));
    const auto rule = parsed(text + ";COUNT=" + std::to_string(kOccurrences));
    std::size_t count = 0;
    for (auto _ : state)
        count += expand(rule, 1970, {UtcSeconds{}, kEnd});
    state.SetItemsProcessed(static_cast<std::int64_t>(count));
    state.SetLabel(text);
}
BENCHMARK(ours)->DenseRange(0, 6);

/// The same in libical, which is asked for floating times only: its own conversion is left out.
void libical(benchmark::State& state)
{
    const auto& text = busyRules().at(static_cast<std::size_t>(state.range(0)));
    const auto rule =
        icalrecurrencetype_from_string((text + ";COUNT=" + std::to_string(kOccurrences)).c_str());
    std::int64_t count = 0;
    for (auto _ : state) {
        auto* iterator = icalrecur_iterator_new(rule, icaltime_from_string("19700105T090000"));
        while (!icaltime_is_null_time(icalrecur_iterator_next(iterator)))
            ++count;
        icalrecur_iterator_free(iterator);
    }
    state.SetItemsProcessed(count);
    state.SetLabel(text);
}
BENCHMARK(libical)->DenseRange(0, 6);

/// A rule without any occurrence, looked for until the year 9999.
void yieldsNothing(benchmark::State& state)
{
    const auto& text = emptyRules().at(static_cast<std::size_t>(state.range(0)));
    const auto rule = parsed(text);
    for (auto _ : state) {
        if (expand(rule, 2026, {UtcSeconds{}, kEnd}) != 1) // DTSTART
            state.SkipWithError("the rule gave something");
    }
    state.SetLabel(text);
}
BENCHMARK(yieldsNothing)->DenseRange(0, 10)->Unit(benchmark::kMillisecond);

/// One month of a series that began long ago: what each event of a calendar costs in a query.
void aMonthFarFromDtstart(benchmark::State& state)
{
    const auto& text = busyRules().at(static_cast<std::size_t>(state.range(0)));
    const auto rule = parsed(text);
    const TimeRange month{
        UtcSeconds{sys_days{year{2026} / 11 / 20}}, UtcSeconds{sys_days{year{2026} / 12 / 20}}};
    for (auto _ : state)
        benchmark::DoNotOptimize(expand(rule, 1970, month));
    state.SetLabel(text);
}
BENCHMARK(aMonthFarFromDtstart)->DenseRange(0, 5);

void findsAZone(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(findZone("Europe/Zurich"));
}
BENCHMARK(findsAZone);

void definesAZone(benchmark::State& state)
{
    using std::chrono::hours;
    const std::vector<Observance> observances{{.start = startIn(1970),
                                                  .offsetFrom = hours{1},
                                                  .offsetTo = hours{2},
                                                  .rule = "FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU",
                                                  .additionalOnsets = {}},
        {.start = startIn(1970),
            .offsetFrom = hours{2},
            .offsetTo = hours{1},
            .rule = "FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU",
            .additionalOnsets = {}}};
    for (auto _ : state)
        benchmark::DoNotOptimize(makeZone("X", observances));
}
BENCHMARK(definesAZone);

}

BENCHMARK_MAIN();
