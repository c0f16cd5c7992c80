#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace Tinkra::System {

/// A recording in memory; the channels of one moment lie side by side.
struct Recording {
    std::uint32_t rate = 0; ///< 8000...192000 moments a second
    std::uint8_t channels = 0; ///< 1...2
    std::vector<std::int16_t> samples; ///< at least one moment, and whole moments
};

/// Reads a RIFF/WAVE file's bytes: PCM of 16 bits. Nothing when they are anything else.
std::optional<Recording> parseWave(std::string_view bytes);

/// Nothing when there is no regular, readable file of at most 16 MiB with such content.
std::optional<Recording> readWaveFile(const std::filesystem::path& path);

}
