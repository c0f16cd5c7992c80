#include "TinkraICalendar/IcuZone.h"
#include "TinkraICalendar/Zone.h"
#include "TinkraICalendar/ZoneFile.h"
#include "TinkraICalendar/ZoneFolder.h"
#include "TinkraICalendar/ZoneNames.h"
#include "TinkraICalendar/ZoneTable.h"

#include <functional>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <unordered_map>

namespace Tinkra::ICalendar {

namespace {

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

/// What was asked for before, with the zones that were found and the names that were not.
class ZoneCache {
public:
    std::optional<ZonePtr> find(std::string_view name) const
    {
        const std::shared_lock lock(m_mutex);
        const auto found = m_zones.find(name);
        return found == m_zones.end() ? std::nullopt : std::optional(found->second);
    }

    /// Gives the zone that is kept: another thread may have been quicker.
    ZonePtr keep(std::string_view name, const ZonePtr& zone)
    {
        const std::unique_lock lock(m_mutex);
        if (m_zones.size() >= kMostNames)
            m_zones.clear(); // somebody makes up names; the zones in use live on
        return m_zones.try_emplace(std::string(name), zone).first->second;
    }

    std::uint64_t clearIfOlderThan(ZoneFolderState state)
    {
        const std::unique_lock lock(m_mutex);
        if (m_state != state) {
            m_zones.clear();
            m_state = std::move(state);
            ++m_generation;
        }
        return m_generation;
    }

private:
    static constexpr std::size_t kMostNames = 4096;

    mutable std::shared_mutex m_mutex;
    std::unordered_map<std::string, ZonePtr, TextHash, std::equal_to<>> m_zones;
    std::optional<ZoneFolderState> m_state; // when m_zones was empty
    std::uint64_t m_generation = 0;
};

ZoneCache& cache()
{
    static ZoneCache instance;
    return instance;
}

std::string_view trimmed(std::string_view text)
{
    const auto isIn = [](std::string_view set, char c) { return set.find(c) != std::string_view::npos; };
    while (!text.empty() && isIn(" \t\"'", text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isIn(" \t\"'", text.back()))
        text.remove_suffix(1);
    return text;
}

bool meansUtc(std::string_view name)
{
    return name == "Z" || name == "z" || name == "UTC" || name == "utc" || name == "Etc/UTC"
        || name == "tzone://Microsoft/Utc";
}

ZonePtr ianaZone(const std::string& name);

/// The machine's own zone file first: it is updated with the machine, ICU's data with ICU alone.
ZonePtr loadIanaZone(const std::string& name)
{
    if (auto zone = loadZoneFile(name))
        return zone;
    const auto spelled = zoneNameInAnyCase(name);
    if (!spelled)
        return nullptr;
    return *spelled == name ? makeIcuZone(name) : ianaZone(*spelled);
}

ZonePtr ianaZone(const std::string& name)
{
    if (meansUtc(name))
        return utcZone();
    if (auto known = cache().find(name))
        return *known;
    auto zone = loadIanaZone(name);
    return zone ? cache().keep(name, zone) : nullptr;
}

/// What follows the first `count` slashes from the end.
std::string_view lastParts(std::string_view name, int count)
{
    auto slash = name.size();
    for (int i = 0; i < count; ++i) {
        slash = slash == 0 ? std::string_view::npos : name.rfind('/', slash - 1);
        if (slash == std::string_view::npos)
            return {};
    }
    return name.substr(slash + 1);
}

/// A name behind the prefix of a program: "/example.org/20210210_1/America/Argentina/Ushuaia".
ZonePtr prefixedZone(std::string_view name)
{
    if (!name.starts_with('/'))
        return nullptr;
    for (const int parts : {3, 2, 1}) {
        const auto rest = lastParts(name, parts);
        if (rest.empty())
            continue;
        if (auto zone = ianaZone(std::string(rest)))
            return zone;
    }
    return nullptr;
}

ZonePtr lookUp(std::string_view name)
{
    if (name.empty())
        return nullptr;
    if (meansUtc(name))
        return utcZone();
    if (auto zone = ianaZone(std::string(name)))
        return zone;
    if (auto zone = prefixedZone(name))
        return zone;
    if (const auto iana = zoneNameOfWindowsZone(name))
        return ianaZone(*iana);
    return nullptr;
}

}

ZonePtr utcZone()
{
    static const ZonePtr utc = std::make_shared<ZoneTable>(
        "UTC", std::chrono::seconds{0}, std::vector<ZoneChange>{}, AfterLastChange::Stays);
    return utc;
}

ZonePtr findZone(std::string_view tzid)
{
    if (auto known = cache().find(tzid))
        return *known;
    return cache().keep(tzid, lookUp(trimmed(tzid)));
}

std::uint64_t refreshZones()
{
    return cache().clearIfOlderThan(zoneFolderState());
}

}
