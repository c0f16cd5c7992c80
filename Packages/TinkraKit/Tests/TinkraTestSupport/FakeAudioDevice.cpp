#include "TinkraTestSupport/FakeAudioDevice.h"

#include <sstream>
#include <utility>

namespace Tinkra::System {

namespace {

std::string describe(AudioElement element)
{
    return element == AudioElement::Main ? "main" : element == AudioElement::Left ? "left" : "right";
}

}

FakeAudioDevice::FakeAudioDevice(std::function<void(std::string)> log)
    : m_log(std::move(log))
{
}

bool FakeAudioDevice::hasVolume(AudioDeviceID asked, AudioElement element)
{
    return asked == device && volumes.contains(element);
}

std::optional<float> FakeAudioDevice::volume(AudioDeviceID asked, AudioElement element)
{
    m_log(describe(element) + " volume read");
    return readingFails || !hasVolume(asked, element) ? std::nullopt : std::optional{volumes.at(element)};
}

bool FakeAudioDevice::setVolume(AudioDeviceID asked, AudioElement element, float volume)
{
    std::ostringstream text;
    text << describe(element) << " volume set to " << volume;
    m_log(text.str());
    if (writingFails || !hasVolume(asked, element))
        return false;
    volumes[element] = volume;
    return true;
}

bool FakeAudioDevice::hasMute(AudioDeviceID asked)
{
    return asked == device && muted.has_value();
}

bool FakeAudioDevice::setMute(AudioDeviceID asked, bool value)
{
    m_log(value ? "muted" : "unmuted");
    if (!hasMute(asked))
        return false;
    muted = value;
    return true;
}

}
