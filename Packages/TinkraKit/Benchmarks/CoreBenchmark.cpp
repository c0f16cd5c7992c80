// What one pass costs beside its ports. The figure that matters is the counter "ratio": the time of
// desiredAlarms and reconcile together, divided by that of a stable sort of the same shuffled alarms, the two
// measured turn by turn in one run.
//
//     build/release/Packages/TinkraKit/Benchmarks/core_benchmark

#include "TinkraCore/AlarmEngine.h"
#include "TinkraCore/Models/Coding.h"
#include "TinkraCore/MonitoringService.h"
#include "TinkraCore/SyncReconciler.h"
#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeAlarmScheduler.h"
#include "TinkraTestSupport/FakeCalendarProvider.h"
#include "TinkraTestSupport/TestLoop.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <random>
#include <string>

namespace {

using namespace Tinkra;

enum Identifiers {
    Short, ///< as one calendar in memory makes them: most texts need no memory of their own
    Long, ///< account, calendar and UID, as stores make them
};

/// Meetings of twenty calendars over the next month, on the minute, in no order.
std::vector<Meeting> shuffledMeetings(std::size_t count, Identifiers identifiers)
{
    std::mt19937 random(1);
    std::vector<Meeting> meetings;
    meetings.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto start = noon + Seconds{60.0 * static_cast<double>(1 + random() % 43'200)};
        const auto number = std::to_string(i);
        const auto calendar = (identifiers == Long ? "account-of-somebody/calendar-" : "calendar-")
            + std::to_string(random() % 20);
        const auto uid = identifiers == Long
            ? calendar + "/" + std::to_string(random()) + std::to_string(random()) + "@example.org"
            : "e" + number;
        const auto id = uid + "@" + std::to_string(static_cast<long>(secondsSince1970(start)));
        const auto title =
            identifiers == Long ? "Planning of the week, number " + number : "Meeting " + number;
        meetings.push_back({id, calendar, title, start, start + Seconds{1800}, false});
    }
    std::ranges::shuffle(meetings, random);
    return meetings;
}

CalendarIDs calendarsOf(const std::vector<Meeting>& meetings)
{
    CalendarIDs ids;
    for (const auto& meeting : meetings)
        ids.insert(meeting.calendarID);
    return ids;
}

std::vector<ScheduledAlarm> shuffledAlarmsOf(const std::vector<Meeting>& meetings)
{
    std::vector<ScheduledAlarm> alarms;
    for (const auto& meeting : meetings)
        alarms.push_back(alarmFor(meeting));
    return alarms;
}

/// As many of the wanted identifiers as `percent` says, in no order, one in a hundred of them out of date.
std::vector<Text> armedIDs(const std::vector<ScheduledAlarm>& alarms, std::size_t percent)
{
    std::vector<Text> ids;
    for (std::size_t i = 0; i < alarms.size(); ++i) {
        if (i % 100 < percent)
            ids.push_back(i % 100 == 0 ? Text(alarms[i].id.utf8() + "0") : alarms[i].id);
    }
    std::ranges::shuffle(ids, std::mt19937(2));
    return ids;
}

/// The processor time of this thread, so that a busy machine changes the figures little.
double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <typename Work> double secondsOf(Work work)
{
    const double start = processorSeconds();
    work();
    return processorSeconds() - start;
}

/// range(0): kind of identifiers; range(1): per cent of the meetings that are armed already.
void desiredAlarmsAndReconcile(benchmark::State& state)
{
    const auto meetings = shuffledMeetings(100'000, static_cast<Identifiers>(state.range(0)));
    const auto monitored = calendarsOf(meetings);
    const auto shuffled = shuffledAlarmsOf(meetings);
    const auto armed = armedIDs(shuffled, static_cast<std::size_t>(state.range(1)));

    double sorting = 0;
    double working = 0;
    for (auto _ : state) {
        auto alarms = shuffled;
        sorting += secondsOf([&alarms] {
            std::ranges::stable_sort(alarms, {}, &ScheduledAlarm::fireDate);
            benchmark::DoNotOptimize(alarms.data());
        });
        ReconcileResult result;
        const double step = secondsOf([&] {
            auto desired = AlarmEngine{}.desiredAlarms(meetings, {}, monitored, noon);
            result = SyncReconciler{}.reconcile(std::move(desired), armed);
        });
        benchmark::DoNotOptimize(result.toAdd.data());
        working += step;
        state.SetIterationTime(step);
    }
    state.counters["sort_ms"] = 1000 * sorting / static_cast<double>(state.iterations());
    state.counters["ratio"] = working / sorting;
}
BENCHMARK(desiredAlarmsAndReconcile)
    ->ArgsProduct({{Short, Long}, {0, 50, 100}})
    ->ArgNames({"long_ids", "armed_percent"})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void encodeAndDecodeConfiguration(benchmark::State& state)
{
    TinkraConfiguration configuration;
    for (int i = 0; i < 20; ++i)
        configuration.monitoring.selectedCalendarIDs.emplace("account/calendar-" + std::to_string(i));
    for (auto _ : state)
        benchmark::DoNotOptimize(decode<TinkraConfiguration>(encode(configuration)));
}
BENCHMARK(encodeAndDecodeConfiguration)->Unit(benchmark::kMicrosecond);

void roundTripToTheActor(benchmark::State& state)
{
    TestLoop loop;
    MonitoringService service(std::make_shared<FakeCalendarProvider>(),
        std::make_shared<FakeAlarmScheduler>(), {}, Seconds{0}, loop.executor());
    for (auto _ : state)
        benchmark::DoNotOptimize(loop.run(service.configuration()));
}
BENCHMARK(roundTripToTheActor)->Unit(benchmark::kMicrosecond);

}
