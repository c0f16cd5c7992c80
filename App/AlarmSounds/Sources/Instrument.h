#pragma once

#include "LoopBuffer.h"

#include <vector>

namespace Tinkra::AlarmSounds {

/// One sine of a note.
struct Partial {
    double ratio; ///< its frequency, as a multiple of the note's
    double strength; ///< at the strike, relative to the other partials
    double decay; ///< seconds until it has fallen to a thousandth
};

/// How a struck note sounds.
struct Instrument {
    std::vector<Partial> partials;
    double attack = 0.004; ///< seconds from silence to full strength; shorter than 2 ms begins to click
    double vibratoRate = 0; ///< in hertz
    double vibratoDepth = 0; ///< as a part of the frequency
    double glide = 0; ///< how far the pitch begins above the note, as a part of the frequency
    double glideTime = 0.05; ///< seconds until two thirds of the glide are gone
};

/// One note of a score.
struct Note {
    double time = 0; ///< seconds from the start of the loop
    double pitch = 0; ///< in hertz
    double strength = 1;
};

void play(const Instrument& instrument, const Note& note, LoopBuffer& loop);

}
