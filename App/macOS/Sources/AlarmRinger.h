#pragma once

#include "AlarmInfrastructure/AlarmPresenter.h"

#include "TinkraConcurrency/Clock.h"
#include "TinkraConcurrency/TaskHandle.h"
#include "TinkraCore/Protocols/SettingsStore.h"

#include <memory>

namespace Tinkra {

/// Rings alarms inside the application as the user has set it, and again after a snooze. Main thread only.
class AlarmRinger : public std::enable_shared_from_this<AlarmRinger> {
public:
    AlarmRinger(AlarmPresenter::Means means, std::shared_ptr<SettingsStore> settings,
        std::shared_ptr<Clock> clock, Executor mainThread);

    void presentAlarm(AlarmPayload payload);

    /// The alarm by which the user tries how one looks and sounds.
    void testAlarm();

    /// Takes down what rings, so that the volume is restored.
    void dismiss() { m_presenter.dismiss(); }

private:
    void snooze(AlarmPayload payload);
    static Task<> ringAgain(std::weak_ptr<AlarmRinger> weak, std::shared_ptr<Clock> clock, Seconds interval,
        AlarmPayload payload, std::stop_token stop);

    AlarmPresenter m_presenter;
    std::shared_ptr<SettingsStore> m_settings;
    std::shared_ptr<Clock> m_clock;
    Executor m_mainThread;
    TaskHandle m_snooze;
};

}
