#pragma once

#include "TinkraConcurrency/Instant.h"

#include <exception>
#include <optional>
#include <string>
#include <string_view>

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

namespace Tinkra::System {

/// Nil when `utf8` is not UTF-8.
NSString* _Nullable stringOrNil(std::string_view utf8);

/// Throws `std::invalid_argument` when `utf8` is not UTF-8.
NSString* stringFrom(std::string_view utf8);

/// Half of a surrogate pair, which is no text, is replaced.
std::string utf8From(NSString* string);
std::optional<std::string> optionalUtf8From(NSString* _Nullable string);

NSData* dataFrom(std::string_view bytes);
std::string bytesFrom(NSData* data);

NSDate* dateFrom(Instant instant);
std::optional<Instant> optionalInstantFrom(NSDate* _Nullable date);

/// A `std::runtime_error` with the error's own sentence.
std::exception_ptr exceptionFrom(NSError* error);

/// Throws what a call has left behind that gave NO, the sentence or, without one, a sentence of ours.
[[noreturn]] void throwRefusal(NSError* _Nullable error);

}

#pragma clang assume_nonnull end
