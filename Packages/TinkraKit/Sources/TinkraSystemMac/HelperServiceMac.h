#pragma once

#include "TinkraSystem/HelperService.h"

namespace Tinkra::System {

/// The launch daemon in the bundle, by its property list (SMAppService).
class HelperServiceMac final : public HelperService {
public:
    ServiceStatus status() override;
    void registerService() override;
};

}
