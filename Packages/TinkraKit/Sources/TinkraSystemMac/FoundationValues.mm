#include "TinkraSystemMac/FoundationValues.h"

#include <stdexcept>

namespace Tinkra::System {

NSString* stringOrNil(std::string_view utf8)
{
    if (utf8.empty())
        return @"";
    return [[NSString alloc] initWithBytes:utf8.data() length:utf8.size() encoding:NSUTF8StringEncoding];
}

NSString* stringFrom(std::string_view utf8)
{
    NSString* string = stringOrNil(utf8);
    if (string == nil)
        throw std::invalid_argument("A text is not UTF-8.");
    return string;
}

std::string utf8From(NSString* string)
{
    NSData* data = [string dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return data == nil ? std::string() : bytesFrom(data);
}

std::optional<std::string> optionalUtf8From(NSString* string)
{
    return string == nil ? std::nullopt : std::optional(utf8From(string));
}

NSData* dataFrom(std::string_view bytes)
{
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

std::string bytesFrom(NSData* data)
{
    // An empty value has no bytes to point to.
    return data.length == 0 ? std::string() : std::string(static_cast<const char*>(data.bytes), data.length);
}

NSDate* dateFrom(Instant instant)
{
    return [NSDate dateWithTimeIntervalSince1970:secondsSince1970(instant)];
}

std::optional<Instant> optionalInstantFrom(NSDate* date)
{
    return date == nil ? std::nullopt : std::optional(instantAt(date.timeIntervalSince1970));
}

std::exception_ptr exceptionFrom(NSError* error)
{
    return std::make_exception_ptr(std::runtime_error(utf8From(error.localizedDescription)));
}

void throwRefusal(NSError* error)
{
    if (error == nil)
        throw std::runtime_error("The system refused without saying why.");
    std::rethrow_exception(exceptionFrom(static_cast<NSError* _Nonnull>(error)));
}

}
