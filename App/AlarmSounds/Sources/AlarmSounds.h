#pragma once

#include "LoopBuffer.h"

#include <array>
#include <string_view>
#include <vector>

namespace Tinkra::AlarmSounds {

inline constexpr std::array<std::string_view, 6> kNames{
    "Glass", "Funk", "Sosumi", "Ping", "Hero", "Submarine"};

/// One turn of the loop of a sound of `kNames`; samples lie within -1...1.
std::vector<double> samplesOf(std::string_view name);

}
