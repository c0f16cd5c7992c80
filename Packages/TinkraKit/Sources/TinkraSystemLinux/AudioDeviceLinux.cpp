#include "TinkraSystemLinux/AudioDeviceLinux.h"

#include "TinkraSystemLinux/Sound/PulseConnection.h"

#include <algorithm>
#include <cmath>

namespace Tinkra::System {

namespace {

constexpr std::chrono::seconds kPauseAfterSilence{5};

std::size_t channelOf(AudioElement element)
{
    return static_cast<std::size_t>(element) - 1;
}

bool has(const pa_cvolume& volumes, AudioElement element)
{
    return element == AudioElement::Main ? volumes.channels > 0 : channelOf(element) < volumes.channels;
}

float scalar(pa_volume_t volume)
{
    return std::min(1.0F, static_cast<float>(volume) / static_cast<float>(PA_VOLUME_NORM));
}

pa_volume_t serverVolume(float scalar)
{
    return static_cast<pa_volume_t>(std::lround(scalar * static_cast<float>(PA_VOLUME_NORM)));
}

void keepSuccess(pa_context*, int success, void* kept)
{
    *static_cast<bool*>(kept) = success != 0;
}

}

AudioDeviceLinux::AudioDeviceLinux(std::chrono::milliseconds limit)
    : m_limit(limit)
{
}

AudioDeviceLinux::~AudioDeviceLinux() = default;

std::optional<AudioDeviceID> AudioDeviceLinux::defaultOutputDevice()
{
    std::optional<AudioDeviceID> index;
    const pa_sink_info_cb_t keep = [](pa_context*, const pa_sink_info* sink, int, void* kept) {
        if (sink != nullptr)
            *static_cast<std::optional<AudioDeviceID>*>(kept) = sink->index;
    };
    perform([&] {
        return pa_context_get_sink_info_by_name(m_connection->context(), "@DEFAULT_SINK@", keep, &index);
    });
    return index;
}

bool AudioDeviceLinux::hasVolume(AudioDeviceID device, AudioElement element)
{
    const auto volumes = channelVolumes(device);
    return volumes && has(*volumes, element);
}

std::optional<float> AudioDeviceLinux::volume(AudioDeviceID device, AudioElement element)
{
    const auto volumes = channelVolumes(device);
    if (!volumes || !has(*volumes, element))
        return std::nullopt;
    return scalar(
        element == AudioElement::Main ? pa_cvolume_max(&*volumes) : volumes->values[channelOf(element)]);
}

bool AudioDeviceLinux::setVolume(AudioDeviceID device, AudioElement element, float volume)
{
    auto volumes = channelVolumes(device);
    if (!volumes || !has(*volumes, element))
        return false;
    if (element == AudioElement::Main)
        pa_cvolume_scale(&*volumes, serverVolume(volume));
    else
        volumes->values[channelOf(element)] = serverVolume(volume);
    bool succeeded = false;
    return perform([&] {
        return pa_context_set_sink_volume_by_index(
            m_connection->context(), device, &*volumes, keepSuccess, &succeeded);
    }) && succeeded;
}

bool AudioDeviceLinux::hasMute(AudioDeviceID device)
{
    return channelVolumes(device).has_value();
}

bool AudioDeviceLinux::setMute(AudioDeviceID device, bool muted)
{
    bool succeeded = false;
    return perform([&] {
        return pa_context_set_sink_mute_by_index(
            m_connection->context(), device, muted ? 1 : 0, keepSuccess, &succeeded);
    }) && succeeded;
}

std::optional<pa_cvolume> AudioDeviceLinux::channelVolumes(AudioDeviceID device)
{
    std::optional<pa_cvolume> volumes;
    const pa_sink_info_cb_t keep = [](pa_context*, const pa_sink_info* sink, int, void* kept) {
        if (sink != nullptr)
            *static_cast<std::optional<pa_cvolume>*>(kept) = sink->volume;
    };
    perform(
        [&] { return pa_context_get_sink_info_by_index(m_connection->context(), device, keep, &volumes); });
    return volumes;
}

/// True when the server has answered.
bool AudioDeviceLinux::perform(const std::function<pa_operation*()>& begin)
{
    const auto now = std::chrono::steady_clock::now();
    if (now < m_silentUntil)
        return false;
    const auto deadline = now + m_limit;

    // A server that was started anew shows only when it is spoken to; then it is a matter of connecting
    // again.
    for (int attempt = 0; attempt < 2 && connect(deadline); ++attempt) {
        if (m_connection->finish(begin(), deadline))
            return true;
        if (!m_connection->isOver())
            break;
    }
    if (std::chrono::steady_clock::now() >= deadline) {
        m_silentUntil = deadline + kPauseAfterSilence;
        m_connection.reset();
    }
    return false;
}

bool AudioDeviceLinux::connect(Deadline deadline)
{
    if (m_connection && m_connection->isOver())
        m_connection.reset();
    if (!m_connection)
        m_connection = std::make_unique<PulseConnection>();
    return m_connection->settle(deadline) && m_connection->isReady();
}

}
