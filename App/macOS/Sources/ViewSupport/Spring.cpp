#include "Spring.h"

#include <cassert>
#include <cmath>
#include <numbers>

namespace Tinkra {

Spring::Spring(double response, double dampingFraction)
    : m_frequency(2 * std::numbers::pi / response)
    , m_dampingFraction(dampingFraction)
{
    assert(response > 0 && dampingFraction > 0);
}

Spring::State Spring::after(double seconds, State start) const
{
    const double decay = m_dampingFraction * m_frequency;
    const double envelope = std::exp(-decay * seconds);
    const double push = start.velocity + decay * start.displacement;

    if (m_dampingFraction < 1) {
        const double ringing = m_frequency * std::sqrt(1 - m_dampingFraction * m_dampingFraction);
        const double cosine = std::cos(ringing * seconds);
        const double sine = std::sin(ringing * seconds);
        const double side = push / ringing;
        return {.displacement = envelope * (start.displacement * cosine + side * sine),
            .velocity = envelope
                * ((side * ringing - decay * start.displacement) * cosine
                    - (start.displacement * ringing + decay * side) * sine)};
    }
    if (m_dampingFraction > 1) {
        const double spread = m_frequency * std::sqrt(m_dampingFraction * m_dampingFraction - 1);
        const double slow = -decay + spread;
        const double fast = -decay - spread;
        const double slowShare = (start.velocity - fast * start.displacement) / (slow - fast);
        const double fastShare = start.displacement - slowShare;
        const double slowPart = slowShare * std::exp(slow * seconds);
        const double fastPart = fastShare * std::exp(fast * seconds);
        return {.displacement = slowPart + fastPart, .velocity = slow * slowPart + fast * fastPart};
    }
    return {.displacement = envelope * (start.displacement + push * seconds),
        .velocity = envelope * (push - decay * (start.displacement + push * seconds))};
}

double Spring::settlingTime(double tolerance) const
{
    assert(tolerance > 0);
    // Walk until the largest displacement that the remaining energy allows is within the tolerance.
    constexpr double step = 1.0 / 240;
    double seconds = 0;
    for (State state{.displacement = 1};
         std::hypot(state.displacement, state.velocity / m_frequency) > tolerance;
         state = after(seconds, {.displacement = 1}))
        seconds += step;
    return seconds;
}

}
