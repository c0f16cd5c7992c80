#include "SelfCheck.h"

#include <exception>
#include <utility>

namespace Tinkra {

namespace {

using System::SystemServices;

template <typename Value> std::string number(Value value)
{
    return std::to_string(static_cast<long long>(value));
}

Task<std::string> askClock(SystemServices services)
{
    const auto before = services.clock->now();
    co_await services.clock->sleepFor(Seconds(0.05), {});
    co_return services.clock->now() >= before ? "waits" : "went back while it waited";
}

Task<std::string> askLocalCalendar(SystemServices services)
{
    const auto now = services.localCalendar->components(services.clock->now());
    co_return "it is the year " + number(now.year);
}

Task<std::string> askDefaults(SystemServices services)
{
    co_return services.defaults->data("tinkra.configuration") ? "holds a configuration"
                                                              : "holds no configuration";
}

Task<std::string> askEventStore(SystemServices services)
{
    const auto calendars = co_await services.eventStore->calendars();
    co_return "authorisation " + number(services.eventStore->authorizationStatus()) + ", "
        + number(calendars.size()) + " calendars";
}

Task<std::string> askNotificationCenter(SystemServices services)
{
    const auto authorization = co_await services.notificationCenter->authorizationStatus();
    const auto pending = co_await services.notificationCenter->pendingRequests();
    co_return "authorisation " + number(authorization) + ", " + number(pending.size()) + " pending";
}

Task<std::string> askAudioDevice(SystemServices services)
{
    const auto device = services.audioDevice->defaultOutputDevice();
    if (!device)
        co_return "no output device";
    co_return services.audioDevice->hasVolume(*device, System::AudioElement::Main)
        ? "an output device with a main volume"
        : "an output device without a main volume";
}

Task<std::string> askSoundLibrary(SystemServices services)
{
    co_return services.soundLibrary->sound("Glass") ? "has the sound Glass" : "has no sound Glass";
}

using Question = Task<std::string> (*)(SystemServices services);

Task<SelfCheckLine> ask(std::string service, Question question, SystemServices services)
{
    SelfCheckLine line{.service = std::move(service), .answer = {}};
    try {
        line.answer = co_await question(std::move(services));
        line.hasAnswered = true;
    } catch (const std::exception& error) {
        line.answer = error.what();
    }
    co_return line;
}

}

Task<std::vector<SelfCheckLine>> selfCheck(SystemServices services)
{
    const std::vector<std::pair<const char*, Question>> questions{
        {"Clock", askClock},
        {"Local calendar", askLocalCalendar},
        {"Preferences", askDefaults},
        {"Calendars", askEventStore},
        {"Notifications", askNotificationCenter},
        {"Sound device", askAudioDevice},
        {"Sounds", askSoundLibrary},
    };
    std::vector<SelfCheckLine> lines;
    for (const auto& [service, question] : questions)
        lines.push_back(co_await ask(service, question, services));
    co_return lines;
}

}
