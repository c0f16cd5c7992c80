#include "LoopBuffer.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Tinkra::AlarmSounds {

LoopBuffer::LoopBuffer(double seconds)
    : m_samples(static_cast<std::size_t>(std::llround(seconds * kSampleRate)))
{
}

void LoopBuffer::removeOffset()
{
    const double mean =
        std::accumulate(m_samples.begin(), m_samples.end(), 0.0) / static_cast<double>(m_samples.size());
    for (double& sample : m_samples)
        sample -= mean;
}

void LoopBuffer::setLoudness(double rms, double peak)
{
    double squares = 0;
    double highest = 0;
    for (const double sample : m_samples) {
        squares += sample * sample;
        highest = std::max(highest, std::abs(sample));
    }
    const double now = std::sqrt(squares / static_cast<double>(m_samples.size()));
    const double factor = std::min(rms / now, peak / highest);
    for (double& sample : m_samples)
        sample *= factor;
}

}
