#include "TinkraSystemLinux/Sound/WaveFile.h"

#include "TinkraSystemLinux/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>

namespace Tinkra::System {

namespace {

constexpr std::size_t kLargestFile = std::size_t{16} << 20U;
constexpr std::size_t kRiffHeader = 12;
constexpr std::size_t kChunkHeader = 8;
constexpr std::size_t kFormatChunk = 16;

std::uint32_t littleEndian(std::string_view bytes)
{
    std::uint32_t value = 0;
    for (std::size_t i = bytes.size(); i > 0; --i)
        value = value << 8U | static_cast<unsigned char>(bytes[i - 1]);
    return value;
}

/// Where a chunk begins; it must lie in the file wholly.
std::optional<std::string_view> chunk(std::string_view bytes, std::string_view name)
{
    while (bytes.size() >= kChunkHeader) {
        const std::size_t size = littleEndian(bytes.substr(4, 4));
        const auto content = bytes.substr(kChunkHeader);
        if (size > content.size())
            return std::nullopt;
        if (bytes.starts_with(name))
            return content.substr(0, size);
        bytes = content.substr(std::min(size + size % 2, content.size()));
    }
    return std::nullopt;
}

}

std::optional<Recording> parseWave(std::string_view bytes)
{
    if (bytes.size() < kRiffHeader || !bytes.starts_with("RIFF") || bytes.substr(8, 4) != "WAVE")
        return std::nullopt;
    const auto format = chunk(bytes.substr(kRiffHeader), "fmt ");
    const auto data = chunk(bytes.substr(kRiffHeader), "data");
    if (!format || format->size() < kFormatChunk || !data)
        return std::nullopt;
    const auto kind = littleEndian(format->substr(0, 2));
    const auto channels = littleEndian(format->substr(2, 2));
    const auto rate = littleEndian(format->substr(4, 4));
    const auto bits = littleEndian(format->substr(14, 2));
    if (kind != 1 || bits != 16 || channels < 1 || channels > 2 || rate < 8000 || rate > 192000)
        return std::nullopt;

    const std::size_t moments = data->size() / (2 * channels);
    if (moments == 0)
        return std::nullopt;
    Recording recording{.rate = rate, .channels = static_cast<std::uint8_t>(channels), .samples = {}};
    recording.samples.reserve(moments * channels);
    for (std::size_t i = 0; i < moments * channels; ++i)
        recording.samples.push_back(static_cast<std::int16_t>(littleEndian(data->substr(2 * i, 2))));
    return recording;
}

std::optional<Recording> readWaveFile(const std::filesystem::path& path)
{
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > static_cast<off_t>(kLargestFile))
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        const auto got = ::read(file.get(), bytes.data() + length, bytes.size() - length);
        if (got <= 0)
            break;
        length += static_cast<std::size_t>(got);
    }
    return parseWave(std::string_view(bytes).substr(0, length));
}

}
