#include "RelativeTime.h"

#include "IcuLocale.h"

#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/reldatefmt.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace Tinkra {

namespace {

constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

void throwIfFailed(UErrorCode status)
{
    if (U_FAILURE(status))
        throw std::runtime_error(std::string("cannot format a span of time: ") + u_errorName(status));
}

icu::Measure measure(std::int64_t count, icu::MeasureUnit* unit)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::Measure made(icu::Formattable(count), unit, status);
    throwIfFailed(status);
    return made;
}

std::string utf8(const icu::UnicodeString& text)
{
    std::string bytes;
    return text.toUTF8String(bytes);
}

}

struct RelativeTimeFormat::Formats {
    explicit Formats(const icu::Locale& locale, UErrorCode status = U_ZERO_ERROR)
        : spans(locale, UMEASFMT_WIDTH_SHORT, status)
        , moments(locale, nullptr, UDAT_STYLE_LONG, UDISPCTX_CAPITALIZATION_NONE, status)
    {
        throwIfFailed(status);
    }

    std::string two(const icu::Measure& larger, const icu::Measure& smaller, bool smallerAlways) const
    {
        const std::array measures{larger, smaller};
        const bool both = smallerAlways || measures[1].getNumber().getInt64() != 0;
        icu::UnicodeString text;
        icu::FieldPosition position;
        UErrorCode status = U_ZERO_ERROR;
        spans.formatMeasures(measures.data(), both ? 2 : 1, text, position, status);
        throwIfFailed(status);
        return utf8(text);
    }

    std::string now() const
    {
        icu::UnicodeString text;
        UErrorCode status = U_ZERO_ERROR;
        moments.format(UDAT_DIRECTION_PLAIN, UDAT_ABSOLUTE_NOW, text, status);
        throwIfFailed(status);
        return utf8(text);
    }

    icu::MeasureFormat spans;
    icu::RelativeDateTimeFormatter moments;
};

RelativeTimeFormat::RelativeTimeFormat(const std::string& locale)
    : m_formats(std::make_unique<Formats>(icuLocale(locale)))
{
}

RelativeTimeFormat::RelativeTimeFormat(RelativeTimeFormat&&) noexcept = default;
RelativeTimeFormat& RelativeTimeFormat::operator=(RelativeTimeFormat&&) noexcept = default;
RelativeTimeFormat::~RelativeTimeFormat() = default;

std::string RelativeTimeFormat::text(Seconds left) const
{
    using Unit = icu::MeasureUnit;
    if (!(left.count() > 0))
        return m_formats->now();
    // Nothing upcoming is years away; what is out of reach all the same reads as the longest span.
    constexpr double longest = 1e12;
    const auto seconds = static_cast<std::int64_t>(std::ceil(std::min(left.count(), longest)));
    UErrorCode status = U_ZERO_ERROR;
    const auto unit = [&](Unit* (*create)(UErrorCode&)) { return create(status); };
    if (seconds < kMinute)
        return m_formats->two(
            measure(seconds, unit(Unit::createSecond)), measure(0, unit(Unit::createSecond)), false);
    if (seconds < kHour)
        return m_formats->two(measure(seconds / kMinute, unit(Unit::createMinute)),
            measure(seconds % kMinute, unit(Unit::createSecond)), true);
    if (seconds < kDay)
        return m_formats->two(measure(seconds / kHour, unit(Unit::createHour)),
            measure(seconds % kHour / kMinute, unit(Unit::createMinute)), false);
    return m_formats->two(measure(seconds / kDay, unit(Unit::createDay)),
        measure(seconds % kDay / kHour, unit(Unit::createHour)), false);
}

Seconds untilNextChange(Seconds left)
{
    if (!(left.count() > 0))
        return Seconds(std::numeric_limits<double>::infinity());
    // The text is one of whole seconds rounded up, and of whole minutes of these from an hour on.
    const double seconds = std::ceil(left.count());
    const double step = seconds < kHour ? 1 : kMinute;
    const double next = std::floor(seconds / step) * step - 1;
    return Seconds(left.count() - next);
}

}
