#include "TinkraPlatformApple/UserDefaultsSettingsStore.h"

#include "TinkraCore/Models/Coding.h"

#include <utility>

namespace Tinkra {

UserDefaultsSettingsStore::UserDefaultsSettingsStore(
    std::shared_ptr<System::Defaults> defaults, std::string key)
    : m_defaults(std::move(defaults))
    , m_key(std::move(key))
{
}

TinkraConfiguration UserDefaultsSettingsStore::load()
{
    const auto document = m_defaults->data(m_key);
    if (!document)
        return {};
    try {
        return decode<TinkraConfiguration>(*document);
    } catch (const DecodingError&) {
        return {};
    }
}

void UserDefaultsSettingsStore::save(const TinkraConfiguration& configuration)
{
    try {
        m_defaults->setData(m_key, encode(configuration));
    } catch (const EncodingError&) {
        // What cannot be written down leaves the document that is there.
        return;
    }
}

}
