#pragma once

#include "TinkraTestSupport/TemporaryFolder.h"

#include <sys/types.h>

#include <string>

namespace Tinkra {

/// A session bus of the test's own, which can start the notification daemon of this build. The daemon's files
/// lie in the test's folder. While it lives, DBUS_SESSION_BUS_ADDRESS leads to it.
class PrivateBus {
public:
    /// What a call to the daemon's name finds.
    enum class Service {
        Working,
        Broken, ///< a program that is not there
        Missing,
    };

    explicit PrivateBus(Service service = Service::Working);
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    /// Ends the bus, and with it everything that it started; then a new one under the same address.
    void restart();

private:
    void start();
    void stop();

    TemporaryFolder m_folder;
    std::string m_address;
    pid_t m_process = -1;
};

}
