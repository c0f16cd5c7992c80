#include "RecordingDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using namespace System;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class AlarmPresenterTest : public testing::Test {
protected:
    RecordingDesktop desktop;
    std::unique_ptr<AlarmPresenter> presenter = std::make_unique<AlarmPresenter>(desktop.means());
    std::vector<std::string> callbacks;

    void ring(const char* title = "Stand-up", bool raiseVolume = false, const char* sound = "Glass")
    {
        const std::string name = title;
        presenter->present(
            {"standup#1000", title, instantAt(1000)}, sound, raiseVolume,
            [this, name] { callbacks.push_back("snooze " + name); },
            [this, name] { callbacks.push_back("dismiss " + name); });
    }

    std::shared_ptr<FakePanels::Panel> panel(std::size_t index = 0)
    {
        return desktop.panels->panels.at(index).lock();
    }
};

TEST_F(AlarmPresenterTest, TakesEachStepOfARingInOrder)
{
    ring("Stand-up", true, "Ping");

    EXPECT_THAT(desktop.takeLog(),
        ElementsAre("main volume read", "volume remembered", "unmuted", "main volume set to 0.7", "view made",
            "panel 1 made", "panel 1 put at (430, 1004, 580 x 104)", "panel 1 ordered front",
            "panel 1 moves to (430, 763, 580 x 104) in 0.45 s ease-out", "Ping loops", "Ping plays"));
}

TEST_F(AlarmPresenterTest, TakesEachStepOfADismissalInOrder)
{
    ring("Stand-up", true);
    desktop.panels->finishAnimations();
    desktop.takeLog();

    presenter->dismiss();
    desktop.panels->finishAnimations();

    EXPECT_THAT(desktop.takeLog(),
        ElementsAre("Glass stops", "unmuted", "main volume set to 0.4", "volume forgotten",
            "panel 1 moves to (430, 1004, 580 x 104) in 0.25 s ease-in", "panel 1 closed"));
    EXPECT_EQ(panel(), nullptr) << "nobody keeps a panel that has closed";
}

TEST_F(AlarmPresenterTest, ThePanelIsBorderlessOnTopOfEverythingOnEverySpaceAndTakesNoFocus)
{
    ring();

    const auto& properties = desktop.panels->properties.at(0);
    EXPECT_EQ(properties.contentRect, (Rect{{0, 0}, {580, 104}}));
    EXPECT_EQ(properties.styleMask, 128U);
    EXPECT_EQ(properties.level, 1000);
    EXPECT_EQ(properties.collectionBehavior, 337U);
    EXPECT_TRUE(properties.buffered);
    EXPECT_FALSE(properties.deferred);
    EXPECT_TRUE(properties.floatingPanel);
    EXPECT_TRUE(properties.clearBackground);
    EXPECT_FALSE(properties.opaque);
    EXPECT_FALSE(properties.hasShadow);
    EXPECT_FALSE(properties.hidesOnDeactivate);
    EXPECT_TRUE(properties.movableByBackground);
    EXPECT_FALSE(properties.releasedWhenClosed);
}

TEST_F(AlarmPresenterTest, TheViewFillsThePanelAndStartsUnpopped)
{
    ring("Stand-up");

    EXPECT_EQ(desktop.viewFrames.at(0), (Rect{{0, 0}, {580, 104}}));
    EXPECT_EQ(desktop.banners.at(0).payload, (AlarmPayload{"standup#1000", "Stand-up", instantAt(1000)}));
    EXPECT_FALSE(desktop.banners.at(0).popped);
    EXPECT_FALSE(desktop.banners.at(0).bob);
}

TEST_F(AlarmPresenterTest, ASecondAlarmTakesTheFirstDownBeforeTheVolumeIsReadAgain)
{
    ring("First", true, "Glass");
    desktop.takeLog();

    ring("Second", true, "Ping");

    EXPECT_THAT(desktop.takeLog(),
        ElementsAre("Glass stops", "unmuted", "main volume set to 0.4", "volume forgotten",
            "panel 1 moves to (430, 1004, 580 x 104) in 0.25 s ease-in", "main volume read",
            "volume remembered", "unmuted", "main volume set to 0.7", "view made", "panel 2 made",
            "panel 2 put at (430, 1004, 580 x 104)", "panel 2 ordered front",
            "panel 2 moves to (430, 763, 580 x 104) in 0.45 s ease-out", "Ping loops", "Ping plays"));
    EXPECT_EQ(desktop.sounds->playing, 1);
}

