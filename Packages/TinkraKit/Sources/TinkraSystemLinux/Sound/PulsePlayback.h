#pragma once

#include "TinkraSystemLinux/Sound/WaveFile.h"

#include <memory>
#include <stop_token>
#include <thread>

namespace Tinkra::System {

/// One recording on its way to the sound server, played by a thread of its own for as long as this lives. A
/// server that is missing, dies or loses its device is tried again every second; nobody else ever waits for
/// it.
class PulsePlayback {
public:
    PulsePlayback(std::shared_ptr<const Recording> recording, bool loops);
    PulsePlayback(const PulsePlayback&) = delete;
    PulsePlayback& operator=(const PulsePlayback&) = delete;
    ~PulsePlayback() = default; ///< silence, at once

private:
    std::jthread m_thread;
};

}
