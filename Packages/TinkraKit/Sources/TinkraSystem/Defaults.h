#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tinkra::System {

/// The user's preferences: one binary value per key. Safe to use from any thread.
class Defaults {
public:
    virtual ~Defaults() = default;

    /// The exact bytes kept under `key`; nothing when there are none, or when what is there is not data.
    virtual std::optional<std::string> data(std::string_view key) = 0;

    /// Keeps the bytes under `key`. A failure leaves the old value in place and is written to the log.
    virtual void setData(std::string_view key, std::string_view bytes) = 0;
};

}
