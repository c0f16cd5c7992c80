#include "SystemVolume.h"

#include <utility>

namespace Tinkra {

using System::AudioElement;

namespace {

// The upper border first: whatever is not at most 1, NaN included, becomes 1.
float clamped(float volume)
{
    const float atMostFull = volume <= 1 ? volume : 1;
    return atMostFull < 0 ? 0 : atMostFull;
}

}

SystemVolume::SystemVolume(std::shared_ptr<System::AudioDevice> audio)
    : m_audio(std::move(audio))
{
}

std::optional<float> SystemVolume::currentVolume()
{
    const auto device = m_audio->defaultOutputDevice();
    if (!device || !m_audio->hasVolume(*device, AudioElement::Main))
        return std::nullopt;
    return m_audio->volume(*device, AudioElement::Main);
}

bool SystemVolume::setVolume(float volume)
{
    const auto device = m_audio->defaultOutputDevice();
    if (!device)
        return false;

    const float level = clamped(volume);
    if (m_audio->hasMute(*device))
        m_audio->setMute(*device, false); // a device that stays muted is no reason to leave its volume alone
    if (m_audio->hasVolume(*device, AudioElement::Main))
        return m_audio->setVolume(*device, AudioElement::Main, level);
    return setChannelVolumes(*device, level);
}

bool SystemVolume::setChannelVolumes(System::AudioDeviceID device, float volume)
{
    bool written = false;
    for (const auto channel : {AudioElement::Left, AudioElement::Right}) {
        if (m_audio->hasVolume(device, channel))
            written |= m_audio->setVolume(device, channel, volume);
    }
    return written;
}

}
