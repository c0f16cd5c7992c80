#include "RecordingDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace Tinkra {
namespace {

using System::AudioElement;
using testing::ElementsAre;
using testing::IsEmpty;

class SystemVolumeTest : public testing::Test {
protected:
    DesktopLog log;
    std::shared_ptr<System::FakeAudioDevice> audio = std::make_shared<System::FakeAudioDevice>(
        [this](std::string call) { log.push_back(std::move(call)); });
    SystemVolume volume{audio};
};

TEST_F(SystemVolumeTest, ClampsToTheScale)
{
    EXPECT_TRUE(volume.setVolume(1.5F));
    EXPECT_FLOAT_EQ(audio->volumes[AudioElement::Main], 1);

    EXPECT_TRUE(volume.setVolume(-0.2F));
    EXPECT_FLOAT_EQ(audio->volumes[AudioElement::Main], 0);

    EXPECT_TRUE(volume.setVolume(std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FLOAT_EQ(audio->volumes[AudioElement::Main], 1) << "an alarm is rather too loud than silent";
}

TEST_F(SystemVolumeTest, UnmutesBeforeEveryWrite)
{
    volume.setVolume(0.5F);
    audio->muted = true;
    volume.setVolume(0.2F);

    EXPECT_THAT(log, ElementsAre("unmuted", "main volume set to 0.5", "unmuted", "main volume set to 0.2"));
}

TEST_F(SystemVolumeTest, ADeviceWithChannelsAloneIsSetOnBothAndNotRead)
{
    audio->volumes = {{AudioElement::Left, 0.1F}, {AudioElement::Right, 0.2F}};

    EXPECT_EQ(volume.currentVolume(), std::nullopt);
    EXPECT_THAT(log, IsEmpty()) << "reading never consults the channels";
    EXPECT_TRUE(volume.setVolume(0.7F));
    EXPECT_THAT(log, ElementsAre("unmuted", "left volume set to 0.7", "right volume set to 0.7"));
}

TEST_F(SystemVolumeTest, OneChannelIsEnough)
{
    audio->volumes = {{AudioElement::Right, 0.2F}};

    EXPECT_TRUE(volume.setVolume(0.7F));
    EXPECT_THAT(log, ElementsAre("unmuted", "right volume set to 0.7"));
}

TEST_F(SystemVolumeTest, NoVolumeAtAllIsAFailedWrite)
{
    audio->volumes.clear();

    EXPECT_FALSE(volume.setVolume(0.7F));
    EXPECT_THAT(log, ElementsAre("unmuted"));
}

TEST_F(SystemVolumeTest, AFailedWriteOfTheMainVolumeIsNotRetriedOnTheChannels)
{
    audio->volumes = {{AudioElement::Main, 0.1F}, {AudioElement::Left, 0.1F}};
    audio->writingFails = true;

    EXPECT_FALSE(volume.setVolume(0.7F));
    EXPECT_THAT(log, ElementsAre("unmuted", "main volume set to 0.7"));
}

TEST_F(SystemVolumeTest, ADeviceWithoutMuteHasItsVolumeSetOnly)
{
    audio->muted.reset();

    EXPECT_TRUE(volume.setVolume(0.7F));
    EXPECT_THAT(log, ElementsAre("main volume set to 0.7"));
}

TEST_F(SystemVolumeTest, WithoutADeviceNothingIsReadOrSet)
{
    audio->device.reset();

    EXPECT_EQ(volume.currentVolume(), std::nullopt);
    EXPECT_FALSE(volume.setVolume(0.7F));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(SystemVolumeTest, AFailedReadGivesNothing)
{
    audio->readingFails = true;

    EXPECT_EQ(volume.currentVolume(), std::nullopt);
}

class AlarmSoundPlayerTest : public testing::Test {
protected:
    DesktopLog log;
    std::shared_ptr<FakeSoundLibrary> library = std::make_shared<FakeSoundLibrary>(log);
    AlarmSoundPlayer player{library};
};

TEST_F(AlarmSoundPlayerTest, DefaultAndTheEmptyNameMeanGlass)
{
    player.startLooping("default");
    EXPECT_THAT(log, ElementsAre("Glass loops", "Glass plays"));

    log.clear();
    player.startLooping("");
    EXPECT_THAT(log, ElementsAre("Glass stops", "Glass loops", "Glass plays"));
}

TEST_F(AlarmSoundPlayerTest, AnUnknownNameSoundsAsGlass)
{
    player.startLooping("../../etc/passwd");

    EXPECT_THAT(log, ElementsAre("Glass loops", "Glass plays"));
}

TEST_F(AlarmSoundPlayerTest, WithoutGlassThereIsSilence)
{
    library->names.clear();

    player.startLooping("Ping");
    player.stop();

    EXPECT_THAT(log, IsEmpty());
}

TEST_F(AlarmSoundPlayerTest, StartingTwiceLeavesTheSecondSoundAlone)
{
    player.startLooping("Glass");
    player.startLooping("Ping");

    EXPECT_EQ(library->playing, 1);
    EXPECT_THAT(log, ElementsAre("Glass loops", "Glass plays", "Glass stops", "Ping loops", "Ping plays"));
}

TEST_F(AlarmSoundPlayerTest, StoppingTwiceIsHarmless)
{
    player.startLooping("Ping");
    player.stop();
    player.stop();

    EXPECT_EQ(library->playing, 0);
}

}
}
