#pragma once

#include "TinkraSystem/SharedFolder.h"

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>

namespace Tinkra::System {

/// This user's folder below /var/lib/CalendarMurkel, where anybody may make one, as in /tmp: another user may
/// have been first. So nothing is written unless the folder is a folder, no link, belongs to its user and can
/// be written to by nobody else; a doubt is logged, once for each reason. Files are readable by everybody.
class SharedFolderLinux final : public SharedFolder {
public:
    using Log = std::function<void(const std::string& line)>;

    SharedFolderLinux(std::filesystem::path folder, uid_t owner, Log log);

    /// Of this user.
    explicit SharedFolderLinux(Log log);

    bool exists() override;
    bool create(std::uint32_t permissions) override;
    bool holds(std::string_view fileName) override;
    bool replace(std::string_view fileName, std::string_view bytes) override;

private:
    bool report(const std::string& trouble);

    std::filesystem::path m_folder;
    uid_t m_owner;
    Log m_log;
    std::string m_reported; ///< the last doubt that was logged
};

}
