#pragma once

#include "TinkraCore/Protocols/SettingsStore.h"
#include "TinkraSystem/Defaults.h"

#include <memory>
#include <string>

namespace Tinkra {

/// Keeps the configuration as one JSON document under one key of the user's preferences. Holds no copy: each
/// load reads, each save writes the whole document. No failure leaves it.
class UserDefaultsSettingsStore final : public SettingsStore {
public:
    /// The application's key is "tinkra.configuration". Reads and writes nothing.
    UserDefaultsSettingsStore(std::shared_ptr<System::Defaults> defaults, std::string key);

    /// Missing or undecodable data gives the default configuration and stays where it is until the next save.
    TinkraConfiguration load() override;

    /// A configuration without a JSON form is not saved; the previous document stays.
    void save(const TinkraConfiguration& configuration) override;

private:
    std::shared_ptr<System::Defaults> m_defaults;
    std::string m_key;
};

}
