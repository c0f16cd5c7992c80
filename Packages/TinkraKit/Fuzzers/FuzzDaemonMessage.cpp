// Builds a D-Bus dictionary of whatever types the input asks for and reads it as a request.

#include "NotificationDaemonProtocol/RequestMessage.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace {

using Dictionary = std::map<std::string, sdbus::Variant>;
using Components =
    sdbus::Struct<std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t>;

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }

    bool atEnd() const { return m_at >= m_size; }
    std::uint8_t byte() { return atEnd() ? std::uint8_t{0} : m_data[m_at++]; }

    std::int32_t integer()
    {
        // Small numbers mostly, so that some components are valid.
        const auto low = byte();
        return low < 0xf0 ? low : static_cast<std::int32_t>(0x1000193U * (byte() + 256U * byte()));
    }

    double number()
    {
        std::uint64_t bits = 0;
        for (int i = 0; i < 8; ++i)
            bits = bits << 8U | byte();
        double value = 0;
        static_assert(sizeof value == sizeof bits);
        __builtin_memcpy(&value, &bits, sizeof value);
        return value;
    }

    /// ASCII: the bus lets nothing pass that is not UTF-8.
    std::string text()
    {
        std::string text;
        for (auto length = byte() % 32U; length > 0; --length)
            text.push_back(static_cast<char>(byte() % 126U + 1U));
        return text;
    }

    std::string key()
    {
        static const std::vector<std::string> known{"identifier", "title", "body", "sound",
            "interruptionLevel", "userInfo", "components", "repeats", "fireDate", "meetingStart"};
        const auto choice = byte();
        return choice < 200 ? known[choice % known.size()] : text();
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

Dictionary dictionary(Input& input, int depth);

sdbus::Variant variant(Input& input, int depth)
{
    switch (input.byte() % 12U) {
    case 0:
        return {input.text()};
    case 1:
        return {std::string(input.byte() % 2U == 0 ? "default" : "none")};
    case 2:
        return {input.number()};
    case 3:
        return {input.integer()};
    case 4:
        return {input.byte() % 2U == 0};
    case 5:
        return {Components{input.integer() + 1900, input.integer() % 14, input.integer() % 33,
            input.integer() % 26, input.integer() % 62, input.integer() % 62}};
    case 6:
        return {std::uint64_t{input.byte()}};
    case 7:
        return {std::vector<std::string>{input.text(), input.text()}};
    case 8:
        return {sdbus::Struct<std::int32_t, std::string>{input.integer(), input.text()}};
    case 9:
        return {sdbus::UnixFd{0}};
    case 10:
        return {std::vector<double>{}};
    default:
        return depth > 0 ? sdbus::Variant(dictionary(input, depth - 1)) : sdbus::Variant(std::uint8_t{1});
    }
}

Dictionary dictionary(Input& input, int depth)
{
    Dictionary entries;
    for (auto count = input.byte() % 12U; count > 0 && !input.atEnd(); --count) {
        auto key = input.key();
        entries[std::move(key)] = variant(input, depth);
    }
    return entries;
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Tinkra::NotificationDaemonProtocol::Request;
    Input input(data, size);
    const sdbus::Variant message(dictionary(input, 3));
    try {
        const auto request = message.get<Request>();
        if (!isValid(request.components) || request.interruptionLevel < 0 || request.interruptionLevel > 3)
            std::abort();
        // What was accepted can be written again, and is the same but for numbers that are not equal to
        // themselves.
        const auto again = sdbus::Variant(request).get<Request>();
        if (again.body != request.body || again.components != request.components
            || again.userInfo.size() != request.userInfo.size())
            std::abort();
    } catch (const sdbus::Error& error) {
        if (error.getName() != "org.freedesktop.DBus.Error.InvalidArgs")
            std::abort();
    }
    return 0;
}
