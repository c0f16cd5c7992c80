#pragma once

#include "TinkraSystem/Observation.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace Tinkra::System {

/// Those who observe a fake, each until its observation is dropped. Safe to use from any thread.
class FakeObservers {
public:
    Observation add(std::function<void()> observer)
    {
        const std::lock_guard lock(m_list->mutex);
        const auto number = m_list->next++;
        m_list->byNumber.emplace(number, std::move(observer));
        return {nullptr, [list = m_list, number](void*) {
                    const std::lock_guard guard(list->mutex);
                    list->byNumber.erase(number);
                }};
    }

    /// Calls every observer on this thread.
    void notify() const
    {
        std::unique_lock lock(m_list->mutex);
        const auto observers = m_list->byNumber;
        lock.unlock();
        for (const auto& [number, observer] : observers)
            observer();
    }

    std::size_t count() const
    {
        const std::lock_guard lock(m_list->mutex);
        return m_list->byNumber.size();
    }

private:
    struct List {
        std::mutex mutex;
        std::map<int, std::function<void()>> byNumber;
        int next = 0;
    };

    std::shared_ptr<List> m_list = std::make_shared<List>();
};

}
