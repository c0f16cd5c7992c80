#include "TinkraSystemMac/LocalCalendarMac.h"

#include "TinkraSystemMac/FoundationValues.h"

#include <cmath>

namespace Tinkra::System {

DateComponents LocalCalendarMac::components(Instant instant)
{
    @autoreleasepool {
        const auto units = NSCalendarUnitYear | NSCalendarUnitMonth | NSCalendarUnitDay | NSCalendarUnitHour
            | NSCalendarUnitMinute | NSCalendarUnitSecond;
        NSDate* wholeSecond = dateFrom(instantAt(std::floor(secondsSince1970(instant))));
        NSDateComponents* parts = [NSCalendar.currentCalendar components:units fromDate:wholeSecond];
        return {
            .year = static_cast<int>(parts.year),
            .month = static_cast<int>(parts.month),
            .day = static_cast<int>(parts.day),
            .hour = static_cast<int>(parts.hour),
            .minute = static_cast<int>(parts.minute),
            .second = static_cast<int>(parts.second),
        };
    }
}

}
