#pragma once

#include "TinkraSystem/Defaults.h"

#include <map>
#include <mutex>
#include <variant>
#include <vector>

namespace Tinkra::System {

/// Preferences in memory.
class FakeDefaults final : public Defaults {
public:
    std::optional<std::string> data(std::string_view key) override;
    void setData(std::string_view key, std::string_view bytes) override;

    /// Puts something that is not data under the key, as another program might.
    void setSomethingElse(std::string_view key);

    /// From now on nothing can be written.
    void failWrites(bool fails = true);

    /// How often data was written.
    std::size_t writeCount() const;

    /// Every key that holds anything.
    std::vector<std::string> keys() const;

private:
    struct NotData { };

    mutable std::mutex m_mutex;
    std::map<std::string, std::variant<std::string, NotData>, std::less<>> m_values;
    bool m_failsWrites = false;
    std::size_t m_writeCount = 0;
};

}
