#pragma once

#include <string_view>

namespace Tinkra::NotificationDaemon {

/// For tests of what a crash leaves behind: ends the process at once (SIGABRT) when the environment variable
/// TINKRA_TEST_CRASH_AT holds `name`, or `name:identifier`. Does nothing otherwise, and in particular grants
/// nothing.
///
/// Names: opening, migrating, replacing, replaced, loading:ID, added, showing:ID, offered, answered,
/// recorded, missed, salvaging.
void crashPoint(std::string_view name, std::string_view identifier = {});

}