TEST_F(AlarmPresenterTest, OnlyTheSecondAlarmsCallbacksCanFire)
{
    ring("First");
    ring("Second");
    EXPECT_THAT(callbacks, IsEmpty());

    desktop.banners.at(0).onSnooze();
    desktop.banners.at(0).onDismiss();
    EXPECT_THAT(callbacks, IsEmpty());
    EXPECT_TRUE(presenter->isRinging()) << "a button of the leaving banner does not take the new one down";

    desktop.banners.at(1).onSnooze();
    EXPECT_THAT(callbacks, ElementsAre("snooze Second"));
}

TEST_F(AlarmPresenterTest, APanelThatSlidesAwayClosesWhileANewerOneShows)
{
    ring("First");
    ring("Second");

    desktop.panels->finishAnimations();

    EXPECT_THAT(desktop.log, Contains("panel 1 closed"));
    EXPECT_THAT(desktop.log, Not(Contains("panel 2 closed")));
    EXPECT_EQ(panel(0), nullptr);
    EXPECT_NE(panel(1), nullptr);
}

TEST_F(AlarmPresenterTest, DismissWithNothingOnScreenDoesNothing)
{
    presenter->dismiss();

    EXPECT_THAT(desktop.log, IsEmpty());
}

TEST_F(AlarmPresenterTest, RaisesALowVolumeAndRestoresItOnDismiss)
{
    desktop.audio->volumes[AudioElement::Main] = 0.4F;

    ring("Stand-up", true);
    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.7F);

    presenter->dismiss();
    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.4F);
}

TEST_F(AlarmPresenterTest, UnmutesALoudVolumeAndLeavesItsLevel)
{
    desktop.audio->volumes[AudioElement::Main] = 0.9F;

    ring("Stand-up", true);
    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.9F);
    EXPECT_EQ(desktop.audio->muted, false);

    presenter->dismiss();
    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.9F);
    EXPECT_EQ(desktop.audio->muted, false) << "only the level comes back";
}

TEST_F(AlarmPresenterTest, NeverTouchesVolumeOrMuteStateUnlessAsked)
{
    ring("Stand-up", false);
    presenter->dismiss();

    EXPECT_THAT(desktop.log, Not(Contains(HasSubstr("volume"))));
    EXPECT_THAT(desktop.log, Not(Contains(HasSubstr("mute"))));
}

TEST_F(AlarmPresenterTest, AnUnreadableVolumeIsSetAndNotRestored)
{
    desktop.audio->readingFails = true;

    ring("Stand-up", true);
    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.7F);
    desktop.takeLog();

    presenter->dismiss();
    EXPECT_THAT(desktop.log, Not(Contains(HasSubstr("volume"))));
}

TEST_F(AlarmPresenterTest, AVolumeThatCannotBeSetStopsNeitherBannerNorSound)
{
    desktop.audio->writingFails = true;

    ring("Stand-up", true);

    EXPECT_TRUE(presenter->isRinging());
    EXPECT_EQ(desktop.sounds->playing, 1);
}

TEST_F(AlarmPresenterTest, WithoutAnySoundTheBannerShowsAllTheSame)
{
    desktop.sounds->names.clear();

    ring();

    EXPECT_TRUE(presenter->isRinging());
    EXPECT_THAT(desktop.log, Contains("panel 1 ordered front"));
}

TEST_F(AlarmPresenterTest, AppearsCentredAtTheTopOfTheVisibleAreaOfTheScreenUnderThePointer)
{
    desktop.screens->all.push_back({{{1440, 200}, {1920, 1080}}, {{1500, 200}, {1860, 1050}}});
    desktop.screens->pointer = {2000, 700};

    ring();

    EXPECT_THAT(desktop.log, Contains("panel 1 put at (2140, 1384, 580 x 104)"));
    EXPECT_THAT(desktop.log, Contains("panel 1 moves to (2140, 1138, 580 x 104) in 0.45 s ease-out"));
}

TEST_F(AlarmPresenterTest, APointerOnTheSharedEdgeBelongsToTheUpperScreen)
{
    desktop.screens->all.push_back({{{0, 900}, {1440, 900}}, {{0, 900}, {1440, 900}}});
    desktop.screens->pointer = {700, 900};

    ring();

    EXPECT_THAT(desktop.log, Contains("panel 1 put at (430, 1004, 580 x 104)"))
        << "a pointer's place is the upper left corner of the pixel below it";
}

TEST_F(AlarmPresenterTest, APointerOnNoScreenMeansTheMainScreenThenTheFirst)
{
    desktop.screens->all = {{{{0, 0}, {1000, 800}}, {{0, 0}, {1000, 800}}}};
    desktop.screens->pointer = {-5, -5};
    desktop.screens->main = Screen{{{2000, 0}, {1000, 500}}, {{2000, 0}, {1000, 500}}};
    ring("On the main screen");
    EXPECT_THAT(desktop.takeLog(), Contains("panel 1 put at (2210, 604, 580 x 104)"));

    desktop.screens->main.reset();
    ring("On the first screen");
    EXPECT_THAT(desktop.takeLog(), Contains("panel 2 put at (210, 904, 580 x 104)"));
}

