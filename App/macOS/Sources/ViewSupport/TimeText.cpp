#include "TimeText.h"

#include "IcuLocale.h"

#include "TinkraICalendar/Zone.h"

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>

namespace Tinkra {

namespace {

void throwIfFailed(UErrorCode status)
{
    if (U_FAILURE(status))
        throw std::runtime_error(std::string("cannot format a time: ") + u_errorName(status));
}

/// What a clock on the wall shows, in seconds since 1970 began there. The machine's own zone data counts, not
/// ICU's, which is years older on some systems and then an hour off.
double wallClockSeconds(Instant instant, const std::string& zoneName)
{
    using namespace std::chrono;
    constexpr Instant first = sys_days(year(0) / January / 1);
    constexpr Instant last = sys_days(year(9999) / December / 31) + seconds(86399);
    const auto named = zoneName.empty() ? ICalendar::viewerZone() : ICalendar::findZone(zoneName);
    const auto zone = named ? named : ICalendar::utcZone();
    const auto local = zone->toLocal(floor<seconds>(std::clamp(instant, first, last)));
    return static_cast<double>(local.time_since_epoch().count());
}

std::string formattedWith(
    const icu::UnicodeString& pattern, const icu::Locale& locale, Instant instant, const TimeStyle& style)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(pattern, locale, status);
    throwIfFailed(status);
    format.setTimeZone(*icu::TimeZone::getGMT());

    icu::UnicodeString text;
    format.format(wallClockSeconds(instant, style.timeZone) * 1000, text);
    std::string utf8;
    return text.toUTF8String(utf8);
}

/// The instant in the locale's own order and punctuation of the skeleton's fields (UTS #35, part 4, "Matching
/// Skeletons").
std::string formatted(Instant instant, const TimeStyle& style, const char* skeleton)
{
    const auto locale = icuLocale(style.locale);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    throwIfFailed(status);
    const auto pattern = patterns->getBestPattern(icu::UnicodeString(skeleton, -1, US_INV), status);
    throwIfFailed(status);
    return formattedWith(pattern, locale, instant, style);
}

}

std::string timeLocale(std::string_view lcAll, std::string_view lcTime, std::string_view lang)
{
    const auto name = !lcAll.empty() ? lcAll : !lcTime.empty() ? lcTime : lang;
    const auto language = name.substr(0, name.find('.'));
    return language.empty() || language == "C" || language == "POSIX" ? "en_US_POSIX" : std::string(name);
}

std::string hourAndMinuteText(Instant instant, const TimeStyle& style)
{
    return formatted(instant, style, "jmm");
}

std::string weekdayHourAndMinuteText(Instant instant, const TimeStyle& style)
{
    return formatted(instant, style, "EEEjmm");
}

std::string nextAlarmText(std::optional<Instant> meetingStart, const TimeStyle& style)
{
    return meetingStart ? formattedWith(u"HH:mm", icuLocale(style.locale), *meetingStart, style) : "—";
}

}
