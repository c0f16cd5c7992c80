#pragma once

#include "TinkraCore/Protocols/SettingsStore.h"

#include <vector>

namespace Tinkra {

/// The configuration in memory, and every configuration that was ever saved.
class FakeSettingsStore final : public SettingsStore {
public:
    explicit FakeSettingsStore(TinkraConfiguration stored = {})
        : m_stored(std::move(stored))
    {
    }

    TinkraConfiguration load() override { return m_stored; }

    void save(const TinkraConfiguration& configuration) override
    {
        m_stored = configuration;
        m_saved.push_back(configuration);
    }

    const std::vector<TinkraConfiguration>& saved() const { return m_saved; }

private:
    TinkraConfiguration m_stored;
    std::vector<TinkraConfiguration> m_saved;
};

}
