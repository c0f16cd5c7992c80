#include "TinkraSystemMac/AudioDeviceMac.h"

#include <CoreAudio/CoreAudio.h>

namespace Tinkra::System {

namespace {

constexpr AudioObjectPropertyAddress kDefaultOutput = {
    .mSelector = kAudioHardwarePropertyDefaultOutputDevice,
    .mScope = kAudioObjectPropertyScopeGlobal,
    .mElement = kAudioObjectPropertyElementMain,
};

constexpr AudioObjectPropertyAddress kMute = {
    .mSelector = kAudioDevicePropertyMute,
    .mScope = kAudioDevicePropertyScopeOutput,
    .mElement = kAudioObjectPropertyElementMain,
};

AudioObjectPropertyAddress volumeOf(AudioElement element)
{
    return {
        .mSelector = kAudioDevicePropertyVolumeScalar,
        .mScope = kAudioDevicePropertyScopeOutput,
        .mElement = static_cast<AudioObjectPropertyElement>(element),
    };
}

template <typename Value>
std::optional<Value> valueOf(AudioObjectID object, const AudioObjectPropertyAddress& address)
{
    Value value{};
    UInt32 size = sizeof value;
    const auto status = AudioObjectGetPropertyData(object, &address, 0, nullptr, &size, &value);
    return status == kAudioHardwareNoError ? std::optional(value) : std::nullopt;
}

template <typename Value>
bool setValueOf(AudioObjectID object, const AudioObjectPropertyAddress& address, Value value)
{
    const auto status = AudioObjectSetPropertyData(object, &address, 0, nullptr, sizeof value, &value);
    return status == kAudioHardwareNoError;
}

}

std::optional<AudioDeviceID> AudioDeviceMac::defaultOutputDevice()
{
    const auto device = valueOf<AudioObjectID>(kAudioObjectSystemObject, kDefaultOutput);
    return device == kAudioObjectUnknown ? std::nullopt : device;
}

bool AudioDeviceMac::hasVolume(AudioDeviceID device, AudioElement element)
{
    const auto address = volumeOf(element);
    return AudioObjectHasProperty(device, &address) != 0;
}

std::optional<float> AudioDeviceMac::volume(AudioDeviceID device, AudioElement element)
{
    return valueOf<Float32>(device, volumeOf(element));
}

bool AudioDeviceMac::setVolume(AudioDeviceID device, AudioElement element, float volume)
{
    return setValueOf<Float32>(device, volumeOf(element), volume);
}

bool AudioDeviceMac::hasMute(AudioDeviceID device)
{
    return AudioObjectHasProperty(device, &kMute) != 0;
}

bool AudioDeviceMac::setMute(AudioDeviceID device, bool muted)
{
    return setValueOf<UInt32>(device, kMute, muted ? 1 : 0);
}

}
