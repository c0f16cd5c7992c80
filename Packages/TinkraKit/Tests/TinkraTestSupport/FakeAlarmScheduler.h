#pragma once

#include "TinkraCore/Protocols/AlarmScheduler.h"
#include "TinkraTestSupport/CallLog.h"

#include <cstddef>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace Tinkra {

/// Arms alarms in memory and keeps the port's promises: arming twice replaces, cancelling the unknown is
/// nothing. Calls are logged as "requestAuthorization", "scheduledAlarmIDs", "schedule ID" and
/// "cancel [ID, ID]".
class FakeAlarmScheduler final : public AlarmScheduler {
public:
    /// `armed` are identifiers that somebody armed before.
    explicit FakeAlarmScheduler(
        std::vector<Text> armed = {}, std::shared_ptr<CallLog> log = std::make_shared<CallLog>());

    Task<bool> requestAuthorization() override;
    Task<std::vector<Text>> scheduledAlarmIDs() override;
    Task<> schedule(ScheduledAlarm alarm) override;
    Task<> cancel(std::vector<Text> ids) override;

    void setAuthorization(bool isGranted);

    /// The `count`-th call of `schedule` from now, 1 being the next, throws, and each one after it until
    /// `failNever` is called.
    void failFrom(std::size_t count, std::exception_ptr error);
    /// Arming this identifier throws.
    void failOn(Text id, std::exception_ptr error);
    void failNever();

    /// What is armed now, in the order in which it was armed first.
    std::vector<Text> armedIDs() const;

    /// The alarm that was armed under this identifier, and nothing for one that was there from the start.
    std::optional<ScheduledAlarm> armedAlarm(const Text& id) const;

    CallLog& log() { return *m_log; }

private:
    struct Armed {
        Text id;
        std::optional<ScheduledAlarm> alarm;
    };

    std::shared_ptr<CallLog> m_log;
    mutable std::mutex m_mutex; // guards what follows
    bool m_isAuthorized = true;
    std::vector<Armed> m_armed;
    std::size_t m_callsBeforeFailure = 0;
    std::optional<Text> m_failingID;
    std::exception_ptr m_error;
};

}
