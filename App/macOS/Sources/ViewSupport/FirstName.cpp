#include "FirstName.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace Tinkra {

std::string firstName(std::string_view fullNameUtf8)
{
    const auto name =
        icu::UnicodeString::fromUTF8({fullNameUtf8.data(), static_cast<int32_t>(fullNameUtf8.size())});
    int32_t begin = 0; // all white space is one UTF-16 unit each
    while (begin < name.length() && u_isUWhiteSpace(name[begin]))
        ++begin;
    auto end = begin;
    while (end < name.length() && !u_isUWhiteSpace(name[end]))
        ++end;
    if (begin == end)
        return "there";
    std::string utf8;
    return name.tempSubStringBetween(begin, end).toUTF8String(utf8);
}

}
