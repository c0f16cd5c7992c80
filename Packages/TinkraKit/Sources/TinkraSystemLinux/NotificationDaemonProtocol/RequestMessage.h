#pragma once

#include "NotificationDaemonProtocol/Request.h"

#include <sdbus-c++/Message.h>
#include <sdbus-c++/TypeTraits.h>

namespace Tinkra::NotificationDaemonProtocol {

/// Writes the request as the dictionary described in co.calendarmurkel.NotificationCenter1.xml.
sdbus::Message& operator<<(sdbus::Message& message, const Request& request);

/// Reads such a dictionary. Keys it does not know are skipped, so that a newer caller is understood; the last
/// of equal keys counts. Throws sdbus::Error (InvalidArgs, one line that names the key) when a value has the
/// wrong type or is out of range, or when there are no components.
sdbus::Message& operator>>(sdbus::Message& message, Request& request);

}

namespace sdbus {

/// A request is an argument like any other: proxy->callMethod("Add").withArguments(identifier, request).
template <> struct signature_of<Tinkra::NotificationDaemonProtocol::Request> {
    static constexpr bool is_valid = true;
    static constexpr bool is_trivial_dbus_type = false;

    static std::string str() { return "a{sv}"; }
};

}
