#include "SelfCheck.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeAudioDevice.h"
#include "TinkraTestSupport/FakeDefaults.h"
#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/FakeLocalCalendar.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/ImmediateClock.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace Tinkra {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Field;

class EmptySoundLibrary final : public System::SoundLibrary {
public:
    std::unique_ptr<System::Sound> sound(std::string_view /*name*/) override { return nullptr; }
};

class SelfCheckTest : public testing::Test {
protected:
    std::vector<SelfCheckLine> lines()
    {
        System::SystemServices services;
        services.eventStore = eventStore;
        services.notificationCenter = notificationCenter;
        services.defaults = std::make_shared<System::FakeDefaults>();
        services.localCalendar = std::make_shared<System::FakeLocalCalendar>();
        services.clock = std::make_shared<ImmediateClock>(noon);
        services.audioDevice = std::make_shared<System::FakeAudioDevice>();
        services.soundLibrary = std::make_shared<EmptySoundLibrary>();
        return run(selfCheck(services));
    }

    std::shared_ptr<System::FakeEventStore> eventStore = std::make_shared<System::FakeEventStore>();
    std::shared_ptr<System::FakeNotificationCenter> notificationCenter =
        std::make_shared<System::FakeNotificationCenter>();
};

TEST_F(SelfCheckTest, AsksEveryService)
{
    const auto result = lines();

    EXPECT_EQ(result.size(), 7U);
    EXPECT_THAT(result, Each(Field(&SelfCheckLine::hasAnswered, true)));
}

TEST_F(SelfCheckTest, SaysWhatAServiceAnswered)
{
    eventStore->setAuthorization(System::CalendarAuthorization::Denied);

    EXPECT_THAT(lines(),
        Contains(SelfCheckLine{
            .service = "Calendars", .hasAnswered = true, .answer = "authorisation 2, 0 calendars"}));
}

TEST_F(SelfCheckTest, GoesOnAfterAServiceThatFails)
{
    eventStore->failWith(std::make_exception_ptr(std::runtime_error("broken")));

    const auto result = lines();

    EXPECT_THAT(
        result, Contains(SelfCheckLine{.service = "Calendars", .hasAnswered = false, .answer = "broken"}));
    EXPECT_EQ(result.size(), 7U);
}

TEST_F(SelfCheckTest, AsksForNothingThatAUserWouldHaveToAllow)
{
    lines();

    EXPECT_THAT(eventStore->log().calls(), ElementsAre("calendars"));
    EXPECT_THAT(notificationCenter->log().calls(), ElementsAre("authorizationStatus", "pendingRequests"));
}

}
}
