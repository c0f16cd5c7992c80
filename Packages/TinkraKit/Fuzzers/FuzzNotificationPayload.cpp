// Reads the input as a kept record, decides when it fires, and makes its texts fit to be shown.

#include "NotificationDaemon/NotificationText.h"
#include "NotificationDaemon/RequestRecord.h"
#include "NotificationDaemon/TriggerTime.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <variant>

namespace {

/// Changes by an hour every half year, more or less.
class RestlessZone final : public Tinkra::NotificationDaemon::LocalZone {
public:
    std::int64_t utcOffset(std::int64_t instant) const override
    {
        return instant / 15778800 % 2 == 0 ? 3600 : 7200;
    }
};

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace Tinkra::NotificationDaemon;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    constexpr std::size_t kLimit = 40;
    const auto line = oneLine(bytes, kLimit);
    if (line.size() > 4 * kLimit || line.find('\n') != std::string::npos
        || line.find('\0') != std::string::npos || oneLine(line, kLimit) != line
        || escapeMarkup(line).find('<') != std::string::npos)
        std::abort();

    try {
        const auto request = decodeRecord(bytes);
        if (!isValid(request.components))
            std::abort();
        const auto fireDate = request.userInfo.find("fireDate");
        const auto* number =
            fireDate != request.userInfo.end() ? std::get_if<double>(&fireDate->second) : nullptr;
        const auto trigger = triggerTime(
            request.components, number != nullptr ? std::optional(*number) : std::nullopt, RestlessZone());
        const auto wall = secondsOf(request.components);
        if (trigger < wall - 7200 || trigger > wall)
            std::abort();
        if (encodeRecord(decodeRecord(encodeRecord(request))) != encodeRecord(request))
            std::abort();
    } catch (const DamagedRecord&) {
        return 0;
    }
    return 0;
}
