#pragma once

#include "TinkraCore/Models/ScheduledAlarm.h"

#include <nlohmann/json.hpp>

#include <string>

namespace Tinkra::CommandLine {

/// Objects keep the order in which their keys were written.
using Json = nlohmann::ordered_json;

/// On one line, in UTF-8; bytes that are not become U+FFFD.
std::string jsonText(const Json& document);

/// An alarm as every command prints it; instants are ISO 8601 in UTC.
Json toJson(const ScheduledAlarm& alarm);

}
