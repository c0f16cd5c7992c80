#include "AlarmSounds.h"

#include "Instrument.h"

#include <cassert>
#include <cmath>
#include <string>

namespace Tinkra::AlarmSounds {

namespace {

constexpr double kLoudness = 0.2; // root mean square: about -14 dB below full scale
constexpr double kPeak = 0.89; // -1 dB, so that no converter overshoots

struct Score {
    double seconds;
    Instrument instrument;
    std::vector<Note> notes;
};

// Equal temperament around a' = 440 Hz, in semitones from it.
double pitch(double semitones)
{
    return 440 * std::pow(2, semitones / 12);
}

// A rim touched by a spoon: high partials that no string has, a long shimmer.
Score glass()
{
    return {2.4,
        {.partials = {{1, 1, 2.6}, {2.32, 0.5, 1.5}, {4.25, 0.22, 0.8}, {6.63, 0.08, 0.35},
             {1.004, 0.5, 2.6}},
            .attack = 0.003},
        {{0, pitch(15), 1}, {0.3, pitch(22), 0.8}, {1.2, pitch(15), 0.9}, {1.5, pitch(19), 0.8}}};
}

// A plucked bass that answers itself.
Score funk()
{
    return {1.92,
        {.partials = {{1, 1, 0.9}, {2, 0.7, 0.6}, {3, 0.45, 0.45}, {4, 0.28, 0.32}, {5, 0.18, 0.25},
             {6, 0.1, 0.2}},
            .attack = 0.004,
            .glide = 0.03,
            .glideTime = 0.02},
        {{0, pitch(-17), 1}, {0.24, pitch(-17), 0.6}, {0.48, pitch(-5), 0.9}, {0.72, pitch(-7), 0.8},
            {0.96, pitch(-17), 1}, {1.32, pitch(-10), 0.8}, {1.56, pitch(-12), 0.8},
            {1.74, pitch(-14), 0.6}}};
}

// Wooden bars: a fundamental and its double octave.
Score sosumi()
{
    return {1.6,
        {.partials = {{1, 1, 0.7}, {3.98, 0.35, 0.25}, {9.1, 0.1, 0.09}, {2, 0.12, 0.6}}, .attack = 0.003},
        {{0, pitch(3), 1}, {0.1, pitch(8), 0.9}, {0.2, pitch(12), 0.9}, {0.4, pitch(15), 1},
            {0.8, pitch(15), 0.8}, {0.9, pitch(12), 0.8}, {1.0, pitch(8), 0.8}, {1.2, pitch(12), 0.9}}};
}

// One clear tone and its echoes.
Score ping()
{
    return {1.5, {.partials = {{1, 1, 1.6}, {2, 0.25, 0.9}, {3, 0.06, 0.5}}, .attack = 0.004},
        {{0, pitch(14), 1}, {0.5, pitch(14), 0.35}, {1.0, pitch(14), 0.14}}};
}

// A horn call that climbs a triad and stays on top.
Score hero()
{
    return {2.5,
        {.partials = {{1, 1, 1.7}, {2, 0.8, 1.4}, {3, 0.55, 1.1}, {4, 0.35, 0.9}, {5, 0.2, 0.7},
             {6, 0.12, 0.5}},
            .attack = 0.035,
            .vibratoRate = 5,
            .vibratoDepth = 0.003},
        {{0, pitch(-9), 0.8}, {0.22, pitch(-5), 0.8}, {0.44, pitch(-2), 0.9}, {0.66, pitch(3), 1},
            {1.4, pitch(-2), 0.8}, {1.62, pitch(3), 1}}};
}

// A deep call through water.
Score submarine()
{
    return {2.6,
        {.partials = {{1, 1, 2.4}, {1.5, 0.3, 1.5}, {2.01, 0.35, 1.8}, {3.02, 0.12, 1.0}},
            .attack = 0.05,
            .vibratoRate = 6,
            .vibratoDepth = 0.006,
            .glide = -0.06,
            .glideTime = 0.12},
        {{0, pitch(-10), 1}, {0.55, pitch(-10), 0.6}, {1.3, pitch(-15), 0.9}, {1.85, pitch(-15), 0.5}}};
}

Score scoreOf(std::string_view name)
{
    if (name == "Glass")
        return glass();
    if (name == "Funk")
        return funk();
    if (name == "Sosumi")
        return sosumi();
    if (name == "Ping")
        return ping();
    if (name == "Hero")
        return hero();
    assert(name == "Submarine");
    return submarine();
}

}

std::vector<double> samplesOf(std::string_view name)
{
    const Score score = scoreOf(name);
    LoopBuffer loop{score.seconds};
    for (const Note& note : score.notes)
        play(score.instrument, note, loop);
    loop.removeOffset();
    loop.setLoudness(kLoudness, kPeak);
    return loop.samples();
}

}
