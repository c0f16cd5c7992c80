#include "AppWorld.h"

#include <algorithm>

namespace Tinkra {

AppWorld::AppWorld()
{
    provider->setCalendars({{.id = "work", .title = "Work", .accountName = "Office", .colorHex = {}}});
}

AppWorld::~AppWorld()
{
    quit();
}

void AppWorld::makeModel(TinkraConfiguration stored)
{
    store = std::make_shared<FakeSettingsStore>(std::move(stored));
    AppServices services{
        .provider = provider,
        .scheduler = scheduler,
        .store = store,
        .clock = clock,
        .eventStore = eventStore,
        .notificationCenter = center,
        .loginItem = loginItem,
        .wakeHelper = helper,
        .powerAssertions = power,
        .sharedFolder = folder,
        .workspace = workspace,
        .presenter = desktop.means(),
        .setNotificationDelegate = [this](auto itsDelegate) { delegate = std::move(itsDelegate); },
        .activateApplication = [this] { ++activations; },
        .mainExecutor = loop.executor(),
        .serviceExecutor = loop.executor(),
    };
    model = std::make_shared<AppModel>(std::move(services));
    observation = model->observe([this](Property property) { noticed.push_back(property); });
}

void AppWorld::launch(TinkraConfiguration stored)
{
    makeModel(std::move(stored));
    loop.run(model->bootstrap());
    pass(Seconds{0}); // timers lie down
}

void AppWorld::quit()
{
    model.reset();
    loop.drain();
}

void AppWorld::calendarsChange()
{
    eventStore->notifyChanged();
    loop.drain();
}

void AppWorld::wakeMachine()
{
    workspace->wake();
    loop.drain();
}

void AppWorld::pressSnooze()
{
    const auto snooze = desktop.banners.back().onSnooze;
    snooze();
    loop.drain();
}

void AppWorld::pressDismiss()
{
    const auto dismiss = desktop.banners.back().onDismiss;
    dismiss();
    loop.drain();
}

std::size_t AppWorld::notices(Property property) const
{
    return static_cast<std::size_t>(std::ranges::count(noticed, property));
}

}
