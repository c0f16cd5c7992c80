#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Tinkra::NotificationDaemon {

struct Notification {
    std::string summary;
    std::string body; ///< as the user wrote it; what makes it safe to show is the server's client's business
    bool sound = false;
    bool repeat = false; ///< it may have been shown before
};

/// The desktop's notification server. Answers come to the ServerObserver, never from within a call.
class NotificationServer {
public:
    virtual ~NotificationServer() = default;

    /// Hands over a notification; the answer carries the same token.
    virtual void show(std::int64_t token, const Notification& notification) = 0;

    /// A server answers, or can be started by asking for it.
    virtual bool isAvailable() = 0;
};

}
