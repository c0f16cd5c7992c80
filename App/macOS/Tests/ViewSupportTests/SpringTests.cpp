#include "ViewSupport/Spring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Tinkra {
namespace {

constexpr double response = 0.45;
constexpr double dampingFraction = 0.55;

/// The same motion by small steps of the equation x'' = -stiffness x - damping x'.
Spring::State integrated(double fraction, double seconds, Spring::State state)
{
    const double stiffness = std::pow(2 * std::numbers::pi / response, 2);
    const double damping = 4 * std::numbers::pi * fraction / response;
    constexpr int steps = 200'000;
    const double step = seconds / steps;
    for (int i = 0; i < steps; ++i) {
        const auto force = [&](double x, double v) { return -stiffness * x - damping * v; };
        const double middleVelocity = state.velocity + step / 2 * force(state.displacement, state.velocity);
        const double middle = state.displacement + step / 2 * state.velocity;
        state.displacement += step * middleVelocity;
        state.velocity += step * force(middle, middleVelocity);
    }
    return state;
}

TEST(Spring, SolvesTheEquationOfADampedSpring)
{
    for (const double damping : {0.2, dampingFraction, 1.0, 1.7}) {
        const Spring spring(response, damping);
        for (const Spring::State start :
            {Spring::State{.displacement = -1}, {.displacement = 0.3, .velocity = 5}}) {
            for (const double seconds : {0.05, 0.2, 0.7}) {
                const auto exact = spring.after(seconds, start);
                const auto stepped = integrated(damping, seconds, start);
                EXPECT_NEAR(exact.displacement, stepped.displacement, 1e-6) << damping << ' ' << seconds;
                EXPECT_NEAR(exact.velocity, stepped.velocity, 1e-5) << damping << ' ' << seconds;
            }
        }
    }
}

TEST(Spring, StartsWhereItIsTold)
{
    const auto start = Spring(response, dampingFraction).after(0, {.displacement = -0.8, .velocity = 2});
    EXPECT_DOUBLE_EQ(start.displacement, -0.8);
    EXPECT_DOUBLE_EQ(start.velocity, 2);
}

TEST(Spring, OvershootsByTheShareThatItsDampingLeaves)
{
    const Spring spring(response, dampingFraction);
    double highest = -1;
    for (double seconds = 0; seconds < 1; seconds += 0.0005)
        highest = std::max(highest, spring.after(seconds, {.displacement = -1}).displacement);

    const double expected =
        std::exp(-std::numbers::pi * dampingFraction / std::sqrt(1 - dampingFraction * dampingFraction));
    EXPECT_NEAR(highest, expected, 1e-5);
    EXPECT_NEAR(highest, 0.126, 0.001);
}

TEST(Spring, DoesNotOvershootWhenCriticallyDamped)
{
    const Spring spring(response, 1);
    for (double seconds = 0; seconds < 2; seconds += 0.01)
        EXPECT_LE(spring.after(seconds, {.displacement = -1}).displacement, 0) << seconds;
}

TEST(Spring, StaysWithinTheToleranceOnceSettled)
{
    for (const double damping : {0.2, dampingFraction, 1.0, 1.7}) {
        const Spring spring(response, damping);
        const double settled = spring.settlingTime(0.001);
        for (double later = 0; later < 3; later += 0.003) {
            const auto state = spring.after(settled + later, {.displacement = 1});
            EXPECT_LE(std::abs(state.displacement), 0.001) << damping << ' ' << later;
        }
    }
}

TEST(Spring, SettlesAboutWithinASecond)
{
    const double settled = Spring(response, dampingFraction).settlingTime(0.001);
    EXPECT_GT(settled, 0.7);
    EXPECT_LT(settled, 1.1);
}

}
}
