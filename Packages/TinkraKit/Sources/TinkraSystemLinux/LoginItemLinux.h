#pragma once

#include "TinkraSystem/LoginItem.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace Tinkra::System {

/// The application's entry among those that the desktop starts at login (Desktop Application Autostart
/// Specification 0.5): enabled while it is there, not registered while it is not. One that is hidden,
/// switched off by the desktop, or no regular file requires approval.
class LoginItemLinux final : public LoginItem {
public:
    static constexpr std::string_view fileName = "co.calendarmurkel.Tinkra.desktop";

    /// `folder` holds the user's entries; `program` is what the entry starts.
    LoginItemLinux(std::filesystem::path folder, std::filesystem::path program);

    /// Of this user, who started this program.
    LoginItemLinux();

    ServiceStatus status() override;

    /// Replaces whatever entry there is. Throws `std::system_error`.
    void registerItem() override;

    /// Throws `std::system_error`.
    void unregisterItem() override;

private:
    std::filesystem::path m_folder;
    std::filesystem::path m_program;
};

}
