#include "PrivateSoundServer/PrivateSoundServer.h"

#include "TinkraSystemLinux/AudioDeviceLinux.h"
#include "TinkraTestSupport/FakeAudioDevice.h"

#include <gmock/gmock.h>

namespace Tinkra::System {
namespace {

using testing::FloatNear;
using testing::Optional;

constexpr float kGrain = 1e-4F;
constexpr AudioDeviceID kUnknownDevice = 4711;

struct InMemory {
    FakeAudioDevice device{};
    InMemory()
    {
        device.volumes = {
            {AudioElement::Main, 0.4F}, {AudioElement::Left, 0.4F}, {AudioElement::Right, 0.4F}};
    }
    bool isMuted() const { return *device.muted; }
};

/// The default device of a sound server of the test's own.
struct OfTheDesktop {
    PrivateSoundServer server;
    AudioDeviceLinux device;
    bool isMuted() const { return server.control("get-sink-mute private").find("yes") != std::string::npos; }
};

template <typename Kind> class AudioDeviceContract : public testing::Test {
protected:
    Kind kind;
    AudioDevice& audio = kind.device;
    AudioDeviceID device = audio.defaultOutputDevice().value();
};

using Kinds = testing::Types<InMemory, OfTheDesktop>;
TYPED_TEST_SUITE(AudioDeviceContract, Kinds);

TYPED_TEST(AudioDeviceContract, TheMainVolumeReadsAsItWasSet)
{
    for (const float volume : {0.0F, 0.4F, 0.7F, 1.0F}) {
        EXPECT_TRUE(this->audio.setVolume(this->device, AudioElement::Main, volume));
        EXPECT_THAT(
            this->audio.volume(this->device, AudioElement::Main), Optional(FloatNear(volume, kGrain)));
    }
}

TYPED_TEST(AudioDeviceContract, AChannelReadsAsItWasSetAndLeavesTheOtherAlone)
{
    EXPECT_TRUE(this->audio.setVolume(this->device, AudioElement::Right, 0.3F));
    EXPECT_TRUE(this->audio.setVolume(this->device, AudioElement::Left, 0.6F));

    EXPECT_THAT(this->audio.volume(this->device, AudioElement::Left), Optional(FloatNear(0.6F, kGrain)));
    EXPECT_THAT(this->audio.volume(this->device, AudioElement::Right), Optional(FloatNear(0.3F, kGrain)));
}

TYPED_TEST(AudioDeviceContract, MutesAndUnmutes)
{
    EXPECT_TRUE(this->audio.hasMute(this->device));

    EXPECT_TRUE(this->audio.setMute(this->device, true));
    EXPECT_TRUE(this->kind.isMuted());

    EXPECT_TRUE(this->audio.setMute(this->device, false));
    EXPECT_FALSE(this->kind.isMuted());
}

TYPED_TEST(AudioDeviceContract, ADeviceThatIsNotThereHasNothingAndTakesNothing)
{
    EXPECT_FALSE(this->audio.hasVolume(kUnknownDevice, AudioElement::Main));
    EXPECT_FALSE(this->audio.hasMute(kUnknownDevice));
    EXPECT_EQ(this->audio.volume(kUnknownDevice, AudioElement::Main), std::nullopt);
    EXPECT_FALSE(this->audio.setVolume(kUnknownDevice, AudioElement::Main, 0.5F));
    EXPECT_FALSE(this->audio.setMute(kUnknownDevice, false));
}

}
}
