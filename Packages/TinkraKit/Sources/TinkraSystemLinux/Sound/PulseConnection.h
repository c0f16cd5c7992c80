#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <pulse/pulseaudio.h>

namespace Tinkra::System {

/// A connection to the sound server: PulseAudio, or PipeWire in its place. It is driven by its owner: nothing
/// happens outside of its calls, so that an idle connection never wakes the process, and every wait has an
/// end. Starts no server. One thread at a time, `wakeUp` excepted.
class PulseConnection {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Begins to connect.
    PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;
    ~PulseConnection();

    bool isReady() const;
    /// There is no server, or it has gone: this connection will never be of use again.
    bool isOver() const;

    /// Waits until the connection is ready or over. False when neither came in time.
    bool settle(Deadline deadline);

    /// Waits for an operation and lets go of it, done or not: its callback is not called afterwards. True
    /// when it was done.
    bool finish(pa_operation* operation, Deadline deadline);

    /// Handles what has come, and waits for something to come when nothing has; without a deadline for ever.
    void turn(std::optional<Deadline> deadline = std::nullopt);

    /// Ends the wait of a `turn` that another thread is in, or the next one.
    void wakeUp();

    pa_context* context() const { return m_context.get(); }

private:
    struct Free {
        void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
        void operator()(pa_context* context) const { pa_context_unref(context); }
    };

    std::unique_ptr<pa_mainloop, Free> m_loop;
    std::unique_ptr<pa_context, Free> m_context;
};

}
