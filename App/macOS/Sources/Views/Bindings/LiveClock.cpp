#include "LiveClock.h"

#include "ViewSupport/RelativeTime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace Tinkra {

namespace {

double currentTime()
{
    return secondsSince1970(std::chrono::system_clock::now());
}

}

LiveClock::LiveClock(QObject* parent)
    : QObject(parent)
    , m_now(currentTime())
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &LiveClock::tick);
}

void LiveClock::setRunning(bool on)
{
    if (m_isRunning == on)
        return;
    m_isRunning = on;
    tick();
    Q_EMIT runningChanged();
}

void LiveClock::setDates(const QList<double>& dates)
{
    if (m_dates == dates)
        return;
    m_dates = dates;
    tick();
    Q_EMIT datesChanged();
}

void LiveClock::tick()
{
    m_timer.stop();
    if (!m_isRunning)
        return;
    m_now = currentTime();
    auto change = Seconds(std::numeric_limits<double>::infinity());
    for (const double date : std::as_const(m_dates))
        change = std::min(change, untilNextChange(Seconds(date - m_now)));
    if (std::isfinite(change.count()))
        m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(change));
    Q_EMIT nowChanged();
}

}
