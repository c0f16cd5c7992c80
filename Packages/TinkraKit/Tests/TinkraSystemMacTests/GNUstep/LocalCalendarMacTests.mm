#include "TinkraSystemContractTests/LocalCalendarContract.h"

#include "TinkraSystemMac/LocalCalendarMac.h"

#import <Foundation/Foundation.h>

namespace Tinkra::System {
namespace {

struct OfTheUser {
    OfTheUser() { [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:3600]]; }

    LocalCalendarMac calendar;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, LocalCalendarContract, OfTheUser);

}
}
