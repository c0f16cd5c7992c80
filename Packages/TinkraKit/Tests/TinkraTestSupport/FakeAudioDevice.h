#pragma once

#include "TinkraSystem/AudioDevice.h"

#include <functional>
#include <map>
#include <string>

namespace Tinkra::System {

/// A sound device whose properties a test sets up; keeps volumes and mute state like a real one.
class FakeAudioDevice final : public AudioDevice {
public:
    /// Told of each reading and writing, in words.
    explicit FakeAudioDevice(std::function<void(std::string)> log = [](std::string) {});

    std::optional<AudioDeviceID> device = 7;
    std::map<AudioElement, float> volumes{{AudioElement::Main, 0.4F}};
    std::optional<bool> muted = true;
    bool readingFails = false;
    bool writingFails = false;

    std::optional<AudioDeviceID> defaultOutputDevice() override { return device; }
    bool hasVolume(AudioDeviceID asked, AudioElement element) override;
    std::optional<float> volume(AudioDeviceID asked, AudioElement element) override;
    bool setVolume(AudioDeviceID asked, AudioElement element, float volume) override;
    bool hasMute(AudioDeviceID asked) override;
    bool setMute(AudioDeviceID asked, bool value) override;

private:
    std::function<void(std::string)> m_log;
};

}
