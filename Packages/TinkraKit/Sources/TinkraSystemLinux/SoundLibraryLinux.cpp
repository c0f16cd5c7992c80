#include "TinkraSystemLinux/SoundLibraryLinux.h"

#include "TinkraSystemLinux/Sound/PulsePlayback.h"
#include "TinkraSystemLinux/XdgDirectories.h"

#include <algorithm>
#include <optional>
#include <string>

namespace Tinkra::System {

namespace {

using std::filesystem::path;

class RecordedSound final : public Sound {
public:
    explicit RecordedSound(Recording recording)
        : m_recording(std::make_shared<const Recording>(std::move(recording)))
    {
    }

    void setLoops(bool loops) override { m_loops = loops; }

    bool play() override
    {
        m_playback.emplace(m_recording, m_loops);
        return true;
    }

    void stop() override { m_playback.reset(); }

private:
    std::shared_ptr<const Recording> m_recording;
    bool m_loops = false;
    std::optional<PulsePlayback> m_playback;
};

/// A name is no way into other folders.
bool isPlain(std::string_view name)
{
    return !name.empty() && name.front() != '.'
        && std::ranges::all_of(name, [](char c) { return c != '/' && c != '\0'; });
}

}

std::vector<path> SoundLibraryLinux::foldersOfTheDesktop()
{
    std::vector<path> folders{xdgDataHome()};
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error)
        folders.push_back(program.parent_path().parent_path() / "share");
    for (auto& folder : xdgDataDirectories())
        folders.push_back(std::move(folder));
    for (auto& folder : folders)
        folder /= path("tinkra") / "sounds";
    return folders;
}

SoundLibraryLinux::SoundLibraryLinux(std::vector<path> folders)
    : m_folders(std::move(folders))
{
}

std::unique_ptr<Sound> SoundLibraryLinux::sound(std::string_view name)
{
    if (!isPlain(name))
        return nullptr;
    for (const auto& folder : m_folders) {
        if (auto recording = readWaveFile(folder / (std::string(name) + ".wav")))
            return std::make_unique<RecordedSound>(std::move(*recording));
    }
    return nullptr;
}

}
