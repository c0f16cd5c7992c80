#include "NotificationDaemon/RequestRecord.h"

#include <bit>
#include <limits>

namespace Tinkra::NotificationDaemon {

using NotificationDaemonProtocol::Request;
using NotificationDaemonProtocol::Sound;

namespace {

constexpr char kFormat = 1;
enum ValueKind : char { Text = 's', Number = 'd' };

class Writer {
public:
    void byte(char value) { m_bytes.push_back(value); }

    /// Little endian.
    template <typename Unsigned> void number(Unsigned value)
    {
        for (unsigned shift = 0; shift < std::numeric_limits<Unsigned>::digits; shift += 8)
            m_bytes.push_back(static_cast<char>((value >> shift) & 0xffU));
    }

    void text(std::string_view value)
    {
        number(static_cast<std::uint32_t>(value.size()));
        m_bytes.append(value);
    }

    std::string take() { return std::move(m_bytes); }

private:
    std::string m_bytes;
};

class Reader {
public:
    explicit Reader(std::string_view bytes)
        : m_rest(bytes)
    {
    }

    std::string_view bytes(std::size_t count)
    {
        if (count > m_rest.size())
            throw DamagedRecord("the record ends too early");
        const auto taken = m_rest.substr(0, count);
        m_rest.remove_prefix(count);
        return taken;
    }

    char byte() { return bytes(1).front(); }

    template <typename Unsigned> Unsigned number()
    {
        Unsigned value = 0;
        unsigned shift = 0;
        for (const char c : bytes(sizeof(Unsigned))) {
            value |= static_cast<Unsigned>(static_cast<unsigned char>(c)) << shift;
            shift += 8;
        }
        return value;
    }

    std::int32_t integer() { return static_cast<std::int32_t>(number<std::uint32_t>()); }
    std::string text() { return std::string(bytes(number<std::uint32_t>())); }
    bool atEnd() const { return m_rest.empty(); }

private:
    std::string_view m_rest;
};

void writeUserInfo(Writer& writer, const NotificationDaemonProtocol::UserInfo& userInfo)
{
    writer.number(static_cast<std::uint32_t>(userInfo.size()));
    for (const auto& [key, value] : userInfo) {
        writer.text(key);
        if (const auto* text = std::get_if<std::string>(&value)) {
            writer.byte(Text);
            writer.text(*text);
        } else {
            writer.byte(Number);
            writer.number(std::bit_cast<std::uint64_t>(std::get<double>(value)));
        }
    }
}

NotificationDaemonProtocol::UserInfo readUserInfo(Reader& reader)
{
    NotificationDaemonProtocol::UserInfo userInfo;
    for (auto count = reader.number<std::uint32_t>(); count > 0; --count) {
        auto key = reader.text();
        const char kind = reader.byte();
        if (kind == Text)
            userInfo[std::move(key)] = reader.text();
        else if (kind == Number)
            userInfo[std::move(key)] = std::bit_cast<double>(reader.number<std::uint64_t>());
        else
            throw DamagedRecord("unknown kind of value");
    }
    return userInfo;
}

}

std::string encodeRecord(const Request& request)
{
    Writer writer;
    writer.byte(kFormat);
    writer.text(request.identifier);
    writer.text(request.title);
    writer.text(request.body);
    writer.byte(request.sound == Sound::Default ? 1 : 0);
    writer.byte(static_cast<char>(request.interruptionLevel));
    writer.byte(request.repeats ? 1 : 0);
    const auto& at = request.components;
    for (const auto part : {at.year, at.month, at.day, at.hour, at.minute, at.second})
        writer.number(static_cast<std::uint32_t>(part));
    writeUserInfo(writer, request.userInfo);
    return writer.take();
}

Request decodeRecord(std::string_view bytes)
{
    Reader reader(bytes);
    if (reader.byte() != kFormat)
        throw DamagedRecord("unknown format");
    Request request;
    request.identifier = reader.text();
    request.title = reader.text();
    request.body = reader.text();
    request.sound = reader.byte() == 1 ? Sound::Default : Sound::None;
    request.interruptionLevel = reader.byte();
    request.repeats = reader.byte() == 1;
    auto& at = request.components;
    for (auto* part : {&at.year, &at.month, &at.day, &at.hour, &at.minute, &at.second})
        *part = reader.integer();
    request.userInfo = readUserInfo(reader);
    if (!reader.atEnd())
        throw DamagedRecord("the record is too long");
    if (!isValid(request.components) || request.interruptionLevel < 0 || request.interruptionLevel > 3)
        throw DamagedRecord("a value is out of range");
    return request;
}

std::uint64_t checksum(std::string_view bytes, std::uint64_t seed)
{
    constexpr std::uint64_t kPrime = 0x100000001b3U;
    for (const char c : bytes)
        seed = (seed ^ static_cast<unsigned char>(c)) * kPrime;
    return seed;
}

}
