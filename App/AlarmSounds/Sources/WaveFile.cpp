#include "WaveFile.h"

#include "LoopBuffer.h"

#include <cmath>
#include <cstdint>

namespace Tinkra::AlarmSounds {

namespace {

constexpr std::uint32_t kBytesPerSample = 2;
constexpr std::uint32_t kFormatBytes = 16;
constexpr std::uint32_t kHeaderBytes = 36;

void append(std::string& file, std::uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        file.push_back(static_cast<char>((value >> (8 * i)) & 0xffU));
}

}

std::string waveFile(const std::vector<double>& samples)
{
    const auto rate = static_cast<std::uint32_t>(kSampleRate);
    const auto dataBytes = static_cast<std::uint32_t>(samples.size()) * kBytesPerSample;

    std::string file = "RIFF";
    append(file, kHeaderBytes + dataBytes, 4);
    file += "WAVEfmt ";
    append(file, kFormatBytes, 4);
    append(file, 1, 2); // PCM
    append(file, 1, 2); // one channel
    append(file, rate, 4);
    append(file, rate * kBytesPerSample, 4);
    append(file, kBytesPerSample, 2);
    append(file, kBytesPerSample * 8, 2);
    file += "data";
    append(file, dataBytes, 4);
    for (const double sample : samples)
        append(file, static_cast<std::uint32_t>(std::lround(sample * 32767)), 2);
    return file;
}

}
