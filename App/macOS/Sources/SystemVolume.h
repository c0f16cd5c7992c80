#pragma once

#include "TinkraSystem/AudioDevice.h"

#include <memory>
#include <optional>

namespace Tinkra {

/// The output volume of the default device, from 0 (silent) to 1 (full). The mute state is never read.
class SystemVolume {
public:
    explicit SystemVolume(std::shared_ptr<System::AudioDevice> audio);

    /// The device's main volume; nothing when it has none (its channels are not asked) or cannot be read.
    std::optional<float> currentVolume();

    /// Unmutes the device and sets its volume, clamped to 0...1: the main one or, without it, those of the
    /// left and the right channel. True when a volume was written.
    bool setVolume(float volume);

private:
    bool setChannelVolumes(System::AudioDeviceID device, float volume);

    std::shared_ptr<System::AudioDevice> m_audio;
};

}
