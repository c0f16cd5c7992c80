#include "AlarmRinger.h"

#include "TinkraCore/UsableSettings.h"

#include <cstdint>
#include <utility>

namespace Tinkra {

namespace {

constexpr auto kTestTitle = "Test meeting — Calendar Murkel is working";

std::string wholeSeconds(Instant instant)
{
    return std::to_string(static_cast<std::int64_t>(secondsSince1970(instant)));
}

}

AlarmRinger::AlarmRinger(AlarmPresenter::Means means, std::shared_ptr<SettingsStore> settings,
    std::shared_ptr<Clock> clock, Executor mainThread)
    : m_presenter(std::move(means))
    , m_settings(std::move(settings))
    , m_clock(std::move(clock))
    , m_mainThread(std::move(mainThread))
{
}

void AlarmRinger::presentAlarm(AlarmPayload payload)
{
    const auto settings = m_settings->load().settings;
    m_presenter.present(
        payload, settings.soundName.utf8(), settings.raiseVolume,
        [weak = weak_from_this(), payload] {
            if (const auto self = weak.lock())
                self->snooze(payload);
        },
        [] {});
}

void AlarmRinger::testAlarm()
{
    const auto now = m_clock->now();
    presentAlarm({.id = "test#" + wholeSeconds(now), .title = kTestTitle, .meetingStart = now});
}

void AlarmRinger::snooze(AlarmPayload payload)
{
    const auto interval = usable(m_settings->load()).settings.snoozeInterval;
    payload.id = payload.id.utf8() + "#snooze" + wholeSeconds(m_clock->now() + interval);
    m_snooze = spawn(m_mainThread,
        [weak = weak_from_this(), clock = m_clock, interval, payload = std::move(payload)](
            std::stop_token stop) { return ringAgain(weak, clock, interval, payload, std::move(stop)); });
}

Task<> AlarmRinger::ringAgain(std::weak_ptr<AlarmRinger> weak, std::shared_ptr<Clock> clock, Seconds interval,
    AlarmPayload payload, std::stop_token stop)
{
    co_await clock->sleepFor(interval, stop);
    if (stop.stop_requested())
        co_return;
    if (const auto self = weak.lock())
        self->presentAlarm(std::move(payload));
}

}
