#pragma once

namespace Tinkra {

/// A damped spring as interface toolkits describe it: by how long one undamped swing takes and by the share
/// of critical damping. Mass 1, stiffness (2 pi / response)^2, damping 4 pi dampingFraction / response.
class Spring {
public:
    /// `response` in seconds, above 0; `dampingFraction` above 0: below 1 the spring overshoots, at 1 it does
    /// not, above 1 it creeps.
    Spring(double response, double dampingFraction);

    /// Where a body stands and how fast it moves, both measured from the spring's rest.
    struct State {
        double displacement = 0;
        double velocity = 0; ///< per second
    };

    /// The state `seconds` (0 or more) after `start`, exactly: the solution of the equation, not a step of
    /// it.
    State after(double seconds, State start) const;

    /// From when on a body that was let go at a displacement of 1 stays within `tolerance` of rest.
    double settlingTime(double tolerance) const;

private:
    double m_frequency; ///< of the undamped spring, in radians a second
    double m_dampingFraction;
};

}
