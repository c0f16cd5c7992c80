#pragma once

#include "TinkraSystem/ServiceStatus.h"

#import <ServiceManagement/ServiceManagement.h>

namespace Tinkra::System {

inline ServiceStatus statusOf(SMAppService* _Nonnull service)
{
    switch (service.status) {
    case SMAppServiceStatusNotRegistered:
        return ServiceStatus::NotRegistered;
    case SMAppServiceStatusEnabled:
        return ServiceStatus::Enabled;
    case SMAppServiceStatusRequiresApproval:
        return ServiceStatus::RequiresApproval;
    case SMAppServiceStatusNotFound:
        return ServiceStatus::NotFound;
    }
    return ServiceStatus::NotFound; // a value that this program does not know yet
}

}
