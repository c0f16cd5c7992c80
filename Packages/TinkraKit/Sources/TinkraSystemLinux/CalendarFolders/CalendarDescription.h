#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::System {

/// The files beside a calendar's events that describe it, as vdirsyncer writes them.
constexpr const char* kTitleFile = "displayname";
constexpr const char* kColorFile = "color";

/// The title in a `displayname` file: its first line without white space around it; nothing when that is
/// empty.
std::optional<std::string> parseTitle(std::string_view text);

/// The three components, 0...1, in a `color` file: "#RRGGBB" or "#RRGGBBAA" in either case, white space
/// around it ignored. Anything else is no colour.
std::optional<std::vector<double>> parseColor(std::string_view text);

}
