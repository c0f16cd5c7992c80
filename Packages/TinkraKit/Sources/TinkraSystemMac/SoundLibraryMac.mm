#include "TinkraSystemMac/SoundLibraryMac.h"

#include "TinkraSystemMac/FoundationValues.h"

#import <AppKit/AppKit.h>

namespace Tinkra::System {

namespace {

class SoundMac final : public Sound {
public:
    explicit SoundMac(NSSound* _Nonnull sound)
        : m_sound(sound)
    {
    }
    SoundMac(const SoundMac&) = delete;
    SoundMac& operator=(const SoundMac&) = delete;
    ~SoundMac() override { [m_sound stop]; }

    void setLoops(bool loops) override { m_sound.loops = loops; }
    bool play() override { return [m_sound play] != NO; }
    void stop() override { [m_sound stop]; }

private:
    NSSound* _Nonnull m_sound;
};

}

std::unique_ptr<Sound> SoundLibraryMac::sound(std::string_view name)
{
    NSString* string = stringOrNil(name);
    NSSound* sound = string == nil ? nil : [NSSound soundNamed:string];
    return sound == nil ? nullptr : std::make_unique<SoundMac>(sound);
}

}
