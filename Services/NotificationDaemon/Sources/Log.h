#pragma once

#include <string>
#include <string_view>

namespace Tinkra::NotificationDaemon {

/// The values are syslog's.
enum class LogLevel {
    Alert = 1,
    Error = 3,
    Warning = 4,
    Notice = 5,
    Info = 6,
};

/// One line on standard error, which is the journal where a service manager runs us. Control characters are
/// escaped. A reader that does not read never stops the daemon: the line is dropped.
void log(LogLevel level, const std::string& line);

/// `text` in quotes, shortened, one line, every unusual byte escaped.
std::string inQuotes(std::string_view text);

}
