#pragma once

#include <cstdint>
#include <optional>

namespace Tinkra::System {

/// Which part of a device's output a volume belongs to. The values are the platform's
/// (AudioObjectPropertyElement).
enum class AudioElement : std::uint32_t {
    Main = 0,
    Left = 1,
    Right = 2,
};

using AudioDeviceID = std::uint32_t;

/// The output volumes of the machine's sound devices: scalars from 0 (silent) to 1 (full).
///
/// No call throws. A sound server that does not answer costs a quarter of a second, once. Main thread only.
class AudioDevice {
public:
    virtual ~AudioDevice() = default;

    /// Nothing when there is no device, or no sound server.
    virtual std::optional<AudioDeviceID> defaultOutputDevice() = 0;

    virtual bool hasVolume(AudioDeviceID device, AudioElement element) = 0;
    virtual std::optional<float> volume(AudioDeviceID device, AudioElement element) = 0;

    /// True when the device took the value.
    virtual bool setVolume(AudioDeviceID device, AudioElement element, float volume) = 0;

    virtual bool hasMute(AudioDeviceID device) = 0;
    virtual bool setMute(AudioDeviceID device, bool muted) = 0;
};

}
