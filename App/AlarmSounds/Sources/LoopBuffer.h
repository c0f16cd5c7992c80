#pragma once

#include <cstddef>
#include <vector>

namespace Tinkra::AlarmSounds {

inline constexpr double kSampleRate = 48'000; ///< in samples a second

/// One turn of an endless loop. What is added beyond its end goes on at its beginning.
class LoopBuffer {
public:
    explicit LoopBuffer(double seconds);

    /// Adds `value` to the sample `index` places after the start; any index is some place of the loop.
    void add(std::size_t index, double value) { m_samples[index % m_samples.size()] += value; }

    /// Takes out what never changes, which would only push the loudspeaker aside.
    void removeOffset();

    /// Scales to the given root mean square, or as near as a peak of `peak` allows.
    void setLoudness(double rms, double peak);

    const std::vector<double>& samples() const { return m_samples; }

private:
    std::vector<double> m_samples;
};

}
