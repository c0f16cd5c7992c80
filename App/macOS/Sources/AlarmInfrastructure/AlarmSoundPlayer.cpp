#include "AlarmInfrastructure/AlarmSoundPlayer.h"

#include <utility>

namespace Tinkra {

namespace {

constexpr auto kDefaultSound = "Glass";

}

AlarmSoundPlayer::AlarmSoundPlayer(std::shared_ptr<System::SoundLibrary> library)
    : m_library(std::move(library))
{
}

void AlarmSoundPlayer::startLooping(std::string name)
{
    stop();
    if (name.empty() || name == "default")
        name = kDefaultSound;

    m_sound = m_library->sound(name);
    if (!m_sound)
        m_sound = m_library->sound(kDefaultSound);
    if (!m_sound)
        return;
    m_sound->setLoops(true);
    m_sound->play();
}

void AlarmSoundPlayer::stop()
{
    if (const auto sound = std::exchange(m_sound, nullptr))
        sound->stop();
}

}
