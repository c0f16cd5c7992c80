#include "TinkraTestSupport/FakeNotificationCenter.h"

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>

#include <algorithm>
#include <utility>

namespace Tinkra::System {

namespace {

Task<> present(std::weak_ptr<NotificationCenterDelegate> weak, std::function<bool()> isActive,
    NotificationRequest request)
{
    const auto delegate = weak.lock();
    if (delegate && isActive())
        co_await delegate->willPresent(std::move(request));
}

Task<> receive(std::weak_ptr<NotificationCenterDelegate> weak, NotificationResponse response)
{
    if (const auto delegate = weak.lock())
        co_await delegate->didReceive(std::move(response));
}

}

FakeNotificationCenter::FakeNotificationCenter(std::shared_ptr<CallLog> log)
    : m_log(std::move(log))
{
}

Task<bool> FakeNotificationCenter::requestAuthorization(std::uint32_t options)
{
    co_await m_log->record("requestAuthorization " + std::to_string(options));
    const std::lock_guard lock(m_mutex);
    if (m_requestError)
        std::rethrow_exception(m_requestError);
    m_authorization = m_answer ? NotificationAuthorization::Authorized : NotificationAuthorization::Denied;
    co_return m_answer;
}

Task<NotificationAuthorization> FakeNotificationCenter::authorizationStatus()
{
    co_await m_log->record("authorizationStatus");
    const std::lock_guard lock(m_mutex);
    co_return m_authorization;
}

Task<std::vector<NotificationRequest>> FakeNotificationCenter::pendingRequests()
{
    co_await m_log->record("pendingRequests");
    co_return pending();
}

Task<> FakeNotificationCenter::add(NotificationRequest request)
{
    co_await m_log->record("add " + request.identifier);
    const std::lock_guard lock(m_mutex);
    if (m_addError)
        std::rethrow_exception(m_addError);
    const auto same = std::ranges::find(m_pending, request.identifier, &NotificationRequest::identifier);
    if (same != m_pending.end())
        *same = std::move(request);
    else
        m_pending.push_back(std::move(request));
}

Task<> FakeNotificationCenter::removePending(std::vector<std::string> identifiers)
{
    co_await m_log->record("removePending " + listed(identifiers));
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_pending, [&identifiers](const NotificationRequest& request) {
        return std::ranges::find(identifiers, request.identifier) != identifiers.end();
    });
}

void FakeNotificationCenter::setAuthorization(NotificationAuthorization authorization)
{
    const std::lock_guard lock(m_mutex);
    m_authorization = authorization;
}

void FakeNotificationCenter::answerRequestsWith(bool isGranted)
{
    const std::lock_guard lock(m_mutex);
    m_answer = isGranted;
}

void FakeNotificationCenter::failRequestsWith(std::exception_ptr error)
{
    const std::lock_guard lock(m_mutex);
    m_requestError = std::move(error);
}

void FakeNotificationCenter::failAddingWith(std::exception_ptr error)
{
    const std::lock_guard lock(m_mutex);
    m_addError = std::move(error);
}

void FakeNotificationCenter::setPending(std::vector<NotificationRequest> pending)
{
    const std::lock_guard lock(m_mutex);
    m_pending = std::move(pending);
}

std::vector<NotificationRequest> FakeNotificationCenter::pending() const
{
    const std::lock_guard lock(m_mutex);
    return m_pending;
}

std::optional<NotificationRequest> FakeNotificationCenter::deliver(const std::string& identifier)
{
    const std::lock_guard lock(m_mutex);
    const auto due = std::ranges::find(m_pending, identifier, &NotificationRequest::identifier);
    if (due == m_pending.end())
        return std::nullopt;
    auto request = std::move(*due);
    m_pending.erase(due);
    if (m_mainThread)
        asio::co_spawn(m_mainThread, present(m_delegate, m_isActive, request), asio::detached);
    return request;
}

void FakeNotificationCenter::setDelegate(
    std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread, std::function<bool()> isActive)
{
    const std::lock_guard lock(m_mutex);
    m_delegate = std::move(delegate);
    m_mainThread = std::move(mainThread);
    m_isActive = std::move(isActive);
    for (auto& response : std::exchange(m_held, {}))
        asio::co_spawn(m_mainThread, receive(m_delegate, std::move(response)), asio::detached);
}

void FakeNotificationCenter::respond(NotificationResponse response)
{
    const std::lock_guard lock(m_mutex);
    if (m_mainThread)
        asio::co_spawn(m_mainThread, receive(m_delegate, std::move(response)), asio::detached);
    else
        m_held.push_back(std::move(response));
}

}
