#include "TinkraSystemMac/DefaultsMac.h"

#include "TinkraSystemMac/FoundationValues.h"

namespace Tinkra::System {

DefaultsMac::DefaultsMac(NSUserDefaults* defaults)
    : m_defaults(defaults)
{
}

std::optional<std::string> DefaultsMac::data(std::string_view key)
{
    @autoreleasepool {
        NSData* data = [m_defaults dataForKey:stringFrom(key)];
        return data == nil ? std::nullopt : std::optional(bytesFrom(data));
    }
}

void DefaultsMac::setData(std::string_view key, std::string_view bytes)
{
    @autoreleasepool {
        [m_defaults setObject:dataFrom(bytes) forKey:stringFrom(key)];
    }
}

}
