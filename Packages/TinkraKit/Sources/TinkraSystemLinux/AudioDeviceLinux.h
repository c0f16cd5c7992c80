#pragma once

#include "TinkraSystem/AudioDevice.h"

#include <chrono>
#include <functional>
#include <memory>

struct pa_cvolume;
struct pa_operation;

namespace Tinkra::System {

class PulseConnection;

/// The sinks of PulseAudio, or of PipeWire in its place. A device's number is its sink's index; "main" is all
/// of its channels together, whose balance is kept, 1 is the server's 100 %, and Left and Right are its first
/// two channels.
///
/// A server that does not answer is waited for once, for `limit`, and then left alone for a while.
class AudioDeviceLinux final : public AudioDevice {
public:
    explicit AudioDeviceLinux(std::chrono::milliseconds limit = std::chrono::milliseconds(250));
    AudioDeviceLinux(const AudioDeviceLinux&) = delete;
    AudioDeviceLinux& operator=(const AudioDeviceLinux&) = delete;
    ~AudioDeviceLinux() override;

    std::optional<AudioDeviceID> defaultOutputDevice() override;
    bool hasVolume(AudioDeviceID device, AudioElement element) override;
    std::optional<float> volume(AudioDeviceID device, AudioElement element) override;
    bool setVolume(AudioDeviceID device, AudioElement element, float volume) override;
    bool hasMute(AudioDeviceID device) override;
    bool setMute(AudioDeviceID device, bool muted) override;

private:
    using Deadline = std::chrono::steady_clock::time_point;

    bool perform(const std::function<pa_operation*()>& begin);
    bool connect(Deadline deadline);
    std::optional<pa_cvolume> channelVolumes(AudioDeviceID device);

    std::chrono::milliseconds m_limit;
    std::unique_ptr<PulseConnection> m_connection;
    Deadline m_silentUntil; ///< nobody is asked before
};

}
