#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <sys/types.h>

namespace Tinkra::NotificationDaemon {

/// Who may call, and how often: programs of the same user that are not sandboxed, a thousand calls a second
/// each with room for a burst.
class CallerPolicy {
public:
    enum class Verdict {
        Welcome,
        OtherUser,
        Sandboxed,
        TooFast,
    };

    /// What the bus says about a caller.
    struct Credentials {
        uid_t user = 0;
        pid_t process = 0;
    };

    /// `root` is where the processes' directories are; `ownUser` whose calls are welcome.
    explicit CallerPolicy(uid_t ownUser, std::string root = "/proc");

    /// Judges a call of `weight` ordinary calls. `ask` is invoked once for each sender: a unique bus name
    /// never changes hands. `elapsed` in milliseconds.
    template <typename Ask>
    Verdict judge(const std::string& sender, Ask ask, double weight, std::int64_t elapsed)
    {
        auto found = m_callers.find(sender);
        if (found == m_callers.end())
            found = admit(sender, judgeCredentials(ask()), elapsed);
        return spend(found->second, weight, elapsed);
    }

private:
    struct Caller {
        Verdict identity = Verdict::Welcome;
        double credit = 0; ///< calls
        std::int64_t countedAt = 0; ///< elapsed
    };
    using Callers = std::map<std::string, Caller>;

    Verdict judgeCredentials(Credentials credentials) const;
    Callers::iterator admit(const std::string& sender, Verdict identity, std::int64_t elapsed);
    static Verdict spend(Caller& caller, double weight, std::int64_t elapsed);

    uid_t m_ownUser;
    std::string m_processes;
    Callers m_callers;
};

}
