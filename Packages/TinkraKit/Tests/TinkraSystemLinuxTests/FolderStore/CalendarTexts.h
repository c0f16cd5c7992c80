#pragma once

#include <string>

namespace Tinkra::System {

/// One VEVENT of half an hour that begins at this UTC time, such as "20261201T090000Z".
inline std::string vevent(
    const std::string& uid, const std::string& title, const std::string& start = "20261201T090000Z")
{
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nSUMMARY:" + title + "\r\nDTSTART:" + start
        + "\r\nDURATION:PT30M\r\nEND:VEVENT\r\n";
}

inline std::string vcalendar(const std::string& components)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Tinkra//Tests//EN\r\n" + components
        + "END:VCALENDAR\r\n";
}

/// A whole file with one event.
inline std::string calendarWith(
    const std::string& uid, const std::string& title, const std::string& start = "20261201T090000Z")
{
    return vcalendar(vevent(uid, title, start));
}

}
