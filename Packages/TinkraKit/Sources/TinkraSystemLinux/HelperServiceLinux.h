#pragma once

#include "TinkraSystem/HelperService.h"

#include <filesystem>
#include <string_view>

namespace Tinkra::System {

/// The wake helper as a unit of the system's systemd, judged by the files that systemd itself reads
/// (systemd.unit(5)): enabled, installed and not enabled (an administrator has to approve of it), or absent.
class HelperServiceLinux final : public HelperService {
public:
    static constexpr std::string_view unit = "tinkra-wakehelper.service";

    /// `root` is the folder that the system's own folders lie in.
    explicit HelperServiceLinux(std::filesystem::path root = "/");

    ServiceStatus status() override;

    /// An application may not enable a unit of the system: throws what an administrator can do instead.
    void registerService() override;

private:
    bool isWanted() const;

    std::filesystem::path m_root;
};

}
