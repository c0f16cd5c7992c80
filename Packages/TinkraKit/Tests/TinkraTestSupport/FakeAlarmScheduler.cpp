#include "TinkraTestSupport/FakeAlarmScheduler.h"

#include <algorithm>
#include <utility>

namespace Tinkra {

namespace {

std::vector<std::string> bytes(const std::vector<Text>& ids)
{
    std::vector<std::string> all;
    for (const auto& id : ids)
        all.push_back(id.utf8());
    return all;
}

}

FakeAlarmScheduler::FakeAlarmScheduler(std::vector<Text> armed, std::shared_ptr<CallLog> log)
    : m_log(std::move(log))
{
    for (auto& id : armed)
        m_armed.push_back({std::move(id), std::nullopt});
}

Task<bool> FakeAlarmScheduler::requestAuthorization()
{
    co_await m_log->record("requestAuthorization");
    const std::lock_guard lock(m_mutex);
    co_return m_isAuthorized;
}

Task<std::vector<Text>> FakeAlarmScheduler::scheduledAlarmIDs()
{
    co_await m_log->record("scheduledAlarmIDs");
    co_return armedIDs();
}

Task<> FakeAlarmScheduler::schedule(ScheduledAlarm alarm)
{
    co_await m_log->record("schedule " + alarm.id.utf8());
    const std::lock_guard lock(m_mutex);
    if (m_error && m_callsBeforeFailure > 0)
        --m_callsBeforeFailure;
    else if (m_error && (!m_failingID || m_failingID == alarm.id))
        std::rethrow_exception(m_error);

    const auto same = std::ranges::find(m_armed, alarm.id, &Armed::id);
    if (same != m_armed.end())
        same->alarm = std::move(alarm);
    else
        m_armed.push_back({alarm.id, alarm});
}

Task<> FakeAlarmScheduler::cancel(std::vector<Text> ids)
{
    co_await m_log->record("cancel " + listed(bytes(ids)));
    const std::lock_guard lock(m_mutex);
    std::erase_if(
        m_armed, [&ids](const Armed& armed) { return std::ranges::find(ids, armed.id) != ids.end(); });
}

void FakeAlarmScheduler::setAuthorization(bool isGranted)
{
    const std::lock_guard lock(m_mutex);
    m_isAuthorized = isGranted;
}

void FakeAlarmScheduler::failFrom(std::size_t count, std::exception_ptr error)
{
    const std::lock_guard lock(m_mutex);
    m_callsBeforeFailure = count - 1;
    m_failingID.reset();
    m_error = std::move(error);
}

void FakeAlarmScheduler::failOn(Text id, std::exception_ptr error)
{
    const std::lock_guard lock(m_mutex);
    m_callsBeforeFailure = 0;
    m_failingID = std::move(id);
    m_error = std::move(error);
}

void FakeAlarmScheduler::failNever()
{
    failFrom(1, nullptr);
}

std::vector<Text> FakeAlarmScheduler::armedIDs() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<Text> ids;
    for (const auto& armed : m_armed)
        ids.push_back(armed.id);
    return ids;
}

std::optional<ScheduledAlarm> FakeAlarmScheduler::armedAlarm(const Text& id) const
{
    const std::lock_guard lock(m_mutex);
    const auto armed = std::ranges::find(m_armed, id, &Armed::id);
    return armed == m_armed.end() ? std::nullopt : armed->alarm;
}

}
