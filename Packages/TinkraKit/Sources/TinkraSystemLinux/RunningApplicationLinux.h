#pragma once

#include "TinkraConcurrency/Clock.h"
#include "TinkraSystem/ApplicationInstance.h"

#include <filesystem>
#include <memory>

namespace Tinkra::System {

class MessageBus;

/// The application behind the bus name co.calendarmurkel.Tinkra. One that does not run is started here, not
/// by the bus, so that it gets the display of whoever calls.
class RunningApplicationLinux final : public RunningApplication {
public:
    /// The program that belongs to the running one: tinkra-app in ../libexec beside its folder.
    static std::filesystem::path installedProgram();

    RunningApplicationLinux(std::shared_ptr<MessageBus> sessionBus, std::shared_ptr<Clock> clock,
        std::filesystem::path program = installedProgram());

    Task<> testAlarm() override;

private:
    Task<bool> isRunning();
    Task<> start();

    std::shared_ptr<MessageBus> m_bus;
    std::shared_ptr<Clock> m_clock;
    std::filesystem::path m_program;
};

}
