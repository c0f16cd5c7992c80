#pragma once

#include "TinkraSystem/SystemServices.h"

#include <string>
#include <vector>

namespace Tinkra {

/// What one service answered, or how it failed.
struct SelfCheckLine {
    std::string service;
    bool hasAnswered = false;
    std::string answer;

    friend bool operator==(const SelfCheckLine&, const SelfCheckLine&) = default;
};

/// Asks each service for something that is only read. A service that throws does not keep the others from
/// being asked.
Task<std::vector<SelfCheckLine>> selfCheck(System::SystemServices services);

}
