#include "TinkraCore/MonitoringService.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeAlarmScheduler.h"
#include "TinkraTestSupport/FakeCalendarProvider.h"
#include "TinkraTestSupport/Printing.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>

namespace Tinkra {
namespace {

const auto trouble = std::make_exception_ptr(std::runtime_error("trouble"));

/// One run: passes, settings changes and answers of the ports in an order that the seed decides.
class Interleaving {
public:
    explicit Interleaving(unsigned seed)
        : m_random(seed)
    {
        m_provider->setMeetings(m_meetings);
        m_log->hold();
    }

    void disturb(int steps)
    {
        for (int step = 0; step < steps; ++step)
            takeAStep();
        m_scheduler->failNever();
        m_provider->failWith(nullptr);
        m_log->letAllGo();
        m_loop.drain();
    }

    void syncUndisturbed() { m_loop.run(m_service.sync(noon)); }

    std::set<Text> armed() const
    {
        const auto ids = m_scheduler->armedIDs();
        return {ids.begin(), ids.end()};
    }

    /// What the last configuration asks for.
    std::set<Text> wanted() const
    {
        std::set<Text> ids;
        if (!m_configuration.masterEnabled)
            return ids;
        for (const auto& alarm : AlarmEngine{}.desiredAlarms(
                 m_meetings, m_configuration.settings, m_configuration.monitoring.selectedCalendarIDs, noon))
            ids.insert(alarm.id);
        return ids;
    }

    bool areAllPassesOver() const
    {
        return std::ranges::all_of(m_passes, [](const auto& pass) { return pass.isDone(); });
    }

private:
    static std::vector<Meeting> someMeetings()
    {
        std::vector<Meeting> meetings;
        for (int i = 0; i < 4; ++i) {
            meetings.push_back(standup(noon + Seconds{60.0 * (i + 1)}, std::to_string(i)));
            if (i % 2 == 1)
                meetings.back().calendarID = "home";
        }
        return meetings;
    }

    void takeAStep()
    {
        switch (m_random() % 8) {
        case 0:
            m_passes.push_back(m_loop.start(m_service.sync(noon)));
            break;
        case 1:
            changeTheConfiguration();
            break;
        case 2:
            m_scheduler->failFrom(1 + m_random() % 4, m_random() % 3 == 0 ? trouble : nullptr);
            break;
        case 3:
            m_provider->failWith(m_random() % 4 == 0 ? trouble : nullptr);
            break;
        default:
            if (const auto waiting = m_log->waiting().size(); waiting > 0)
                m_log->letGo(m_random() % waiting);
            m_loop.drain();
        }
    }

    void changeTheConfiguration()
    {
        m_configuration.masterEnabled = m_random() % 4 != 0;
        m_configuration.settings.leadTime = Seconds{static_cast<double>(m_random() % 3) * 50};
        m_configuration.monitoring.selectedCalendarIDs.clear();
        if (m_random() % 2 == 0)
            m_configuration.monitoring.selectedCalendarIDs.insert("work");
        if (m_random() % 2 == 0)
            m_configuration.monitoring.selectedCalendarIDs.insert("home");
        m_loop.run(m_service.updateConfiguration(m_configuration));
    }

    std::mt19937 m_random;
    TestLoop m_loop;
    std::shared_ptr<CallLog> m_log = std::make_shared<CallLog>();
    std::vector<Meeting> m_meetings = someMeetings();
    std::shared_ptr<FakeCalendarProvider> m_provider =
        std::make_shared<FakeCalendarProvider>(std::vector<Meeting>{}, m_log);
    std::shared_ptr<FakeAlarmScheduler> m_scheduler =
        std::make_shared<FakeAlarmScheduler>(std::vector<Text>{"old#1", "old#2"}, m_log);
    TinkraConfiguration m_configuration = monitoring();
    MonitoringService m_service{m_provider, m_scheduler, m_configuration, Seconds{86'400}, m_loop.executor()};
    std::vector<StartedTask<ReconcileResult>> m_passes;
};

TEST(MonitoringServiceInterleaving, OneUndisturbedPassArmsWhatTheLastConfigurationAsksForWhateverWentBefore)
{
    int runsThatArmSomething = 0;
    for (unsigned seed = 0; seed < 10'000; ++seed) {
        Interleaving run(seed);
        run.disturb(40);
        ASSERT_TRUE(run.areAllPassesOver()) << "seed " << seed;

        run.syncUndisturbed();

        ASSERT_EQ(run.armed(), run.wanted()) << "seed " << seed;
        runsThatArmSomething += run.wanted().empty() ? 0 : 1;
    }
    EXPECT_GT(runsThatArmSomething, 1000);
}

TEST(MonitoringServiceInterleaving, TheMasterSwitchMayBeTurnedAHundredTimesDuringPasses)
{
    TestLoop loop;
    const auto log = std::make_shared<CallLog>();
    const auto provider = std::make_shared<FakeCalendarProvider>(
        std::vector{standup(noon + Seconds{60}, "a"), standup(noon + Seconds{120}, "b")}, log);
    const auto scheduler = std::make_shared<FakeAlarmScheduler>(std::vector<Text>{}, log);
    MonitoringService service(provider, scheduler, monitoring(), Seconds{86'400}, loop.executor());
    std::vector<StartedTask<ReconcileResult>> passes;

    log->hold();
    auto configuration = monitoring();
    for (int turn = 0; turn < 100; ++turn) {
        passes.push_back(loop.start(service.sync(noon)));
        configuration.masterEnabled = !configuration.masterEnabled;
        loop.run(service.updateConfiguration(configuration));
        log->letGo(log->waiting().size() / 2);
        loop.drain();
    }
    log->letAllGo();
    loop.drain();

    EXPECT_TRUE(std::ranges::all_of(passes, [](const auto& pass) { return pass.isDone(); }));
    ASSERT_TRUE(configuration.masterEnabled);
    loop.run(service.sync(noon));
    EXPECT_EQ(scheduler->armedIDs().size(), 2U);

    configuration.masterEnabled = false;
    loop.run(service.updateConfiguration(configuration));
    loop.run(service.sync(noon));
    EXPECT_TRUE(scheduler->armedIDs().empty());
}

}
}
