#pragma once

#include "TinkraConcurrency/Task.h"

#include <functional>
#include <stdexcept>

namespace Tinkra::System {

/// What others may ask of the running application; each is called on the main thread.
struct ApplicationRequests {
    std::function<void()> testAlarm;
    std::function<void()> activate; ///< come to the front
};

/// That this process is the application, of which a session has one.
class ApplicationInstance {
public:
    virtual ~ApplicationInstance() = default;

    /// False when another process is the application already. Where nobody can tell, it is this one; then
    /// nobody can ask it for anything either.
    virtual bool claim(Executor mainThread, ApplicationRequests requests) = 0;

    /// Nothing is asked any more.
    virtual void release() = 0;
};

/// What kept the application from being asked, as a sentence that says what to do.
class ApplicationUnreachable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The application of this session, as its other programs see it. It is started when it does not run.
class RunningApplication {
public:
    virtual ~RunningApplication() = default;

    /// Returns when the alarm rings. Throws `ApplicationUnreachable`.
    virtual Task<> testAlarm() = 0;
};

}
