#pragma once

#include "TinkraCore/Models/TinkraConfiguration.h"

namespace Tinkra {

/// Where the configuration is kept. Neither operation fails visibly.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The stored configuration, or the default one when nothing usable is stored.
    virtual TinkraConfiguration load() = 0;

    /// Stores the whole configuration.
    virtual void save(const TinkraConfiguration& configuration) = 0;
};

}
