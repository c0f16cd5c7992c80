#include "TinkraSystemLinux/CalendarFolders/CalendarDescription.h"

#include <charconv>

namespace Tinkra::System {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr const char* kWhiteSpace = " \t\r\n";
    const auto first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

}

std::optional<std::string> parseTitle(std::string_view text)
{
    const auto line = trimmed(trimmed(text).substr(0, trimmed(text).find_first_of("\r\n")));
    return line.empty() ? std::nullopt : std::optional{std::string{line}};
}

std::optional<std::vector<double>> parseColor(std::string_view text)
{
    const auto color = trimmed(text);
    if ((color.size() != 7 && color.size() != 9) || color.front() != '#')
        return std::nullopt;

    std::vector<double> components;
    for (std::size_t at = 1; at < color.size(); at += 2) {
        unsigned value = 0;
        const auto* end = color.data() + at + 2;
        const auto [stop, error] = std::from_chars(color.data() + at, end, value, 16);
        if (error != std::errc{} || stop != end)
            return std::nullopt;
        if (components.size() < 3)
            components.push_back(value / 255.0);
    }
    return components;
}

}
