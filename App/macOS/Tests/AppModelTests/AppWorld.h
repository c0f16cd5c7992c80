#pragma once

#include "AppModel/AppModel.h"
#include "RecordingDesktop.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeAlarmScheduler.h"
#include "TinkraTestSupport/FakeCalendarProvider.h"
#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/FakeHelperService.h"
#include "TinkraTestSupport/FakeLoginItem.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/FakePowerAssertions.h"
#include "TinkraTestSupport/FakeSettingsStore.h"
#include "TinkraTestSupport/FakeSharedFolder.h"
#include "TinkraTestSupport/FakeWorkspace.h"
#include "TinkraTestSupport/Printing.h"
#include "TinkraTestSupport/TestClock.h"

#include <memory>
#include <string>
#include <vector>

namespace Tinkra {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

/// The application's model among stand-ins, at noon, with time that is turned by hand. The calendar "work" is
/// there and may be read.
class AppWorld {
public:
    using Permission = AppModel::Permission;
    using Property = AppModel::Property;

    AppWorld();
    ~AppWorld();
    AppWorld(const AppWorld&) = delete;
    AppWorld& operator=(const AppWorld&) = delete;

    /// Makes the model with this stored configuration, without starting it up.
    void makeModel(TinkraConfiguration stored = monitoring());
    /// Makes the model and starts it up.
    void launch(TinkraConfiguration stored = monitoring());
    /// The model goes, as at the end of the process.
    void quit();

    void setMeetings(std::vector<Meeting> meetings) const { provider->setMeetings(std::move(meetings)); }
    /// The calendar store tells of a change, and what follows from it happens.
    void calendarsChange();
    void sync() { loop.run(model->syncNow()); }
    void pass(Seconds duration) const { clock->advance(duration); }
    /// The machine wakes, and the system tells of it before anything else runs.
    void wakeMachine();

    /// How many alarms have rung so far, and what rang last.
    std::size_t rings() const { return desktop.banners.size(); }
    const AlarmPayload& lastRing() const { return desktop.banners.at(rings() - 1).payload; }
    bool isRinging() const { return desktop.sounds->playing > 0; }
    void pressSnooze();
    void pressDismiss();

    std::size_t notices(Property property) const;
    std::string wakeFile() const { return folder->files.at("wake"); }
    bool isKeptAwake() const { return !power->held.empty(); }

    TestLoop loop;
    std::shared_ptr<TestClock> clock = std::make_shared<TestClock>(loop, noon);
    std::shared_ptr<CallLog> calls = std::make_shared<CallLog>(); ///< of the two ports
    std::shared_ptr<FakeCalendarProvider> provider =
        std::make_shared<FakeCalendarProvider>(std::vector<Meeting>{}, calls);
    std::shared_ptr<FakeAlarmScheduler> scheduler =
        std::make_shared<FakeAlarmScheduler>(std::vector<Text>{}, calls);
    std::shared_ptr<FakeSettingsStore> store;
    std::shared_ptr<System::FakeEventStore> eventStore = std::make_shared<System::FakeEventStore>();
    std::shared_ptr<System::FakeNotificationCenter> center =
        std::make_shared<System::FakeNotificationCenter>();
    std::shared_ptr<System::FakeLoginItem> loginItem = std::make_shared<System::FakeLoginItem>();
    std::shared_ptr<System::FakeHelperService> helper = std::make_shared<System::FakeHelperService>();
    std::shared_ptr<System::FakePowerAssertions> power = std::make_shared<System::FakePowerAssertions>();
    std::shared_ptr<System::FakeSharedFolder> folder = std::make_shared<System::FakeSharedFolder>();
    std::shared_ptr<System::FakeWorkspace> workspace = std::make_shared<System::FakeWorkspace>();
    RecordingDesktop desktop;
    std::weak_ptr<System::NotificationCenterDelegate> delegate;
    int activations = 0;

    std::shared_ptr<AppModel> model;
    std::vector<Property> noticed; ///< in order
    System::Observation observation;
};

}
