#pragma once

#include "TinkraSystem/Defaults.h"

#import <Foundation/Foundation.h>

namespace Tinkra::System {

/// NSUserDefaults. Writing cannot fail there; when it reaches the disk is the system's affair.
class DefaultsMac final : public Defaults {
public:
    explicit DefaultsMac(NSUserDefaults* _Nonnull defaults);

    std::optional<std::string> data(std::string_view key) override;
    void setData(std::string_view key, std::string_view bytes) override;

private:
    NSUserDefaults* _Nonnull m_defaults;
};

}
