#pragma once

#include "NotificationDaemonProtocol/Request.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Tinkra::NotificationDaemon {

class DamagedRecord : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A request as the bytes that are kept, in memory and on the disk.
std::string encodeRecord(const NotificationDaemonProtocol::Request& request);

/// Throws DamagedRecord when the bytes are not exactly what encodeRecord wrote for some valid request.
NotificationDaemonProtocol::Request decodeRecord(std::string_view bytes);

/// FNV-1a, to notice bytes that changed on the disk. Not against malice.
std::uint64_t checksum(std::string_view bytes, std::uint64_t seed = 0xcbf29ce484222325U);

}
