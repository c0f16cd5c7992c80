#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tinkra::NotificationDaemon {

/// What is kept about a request between two starts. The values are those in the store: never renumber.
enum class StoredState : std::uint8_t {
    Pending = 0,
    Past = 1, ///< lay in the past when it was added: never fires
    Shown = 2,
    Missed = 3,
    Quarantined = 4,
};

struct StoredRequest {
    std::int64_t id = 0;
    StoredState state = StoredState::Pending;
    bool offered = false; ///< handed to a notification server, whose answer was not recorded
    std::int64_t since = 0; ///< when it came into this state, seconds since 1970 UTC
    std::string record; ///< encodeRecord

    friend bool operator==(const StoredRequest&, const StoredRequest&) = default;
};

using Notes = std::map<std::string, std::int64_t>;

/// The note that the store was found damaged, until a caller has acknowledged it.
inline constexpr auto kStoreWasReset = "storeWasReset";

/// Changes that happen together or not at all.
struct StoreChange {
    std::vector<StoredRequest> put;
    std::vector<std::int64_t> erase;
    Notes notes;
};

enum class Durability {
    SurvivesCrash, ///< of the daemon: handed to the system, not waited for
    SurvivesPowerCut,
};

class StoreError : public std::runtime_error {
public:
    enum class Kind {
        Full, ///< nothing was changed; the store is as good as before
        Broken, ///< what the disk holds is in doubt: replace() is needed before anything else
    };

    StoreError(Kind kind, const std::string& what)
        : std::runtime_error(what)
        , m_kind(kind)
    {
    }

    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

/// Keeps requests and a few numbered notes over restarts, crashes and power cuts.
class NotificationStore {
public:
    virtual ~NotificationStore() = default;

    /// Throws StoreError; then nothing of the change is in force.
    virtual void apply(const StoreChange& change, Durability durability) = 0;

    /// Writes everything anew, to storage that never held a page whose writing failed. Throws StoreError.
    virtual void replace(const std::vector<StoredRequest>& requests, const Notes& notes) = 0;
};

}
