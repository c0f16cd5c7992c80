#pragma once

#include <string>
#include <vector>

namespace Tinkra::AlarmSounds {

/// The samples (-1...1) as a RIFF WAVE file: PCM, 16 bit, mono, `kSampleRate`.
std::string waveFile(const std::vector<double>& samples);

}
