#pragma once

#include "TinkraSystem/SharedFolder.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Tinkra::System {

/// A shared folder in memory, which is not there at the start.
class FakeSharedFolder final : public SharedFolder {
public:
    bool exists() override { return permissions.has_value(); }

    bool create(std::uint32_t wanted) override
    {
        if (!refuses)
            permissions = wanted;
        return !refuses;
    }

    bool holds(std::string_view fileName) override { return files.contains(fileName); }

    bool replace(std::string_view fileName, std::string_view bytes) override
    {
        if (refuses || !exists())
            return false;
        files.insert_or_assign(std::string(fileName), std::string(bytes));
        written.emplace_back(bytes);
        return true;
    }

    /// Somebody deletes it with all that is in it.
    void vanish()
    {
        permissions.reset();
        files.clear();
    }

    std::optional<std::uint32_t> permissions; ///< while it is there
    std::map<std::string, std::string, std::less<>> files;
    std::vector<std::string> written; ///< every content that was ever written, in order
    bool refuses = false; ///< from now on nothing can be made or written
};

}
