#pragma once

#include "NotificationDaemon/NotificationStore.h"

#include <cstdint>
#include <vector>

struct sqlite3;

namespace Tinkra::NotificationDaemon {

struct StoreReading {
    std::vector<StoredRequest> requests;
    Notes notes;
    std::vector<std::int64_t> damaged; ///< rows whose bytes are not those that were written
    bool isComplete = true; ///< false when SQLite gave up before the end
};

/// Reads every row of a sound store.
StoreReading readStore(sqlite3* database);

/// Reads what can be read of a damaged one: from both ends, and row by row between them. Never throws.
StoreReading salvageStore(sqlite3* database);

/// Over everything of a row but whether it was offered.
std::int64_t storedChecksum(const StoredRequest& request);

}
