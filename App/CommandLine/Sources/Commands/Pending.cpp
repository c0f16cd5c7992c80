#include "Commands/Commands.h"

#include "Json.h"
#include "Table.h"
#include "TimeText.h"

#include <algorithm>
#include <ostream>

namespace Tinkra::CommandLine {

namespace {

using Requests = std::vector<System::NotificationRequest>;

void printTable(const Session& session, Requests requests)
{
    if (requests.empty()) {
        session.out << "No alarm is pending.\n";
        return;
    }
    std::ranges::stable_sort(
        requests, {}, [](const auto& request) { return isoText(request.trigger.components); });
    Table table({"ALARM", "MEETING", "IDENTIFIER"});
    for (const auto& request : requests)
        table.add({localText(request.trigger.components), request.content.body, request.identifier});
    table.print(session.out);
}

Json toJson(const System::UserInfo& userInfo)
{
    auto object = Json::object();
    for (const auto& [key, value] : userInfo)
        std::visit([&, &key = key](const auto& held) { object[key] = held; }, value);
    return object;
}

void printJson(const Session& session, const Requests& requests)
{
    auto document = Json::array();
    for (const auto& request : requests)
        document.push_back({
            {"id", request.identifier},
            {"title", request.content.title},
            {"body", request.content.body},
            {"localTime", isoText(request.trigger.components)},
            {"repeats", request.trigger.repeats},
            {"userInfo", toJson(request.content.userInfo)},
        });
    session.out << jsonText(document) << '\n';
}

}

Task<ExitCode> listPending(SessionPtr session, Format format)
{
    const auto service = co_await session->services.healthChecks->notificationService();
    if (service.level == System::HealthFinding::Level::Failure) {
        session->complain(service.finding + " " + service.remedy);
        co_return ExitCode::Failure;
    }
    auto requests = co_await session->services.notificationCenter->pendingRequests();
    if (format == Format::Json)
        printJson(*session, requests);
    else
        printTable(*session, std::move(requests));
    co_return ExitCode::Success;
}

}
