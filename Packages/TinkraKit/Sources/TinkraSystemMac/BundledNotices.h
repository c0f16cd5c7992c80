#pragma once

#include "TinkraConcurrency/Clock.h"

#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace Tinkra::System {

/// Passes changes on as notices, at most one a second: the first at once, those of the following second
/// together at its end. Usable from any thread.
class BundledNotices : public std::enable_shared_from_this<BundledNotices> {
public:
    static constexpr Seconds kInterval{1};

    /// `notify` is called on `executor`.
    BundledNotices(Executor executor, std::shared_ptr<Clock> clock, std::function<void()> notify);

    void changed();

    /// No notice comes any more. Waits for a call that is under way, unless this is called from within it.
    void end();

private:
    static Task<> tell(std::shared_ptr<BundledNotices> notices);

    bool takeChange();
    void notify();

    Executor m_executor;
    std::shared_ptr<Clock> m_clock;
    std::function<void()> m_notify;

    std::stop_source m_stop;

    std::mutex m_mutex; // guards what follows
    bool m_hasChanged = false;
    bool m_isTelling = false;

    std::recursive_mutex m_callMutex; // held while `m_notify` runs
};

}
