#pragma once

#include "TinkraICalendar/Zone.h"

#include <optional>
#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

/// True when `name` can be the name of a zone file: relative, of letters, digits and a few signs.
bool isPlainZoneName(std::string_view name);

/// The IANA name that is spelled like `name` but for upper and lower case.
std::optional<std::string> zoneNameInAnyCase(std::string_view name);

/// The IANA name of a Windows zone such as "W. Europe Standard Time".
std::optional<std::string> zoneNameOfWindowsZone(std::string_view name);

/// The IANA zone whose last part is `city`, in any case, with spaces for underscores.
std::optional<std::string> zoneNameOfCity(std::string_view city);

}
