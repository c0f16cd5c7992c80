#pragma once

#include "TinkraICalendar/Zone.h"

#include <filesystem>
#include <string>

namespace Tinkra::ICalendar {

/// The zone in the machine's folder of zone files (TZDIR, else /usr/share/zoneinfo). Nothing when there is no
/// such file or it is not a zone's.
ZonePtr loadZoneFile(const std::string& name);

/// What tells one state of the machine's zone data from another: an update replaces files in the folder,
/// which gives the folder a new time.
struct ZoneFolderState {
    std::string path;
    std::filesystem::file_time_type changed;

    friend bool operator==(const ZoneFolderState&, const ZoneFolderState&) = default;
};

ZoneFolderState zoneFolderState();

}
