#include "TinkraSystemLinux/HelperServiceLinux.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <utility>

namespace Tinkra::System {

namespace {

using std::filesystem::path;

// Where units lie, most important first, without the folders of generators.
constexpr std::array<const char*, 5> kUnitFolders{"etc/systemd/system", "run/systemd/system",
    "usr/local/lib/systemd/system", "usr/lib/systemd/system", "lib/systemd/system"};

bool isThere(const path& file)
{
    std::error_code error;
    return std::filesystem::exists(std::filesystem::symlink_status(file, error));
}

/// A unit that is a link to nothing, or empty, is masked.
bool isMasked(const path& file)
{
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    return !std::filesystem::is_regular_file(status) || std::filesystem::file_size(file, error) == 0;
}

}

HelperServiceLinux::HelperServiceLinux(path root)
    : m_root(std::move(root))
{
}

ServiceStatus HelperServiceLinux::status()
{
    for (const auto* folder : kUnitFolders) {
        const auto file = m_root / folder / unit;
        if (!isThere(file))
            continue;
        return !isMasked(file) && isWanted() ? ServiceStatus::Enabled : ServiceStatus::RequiresApproval;
    }
    return ServiceStatus::NotFound;
}

void HelperServiceLinux::registerService()
{
    throw std::runtime_error(status() == ServiceStatus::NotFound
            ? std::string(unit) + " is not installed"
            : "only an administrator can enable it: systemctl enable --now " + std::string(unit));
}

/// Enabling puts a link into the folder of the target that starts the unit.
bool HelperServiceLinux::isWanted() const
{
    return std::ranges::any_of(kUnitFolders, [this](const char* folder) {
        std::error_code error;
        const std::filesystem::directory_iterator targets(m_root / folder, error);
        return std::ranges::any_of(targets, [](const auto& target) {
            const auto extension = target.path().extension();
            return (extension == ".wants" || extension == ".requires") && isThere(target.path() / unit);
        });
    });
}

}
