#pragma once

#include <memory>

namespace Tinkra::System {

/// Ends an observation when it is dropped.
using Observation = std::shared_ptr<void>;

}
