#include "TinkraICalendar/PropertyName.h"

#include "TinkraICalendar/Property.h"

namespace Tinkra::ICalendar {

namespace {

bool startsWithName(std::string_view line, std::string_view name)
{
    if (line.size() < name.size())
        return false;
    if (line.size() > name.size()) {
        const char next = line[name.size()];
        if (next != ':' && next != ';' && next != ' ' && next != '\t')
            return false;
    }
    return line.starts_with(name) || equalsIgnoringCase(line.substr(0, name.size()), name);
}

struct Candidate {
    std::string_view text;
    PropertyName name;
};

template <typename... Candidates> NamedProperty oneOf(std::string_view line, const Candidates&... candidates)
{
    NamedProperty found;
    const auto matches = [&](const Candidate& candidate) {
        if (!startsWithName(line, candidate.text))
            return false;
        found = {candidate.name, candidate.text.size()};
        return true;
    };
    (void)(matches(candidates) || ...);
    return found;
}

}

NamedProperty propertyName(std::string_view line)
{
    using enum PropertyName;
    switch (static_cast<unsigned char>(line.front()) | 0x20U) { // the lower-case letter
    case 'b':
        return oneOf(line, Candidate{"BEGIN", Begin});
    case 'd':
        return oneOf(line, Candidate{"DTSTART", DateTimeStart}, Candidate{"DTEND", DateTimeEnd},
            Candidate{"DTSTAMP", DateTimeStamp}, Candidate{"DURATION", Duration});
    case 'e':
        return oneOf(line, Candidate{"END", End}, Candidate{"EXDATE", ExceptionDates},
            Candidate{"EXRULE", ExceptionRule});
    case 'l':
        return oneOf(line, Candidate{"LAST-MODIFIED", LastModified});
    case 'r':
        return oneOf(line, Candidate{"RRULE", RecurrenceRule}, Candidate{"RDATE", RecurrenceDates},
            Candidate{"RECURRENCE-ID", RecurrenceId});
    case 's':
        return oneOf(line, Candidate{"SUMMARY", Summary}, Candidate{"SEQUENCE", Sequence});
    case 'u':
        return oneOf(line, Candidate{"UID", Uid});
    case 'x':
        return oneOf(line, Candidate{"X-WR-TIMEZONE", DefaultZone});
    default:
        return {};
    }
}

}
