#pragma once

#include "TinkraTestSupport/TemporaryFolder.h"

#include <sys/types.h>

#include <string>

namespace Tinkra {

/// A sound server whose only device, "private", is heard by nobody. While it lives, PULSE_SERVER leads to it.
class PrivateSoundServer {
public:
    PrivateSoundServer();
    PrivateSoundServer(const PrivateSoundServer&) = delete;
    PrivateSoundServer& operator=(const PrivateSoundServer&) = delete;
    ~PrivateSoundServer();

    void start();
    void kill();
    void freeze(); ///< it accepts connections, and answers nothing
    void thaw();

    /// What pactl(1) prints; it must succeed.
    std::string control(const std::string& arguments) const;

    /// How many streams play now.
    int playing() const;

    /// Returns when so many streams play; throws after ten seconds.
    void waitUntilPlaying(int streams) const;

private:
    TemporaryFolder m_folder;
    pid_t m_process = -1;
};

}
