#include "PrivateLoginManager/PrivateLoginManager.h"
#include "TinkraSystemLinux/PowerAssertionsLinux.h"
#include "TinkraTestSupport/FakePowerAssertions.h"

#include <gtest/gtest.h>

namespace Tinkra::System {
namespace {

struct InMemory {
    std::shared_ptr<FakePowerAssertions> assertions = std::make_shared<FakePowerAssertions>();

    bool holds(std::size_t count) const { return assertions->held.size() == count; }
};

struct OfLogind {
    PrivateLoginManager logind;
    std::shared_ptr<PowerAssertionsLinux> assertions = std::make_shared<PowerAssertionsLinux>();

    bool holds(std::size_t count) { return logind.hasInhibitors(count); }
};

template <typename Kind> class PowerAssertionsContract : public testing::Test {
protected:
    std::optional<PowerAssertionID> create()
    {
        return assertions.create(kPreventUserIdleSystemSleep, kPowerAssertionLevelOn, "for a test");
    }

    Kind kind;
    PowerAssertions& assertions = *kind.assertions;
};

using Kinds = testing::Types<InMemory, OfLogind>;
TYPED_TEST_SUITE(PowerAssertionsContract, Kinds);

TYPED_TEST(PowerAssertionsContract, HoldsWhatIsCreatedUntilItIsReleased)
{
    const auto assertion = this->create();
    ASSERT_TRUE(assertion);
    EXPECT_NE(*assertion, kNoPowerAssertion);
    EXPECT_TRUE(this->kind.holds(1));

    this->assertions.release(*assertion);

    EXPECT_TRUE(this->kind.holds(0));
}

TYPED_TEST(PowerAssertionsContract, KeepsSeveralApart)
{
    const auto first = this->create();
    const auto second = this->create();
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_TRUE(this->kind.holds(2));

    this->assertions.release(*first);
    this->assertions.release(*first);

    EXPECT_TRUE(this->kind.holds(1));
}

TYPED_TEST(PowerAssertionsContract, IgnoresTheReleaseOfWhatItDoesNotKnow)
{
    this->assertions.release(kNoPowerAssertion);
    this->assertions.release(77);

    EXPECT_TRUE(this->kind.holds(0));
}

}
}
