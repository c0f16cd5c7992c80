#include "TinkraSystemMac/HelperServiceMac.h"

#include "TinkraSystemMac/FoundationValues.h"
#include "TinkraSystemMac/ServiceStatusMac.h"

namespace Tinkra::System {

namespace {

SMAppService* _Nonnull helper()
{
    return [SMAppService daemonServiceWithPlistName:stringFrom(kWakeHelperPropertyList)];
}

}

ServiceStatus HelperServiceMac::status()
{
    return statusOf(helper());
}

void HelperServiceMac::registerService()
{
    NSError* error = nil;
    if (![helper() registerAndReturnError:&error])
        throwRefusal(error);
}

}