TEST_F(AlarmPresenterTest, WithoutAnyScreenAFixedRectangleStandsIn)
{
    desktop.screens->all.clear();
    desktop.screens->main.reset();

    ring();

    EXPECT_THAT(desktop.log, Contains("panel 1 put at (430, 1004, 580 x 104)"));
    EXPECT_THAT(desktop.log, Contains("panel 1 moves to (430, 788, 580 x 104) in 0.45 s ease-out"));
}

TEST_F(AlarmPresenterTest, LeavesUpwardFromWhereverItWasDraggedOnItsOwnScreen)
{
    ring();
    panel()->current.origin = {60, 300};
    panel()->on = Screen{{{0, 0}, {1440, 1200}}, {{0, 0}, {1440, 1200}}};

    presenter->dismiss();

    EXPECT_THAT(desktop.log, Contains("panel 1 moves to (60, 1304, 580 x 104) in 0.25 s ease-in"));
}

TEST_F(AlarmPresenterTest, LeavesByItsOwnHeightWhenThereIsNoScreen)
{
    ring();
    panel()->current.origin = {60, 300};
    desktop.screens->main.reset();

    presenter->dismiss();

    EXPECT_THAT(desktop.log, Contains("panel 1 moves to (60, 508, 580 x 104) in 0.25 s ease-in"));
}

TEST_F(AlarmPresenterTest, SnoozeTakesTheBannerDownBeforeItsCallbackRuns)
{
    bool wasRinging = true;
    presenter->present(
        {"a#1", "Stand-up", instantAt(1)}, "Glass", true, [&] { wasRinging = presenter->isRinging(); },
        nullptr);

    desktop.banners.at(0).onSnooze();

    EXPECT_FALSE(wasRinging);
    EXPECT_EQ(desktop.sounds->playing, 0);
    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.4F);
}

TEST_F(AlarmPresenterTest, DismissDoesTheSameWithoutTheSnooze)
{
    ring("Stand-up");

    desktop.banners.at(0).onDismiss();

    EXPECT_FALSE(presenter->isRinging());
    EXPECT_THAT(callbacks, ElementsAre("dismiss Stand-up"));
}

TEST_F(AlarmPresenterTest, ASecondPressWhileTheBannerLeavesDoesNothing)
{
    ring("Stand-up");

    desktop.banners.at(0).onSnooze();
    desktop.banners.at(0).onSnooze();
    desktop.banners.at(0).onDismiss();

    EXPECT_THAT(callbacks, ElementsAre("snooze Stand-up"));
}

TEST_F(AlarmPresenterTest, TheCallbackRunsEvenWhenThePresenterIsGone)
{
    ring("Stand-up");
    const auto banner = desktop.banners.at(0);
    presenter.reset();

    banner.onSnooze();

    EXPECT_THAT(callbacks, ElementsAre("snooze Stand-up"));
}

TEST_F(AlarmPresenterTest, ACallbackMayRingTheNextAlarm)
{
    presenter->present(
        {"a#1", "First", instantAt(1)}, "Glass", false, [this] { ring("Second"); }, nullptr);

    desktop.banners.at(0).onSnooze();

    EXPECT_TRUE(presenter->isRinging());
    EXPECT_EQ(desktop.banners.at(1).payload.title, Text{"Second"});
}

TEST_F(AlarmPresenterTest, AVolumeLeftRaisedByADeadProcessIsRestoredAtTheNextStart)
{
    ring("Stand-up", true);
    // The process dies here: nothing is dismissed, the file stays.

    RaisedVolume raised{desktop.defaults};
    SystemVolume volume{desktop.audio};
    restoreVolumeLeftRaised(raised, volume);

    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.4F);
    EXPECT_EQ(raised.left(), std::nullopt);
}

TEST(RaisedVolume, LeavesTheVolumeAloneWhenNothingOrNonsenseWasLeft)
{
    RecordingDesktop desktop;
    RaisedVolume raised{desktop.defaults};
    SystemVolume volume{desktop.audio};
    for (const char* left : {"", "loud", "0.4x", "-1", "2", "nan", "inf"}) {
        desktop.defaults->values["tinkra.volumeToRestore"] = left;
        restoreVolumeLeftRaised(raised, volume);
    }
    EXPECT_FLOAT_EQ(desktop.audio->volumes[AudioElement::Main], 0.4F);
    EXPECT_EQ(desktop.audio->muted, true);
}

}
}
