#pragma once

#include "ExitCode.h"
#include "Session.h"

#include "TinkraICalendar/Time.h"
#include "TinkraICalendar/Zone.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace Tinkra::CommandLine {

/// What the reader is to make of which files.
struct OccurrencesQuery {
    std::vector<std::string> files; ///< "-" is standard input
    ICalendar::TimeRange range; ///< of the occurrences' starts
    ICalendar::ZonePtr viewer;
    Format format = Format::Table;
};

/// Prints the occurrences of all files, sorted by start, then title, then identifier, and on standard error
/// what was not understood. Fails when a file cannot be read; the others are printed nevertheless.
ExitCode listOccurrences(
    const OccurrencesQuery& query, std::istream& in, std::ostream& out, std::ostream& error);

}
