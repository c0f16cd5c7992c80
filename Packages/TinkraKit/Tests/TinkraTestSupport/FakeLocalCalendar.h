#pragma once

#include "TinkraSystem/LocalCalendar.h"

#include <atomic>

namespace Tinkra::System {

/// A zone without clock changes, at a distance from UTC that a test may change.
class FakeLocalCalendar final : public LocalCalendar {
public:
    explicit FakeLocalCalendar(Seconds offsetFromUTC = Seconds{0})
        : m_offset(offsetFromUTC.count())
    {
    }

    DateComponents components(Instant instant) override;

    void setOffset(Seconds offsetFromUTC) { m_offset = offsetFromUTC.count(); }

private:
    std::atomic<double> m_offset;
};

}
