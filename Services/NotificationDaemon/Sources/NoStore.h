#pragma once

#include "NotificationDaemon/NotificationStore.h"

namespace Tinkra::NotificationDaemon {

/// Stands in where nothing can be kept: the requests live in memory alone, and the daemon's status says so.
class NoStore final : public NotificationStore {
public:
    void apply(const StoreChange& change, Durability durability) override;
    void replace(const std::vector<StoredRequest>& requests, const Notes& notes) override;
};

}
