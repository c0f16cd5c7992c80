#pragma once

#include "NotificationDaemon/CallerPolicy.h"
#include "NotificationDaemon/DesktopNotificationServer.h"
#include "NotificationDaemon/HeldResponses.h"
#include "NotificationDaemon/Moment.h"
#include "NotificationDaemon/NotificationCenter.h"

#include <sdbus-c++/IConnection.h>
#include <sdbus-c++/IObject.h>
#include <sdbus-c++/IProxy.h>
#include <sdbus-c++/Message.h>

#include <functional>
#include <memory>
#include <string>

namespace Tinkra::NotificationDaemon {

/// The object co.calendarmurkel.NotificationCenter1 on the bus: judges the caller, reads the message, asks
/// the centre, writes the answer. Every exception becomes an error reply.
class NotificationService {
public:
    /// `inMemoryReason` is empty where requests are kept on the disk.
    NotificationService(sdbus::IConnection& connection, NotificationCenter& center,
        DesktopNotificationServer& server, HeldResponses& responses, std::function<Moment()> now,
        std::string inMemoryReason);

    void emitStoreWasReset();
    void emitDelivered(const NotificationDaemonProtocol::Request& request);
    void emitResponseReceived();
    /// Asks the bus to start the application, if it does not run, and does not wait for that.
    void startApplication();

private:
    using Handler = void (NotificationService::*)(sdbus::MethodCall&, sdbus::MethodReply&);

    void registerMethod(const char* name, const char* in, const char* out, Handler handler);
    void serve(sdbus::MethodCall& call, const char* name, Handler handler);
    void admit(const sdbus::MethodCall& call, const char* name);

    void add(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void removePending(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void pendingIdentifiers(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void pending(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void requestAuthorization(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void authorizationStatus(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void status(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void acknowledgeReset(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void missed(sdbus::MethodCall& call, sdbus::MethodReply& reply);
    void takeResponses(sdbus::MethodCall& call, sdbus::MethodReply& reply);

    NotificationCenter& m_center;
    DesktopNotificationServer& m_server;
    HeldResponses& m_responses;
    std::function<Moment()> m_now;
    std::string m_inMemoryReason;
    CallerPolicy m_callers;
    std::unique_ptr<sdbus::IObject> m_object;
    std::unique_ptr<sdbus::IProxy> m_bus;
};

}
