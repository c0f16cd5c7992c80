#pragma once

#include "TinkraSystem/ApplicationInstance.h"

#include <memory>
#include <thread>

namespace sdbus {
class IConnection;
class IObject;
}

namespace Tinkra::System {

/// The name co.calendarmurkel.Tinkra on the session bus, and the object behind it.
class ApplicationInstanceLinux final : public ApplicationInstance {
public:
    ApplicationInstanceLinux();
    ApplicationInstanceLinux(const ApplicationInstanceLinux&) = delete;
    ApplicationInstanceLinux& operator=(const ApplicationInstanceLinux&) = delete;
    ~ApplicationInstanceLinux() override;

    bool claim(Executor mainThread, ApplicationRequests requests) override;
    void release() override;

private:
    std::unique_ptr<sdbus::IConnection> m_connection;
    std::unique_ptr<sdbus::IObject> m_object;
    std::thread m_thread; ///< serves the connection
};

}
