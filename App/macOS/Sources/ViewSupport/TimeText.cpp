#include "TimeText.h"

#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <memory>
#include <new>
#include <stdexcept>

namespace Tinkra {

namespace {

void throwIfFailed(UErrorCode status)
{
    if (U_FAILURE(status))
        throw std::runtime_error(std::string("cannot format a time: ") + u_errorName(status));
}

std::unique_ptr<icu::TimeZone> zoneNamed(const std::string& name)
{
    std::unique_ptr<icu::TimeZone> zone(
        name.empty() ? icu::TimeZone::detectHostTimeZone() : icu::TimeZone::createTimeZone(name.c_str()));
    if (!zone)
        throw std::bad_alloc();
    return zone;
}

/// The locale of a name in ICU's or POSIX's form. What POSIX adds without a value ("@euro") says nothing
/// about times, and ICU takes offence at it; a name that is none at all is the root locale.
icu::Locale localeNamed(const std::string& name)
{
    const auto at = name.find('@');
    const bool hasKeywords = at != std::string::npos && name.find('=', at) != std::string::npos;
    const auto locale = icu::Locale::createCanonical((hasKeywords ? name : name.substr(0, at)).c_str());
    return locale.isBogus() ? icu::Locale::getRoot() : locale;
}

/// The instant in the locale's own order and punctuation of the skeleton's fields (UTS #35, part 4, "Matching
/// Skeletons").
std::string formatted(Instant instant, const TimeStyle& style, const char* skeleton)
{
    const auto locale = localeNamed(style.locale);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    throwIfFailed(status);
    const auto pattern = patterns->getBestPattern(icu::UnicodeString(skeleton, -1, US_INV), status);
    throwIfFailed(status);

    icu::SimpleDateFormat format(pattern, locale, status);
    throwIfFailed(status);
    format.adoptTimeZone(zoneNamed(style.timeZone).release());

    icu::UnicodeString text;
    format.format(secondsSince1970(instant) * 1000, text);
    std::string utf8;
    return text.toUTF8String(utf8);
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

}
