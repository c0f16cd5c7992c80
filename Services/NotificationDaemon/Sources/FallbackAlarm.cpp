#include "NotificationDaemon/FallbackAlarm.h"

#include <array>
#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

namespace {

// Absolute, so that PATH has no say.
constexpr std::array kPlayers{"/usr/bin/pw-play", "/usr/bin/paplay"};
constexpr auto kSound = "/usr/share/sounds/freedesktop/stereo/alarm-clock-elapsed.oga";

}

void FallbackAlarm::sound()
{
    if (m_player != 0 && waitpid(m_player, nullptr, WNOHANG) == 0)
        return;
    m_player = 0;
    for (const auto* player : kPlayers) {
        if (access(player, X_OK) != 0 || access(kSound, R_OK) != 0)
            continue;
        std::array<char*, 3> arguments{
            const_cast<char*>(player), const_cast<char*>(kSound), nullptr}; // NOLINT
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
        if (posix_spawn(&m_player, player, nullptr, &attributes, arguments.data(), environ) != 0)
            m_player = 0;
        posix_spawnattr_destroy(&attributes);
        return;
    }
}

}
