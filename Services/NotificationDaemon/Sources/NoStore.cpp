#include "NotificationDaemon/NoStore.h"

namespace Tinkra::NotificationDaemon {

void NoStore::apply(const StoreChange& /*change*/, Durability /*durability*/) { }

void NoStore::replace(const std::vector<StoredRequest>& /*requests*/, const Notes& /*notes*/) { }

}
