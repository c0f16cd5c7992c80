#include "TinkraICalendar/ZoneNames.h"

#include <algorithm>
#include <memory>
#include <unicode/strenum.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>
#include <unordered_map>

namespace Tinkra::ICalendar {

namespace {

using NameMap = std::unordered_map<std::string, std::string>;

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string folded(std::string_view name)
{
    std::string result(name);
    std::transform(
        result.begin(), result.end(), result.begin(), [](char c) { return c == ' ' ? '_' : lowered(c); });
    return result;
}

std::optional<std::string> find(const NameMap& names, std::string_view name)
{
    const auto found = names.find(folded(name));
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

/// Every name that ICU knows, under its spelling without case.
const NameMap& allNames()
{
    static const NameMap names = [] {
        NameMap result;
        const std::unique_ptr<icu::StringEnumeration> all(icu::TimeZone::createEnumeration());
        UErrorCode error = U_ZERO_ERROR;
        while (all) {
            const char* name = all->next(nullptr, error);
            if (!name || U_FAILURE(error))
                break;
            result.emplace(folded(name), name);
        }
        return result;
    }();
    return names;
}

/// The names of the form Area/City, under the city; the shortest where two areas share one.
const NameMap& cities()
{
    static const NameMap names = [] {
        NameMap result;
        for (const auto& [key, name] : allNames()) {
            const auto slash = key.rfind('/');
            if (slash == std::string::npos || key.starts_with("etc/") || key.starts_with("systemv/"))
                continue;
            auto& city = result[key.substr(slash + 1)];
            if (city.empty() || std::pair(name.size(), name) < std::pair(city.size(), city))
                city = name;
        }
        return result;
    }();
    return names;
}

}

bool isPlainZoneName(std::string_view name)
{
    const auto isPlain = [](char c) {
        const char l = lowered(c);
        return (l >= 'a' && l <= 'z') || (l >= '0' && l <= '9') || l == '/' || l == '_' || l == '-'
            || l == '+';
    };
    return !name.empty() && name.size() <= 64 && name.front() != '/' && name.back() != '/'
        && std::all_of(name.begin(), name.end(), isPlain);
}

std::optional<std::string> zoneNameInAnyCase(std::string_view name)
{
    return find(allNames(), name);
}

std::optional<std::string> zoneNameOfWindowsZone(std::string_view name)
{
    icu::UnicodeString iana;
    UErrorCode error = U_ZERO_ERROR;
    const auto size = static_cast<std::int32_t>(std::min<std::size_t>(name.size(), 128));
    icu::TimeZone::getIDForWindowsID(icu::UnicodeString::fromUTF8({name.data(), size}), nullptr, iana, error);
    if (U_FAILURE(error) || iana.isEmpty())
        return std::nullopt;
    std::string result;
    return iana.toUTF8String(result);
}

std::optional<std::string> zoneNameOfCity(std::string_view city)
{
    return find(cities(), city);
}

}
