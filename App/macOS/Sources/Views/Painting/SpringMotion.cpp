#include "SpringMotion.h"

#include <algorithm>
#include <cmath>

namespace Tinkra {

namespace {

/// Nearer to rest than this share of the way, a motion is over: on any screen that is within a pixel.
constexpr qreal restTolerance = 0.0005;

}

SpringMotion::SpringMotion(QObject* parent)
    : QAbstractAnimation(parent)
{
}

void SpringMotion::setTo(qreal to)
{
    if (m_to == to)
        return;
    const qreal from = value();
    m_to = to;
    Q_EMIT toChanged();
    if (!m_isComplete) {
        Q_EMIT valueChanged();
        return;
    }
    stop();
    m_start = {.displacement = from - to, .velocity = m_state.velocity};
    m_state = m_start;
    const qreal way = std::hypot(m_start.displacement, m_start.velocity * m_response);
    m_duration = static_cast<int>(std::ceil(
        1000 * Spring(m_response, m_dampingFraction).settlingTime(restTolerance / std::max(way, 1.0))));
    start();
}

void SpringMotion::updateCurrentTime(int milliseconds)
{
    m_state = milliseconds < m_duration
        ? Spring(m_response, m_dampingFraction).after(milliseconds / 1000.0, m_start)
        : Spring::State{};
    Q_EMIT valueChanged();
}

}
