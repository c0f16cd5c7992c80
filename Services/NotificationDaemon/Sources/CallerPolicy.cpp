#include "NotificationDaemon/CallerPolicy.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr double kCallsPerMillisecond = 1;
constexpr double kBurst = 20000;
constexpr std::size_t kMostCallers = 1024;

}

CallerPolicy::CallerPolicy(uid_t ownUser, std::string root)
    : m_ownUser(ownUser)
    , m_processes(std::move(root))
{
}

CallerPolicy::Verdict CallerPolicy::judgeCredentials(Credentials credentials) const
{
    if (credentials.user != m_ownUser)
        return Verdict::OtherUser;
    // A sandbox puts this file at the root of what its programs, and the proxy they call through, can see.
    // Where one cannot look, as with a process that has ended since, the answer is no.
    const auto mark = m_processes + "/" + std::to_string(credentials.process) + "/root/";
    struct stat status { };
    if (stat(mark.c_str(), &status) != 0)
        return Verdict::Sandboxed;
    return stat((mark + ".flatpak-info").c_str(), &status) != 0 && errno == ENOENT ? Verdict::Welcome
                                                                                   : Verdict::Sandboxed;
}

CallerPolicy::Callers::iterator CallerPolicy::admit(
    const std::string& sender, Verdict identity, std::int64_t elapsed)
{
    if (m_callers.size() >= kMostCallers) {
        // Those whose credit is full again lose nothing by being forgotten.
        std::erase_if(m_callers, [&](const auto& caller) {
            return static_cast<double>(elapsed - caller.second.countedAt) * kCallsPerMillisecond > kBurst;
        });
    }
    if (m_callers.size() >= kMostCallers)
        m_callers.clear();
    return m_callers.emplace(sender, Caller{identity, kBurst, elapsed}).first;
}

CallerPolicy::Verdict CallerPolicy::spend(Caller& caller, double weight, std::int64_t elapsed)
{
    if (caller.identity != Verdict::Welcome)
        return caller.identity;
    const auto earned = static_cast<double>(elapsed - caller.countedAt) * kCallsPerMillisecond;
    caller.credit = std::min(kBurst, caller.credit + earned);
    caller.countedAt = elapsed;
    if (caller.credit < weight)
        return Verdict::TooFast;
    caller.credit -= weight;
    return Verdict::Welcome;
}

}
