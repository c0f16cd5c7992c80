#include "AppLinks.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace Tinkra::AppLinks {

namespace {

constexpr std::string_view kScheme = "https://";

/// A host name, and perhaps a path, of the characters that need no escape (RFC 3986, sections 2.3 and 3.3).
bool isAddress(std::string_view text)
{
    constexpr auto allowed = "abcdefghijklmnopqrstuvwxyz0123456789.-_~/";
    if (!text.starts_with(kScheme))
        return false;
    const auto rest = text.substr(kScheme.size());
    const auto host = rest.substr(0, rest.find('/'));
    return host.find('.') != std::string_view::npos && !host.starts_with('.')
        && rest.find_first_not_of(allowed) == std::string_view::npos;
}

std::string checkedAddress(std::string_view text)
{
    if (!isAddress(text)) {
        std::fputs("the address of the product's page is no address\n", stderr);
        std::abort();
    }
    return std::string(text);
}

}

const std::string& website()
{
    static const std::string address = checkedAddress("https://calendarmurkel.co/");
    return address;
}

}
