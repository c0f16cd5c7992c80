#pragma once

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

/// A content line, divided (RFC 5545, section 3.1).
struct Property {
    std::string_view
        parameters; ///< as written, from the first semicolon to the colon; empty when there are none
    std::string_view value;
};

/// The property on `line`, whose name has `nameLength` bytes. Colons in quoted parameters do not divide; a
/// line with an unfinished quotation divides at its first colon, one without a colon has an empty value.
Property divide(std::string_view line, std::size_t nameLength);

/// The same, for values that hold no colon: divides at the last one, so that an unquoted colon in a
/// parameter, or an unfinished quotation, does no harm.
Property divideAtLastColon(std::string_view line, std::size_t nameLength);

/// The value of the first parameter of that (upper-case) name, without quotes and with the ^ escapes of RFC
/// 6868 resolved; empty when there is none. The result is a part of `parameters`, or of `buffer`.
std::string_view parameter(std::string_view parameters, std::string_view name, std::string& buffer);

/// Appends a value of type TEXT (RFC 5545, section 3.3.11), its escapes resolved, as valid UTF-8.
void appendText(std::string& out, std::string_view value);

std::string_view trimmed(std::string_view text);

/// Compares ASCII letters without regard to case; `upper` is in upper case.
bool equalsIgnoringCase(std::string_view text, std::string_view upper);

}
