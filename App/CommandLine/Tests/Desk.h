#pragma once

#include "CommandLine.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeDefaults.h"
#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/FakeLocalCalendar.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/TestClock.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace Tinkra::CommandLine {

/// Says what a test tells it to say.
class FakeHealthChecks final : public System::HealthChecks {
public:
    Task<std::vector<System::HealthFinding>> run() override;
    Task<System::HealthFinding> notificationService() override;
    Task<std::vector<std::string>> filesLeftOut() override;
    Task<> acknowledgeRearmed() override;

    std::vector<System::HealthFinding> findings;
    System::HealthFinding service{"Notification service", System::HealthFinding::Level::Ok, "It runs.", ""};
    std::vector<std::string> leftOut;
    int acknowledgements = 0;
};

/// A machine of stand-ins with somebody who types commands. Work/Team and Home/Family are calendars; the
/// first has a stand-up in an hour. It is noon, in UTC.
class Desk {
public:
    static constexpr Instant today =
        std::chrono::sys_days(std::chrono::year(2026) / 11 / 20) + std::chrono::hours(12);

    Desk();

    /// Types "tinkra" and the arguments; `out` and `error` hold what came of it.
    ExitCode run(std::vector<std::string> arguments);

    nlohmann::json json() const { return nlohmann::json::parse(out); }

    /// Stores a configuration, or one that monitors these calendars.
    void store(const TinkraConfiguration& configuration) const;
    void monitor(CalendarIDs ids) const { store(monitoring(std::move(ids))); }
    TinkraConfiguration stored() const;

    std::string in;
    std::string out;
    std::string error;
    bool madeServices = false;
    std::shared_ptr<System::FakeEventStore> events = std::make_shared<System::FakeEventStore>();
    std::shared_ptr<System::FakeEventStore> choice = std::make_shared<System::FakeEventStore>();
    std::shared_ptr<System::FakeNotificationCenter> center =
        std::make_shared<System::FakeNotificationCenter>();
    std::shared_ptr<System::FakeDefaults> defaults = std::make_shared<System::FakeDefaults>();
    std::shared_ptr<System::FakeLocalCalendar> calendar = std::make_shared<System::FakeLocalCalendar>();
    std::shared_ptr<TestClock> clock = std::make_shared<TestClock>([] {}, today);
    std::shared_ptr<FakeHealthChecks> health = std::make_shared<FakeHealthChecks>();
};

}
