#include "Instrument.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Tinkra::AlarmSounds {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kInaudible = 1e-4;

// From silence to full strength along half a cosine: no corner, no click.
double attackAt(double seconds, double attack)
{
    return seconds >= attack ? 1 : (1 - std::cos(std::numbers::pi * seconds / attack)) / 2;
}

void playPartial(const Instrument& instrument, const Note& note, const Partial& partial, LoopBuffer& loop)
{
    const double fall = std::log(1000.0) / partial.decay;
    const double length = -std::log(kInaudible) / fall;
    const auto start = static_cast<std::size_t>(std::llround(note.time * kSampleRate));
    const auto count = static_cast<std::size_t>(length * kSampleRate);

    double phase = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double seconds = static_cast<double>(i) / kSampleRate;
        const double bend = 1 + instrument.glide * std::exp(-seconds / instrument.glideTime)
            + instrument.vibratoDepth * std::sin(kTurn * instrument.vibratoRate * seconds);
        phase += kTurn * note.pitch * partial.ratio * bend / kSampleRate;
        const double strength = note.strength * partial.strength * attackAt(seconds, instrument.attack)
            * std::exp(-fall * seconds);
        loop.add(start + i, strength * std::sin(phase));
    }
}

}

void play(const Instrument& instrument, const Note& note, LoopBuffer& loop)
{
    for (const Partial& partial : instrument.partials)
        playPartial(instrument, note, partial, loop);
}

}
