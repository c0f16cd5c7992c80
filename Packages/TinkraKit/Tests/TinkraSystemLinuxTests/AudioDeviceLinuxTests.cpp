#include "TinkraSystemLinux/AudioDeviceLinux.h"

#include "PrivateSoundServer/PrivateSoundServer.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace Tinkra::System {
namespace {

using testing::FloatNear;
using testing::HasSubstr;
using testing::Optional;

constexpr float kGrain = 1e-4F;

TEST(AudioDeviceLinux, WithoutASoundServerThereIsNoDevice)
{
    ::setenv("PULSE_SERVER", "unix:/nowhere/at/all", 1);
    AudioDeviceLinux audio;

    EXPECT_EQ(audio.defaultOutputDevice(), std::nullopt);
    EXPECT_FALSE(audio.setVolume(0, AudioElement::Main, 0.5F));
    ::unsetenv("PULSE_SERVER");
}

TEST(AudioDeviceLinux, AFrozenServerIsNotWaitedForAndCountsAsNone)
{
    PrivateSoundServer server;
    server.freeze();
    AudioDeviceLinux audio(std::chrono::milliseconds(20));

    EXPECT_EQ(audio.defaultOutputDevice(), std::nullopt);
    server.thaw();
    EXPECT_EQ(audio.defaultOutputDevice(), std::nullopt) << "it is left alone for a while";
}

TEST(AudioDeviceLinux, AServerThatFreezesBetweenTwoCallsIsNotWaitedForEither)
{
    PrivateSoundServer server;
    AudioDeviceLinux audio(std::chrono::milliseconds(20));
    const auto device = audio.defaultOutputDevice().value();
    server.freeze();

    EXPECT_FALSE(audio.setVolume(device, AudioElement::Main, 0.5F));
}

TEST(AudioDeviceLinux, FindsAServerThatWasStartedAnew)
{
    PrivateSoundServer server;
    AudioDeviceLinux audio;
    ASSERT_TRUE(audio.defaultOutputDevice().has_value());
    server.kill();
    EXPECT_EQ(audio.defaultOutputDevice(), std::nullopt);
    server.start();

    EXPECT_TRUE(audio.defaultOutputDevice().has_value());
}

TEST(AudioDeviceLinux, ADeviceThatWasUnpluggedIsNotTheDefaultAnyMore)
{
    PrivateSoundServer server;
    server.control("load-module module-null-sink sink_name=second");
    AudioDeviceLinux audio;
    const auto first = audio.defaultOutputDevice().value();
    server.control("unload-module module-null-sink"); // both
    EXPECT_EQ(audio.defaultOutputDevice(), std::nullopt);
    EXPECT_FALSE(audio.setVolume(first, AudioElement::Main, 0.5F));
    server.control("load-module module-null-sink sink_name=third");

    const auto next = audio.defaultOutputDevice();
    ASSERT_TRUE(next.has_value());
    EXPECT_NE(*next, first);
}

TEST(AudioDeviceLinux, TheMainVolumeIsThatOfTheLouderChannelAndKeepsTheBalance)
{
    PrivateSoundServer server;
    server.control("set-sink-volume private 40% 20%");
    AudioDeviceLinux audio;
    const auto device = audio.defaultOutputDevice().value();
    EXPECT_THAT(audio.volume(device, AudioElement::Main), Optional(FloatNear(0.4F, kGrain)));

    EXPECT_TRUE(audio.setVolume(device, AudioElement::Main, 0.8F));

    EXPECT_THAT(audio.volume(device, AudioElement::Left), Optional(FloatNear(0.8F, kGrain)));
    EXPECT_THAT(audio.volume(device, AudioElement::Right), Optional(FloatNear(0.4F, kGrain)));
}

TEST(AudioDeviceLinux, ADeviceThatIsAmplifiedBeyondFullReadsAsFull)
{
    PrivateSoundServer server;
    server.control("set-sink-volume private 150%");
    AudioDeviceLinux audio;

    EXPECT_EQ(audio.volume(audio.defaultOutputDevice().value(), AudioElement::Main), 1.0F);
}

TEST(AudioDeviceLinux, ADeviceWithOneChannelHasNoRightOne)
{
    PrivateSoundServer server;
    server.control("load-module module-null-sink sink_name=mono channels=1");
    server.control("set-default-sink mono");
    AudioDeviceLinux audio;
    const auto device = audio.defaultOutputDevice().value();

    EXPECT_TRUE(audio.hasVolume(device, AudioElement::Left));
    EXPECT_FALSE(audio.hasVolume(device, AudioElement::Right));
}

}
}
