#pragma once

#include "TinkraSystem/NotificationCenterDelegate.h"

#include <functional>
#include <memory>

namespace Tinkra::System {

/// Calls a delegate on the main thread for a system that waits for an answer: `done` is called exactly once,
/// on the main thread, also when the delegate is gone or throws; then no presentation option is set.
class NotificationCalls {
public:
    NotificationCalls(Executor mainThread, std::weak_ptr<NotificationCenterDelegate> delegate);

    void willPresent(NotificationRequest request, std::function<void(std::uint32_t options)> done) const;
    void didReceive(NotificationResponse response, std::function<void()> done) const;

private:
    Executor m_mainThread;
    std::weak_ptr<NotificationCenterDelegate> m_delegate;
};

}
