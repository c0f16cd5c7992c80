#pragma once

#include "TinkraCore/Protocols/AlarmScheduler.h"
#include "TinkraCore/Protocols/CalendarProvider.h"
#include "TinkraCore/Protocols/SettingsStore.h"
#include "TinkraSystem/SystemServices.h"

#include <iosfwd>
#include <memory>
#include <string>

namespace Tinkra::CommandLine {

/// Tables for people, or one JSON document for programs.
enum class Format { Table, Json };

/// What a command works with: the services, the core's ports on top of them, and where it writes.
struct Session {
    static constexpr auto configurationKey = "tinkra.configuration";

    Session(System::SystemServices services, Executor executor, std::ostream& out, std::ostream& error);

    /// One line on standard error.
    void complain(const std::string& sentence) const;

    System::SystemServices services;
    Executor executor;
    std::ostream& out;
    std::ostream& error;
    std::shared_ptr<CalendarProvider> provider;
    std::shared_ptr<CalendarProvider> chooser; ///< the same calendars, without keeping a grant
    std::shared_ptr<AlarmScheduler> scheduler;
    std::shared_ptr<SettingsStore> settings;
};

using SessionPtr = std::shared_ptr<Session>;

}
