#pragma once

#include "AlarmInfrastructure/AlarmPresenter.h"

#include "TinkraConcurrency/Clock.h"
#include "TinkraCore/Protocols/AlarmScheduler.h"
#include "TinkraCore/Protocols/CalendarProvider.h"
#include "TinkraCore/Protocols/SettingsStore.h"
#include "TinkraSystem/EventStore.h"
#include "TinkraSystem/HelperService.h"
#include "TinkraSystem/LoginItem.h"
#include "TinkraSystem/NotificationCenter.h"
#include "TinkraSystem/NotificationCenterDelegate.h"
#include "TinkraSystem/PowerAssertions.h"
#include "TinkraSystem/SharedFolder.h"
#include "TinkraSystem/Workspace.h"

#include <functional>
#include <memory>

namespace Tinkra {

/// All that the application's model works with.
struct AppServices {
    std::shared_ptr<CalendarProvider> provider;
    std::shared_ptr<AlarmScheduler> scheduler;
    std::shared_ptr<SettingsStore> store;
    std::shared_ptr<Clock> clock;

    std::shared_ptr<System::EventStore> eventStore; ///< the one that `provider` reads
    std::shared_ptr<System::NotificationCenter> notificationCenter; ///< the one that `scheduler` arms in
    std::shared_ptr<System::LoginItem> loginItem;
    std::shared_ptr<System::HelperService> wakeHelper;
    std::shared_ptr<System::PowerAssertions> powerAssertions;
    std::shared_ptr<System::SharedFolder> sharedFolder;
    std::shared_ptr<System::Workspace> workspace;
    AlarmPresenter::Means presenter;

    /// From now on the delegate hears of notifications; it is held weakly.
    std::function<void(std::weak_ptr<System::NotificationCenterDelegate>)> setNotificationDelegate;
    /// Brings the application to the front, taking focus from others.
    std::function<void()> activateApplication;

    Executor mainExecutor; ///< the loop of the user interface
    Executor serviceExecutor; ///< carries the strand of the monitoring service
};

}
