#pragma once

#include <memory>
#include <string_view>

namespace Tinkra::System {

/// One sound that can be played. Dropping it stops it. Main thread only.
class Sound {
public:
    virtual ~Sound() = default;

    virtual void setLoops(bool loops) = 0;

    /// False when the sound could not be started; nothing else is heard of it.
    virtual bool play() = 0;

    virtual void stop() = 0;
};

/// The system's sounds, by name.
class SoundLibrary {
public:
    virtual ~SoundLibrary() = default;

    /// Null when there is no sound of exactly this name.
    virtual std::unique_ptr<Sound> sound(std::string_view name) = 0;
};

}
