#pragma once

#include "TinkraSystem/EventStore.h"

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace Tinkra::System {

/// Those who want to hear of changes. An observer is not called any more once its observation was dropped,
/// which waits for a call that is under way unless it comes from within.
class ChangeObservers {
public:
    Observation add(std::function<void()> changed);
    void notify();

private:
    struct Observer {
        explicit Observer(std::function<void()> function)
            : changed(std::move(function))
        {
        }

        std::recursive_mutex mutex;
        bool isActive = true;
        std::function<void()> changed;
    };

    std::mutex m_mutex;
    std::vector<std::weak_ptr<Observer>> m_observers;
};

}
