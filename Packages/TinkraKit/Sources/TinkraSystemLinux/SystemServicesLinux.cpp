#include "TinkraSystem/SystemServices.h"

#include "TinkraSystemLinux/ApplicationInstanceLinux.h"
#include "TinkraSystemLinux/AudioDeviceLinux.h"
#include "TinkraSystemLinux/ClockLinux.h"
#include "TinkraSystemLinux/DefaultsLinux.h"
#include "TinkraSystemLinux/FolderEventStore.h"
#include "TinkraSystemLinux/HealthChecksLinux.h"
#include "TinkraSystemLinux/LocalCalendarLinux.h"
#include "TinkraSystemLinux/MessageBus.h"
#include "TinkraSystemLinux/NotificationCenterLinux.h"
#include "TinkraSystemLinux/RunningApplicationLinux.h"
#include "TinkraSystemLinux/SoundLibraryLinux.h"

#include <map>
#include <mutex>

namespace Tinkra::System {

namespace {

/// Preferences whose changes end with the process.
class MemoryDefaults final : public Defaults {
public:
    explicit MemoryDefaults(std::shared_ptr<Defaults> kept)
        : m_kept(std::move(kept))
    {
    }

    std::optional<std::string> data(std::string_view key) override
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_values.find(key);
        return found == m_values.end() ? m_kept->data(key) : std::optional(found->second);
    }

    void setData(std::string_view key, std::string_view bytes) override
    {
        const std::lock_guard lock(m_mutex);
        m_values.insert_or_assign(std::string(key), std::string(bytes));
    }

private:
    std::shared_ptr<Defaults> m_kept;
    std::mutex m_mutex;
    std::map<std::string, std::string, std::less<>> m_values;
};

}

SystemServices makeSystemServices()
{
    const auto sessionBus = std::make_shared<MessageBus>(MessageBus::Kind::Session);
    const auto systemBus = std::make_shared<MessageBus>(MessageBus::Kind::System);
    const auto defaults = std::make_shared<DefaultsLinux>(DefaultsLinux::userDirectory());
    const auto clock = std::make_shared<ClockLinux>();
    const auto eventStore = std::make_shared<FolderEventStore>(defaults);
    return {
        .eventStore = eventStore,
        .calendarChoice = std::make_shared<FolderEventStore>(std::make_shared<MemoryDefaults>(defaults)),
        .notificationCenter = std::make_shared<NotificationCenterLinux>(sessionBus),
        .defaults = defaults,
        .localCalendar = std::make_shared<LocalCalendarLinux>(),
        .clock = clock,
        .healthChecks = std::make_shared<HealthChecksLinux>(sessionBus, systemBus, eventStore),
        .audioDevice = std::make_shared<AudioDeviceLinux>(),
        .soundLibrary = std::make_shared<SoundLibraryLinux>(),
        .applicationInstance = std::make_shared<ApplicationInstanceLinux>(),
        .runningApplication = std::make_shared<RunningApplicationLinux>(sessionBus, clock),
    };
}

}
