#pragma once

#include "TinkraSystem/SoundLibrary.h"

#include <memory>
#include <string>

namespace Tinkra {

/// Loops one named sound until it is stopped.
class AlarmSoundPlayer {
public:
    explicit AlarmSoundPlayer(std::shared_ptr<System::SoundLibrary> library);

    /// Stops what plays and loops the sound of this name; "default" and the empty name mean "Glass". A name
    /// that the library does not know sounds as "Glass"; without that there is silence, and no error.
    void startLooping(std::string name);

    void stop();

private:
    std::shared_ptr<System::SoundLibrary> m_library;
    std::unique_ptr<System::Sound> m_sound;
};

}
