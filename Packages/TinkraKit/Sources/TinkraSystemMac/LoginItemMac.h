#pragma once

#include "TinkraSystem/LoginItem.h"

namespace Tinkra::System {

/// The main application's own SMAppService.
class LoginItemMac final : public LoginItem {
public:
    ServiceStatus status() override;
    void registerItem() override;
    void unregisterItem() override;
};

}
