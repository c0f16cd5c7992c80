#pragma once

namespace Tinkra::NotificationDaemon {

/// A sound, for an alarm that no notification server takes. Where there is none, nothing happens.
class FallbackAlarm {
public:
    /// Starts a player and does not wait for it. While one plays, nothing is added.
    void sound();

private:
    int m_player = 0; ///< process
};

}
