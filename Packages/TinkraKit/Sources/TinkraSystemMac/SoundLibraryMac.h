#pragma once

#include "TinkraSystem/SoundLibrary.h"

namespace Tinkra::System {

/// NSSound's named sounds: those of the bundle, the user's and the system's, in this order. A name stands for
/// one sound, so that two of the same name stop together.
class SoundLibraryMac final : public SoundLibrary {
public:
    std::unique_ptr<Sound> sound(std::string_view name) override;
};

}
