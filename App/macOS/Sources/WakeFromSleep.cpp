#include "WakeFromSleep.h"

#include "ErrorText.h"

#include "TinkraSystem/WakeFile.h"

#include <utility>

namespace Tinkra {

using System::ServiceStatus;

WakeFromSleep::WakeFromSleep(std::shared_ptr<System::SharedFolder> folder,
    std::shared_ptr<System::HelperService> helper, std::shared_ptr<System::Workspace> workspace,
    std::shared_ptr<Clock> clock)
    : m_folder(std::move(folder))
    , m_helper(std::move(helper))
    , m_workspace(std::move(workspace))
    , m_clock(std::move(clock))
{
}

void WakeFromSleep::schedule(std::optional<Instant> date)
{
    ensureSharedFile();
    // Only the date itself must lie ahead: an alarm in half a minute writes a wake that is already past.
    const bool isWanted = date && *date > m_clock->now();
    m_folder->replace(System::kWakeFileName,
        isWanted ? System::wakeFileText(secondsSince1970(*date - lead)) : System::kNoWakeText);
}

void WakeFromSleep::registerHelper()
{
    ensureSharedFile();
    switch (m_helper->status()) {
    case ServiceStatus::Enabled:
        return;
    case ServiceStatus::RequiresApproval:
        m_workspace->log("CalendarMurkel: wake helper requires approval in Login Items");
        return;
    case ServiceStatus::NotRegistered:
    case ServiceStatus::NotFound:
        break;
    }
    try {
        m_helper->registerService();
    } catch (...) {
        m_workspace->log("CalendarMurkel: wake helper register failed: " + currentErrorText());
    }
}

void WakeFromSleep::ensureSharedFile()
{
    if (!m_folder->exists())
        m_folder->create(System::kSharedFolderPermissions);
    if (!m_folder->holds(System::kWakeFileName))
        m_folder->replace(System::kWakeFileName, System::kNoWakeText);
}

}
