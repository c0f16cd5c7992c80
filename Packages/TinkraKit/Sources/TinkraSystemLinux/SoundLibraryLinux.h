#pragma once

#include "TinkraSystem/SoundLibrary.h"

#include <filesystem>
#include <vector>

namespace Tinkra::System {

/// Sounds that lie as NAME.wav in folders, played by the sound server (see Sound/PulsePlayback.h).
class SoundLibraryLinux final : public SoundLibrary {
public:
    /// The user's own sounds come before those of the system: tinkra/sounds below $XDG_DATA_HOME, below the
    /// data folder that belongs to this program, and below $XDG_DATA_DIRS.
    static std::vector<std::filesystem::path> foldersOfTheDesktop();

    explicit SoundLibraryLinux(std::vector<std::filesystem::path> folders = foldersOfTheDesktop());

    /// The first folder whose file can be played counts.
    std::unique_ptr<Sound> sound(std::string_view name) override;

private:
    std::vector<std::filesystem::path> m_folders;
};

}
