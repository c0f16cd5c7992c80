#pragma once

#include "TinkraSystem/Defaults.h"

#include "SystemVolume.h"

#include <memory>
#include <optional>

namespace Tinkra {

/// Remembers on disk, while an alarm rings, the volume from before it, so that a program that dies ringing
/// does not leave the machine loud: the next start puts the volume back.
class RaisedVolume {
public:
    explicit RaisedVolume(std::shared_ptr<System::Defaults> defaults);

    /// Called before the volume is raised.
    void remember(float volumeToRestore);

    /// Called after the volume was restored.
    void forget();

    /// What a ring that never ended has left behind.
    std::optional<float> left() const;

private:
    std::shared_ptr<System::Defaults> m_defaults;
};

/// Restores the volume that a ring of an earlier process has left raised, if one has.
void restoreVolumeLeftRaised(RaisedVolume& raised, SystemVolume& volume);

}
