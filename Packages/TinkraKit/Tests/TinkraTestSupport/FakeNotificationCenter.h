#pragma once

#include "TinkraSystem/NotificationCenter.h"
#include "TinkraSystem/NotificationCenterDelegate.h"
#include "TinkraTestSupport/CallLog.h"

#include <exception>
#include <memory>
#include <mutex>
#include <optional>

namespace Tinkra::System {

/// A notification centre in memory. Calls are logged as "requestAuthorization OPTIONS",
/// "authorizationStatus", "pendingRequests", "add ID" and "removePending [ID, ID]".
class FakeNotificationCenter final : public NotificationCenter {
public:
    explicit FakeNotificationCenter(std::shared_ptr<CallLog> log = std::make_shared<CallLog>());

    Task<bool> requestAuthorization(std::uint32_t options) override;
    Task<NotificationAuthorization> authorizationStatus() override;
    Task<std::vector<NotificationRequest>> pendingRequests() override;
    Task<> add(NotificationRequest request) override;
    Task<> removePending(std::vector<std::string> identifiers) override;
    void setDelegate(std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread,
        std::function<bool()> isActive) override;

    /// Authorized at the start.
    void setAuthorization(NotificationAuthorization authorization);
    /// What the user answers to the next request; the status follows the answer.
    void answerRequestsWith(bool isGranted);
    /// From now on requests for authorisation throw, until this is called with nothing.
    void failRequestsWith(std::exception_ptr error);
    /// From now on adding throws, until this is called with nothing.
    void failAddingWith(std::exception_ptr error);

    /// Puts a request there without a call.
    void setPending(std::vector<NotificationRequest> pending);
    std::vector<NotificationRequest> pending() const;

    /// The request's time has come: it is shown and no longer pending; nothing when it was not pending. An
    /// active application's delegate hears of it.
    std::optional<NotificationRequest> deliver(const std::string& identifier);

    /// The user responds to a notification that was delivered.
    void respond(NotificationResponse response);

    CallLog& log() { return *m_log; }

private:
    std::shared_ptr<CallLog> m_log;
    mutable std::mutex m_mutex; // guards what follows
    NotificationAuthorization m_authorization = NotificationAuthorization::Authorized;
    bool m_answer = true;
    std::exception_ptr m_requestError;
    std::exception_ptr m_addError;
    std::vector<NotificationRequest> m_pending;
    std::weak_ptr<NotificationCenterDelegate> m_delegate;
    Executor m_mainThread;
    std::function<bool()> m_isActive;
    std::vector<NotificationResponse> m_held; ///< until there is a delegate
};

}
