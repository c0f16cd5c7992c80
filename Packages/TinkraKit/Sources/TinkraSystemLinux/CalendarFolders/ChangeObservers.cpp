#include "TinkraSystemLinux/CalendarFolders/ChangeObservers.h"

#include <utility>

namespace Tinkra::System {

Observation ChangeObservers::add(std::function<void()> changed)
{
    const auto observer = std::make_shared<Observer>(std::move(changed));
    const std::lock_guard lock{m_mutex};
    std::erase_if(m_observers, [](const auto& known) { return known.expired(); });
    m_observers.push_back(observer);
    return {nullptr, [observer](void*) {
                const std::lock_guard guard{observer->mutex};
                observer->isActive = false;
            }};
}

void ChangeObservers::notify()
{
    std::unique_lock lock{m_mutex};
    const auto observers = m_observers;
    lock.unlock();
    for (const auto& weak : observers) {
        const auto observer = weak.lock();
        if (!observer)
            continue;
        const std::lock_guard guard{observer->mutex};
        if (observer->isActive)
            observer->changed();
    }
}

}
