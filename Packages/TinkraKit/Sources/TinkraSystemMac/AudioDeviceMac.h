#pragma once

#include "TinkraSystem/AudioDevice.h"

namespace Tinkra::System {

/// CoreAudio's audio objects.
class AudioDeviceMac final : public AudioDevice {
public:
    std::optional<AudioDeviceID> defaultOutputDevice() override;
    bool hasVolume(AudioDeviceID device, AudioElement element) override;
    std::optional<float> volume(AudioDeviceID device, AudioElement element) override;
    bool setVolume(AudioDeviceID device, AudioElement element, float volume) override;
    bool hasMute(AudioDeviceID device) override;
    bool setMute(AudioDeviceID device, bool muted) override;
};

}
