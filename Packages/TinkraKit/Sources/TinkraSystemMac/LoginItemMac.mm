#include "TinkraSystemMac/LoginItemMac.h"

#include "TinkraSystemMac/FoundationValues.h"
#include "TinkraSystemMac/ServiceStatusMac.h"

namespace Tinkra::System {

ServiceStatus LoginItemMac::status()
{
    return statusOf(SMAppService.mainAppService);
}

void LoginItemMac::registerItem()
{
    NSError* error = nil;
    if (![SMAppService.mainAppService registerAndReturnError:&error])
        throwRefusal(error);
}

void LoginItemMac::unregisterItem()
{
    NSError* error = nil;
    if (![SMAppService.mainAppService unregisterAndReturnError:&error])
        throwRefusal(error);
}

}
