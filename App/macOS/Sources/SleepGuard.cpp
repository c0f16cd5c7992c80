#include "SleepGuard.h"

#include <utility>

namespace Tinkra {

SleepGuard::SleepGuard(std::shared_ptr<System::PowerAssertions> assertions)
    : m_assertions(std::move(assertions))
{
}

void SleepGuard::setActive(bool active, std::string_view reason)
{
    if (active == isActive())
        return;
    if (active)
        m_assertionID =
            m_assertions->create(System::kPreventUserIdleSystemSleep, System::kPowerAssertionLevelOn, reason)
                .value_or(System::kNoPowerAssertion);
    else
        m_assertions->release(std::exchange(m_assertionID, System::kNoPowerAssertion));
}

}
