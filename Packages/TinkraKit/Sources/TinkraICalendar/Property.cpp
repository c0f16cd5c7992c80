#include "TinkraICalendar/Property.h"

#include "TinkraICalendar/Encoding.h"

#include <algorithm>

namespace Tinkra::ICalendar {

namespace {

constexpr auto npos = std::string_view::npos;

char toUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// The first `wanted` at or after `from` that is not in quotes.
std::size_t findUnquoted(std::string_view text, char wanted, std::size_t from)
{
    bool isQuoted = false;
    for (auto at = from; at < text.size(); ++at) {
        if (text[at] == '"')
            isQuoted = !isQuoted;
        else if (text[at] == wanted && !isQuoted)
            return at;
    }
    return npos;
}

Property divideAt(std::string_view line, std::size_t nameLength, std::size_t colon)
{
    if (colon == npos)
        return {line.substr(std::min(nameLength, line.size())), {}};
    return {line.substr(nameLength, colon - nameLength), line.substr(colon + 1)};
}

std::string_view withoutQuotes(std::string_view text)
{
    text = trimmed(text);
    if (text.starts_with('"'))
        text.remove_prefix(1);
    if (text.ends_with('"'))
        text.remove_suffix(1);
    return text;
}

}

Property divide(std::string_view line, std::size_t nameLength)
{
    if (nameLength < line.size() && line[nameLength] == ':')
        return {{}, line.substr(nameLength + 1)};
    const auto colon = findUnquoted(line, ':', nameLength);
    return divideAt(line, nameLength, colon != npos ? colon : line.find(':', nameLength));
}

Property divideAtLastColon(std::string_view line, std::size_t nameLength)
{
    const auto colon = line.rfind(':');
    return divideAt(line, nameLength, colon != npos && colon >= nameLength ? colon : npos);
}

std::string_view parameter(std::string_view parameters, std::string_view name, std::string& buffer)
{
    auto at = parameters.find(';');
    while (at != npos) {
        const auto end = findUnquoted(parameters, ';', at + 1);
        const auto one = parameters.substr(at + 1, end == npos ? npos : end - at - 1);
        at = end;
        const auto equals = one.find('=');
        if (equals == npos || !equalsIgnoringCase(trimmed(one.substr(0, equals)), name))
            continue;
        const auto value = withoutQuotes(one.substr(equals + 1));
        if (value.find('^') == npos)
            return value;
        buffer.clear();
        for (std::size_t i = 0; i < value.size(); ++i) {
            const char following = i + 1 < value.size() ? value[i + 1] : '\0';
            const bool isEscape =
                value[i] == '^' && (following == 'n' || following == '^' || following == '\'');
            buffer += !isEscape ? value[i] : following == 'n' ? '\n' : following == '^' ? '^' : '"';
            i += isEscape ? 1 : 0;
        }
        return buffer;
    }
    return {};
}

void appendText(std::string& out, std::string_view value)
{
    auto backslash = value.find('\\');
    if (backslash == npos) {
        appendUtf8(out, value);
        return;
    }
    std::string plain{value.substr(0, backslash)};
    for (auto at = backslash; at < value.size(); ++at) {
        const char escaped = value[at] == '\\' && at + 1 < value.size() ? value[at + 1] : '\0';
        switch (escaped) {
        case 'n':
        case 'N':
            plain += '\n';
            ++at;
            break;
        case '\\':
        case ';':
        case ',':
        case ':': // not an escape of the standard, but a common one
        case '"':
            plain += escaped;
            ++at;
            break;
        default:
            plain += value[at];
        }
    }
    appendUtf8(out, plain);
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks{" \t\r\n\0", 5};
    const auto first = text.find_first_not_of(blanks);
    if (first == npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool equalsIgnoringCase(std::string_view text, std::string_view upper)
{
    return text.size() == upper.size()
        && std::equal(
            text.begin(), text.end(), upper.begin(), [](char a, char b) { return toUpper(a) == b; });
}

}
