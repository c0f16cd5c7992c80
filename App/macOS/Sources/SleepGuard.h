#pragma once

#include "TinkraSystem/PowerAssertions.h"

#include <memory>
#include <string_view>

namespace Tinkra {

/// Keeps an idle machine awake with one power assertion at most. What is still held when the guard goes stays
/// until the process ends, when the system drops it.
class SleepGuard {
public:
    explicit SleepGuard(std::shared_ptr<System::PowerAssertions> assertions);

    /// Holding twice is holding once, under the first reason. A refusal is not reported: the next call tries
    /// again.
    void setActive(bool active, std::string_view reason = {});

    bool isActive() const { return m_assertionID != System::kNoPowerAssertion; }

private:
    std::shared_ptr<System::PowerAssertions> m_assertions;
    System::PowerAssertionID m_assertionID = System::kNoPowerAssertion;
};

}
